// The matrix alone: colours that must come back, and the arithmetic that stands in for divisions.
#include "pixel/matrix12.h"

#include <gtest/gtest.h>

#include <random>

#include "pixel/lane_arithmetic.h"
#include "tests/prove/round_trips.h"

namespace vorel {
namespace {

TEST(Matrix, EveryColourOf8BitsComesBackFromYccOf10) {
  for (u32 standard = 0; standard < 3; ++standard) {
    const prove::Result result = prove::Colours8Through876(standard);
    EXPECT_EQ(result.colours, 1u << 24);
    EXPECT_EQ(result.changed, 0u) << standard;
  }
}

// About 85 % of the colours change on the way through 8 bits, by up to 2: that is known and accepted.
TEST(Matrix, ColoursOf8BitsAreNotExactThroughYccOf8) {
  for (u32 standard = 0; standard < 3; ++standard) {
    const prove::Result result = prove::Colours8Through219(standard);
    EXPECT_EQ(result.largest, 2u) << standard;
    EXPECT_GT(result.changed, (1u << 24) / 100 * 84u) << standard;
    EXPECT_LT(result.changed, (1u << 24) / 100 * 86u) << standard;
  }
}

TEST(Matrix, EveryYccOf8BitsInTheCubeComesBackFromColoursOf9) {
  for (u32 standard = 0; standard < 3; ++standard) {
    const prove::Result result = prove::Ycc8Through511(standard);
    EXPECT_GT(result.colours, 2'000'000u);
    EXPECT_EQ(result.changed, 0u) << standard;
  }
}

// A few of the 1,024 planes; script/prove sends them all.
TEST(Matrix, ColoursOf10BitsComeBackFromYccOf12) {
  for (u32 standard = 0; standard < 3; ++standard) {
    for (const u32 red : {0u, 1u, 511u, 767u, 1022u, 1023u}) {
      const prove::Result result = prove::Colours10Through3504(standard, red, red + 1);
      EXPECT_EQ(result.colours, 1u << 20);
      EXPECT_EQ(result.changed, 0u) << standard << ' ' << red;
    }
  }
}

TEST(Matrix, YccOf10BitsInTheCubeComesBackFromColoursOf12) {
  for (u32 standard = 0; standard < 3; ++standard) {
    for (const u32 luma : {64u, 65u, 300u, 501u, 700u, 939u, 940u}) {
      const prove::Result result = prove::Ycc10Through4095(standard, luma, luma + 1);
      EXPECT_GT(result.colours, 0u);
      EXPECT_EQ(result.changed, 0u) << standard << ' ' << luma;
    }
  }
}

TEST(Matrix, WeightsSumToTheSpanOfLuma) {
  for (const int bits : {8, 10, 12}) {
    for (u32 standard = 0; standard < 5; ++standard) {
      const ColourWeights weights = MakeWeights(bits, standard);
      EXPECT_EQ(weights.red + weights.green + weights.blue, LumaSpan(bits));
      EXPECT_EQ(weights.redSpan, LumaSpan(bits) - weights.red);
      EXPECT_EQ(weights.blueSpan, LumaSpan(bits) - weights.blue);
    }
  }
  EXPECT_EQ(MakeWeights(8, 0).green, 130);
  EXPECT_EQ(MakeWeights(10, 1).green, 627);
  EXPECT_EQ(MakeWeights(12, 2).green, 2458);
}

template <int Bits>
void CompareWithQuotients(u32 end) {
  for (u32 n = 0; n < end; ++n) ASSERT_EQ(DivideByMaximum<Bits>(n), n / ((1u << Bits) - 1)) << n;
}

TEST(Matrix, DivisionByAMaximumIsExactInItsRange) {
  CompareWithQuotients<8>((1u << 24) - 1);
  CompareWithQuotients<9>(1u << 24);
  CompareWithQuotients<10>(1u << 24);
  CompareWithQuotients<12>(1u << 24);
}

// Where a reciprocal goes wrong first is at multiples of the divisor.
TEST(Matrix, ReciprocalsOfAllWeightsAreExact) {
  std::mt19937 random(1);
  for (u32 divisor = 2; divisor <= 3504; ++divisor) {
    const Reciprocal by = MakeReciprocal(divisor);
    for (int i = 0; i < 300; ++i) {
      const u32 multiple = static_cast<u32>(random()) % ((1u << 24) / divisor + 1) * divisor;
      for (const u32 n : {multiple, multiple + 1, multiple + divisor - 1, static_cast<u32>(random()) >> 1})
        ASSERT_EQ(Divide(n, by), n / divisor) << n << '/' << divisor;
      if (multiple > 0) {
        ASSERT_EQ(Divide(multiple - 1, by), (multiple - 1) / divisor);
      }
    }
    ASSERT_EQ(Divide(0x7FFFFFFF, by), 0x7FFFFFFFu / divisor);
  }
}

TEST(Matrix, QuotientsOfSignedValuesCutTowardZero) {
  EXPECT_EQ(WithSign(Magnitude(-7) / 2, -7), -3);
  EXPECT_EQ(Magnitude(-2147483647 - 1), 0x80000000u);
}

// Where a product of floats goes wrong first is at multiples of the divisor and right before them.
TEST(Matrix, QuotientsOfFloatsAreExact) {
  constexpr i32 kLimit = 5'500'000;
  for (const u32 divisor :
       {2u,   3u,   7u,   79u,  127u, 130u,  158u,  173u,  219u,  255u,  257u,  448u,  511u,
        516u, 615u, 627u, 777u, 876u, 1023u, 1025u, 1792u, 4093u, 4095u, 4097u, 8176u, 8191u}) {
    const float reciprocal = ReciprocalAbove(divisor);
    const i32 by = static_cast<i32>(divisor);
    for (i32 multiple = 0; multiple < kLimit; multiple += by) {
      // Both, and both negative, in one vector; no set has fewer lanes.
      const WideLanes quotients =
          QuotientOf(WideLanes{multiple, multiple + by - 1, -multiple, -multiple - by + 1}, reciprocal);
      const i32 expected = multiple / by;
      ASSERT_EQ(quotients[0], expected) << multiple << '/' << divisor;
      ASSERT_EQ(quotients[1], expected) << multiple << '/' << divisor;
      ASSERT_EQ(quotients[2], -expected) << multiple << '/' << divisor;
      ASSERT_EQ(quotients[3], -expected) << multiple << '/' << divisor;
    }
  }
}

// Far outside the cube the product of 12 bits passes 31 bits: 16-bit 4:4:4 lets it wrap, 16-bit 4:2:2 does
// not. With Y' 4095, Cb 4095, BT.709: n = 3252 * 2047 + 1792 * (4095 - 256) = 13,536,332, times 341 is
// 4,615,889,212. In full, 4,616,935,740 / 2,093,056 = 2205; less 2^32 it is 321,968,444 / 2,093,056 = 153.
TEST(Matrix, OverflowWrapsWhereItMustAndNowhereElse) {
  EXPECT_EQ((FullColour<12, 10, Overflow::wraps>(13536332)), 153);
  EXPECT_EQ((FullColour<12, 10, Overflow::isWide>(13536332)), 2205);
  for (i32 n = -14'000'000; n < 14'000'000; n += 37) {
    const i64 dividend = i64{n} * 341 + 1046528;
    ASSERT_EQ((FullColour<12, 10, Overflow::isWide>(n)), dividend / 2093056) << n;
    ASSERT_EQ((FullColour<12, 10, Overflow::wraps>(n)),
              static_cast<i32>(static_cast<u32>(dividend)) / 2093056)
        << n;
  }
}

}  // namespace
}  // namespace vorel
