// Rates, time bases and conversions, with values worked out by hand.
#include "container/time_base.h"

#include <gtest/gtest.h>

#include "base/problem.h"
#include "container/movie_reader.h"

namespace vorel::container {
namespace {

TEST(TimeBase, FractionalRatesAreExact) {
  EXPECT_EQ(TimeBaseOfRate({24000, 1001}), (TimeBase{24000, 1001}));
  EXPECT_EQ(TimeBaseOfRate({30000, 1001}), (TimeBase{30000, 1001}));
  EXPECT_EQ(TimeBaseOfRate({120000, 2002}), (TimeBase{60000, 1001}));
}

TEST(TimeBase, WholeRatesHaveAHundredUnitsPerFrame) {
  EXPECT_EQ(TimeBaseOfRate({25, 1}), (TimeBase{2500, 100}));
  EXPECT_EQ(TimeBaseOfRate({24, 1}), (TimeBase{2400, 100}));
  EXPECT_EQ(TimeBaseOfRate({1, 2}), (TimeBase{100, 200}));
  EXPECT_EQ(TimeBaseOfRate({1, 0xFFFFFFFF}), (TimeBase{1, 0xFFFFFFFF}));
}

TEST(TimeBase, ZeroRateIsRefused) {
  EXPECT_THROW(TimeBaseOfRate({0, 1}), Problem);
  EXPECT_THROW(TimeBaseOfRate({25, 0}), Problem);
}

TEST(TimeBase, RescalingRoundsToNearestAndSaturates) {
  EXPECT_EQ(RescaleTime(3003, 24000, 48000), 6006u);
  EXPECT_EQ(RescaleTime(1, 3, 2), 1u);
  EXPECT_EQ(RescaleTime(1, 5, 2), 0u);
  EXPECT_EQ(RescaleTime(0xFFFFFFFFFFFFFFFE, 0xFFFFFFFF, 0xFFFFFFFF), 0xFFFFFFFFFFFFFFFEu);
  EXPECT_EQ(RescaleTime(0xFFFFFFFFFFFFFFFF, 1, 2), 0xFFFFFFFFFFFFFFFFu);
  EXPECT_EQ(RescaleTime(0xFFFFFFFFFFFFFFFF, 2, 3), 0xFFFFFFFFFFFFFFFFu);
}

TEST(TimeBase, ReducedRateKeepsThirtyTwoBits) {
  EXPECT_EQ(ReducedRate(72000, 3003), (FrameRate{24000, 1001}));
  EXPECT_EQ(ReducedRate(0, 7), (FrameRate{0, 1}));
  EXPECT_EQ(ReducedRate(7, 0), (FrameRate{0, 1}));
  EXPECT_EQ(ReducedRate(u64{1} << 40, 3), (FrameRate{0xFFFFFFFF, 1}));
  EXPECT_EQ(ReducedRate(3, u64{1} << 40), (FrameRate{1, 0xFFFFFFFF}));
  EXPECT_EQ(ReducedRate((u64{1} << 33) + 2, 7), (FrameRate{0x80000000, 1}));
}

TEST(TimeBase, CommonTimescaleWithinALimit) {
  EXPECT_EQ(CommonTimescale(24000, 48000, 1000000), 48000u);
  EXPECT_EQ(CommonTimescale(2400, 44100, 1000000), 352800u);
  EXPECT_EQ(CommonTimescale(2500, 44100, 1000000), 2500u);
  EXPECT_EQ(CommonTimescale(30000, 44100, 1000000), 30000u);
}

TEST(TimeBase, AverageRateOfEqualAndUnequalDurations) {
  std::vector<Sample> samples(4, Sample{0, 1, 1001, 0, true});
  EXPECT_EQ(AverageRate(samples, 30000), (FrameRate{30000, 1001}));
  samples[3].duration = 997;
  EXPECT_EQ(AverageRate(samples, 30000), (FrameRate{30, 1}));
  for (Sample& sample : samples) sample.duration = 0;
  EXPECT_EQ(AverageRate(samples, 30000), (FrameRate{0, 1}));
  EXPECT_EQ(AverageRate({}, 30000), (FrameRate{0, 1}));
}

}  // namespace
}  // namespace vorel::container
