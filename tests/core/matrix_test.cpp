// The matrix alone: colours that must come back, and the arithmetic that stands in for divisions.
#include "pixel/matrix8.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <random>

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
  EXPECT_EQ(DivideRounded<4>(5), 1);
  EXPECT_EQ(DivideRounded<4>(6), 2);
  EXPECT_EQ(DivideRounded<4>(-5), -1);
  EXPECT_EQ(DivideRounded<4>(-6), -2);
}

// Far outside the cube the product of 12 bits passes 31 bits: 16-bit 4:4:4 lets it wrap, 16-bit 4:2:2 does not.
// With Y' 4095, Cb 4095, BT.709: n = 3252 * 2047 + 1792 * (4095 - 256) = 13,536,332, times 341 is 4,615,889,212.
// In full, 4,616,935,740 / 2,093,056 = 2205; less 2^32 it is 321,968,444 / 2,093,056 = 153.
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

using Colour = std::array<i32, 3>;

// Sends about 300,000 of all colours of `bits` through a matrix in vectors and through its formula.
template <typename Matrix, typename Formula>
void CompareWithFormula(u32 bits, Matrix matrix, Formula formula) {
  constexpr u32 kColours = 300'000;
  const u32 mask = (1u << bits) - 1;
  const u64 step = ((u64{1} << 3 * bits) / kColours) | 1;
  SampleStrip from = {};
  SampleStrip to = {};
  std::array<Colour, kStripPixels> sent;
  for (u64 n = 0; n < u64{1} << 3 * bits;) {
    for (u32 i = 0; i < kStripPixels; ++i, n += step) {
      for (u32 k = 0; k < 3; ++k) sent[i][k] = static_cast<i32>(static_cast<u32>(n >> k * bits) & mask);
      Cells(from.first)[i] = static_cast<i16>(sent[i][0]);
      Cells(from.second)[i] = static_cast<i16>(sent[i][1]);
      Cells(from.third)[i] = static_cast<i16>(sent[i][2]);
    }
    matrix(Reading(PlanesOf(from)), PlanesOf(to));
    for (u32 i = 0; i < kStripPixels; ++i) {
      const Colour made = {Cells(to.first)[i], Cells(to.second)[i], Cells(to.third)[i]};
      ASSERT_EQ(made, formula(sent[i])) << sent[i][0] << ' ' << sent[i][1] << ' ' << sent[i][2];
    }
  }
}

// a / b with half of b on the side of the sign.
i32 Rounded(i32 a, i32 b) {
  return (a + (a < 0 ? -(b / 2) : b / 2)) / b;
}

Colour YccOf(i32 luma, i32 red, i32 blue, const ColourWeights& w) {
  const auto chroma = [&](i32 colour, i32 span) {
    return ((colour - luma) * 112 + span * 128 + (span >> 1)) / span;
  };
  return {luma + 16, chroma(blue, w.blueSpan), chroma(red, w.redSpan)};
}

i32 LumaSum(const Colour& c, const ColourWeights& w) {
  return c[0] * w.red + c[1] * w.green + c[2] * w.blue;
}

TEST(Matrix, VectorsMakeTheYccOf8BitsThatTheFormulasMake) {
  for (u32 standard = 0; standard < 3; ++standard) {
    const ColourWeights w = MakeWeights(8, standard);
    CompareWithFormula(
        8, [&](ConstPlanes from, Planes to) { FullColourToYcc<8, 8, 16>(from, w, to); },
        [&](const Colour& c) {
          return YccOf((LumaSum(c, w) + 127) / 255, (73 * c[0] + 42) / 85, (73 * c[2] + 42) / 85, w);
        });
    CompareWithFormula(
        9, [&](ConstPlanes from, Planes to) { FullColourToYcc<9, 8, 16>(from, w, to); },
        [&](const Colour& c) {
          return YccOf((LumaSum(c, w) + 255) / 511, (3 * c[0] + 3) / 7, (3 * c[2] + 3) / 7, w);
        });
    CompareWithFormula(
        8, [&](ConstPlanes from, Planes to) { VideoColourToYcc<8, 8, 16>(from, w, to); },
        [&](const Colour& c) {
          const Colour over = {c[0] - 16, c[1] - 16, c[2] - 16};
          return YccOf(Rounded(LumaSum(over, w), 219), over[0], over[2], w);
        });
    CompareWithFormula(
        10, [&](ConstPlanes from, Planes to) { VideoColourToYcc<10, 8, 16>(from, w, to); },
        [&](const Colour& c) {
          const Colour over = {c[0] - 64, c[1] - 64, c[2] - 64};
          return YccOf(Rounded(LumaSum(over, w), 876), Rounded(over[0], 4), Rounded(over[2], 4), w);
        });
  }
}

TEST(Matrix, VectorsMakeTheColoursThatTheFormulasMake) {
  for (u32 standard = 0; standard < 3; ++standard) {
    const ColourWeights w = MakeWeights(8, standard);
    // Red and blue from n, green from a dividend without them, each limited.
    const auto formula = [&](auto colour, auto green, i32 maximum, i32 black, i32 least, i32 most) {
      return [&w, colour, green, maximum, black, least, most](const Colour& c) -> Colour {
        const i32 luma = c[0] - 16;
        const i32 red = colour(w.redSpan * (c[2] - 128) + 112 * luma);
        const i32 blue = colour(w.blueSpan * (c[1] - 128) + 112 * luma);
        const i32 left = luma * maximum - w.blue * blue - w.red * red;
        return {std::clamp(red + black, least, most), std::clamp(green(left) + black, least, most),
                std::clamp(blue + black, least, most)};
      };
    };
    const auto addHalf = [&](i32 left) { return (left + (w.green >> 1)) / w.green; };
    const auto round = [&](i32 left) { return Rounded(left, w.green); };
    CompareWithFormula(
        8, [&](ConstPlanes from, Planes to) { YccToFullColour<8, 8, 16, Overflow::wraps>(from, w, to); },
        formula([](i32 n) { return (n * 85 + 4088) / 8176; }, addHalf, 255, 0, 0, 255));
    CompareWithFormula(
        8, [&](ConstPlanes from, Planes to) { YccToFullColour<8, 9, 16, Overflow::wraps>(from, w, to); },
        formula([](i32 n) { return (n * 7 + 168) / 336; }, addHalf, 511, 0, 0, 511));
    CompareWithFormula(
        8, [&](ConstPlanes from, Planes to) { YccToVideoColour<8, 8, 16>(from, w, to); },
        formula([](i32 n) { return Rounded(n, 112); }, round, 219, 16, 1, 254));
    CompareWithFormula(
        8, [&](ConstPlanes from, Planes to) { YccToVideoColour<8, 10, 16>(from, w, to); },
        formula([](i32 n) { return (4 * n + 56) / 112; }, addHalf, 876, 64, 4, 1019));
  }
}

}  // namespace
}  // namespace vorel
