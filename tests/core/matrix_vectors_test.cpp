// The matrices in vectors against their formulas, colour by colour.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>

#include "pixel/matrix10.h"

namespace vorel {
namespace {

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

// Chroma of `bits` from colours on the scale of Y'.
Colour YccOf(i32 luma, i32 red, i32 blue, int bits, const ColourWeights& w) {
  const i32 scale = 1 << (bits - 8);
  const auto chroma = [&](i32 colour, i32 span) {
    return ((colour - luma) * 112 * scale + span * 128 * scale + (span >> 1)) / span;
  };
  return {luma + 16 * scale, chroma(blue, w.blueSpan), chroma(red, w.redSpan)};
}

i32 LumaSum(const Colour& c, const ColourWeights& w) {
  return c[0] * w.red + c[1] * w.green + c[2] * w.blue;
}

// Full-range colours of `bits` to Y'CbCr of `yccBits`; a colour comes to the scale of Y' as (x * up + half) /
// down.
auto FromFullColour(int bits, int yccBits, i32 up, i32 half, i32 down, const ColourWeights& w) {
  const i32 maximum = (1 << bits) - 1;
  return [=, &w](const Colour& c) {
    const i32 luma = (LumaSum(c, w) + maximum / 2) / maximum;
    return YccOf(luma, (up * c[0] + half) / down, (up * c[2] + half) / down, yccBits, w);
  };
}

// Video-range ones; `scale` takes a colour without its offset to the scale of Y'.
template <typename Scale>
auto FromVideoColour(int bits, int yccBits, Scale scale, const ColourWeights& w) {
  const i32 black = 16 << (bits - 8);
  const i32 span = 219 << (bits - 8);
  return [=, &w](const Colour& c) {
    const Colour over = {c[0] - black, c[1] - black, c[2] - black};
    return YccOf(Rounded(LumaSum(over, w), span), scale(over[0]), scale(over[2]), yccBits, w);
  };
}

TEST(Matrix, VectorsMakeTheYccOf8BitsThatTheFormulasMake) {
  for (u32 standard = 0; standard < 3; ++standard) {
    const ColourWeights w = MakeWeights(8, standard);
    CompareWithFormula(
        8, [&](ConstPlanes from, Planes to) { FullColourToYcc<8, 8, 16>(from, w, to); },
        FromFullColour(8, 8, 73, 42, 85, w));
    CompareWithFormula(
        9, [&](ConstPlanes from, Planes to) { FullColourToYcc<9, 8, 16>(from, w, to); },
        FromFullColour(9, 8, 3, 3, 7, w));
    CompareWithFormula(
        10, [&](ConstPlanes from, Planes to) { FullColourToYcc<10, 8, 16>(from, w, to); },
        FromFullColour(10, 8, 73, 170, 341, w));
    CompareWithFormula(
        8, [&](ConstPlanes from, Planes to) { VideoColourToYcc<8, 8, 16>(from, w, to); },
        FromVideoColour(
            8, 8, [](i32 x) { return x; }, w));
    CompareWithFormula(
        10, [&](ConstPlanes from, Planes to) { VideoColourToYcc<10, 8, 16>(from, w, to); },
        FromVideoColour(
            10, 8, [](i32 x) { return Rounded(x, 4); }, w));
  }
}

TEST(Matrix, VectorsMakeTheYccOf10BitsThatTheFormulasMake) {
  for (u32 standard = 0; standard < 3; ++standard) {
    const ColourWeights w = MakeWeights(10, standard);
    CompareWithFormula(
        8, [&](ConstPlanes from, Planes to) { FullColourToYcc<8, 10, 64>(from, w, to); },
        FromFullColour(8, 10, 292, 42, 85, w));
    CompareWithFormula(
        10, [&](ConstPlanes from, Planes to) { FullColourToYcc<10, 10, 64>(from, w, to); },
        FromFullColour(10, 10, 292, 170, 341, w));
    CompareWithFormula(
        12, [&](ConstPlanes from, Planes to) { FullColourToYcc<12, 10, 64>(from, w, to); },
        FromFullColour(12, 10, 292, 682, 1365, w));
    CompareWithFormula(
        8, [&](ConstPlanes from, Planes to) { VideoColourToYcc<8, 10, 64>(from, w, to); },
        FromVideoColour(
            8, 10, [](i32 x) { return 4 * x; }, w));
    CompareWithFormula(
        10, [&](ConstPlanes from, Planes to) { VideoColourToYcc<10, 10, 64>(from, w, to); },
        FromVideoColour(
            10, 10, [](i32 x) { return x; }, w));
  }
}

// Red and blue are `colour` of n, green is `green` of a dividend without them; each is limited.
template <typename FromN, typename FromDividend>
auto FromYcc(int yccBits, FromN colour, FromDividend green, i32 scale, i32 black, i32 least, i32 most,
             const ColourWeights& w) {
  return [=, &w](const Colour& c) -> Colour {
    const i32 depth = 1 << (yccBits - 8);
    const i32 luma = c[0] - 16 * depth;
    const i32 red = colour(w.redSpan * (c[2] - 128 * depth) + 112 * depth * luma);
    const i32 blue = colour(w.blueSpan * (c[1] - 128 * depth) + 112 * depth * luma);
    const i32 left = luma * scale - w.blue * blue - w.red * red;
    return {std::clamp(red + black, least, most), std::clamp(green(left) + black, least, most),
            std::clamp(blue + black, least, most)};
  };
}

TEST(Matrix, VectorsMakeTheColoursOfYccOf8BitsThatTheFormulasMake) {
  for (u32 standard = 0; standard < 3; ++standard) {
    const ColourWeights w = MakeWeights(8, standard);
    const auto addHalf = [&](i32 left) { return (left + (w.green >> 1)) / w.green; };
    const auto round = [&](i32 left) { return Rounded(left, w.green); };
    CompareWithFormula(
        8, [&](ConstPlanes from, Planes to) { YccToFullColour<8, 8, 16, Overflow::wraps>(from, w, to); },
        FromYcc(
            8, [](i32 n) { return (n * 85 + 4088) / 8176; }, addHalf, 255, 0, 0, 255, w));
    CompareWithFormula(
        8, [&](ConstPlanes from, Planes to) { YccToFullColour<8, 9, 16, Overflow::wraps>(from, w, to); },
        FromYcc(
            8, [](i32 n) { return (n * 7 + 168) / 336; }, addHalf, 511, 0, 0, 511, w));
    CompareWithFormula(
        8, [&](ConstPlanes from, Planes to) { YccToFullColour<8, 10, 16, Overflow::wraps>(from, w, to); },
        FromYcc(
            8, [](i32 n) { return (n * 341 + 4088) / 8176; }, addHalf, 1023, 0, 0, 1023, w));
    CompareWithFormula(
        8, [&](ConstPlanes from, Planes to) { YccToVideoColour<8, 8, 16>(from, w, to); },
        FromYcc(
            8, [](i32 n) { return Rounded(n, 112); }, round, 219, 16, 1, 254, w));
    CompareWithFormula(
        8, [&](ConstPlanes from, Planes to) { YccToVideoColour<8, 10, 16>(from, w, to); },
        FromYcc(
            8, [](i32 n) { return (4 * n + 56) / 112; }, addHalf, 876, 64, 4, 1019, w));
  }
}

TEST(Matrix, VectorsMakeTheColoursOfYccOf10BitsThatTheFormulasMake) {
  for (u32 standard = 0; standard < 3; ++standard) {
    const ColourWeights w = MakeWeights(10, standard);
    const auto addHalf = [&](i32 left) { return (left + (w.green >> 1)) / w.green; };
    const auto round = [&](i32 left) { return Rounded(left, w.green); };
    CompareWithFormula(
        10, [&](ConstPlanes from, Planes to) { YccToFullColour<10, 8, 64, Overflow::wraps>(from, w, to); },
        FromYcc(
            10, [](i32 n) { return (n * 85 + 65408) / 130816; }, addHalf, 255, 0, 0, 255, w));
    CompareWithFormula(
        10, [&](ConstPlanes from, Planes to) { YccToFullColour<10, 10, 64, Overflow::wraps>(from, w, to); },
        FromYcc(
            10, [](i32 n) { return (n * 341 + 65408) / 130816; }, addHalf, 1023, 0, 0, 1023, w));
    CompareWithFormula(
        10, [&](ConstPlanes from, Planes to) { YccToFullColour<10, 12, 64, Overflow::wraps>(from, w, to); },
        FromYcc(
            10, [](i32 n) { return (n * 1365 + 65408) / 130816; }, addHalf, 4095, 0, 0, 4095, w));
    CompareWithFormula(
        10, [&](ConstPlanes from, Planes to) { YccToVideoColour<10, 8, 64>(from, w, to); },
        FromYcc(
            10, [](i32 n) { return Rounded(n, 1792); }, round, 219, 16, 1, 254, w));
    CompareWithFormula(
        10, [&](ConstPlanes from, Planes to) { YccToVideoColour<10, 10, 64>(from, w, to); },
        FromYcc(
            10, [](i32 n) { return Rounded(n, 448); }, round, 876, 64, 4, 1019, w));
  }
}

}  // namespace
}  // namespace vorel
