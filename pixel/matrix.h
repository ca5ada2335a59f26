// R'G'B' to Y'CbCr and back, a strip at a time, in integers: every quotient is rounded toward zero, and the
// additive halves make it a rounding to nearest. Any R'G'B' of 8 or 10 bits comes back from Y'CbCr on the span
// of two more bits; roundings and weights belong together. Functions of 8-bit Y'CbCr that pixel/matrix8.h has as well
// are never taken from here.
//
// Products are of 16-bit factors wherever they can be, and divisions are multiplications or shifts: then the
// loops vectorise on any processor. Dividends by a divisor of the frame are gathered first and divided in a loop
// of their own: where one loop holds both, g++ 12 follows the ranges of values through it and then misses the
// high half of a product.
#pragma once
#include <algorithm>
#include <numeric>

#include "base/instructions.h"
#include "pixel/sample_strip.h"
#include "pixel/weights.h"

namespace vorel::inline VOREL_INSTRUCTIONS {

// Y'CbCr of 8, 10 or 12 bits: where neutral chroma stands, and how far chroma goes to either side of it.
constexpr i32 ChromaZero(int bits) {
  return 128 << (bits - 8);
}
constexpr i16 ChromaSpan(int bits) {
  return static_cast<i16>(112 << (bits - 8));
}

// n / (2^Bits - 1), for n below 2^(3 * Bits) - 1: n is high * 2^Bits + low, that is high * (2^Bits - 1) + rest with
// rest = high + low, and how often the rest holds the divisor is told by its own high part, made one larger where
// needed by the 1 that is added.
template <int Bits>
constexpr u32 DivideByMaximum(u32 n) {
  const u32 high = n >> Bits;
  const u32 rest = high + (n & ((1u << Bits) - 1)) + 1;
  return high + ((rest + (rest >> Bits)) >> Bits);
}

constexpr u32 Magnitude(i32 value) {
  const u32 mask = static_cast<u32>(value >> 31);
  return (static_cast<u32>(value) ^ mask) - mask;
}
constexpr i32 WithSign(u32 magnitude, i32 sign) {
  const i32 mask = sign >> 31;
  return (static_cast<i32>(magnitude) ^ mask) - mask;
}

// (dividend + half) / divisor with the half on the side of the sign, so that the rounding is symmetric.
template <u32 Divisor>
constexpr i32 DivideRounded(i32 dividend) {
  constexpr Reciprocal kBy = MakeReciprocal(Divisor);
  return WithSign(Divide(Magnitude(dividend) + Divisor / 2, kBy), dividend);
}

constexpr i32 Times(i16 a, i16 b) {
  return i32{a} * b;
}

// Dividends of a strip.
struct Dividends {
  alignas(32) i32 values[kStripPixels];
};

// Of dividends that are not negative.
[[gnu::noinline]] inline void DivideStrip(const Dividends& dividends, Reciprocal by,
                                          i16* __restrict quotients) {
  const u32 multiplier = by.multiplier;
  const u32 shift = by.shift;
  for (u32 i = 0; i < kStripPixels; ++i)
    quotients[i] = static_cast<i16>(Divide(static_cast<u32>(dividends.values[i]), {multiplier, shift}));
}

// Of any, with `half` added to the magnitude.
[[gnu::noinline]] inline void DivideSignedStrip(const Dividends& dividends, u32 half, Reciprocal by,
                                                i16* __restrict quotients) {
  const u32 multiplier = by.multiplier;
  const u32 shift = by.shift;
  for (u32 i = 0; i < kStripPixels; ++i) {
    const i32 dividend = dividends.values[i];
    const u32 quotient = Divide(Magnitude(dividend) + half, {multiplier, shift});
    quotients[i] = static_cast<i16>(WithSign(quotient, dividend));
  }
}

template <i32 Add, i32 Least, i32 Most>
inline void ShiftAndLimit(i16* __restrict samples) {
  for (u32 i = 0; i < kStripPixels; ++i)
    samples[i] = static_cast<i16>(std::clamp(samples[i] + Add, Least, Most));
}

// ---- To Y'CbCr of YccBits. `Offset` is the code of black.

// R', G', B' of full range with Bits. Chroma is taken from colours on the scale of Y': x * span / maximum, where
// the half is that of the fraction in lowest terms.
template <int Bits, int YccBits, i32 Offset>
[[gnu::noinline]] void FullColourToYcc(ConstPlanes from, const ColourWeights& weights, Planes to) {
  const i16* __restrict red = from.first;
  const i16* __restrict green = from.second;
  const i16* __restrict blue = from.third;
  i16* __restrict luma = to.first;
  Dividends blueDividends;
  Dividends redDividends;
  constexpr i32 kMaximum = (1 << Bits) - 1;
  constexpr i16 kSpan = static_cast<i16>(LumaSpan(YccBits));
  constexpr i32 kDivisor = std::gcd(kMaximum, i32{kSpan});
  constexpr i32 kColourHalf = kMaximum / kDivisor / 2 * kDivisor;
  constexpr i16 kChromaSpan = ChromaSpan(YccBits);
  const ColourWeights w = weights;
  const i32 blueOffset = w.blueSpan * ChromaZero(YccBits) + (w.blueSpan >> 1);
  const i32 redOffset = w.redSpan * ChromaZero(YccBits) + (w.redSpan >> 1);
  for (u32 i = 0; i < kStripPixels; ++i) {
    const i32 sum = Times(red[i], w.red) + Times(green[i], w.green) + Times(blue[i], w.blue);
    const i32 y = static_cast<i32>(DivideByMaximum<Bits>(static_cast<u32>(sum + kMaximum / 2)));
    const i32 scaledRed =
        static_cast<i32>(DivideByMaximum<Bits>(static_cast<u32>(Times(red[i], kSpan) + kColourHalf)));
    const i32 scaledBlue =
        static_cast<i32>(DivideByMaximum<Bits>(static_cast<u32>(Times(blue[i], kSpan) + kColourHalf)));
    const i32 blueOverLuma = Times(static_cast<i16>(scaledBlue - y), kChromaSpan);
    const i32 redOverLuma = Times(static_cast<i16>(scaledRed - y), kChromaSpan);
    luma[i] = static_cast<i16>(y + Offset);
    blueDividends.values[i] = blueOverLuma + blueOffset;
    redDividends.values[i] = redOverLuma + redOffset;
  }
  DivideStrip(blueDividends, w.byBlueSpan, to.second);
  DivideStrip(redDividends, w.byRedSpan, to.third);
}

// R', G', B' of video range with Bits: colours have the span of Y' already, or a shift up takes them there. Codes
// outside the video range reach chroma outside its codes; what doesn't fit is cut after the chroma filter.
template <int Bits, int YccBits, i32 Offset>
[[gnu::noinline]] void VideoColourToYcc(ConstPlanes from, const ColourWeights& weights, Planes to) {
  const i16* __restrict red = from.first;
  const i16* __restrict green = from.second;
  const i16* __restrict blue = from.third;
  i16* __restrict luma = to.first;
  Dividends blueDividends;
  Dividends redDividends;
  constexpr i16 kBlack = 16 << (Bits - 8);
  constexpr i16 kChromaSpan = ChromaSpan(YccBits);
  static_assert(Bits <= YccBits);
  const auto onScaleOfLuma = [](i16 colour) { return i32{colour} * (1 << (YccBits - Bits)); };
  const ColourWeights w = weights;
  const i32 blueOffset = w.blueSpan * ChromaZero(YccBits) + (w.blueSpan >> 1);
  const i32 redOffset = w.redSpan * ChromaZero(YccBits) + (w.redSpan >> 1);
  for (u32 i = 0; i < kStripPixels; ++i) {
    const i16 r = static_cast<i16>(red[i] - kBlack);
    const i16 g = static_cast<i16>(green[i] - kBlack);
    const i16 b = static_cast<i16>(blue[i] - kBlack);
    const i32 sum = Times(r, w.red) + Times(g, w.green) + Times(b, w.blue);
    const i32 y = DivideRounded<static_cast<u32>(LumaSpan(Bits))>(sum);
    const i32 blueOverLuma = Times(static_cast<i16>(onScaleOfLuma(b) - y), kChromaSpan);
    const i32 redOverLuma = Times(static_cast<i16>(onScaleOfLuma(r) - y), kChromaSpan);
    luma[i] = static_cast<i16>(y + Offset);
    blueDividends.values[i] = blueOverLuma + blueOffset;
    redDividends.values[i] = redOverLuma + redOffset;
  }
  DivideSignedStrip(blueDividends, 0, w.byBlueSpan, to.second);
  DivideSignedStrip(redDividends, 0, w.byRedSpan, to.third);
}

// ---- From Y'CbCr of YccBits

// (n * P + Q) / W of red or blue, with n = span of the colour * chroma + chroma span * Y'.
struct ColourQuotient {
  i32 multiply;
  i32 add;
  u32 divide;
};

// 12 bits leave 31 bits where a pixel is far outside the cube of colours. Then the product wraps, or it does
// not: frames of record depend on either.
enum class Overflow : u8 { wraps, isWide };

constexpr ColourQuotient FullColourQuotient(int yccBits, int bits) {
  const i32 multiply = ((1 << bits) - 1) / 3;
  if (yccBits == 8) return {multiply, 4088, 8176};
  return yccBits == 10 ? ColourQuotient{multiply, 65408, 130816} : ColourQuotient{multiply, 1046528, 2093056};
}

template <int YccBits, int Bits, Overflow Excess>
constexpr i32 FullColour(i32 n) {
  constexpr ColourQuotient kQuotient = FullColourQuotient(YccBits, Bits);
  // The divisor is 511 shifted up, and cutting may be done in two steps.
  constexpr int kShift = std::countr_zero(kQuotient.divide);
  static_assert(kQuotient.divide == 511u << kShift && kQuotient.add == 511 << (kShift - 1));
  if constexpr (Excess == Overflow::wraps) {
    const u32 sum = static_cast<u32>(n) * static_cast<u32>(kQuotient.multiply) + kQuotient.add;
    const i32 dividend = static_cast<i32>(sum);
    return WithSign(DivideByMaximum<9>(Magnitude(dividend) >> kShift), dividend);
  } else {
    // |n| * multiply +- add, less its low bits, in two parts that fit: n has 24 bits. A small negative n
    // makes a small positive dividend, which gives 0 from either side.
    const u32 magnitude = Magnitude(n);
    const i32 high = static_cast<i32>(magnitude >> kShift) * kQuotient.multiply;
    const i32 low = static_cast<i32>(magnitude & ((1u << kShift) - 1)) * kQuotient.multiply;
    const i32 sum = high + ((low + (n < 0 ? -kQuotient.add : kQuotient.add)) >> kShift);
    return WithSign(DivideByMaximum<9>(static_cast<u32>(std::max(sum, 0))), n);
  }
}

// Green takes what red and blue leave of Y', from colours that are not yet limited.
template <int YccBits, int Bits, i32 Offset, Overflow Excess>
[[gnu::noinline]] void YccToFullColour(ConstPlanes from, const ColourWeights& weights, Planes to) {
  const i16* __restrict luma = from.first;
  const i16* __restrict cb = from.second;
  const i16* __restrict cr = from.third;
  i16* __restrict red = to.first;
  i16* __restrict blue = to.third;
  Dividends greenDividends;
  constexpr i16 kZero = static_cast<i16>(ChromaZero(YccBits));
  constexpr i32 kMaximum = (1 << Bits) - 1;
  const ColourWeights w = weights;
  const i32 greenHalf = w.green >> 1;
  for (u32 i = 0; i < kStripPixels; ++i) {
    const i16 y = static_cast<i16>(luma[i] - Offset);
    const i32 scaledLuma = Times(y, ChromaSpan(YccBits));
    const i32 r =
        FullColour<YccBits, Bits, Excess>(Times(static_cast<i16>(cr[i] - kZero), w.redSpan) + scaledLuma);
    const i32 b =
        FullColour<YccBits, Bits, Excess>(Times(static_cast<i16>(cb[i] - kZero), w.blueSpan) + scaledLuma);
    const i32 left = Times(y, static_cast<i16>(kMaximum)) + greenHalf - Times(static_cast<i16>(b), w.blue) -
                     Times(static_cast<i16>(r), w.red);
    red[i] = static_cast<i16>(std::clamp(r, 0, kMaximum));
    greenDividends.values[i] = std::max(left, 0);
    blue[i] = static_cast<i16>(std::clamp(b, 0, kMaximum));
  }
  DivideStrip(greenDividends, w.byGreen, to.second);
  ShiftAndLimit<0, 0, kMaximum>(to.second);
}

// Video-range colour of Bits, limited to the codes that video interfaces leave to pictures. Roundings are
// symmetric.
template <int YccBits, int Bits, i32 Offset>
[[gnu::noinline]] void YccToVideoColour(ConstPlanes from, const ColourWeights& weights, Planes to) {
  const i16* __restrict luma = from.first;
  const i16* __restrict cb = from.second;
  const i16* __restrict cr = from.third;
  i16* __restrict red = to.first;
  i16* __restrict blue = to.third;
  Dividends greenDividends;
  static_assert(Bits <= YccBits);
  constexpr i16 kZero = static_cast<i16>(ChromaZero(YccBits));
  constexpr i32 kBlack = 16 << (Bits - 8);
  constexpr i32 kLeast = 1 << (Bits - 8);
  constexpr i32 kMost = (Bits == 8 ? 254 : 1019);
  constexpr i16 kSpan = static_cast<i16>(LumaSpan(Bits));
  // From n, which has the chroma span of the frame on it, to the span of the target.
  const auto colour = [](i32 n) {
    return DivideRounded<static_cast<u32>(ChromaSpan(YccBits)) << (YccBits - Bits)>(n);
  };
  const ColourWeights w = weights;
  const u32 greenHalf = static_cast<u32>(w.green) >> 1;
  for (u32 i = 0; i < kStripPixels; ++i) {
    const i16 y = static_cast<i16>(luma[i] - Offset);
    const i32 scaledLuma = Times(y, ChromaSpan(YccBits));
    const i32 r = colour(Times(static_cast<i16>(cr[i] - kZero), w.redSpan) + scaledLuma);
    const i32 b = colour(Times(static_cast<i16>(cb[i] - kZero), w.blueSpan) + scaledLuma);
    const i32 left = Times(y, kSpan) - Times(static_cast<i16>(b), w.blue) - Times(static_cast<i16>(r), w.red);
    red[i] = static_cast<i16>(std::clamp(r + kBlack, kLeast, kMost));
    greenDividends.values[i] = left;
    blue[i] = static_cast<i16>(std::clamp(b + kBlack, kLeast, kMost));
  }
  DivideSignedStrip(greenDividends, greenHalf, w.byGreen, to.second);
  ShiftAndLimit<kBlack, kLeast, kMost>(to.second);
}

}  // namespace vorel::inline VOREL_INSTRUCTIONS
