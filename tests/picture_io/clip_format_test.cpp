// Numbers as they stand on command lines and in headers.
#include "picture_io/clip_format.h"

#include <gtest/gtest.h>

namespace vorel::picture_io {

namespace {

Ratio RateOf(const char* text) {
  Ratio rate{77, 77};
  return ReadRate(text, rate) ? rate : Ratio{};
}

bool IsRefusedRate(const char* text) {
  Ratio rate{77, 77};
  return !ReadRate(text, rate) && rate == Ratio{77, 77};
}

}  // namespace

TEST(Rate, WholeNumbersAndFractionsStandAsTheyAre) {
  EXPECT_EQ(RateOf("25"), (Ratio{25, 1}));
  EXPECT_EQ(RateOf("24000/1001"), (Ratio{24000, 1001}));
  EXPECT_EQ(RateOf("50/2"), (Ratio{50, 2}));
}

TEST(Rate, RoundedDecimalsAreTheirBroadcastRates) {
  EXPECT_EQ(RateOf("23.976"), (Ratio{24000, 1001}));
  EXPECT_EQ(RateOf("23.98"), (Ratio{24000, 1001}));
  EXPECT_EQ(RateOf("29.97"), (Ratio{30000, 1001}));
  EXPECT_EQ(RateOf("47.952"), (Ratio{48000, 1001}));
  EXPECT_EQ(RateOf("59.94"), (Ratio{60000, 1001}));
  EXPECT_EQ(RateOf("119.88"), (Ratio{120000, 1001}));
}

TEST(Rate, OtherDecimalsAreExact) {
  EXPECT_EQ(RateOf("12.5"), (Ratio{25, 2}));
  EXPECT_EQ(RateOf("25.000"), (Ratio{25, 1}));
  EXPECT_EQ(RateOf("0.1"), (Ratio{1, 10}));
}

TEST(Rate, WhatIsNoRateIsRefusedAndChangesNothing) {
  for (const char* const text : {"", "0", "0/1", "25/0", "-25", "25fps", "25/", "/1", "2 5", "1.2.3",
                                 "1.2345678", "99999999999", "24000/1001/2", "+25", "nan"}) {
    EXPECT_TRUE(IsRefusedRate(text)) << text;
  }
}

TEST(Size, SidesUpToTheLimitAreRead) {
  u32 width = 0;
  u32 height = 0;
  ASSERT_TRUE(ReadSize("32767x1", width, height));
  EXPECT_EQ(width, 32767u);
  EXPECT_EQ(height, 1u);
}

TEST(Size, WhatIsNoSizeIsRefusedAndChangesNothing) {
  u32 width = 7;
  u32 height = 7;
  for (const char* const text : {"", "640", "640x", "x480", "0x1", "1x0", "32768x1", "1x32768", "640x480x2",
                                 "640*480", "640 x 480", "-1x1", "4294967297x1"}) {
    EXPECT_FALSE(ReadSize(text, width, height)) << text;
  }
  EXPECT_EQ(width, 7u);
  EXPECT_EQ(height, 7u);
}

TEST(RateText, DenominatorOneIsNotSaid) {
  EXPECT_EQ(RateText({25, 1}), "25");
  EXPECT_EQ(RateText({24000, 1001}), "24000/1001");
}

TEST(IsInterlaced, TwoFieldsAreWithOrWithoutTheirOrder) {
  EXPECT_TRUE(IsInterlaced(ScanOrder::topFirst));
  EXPECT_TRUE(IsInterlaced(ScanOrder::bottomFirst));
  EXPECT_TRUE(IsInterlaced(ScanOrder::interlaced));
  EXPECT_FALSE(IsInterlaced(ScanOrder::progressive));
  EXPECT_FALSE(IsInterlaced(ScanOrder::unknown));
}

}  // namespace vorel::picture_io
