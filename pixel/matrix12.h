// The matrix of 12-bit Y'CbCr and full-range R'G'B' of 10 bits.
//
// Products are of 16-bit factors wherever they can be, and divisions are multiplications or shifts: then the
// loops vectorise on any processor. Dividends by a divisor of the frame are gathered first and divided in a
// loop of their own: where one loop holds both, g++ 12 follows the ranges of values through it and then
// misses the high half of a product.
#pragma once
#include <algorithm>
#include <bit>

#include "base/instructions.h"
#include "pixel/matrix.h"

namespace vorel::inline VOREL_INSTRUCTIONS {

// n / (2^Bits - 1), for n below 2^(3 * Bits) - 1: n is high * 2^Bits + low, that is high * (2^Bits - 1) +
// rest with rest = high + low, and how often the rest holds the divisor is told by its own high part, made
// one larger where needed by the 1 that is added.
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

template <int Bits, int YccBits, i32 Offset>
requires(YccBits == 12)
    [[gnu::noinline]] void FullColourToYcc(ConstPlanes from, const ColourWeights& weights, Planes to) {
  const i16* __restrict red = from.first;
  const i16* __restrict green = from.second;
  const i16* __restrict blue = from.third;
  i16* __restrict luma = to.first;
  Dividends blueDividends;
  Dividends redDividends;
  constexpr i32 kMaximum = (1 << Bits) - 1;
  constexpr i16 kSpan = static_cast<i16>(LumaSpan(YccBits));
  constexpr i32 kColourHalf = HalfOfColour(kMaximum, kSpan);
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

template <int YccBits, int Bits, i32 Offset, Overflow Excess>
requires(YccBits == 12)
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
  for (u32 i = 0; i < kStripPixels; ++i) to.second[i] = std::min(to.second[i], static_cast<i16>(kMaximum));
}

}  // namespace vorel::inline VOREL_INSTRUCTIONS
