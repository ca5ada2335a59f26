// The matrix of 10-bit Y'CbCr, and that of 8 bits from and to full-range R'G'B' of 10, in vectors: sums of
// two products of 16 bits, and quotients as products of floats.
#pragma once
#include "base/instructions.h"
#include "pixel/matrix8.h"

namespace vorel::inline VOREL_INSTRUCTIONS {

template <int YccBits, int Bits>
inline constexpr bool kIsMatrixOf10Bits = YccBits == 10 || (YccBits == 8 && Bits == 10);

// (|n| + half) / divisor with the sign of n, so that the rounding is symmetric.
inline Lanes RoundedQuotientOf(WidePairs n, i32 half, float reciprocal) {
  return WithSignOf(Pack(QuotientOf(MagnitudeOf(n) + half, reciprocal)), Pack(n));
}

// ---- To Y'CbCr

// From the difference of a colour to Y'. What is negative, outside the range of video, is cut toward zero as
// well.
template <int YccBits>
inline Lanes ChromaOf(Lanes overLuma, i32 span, float overSpan) {
  const LanePairs differenceAndZero = PairUp(overLuma, All(ChromaZero(YccBits)));
  const WidePairs dividend =
      SumProducts(differenceAndZero, AllPairs(ChromaSpan(YccBits), span)) + (span >> 1);
  return Pack(QuotientOf(dividend, overSpan));
}

template <int Bits, int YccBits, i32 Offset>
requires(kIsMatrixOf10Bits<YccBits, Bits>)
    [[gnu::noinline]] void FullColourToYcc(ConstPlanes from, const ColourWeights& weights, Planes to) {
  constexpr i32 kMaximum = (1 << Bits) - 1;
  constexpr i32 kSpan = LumaSpan(YccBits);
  constexpr i32 kColourHalf = HalfOfColour(kMaximum, kSpan);
  constexpr float kOverMaximum = ReciprocalAbove(kMaximum);
  const auto onScaleOfLuma = [](Lanes colour) {
    return Pack(QuotientOf(SumProducts(PairUp(colour, All(1)), AllPairs(kSpan, kColourHalf)), kOverMaximum));
  };
  const ColourWeights w = weights;
  for (u32 i = 0; i < kStripPixels; i += kLanes) {
    const Lanes red = LoadNative<Lanes>(from.first + i);
    const Lanes green = LoadNative<Lanes>(from.second + i);
    const Lanes blue = LoadNative<Lanes>(from.third + i);
    const Lanes y = Pack(QuotientOf(Weigh(red, green, blue, w, kMaximum / 2), kOverMaximum));
    StoreNative(to.first + i, y + All(Offset));
    StoreNative(to.second + i, ChromaOf<YccBits>(onScaleOfLuma(blue) - y, w.blueSpan, w.overBlueSpan));
    StoreNative(to.third + i, ChromaOf<YccBits>(onScaleOfLuma(red) - y, w.redSpan, w.overRedSpan));
  }
}

template <int Bits, int YccBits, i32 Offset>
requires(YccBits == 10)
    [[gnu::noinline]] void VideoColourToYcc(ConstPlanes from, const ColourWeights& weights, Planes to) {
  constexpr i32 kBlack = 16 << (Bits - 8);
  constexpr i32 kSpan = LumaSpan(Bits);
  static_assert(Bits <= YccBits);
  const ColourWeights w = weights;
  for (u32 i = 0; i < kStripPixels; i += kLanes) {
    const Lanes red = LoadNative<Lanes>(from.first + i) - All(kBlack);
    const Lanes green = LoadNative<Lanes>(from.second + i) - All(kBlack);
    const Lanes blue = LoadNative<Lanes>(from.third + i) - All(kBlack);
    const Lanes y = RoundedQuotientOf(Weigh(red, green, blue, w, 0), kSpan / 2, ReciprocalAbove(kSpan));
    const Lanes blueOverLuma = blue * All(1 << (YccBits - Bits)) - y;
    const Lanes redOverLuma = red * All(1 << (YccBits - Bits)) - y;
    StoreNative(to.first + i, y + All(Offset));
    StoreNative(to.second + i, ChromaOf<YccBits>(blueOverLuma, w.blueSpan, w.overBlueSpan));
    StoreNative(to.third + i, ChromaOf<YccBits>(redOverLuma, w.redSpan, w.overRedSpan));
  }
}

// ---- From Y'CbCr

// See FullColourQuotient: its divisor is 511 shifted up, and cutting may be done in two steps.
template <int YccBits, int Bits, i32 Offset>
inline Lanes DeepColourOf(LanePairs chromaAndLuma, i32 span) {
  constexpr ColourQuotient kQuotient = FullColourQuotient(YccBits, Bits);
  constexpr int kShift = std::countr_zero(kQuotient.divide);
  static_assert(kQuotient.divide == 511u << kShift);
  const WidePairs n = WeighChromaAndLuma<YccBits, Offset>(chromaAndLuma, span, ChromaSpan(YccBits), 0);
  const WidePairs dividend = MultiplyAdd(n, kQuotient.multiply, kQuotient.add);
  return WithSignOf(Pack(QuotientOf(MagnitudeOf(dividend) >> kShift, ReciprocalAbove(511))), Pack(dividend));
}

template <int YccBits, int Bits, i32 Offset, Overflow Excess>
requires(kIsMatrixOf10Bits<YccBits, Bits>)
    [[gnu::noinline]] void YccToFullColour(ConstPlanes from, const ColourWeights& weights, Planes to) {
  constexpr i32 kMaximum = (1 << Bits) - 1;
  const ColourWeights w = weights;
  const Lanes most = All(kMaximum);
  for (u32 i = 0; i < kStripPixels; i += kLanes) {
    const auto [redAndLuma, blueAndLuma] = LoadYcc(from, i);
    const Lanes red = DeepColourOf<YccBits, Bits, Offset>(redAndLuma, w.redSpan);
    const Lanes blue = DeepColourOf<YccBits, Bits, Offset>(blueAndLuma, w.blueSpan);
    // What is too large to be exact is above the limit.
    const WidePairs left = LeftToGreen<Offset>(redAndLuma, kMaximum, red, blue, w, w.green >> 1);
    const Lanes green = Pack(QuotientOf(left, w.overGreen));
    StoreNative(to.first + i, Limit(red, Lanes{}, most));
    StoreNative(to.second + i, Limit(green, Lanes{}, most));
    StoreNative(to.third + i, Limit(blue, Lanes{}, most));
  }
}

template <int YccBits, int Bits, i32 Offset>
requires(YccBits == 10)
    [[gnu::noinline]] void YccToVideoColour(ConstPlanes from, const ColourWeights& weights, Planes to) {
  static_assert(Bits <= YccBits);
  constexpr i32 kBlack = 16 << (Bits - 8);
  constexpr i32 kDivisor = ChromaSpan(YccBits) << (YccBits - Bits);
  const ColourWeights w = weights;
  const Lanes least = All(1 << (Bits - 8));
  const Lanes most = All(Bits == 8 ? 254 : 1019);
  const auto colourOf = [](LanePairs chromaAndLuma, i32 span) {
    const WidePairs n = WeighChromaAndLuma<YccBits, Offset>(chromaAndLuma, span, ChromaSpan(YccBits), 0);
    return RoundedQuotientOf(n, kDivisor / 2, ReciprocalAbove(kDivisor));
  };
  for (u32 i = 0; i < kStripPixels; i += kLanes) {
    const auto [redAndLuma, blueAndLuma] = LoadYcc(from, i);
    const Lanes red = colourOf(redAndLuma, w.redSpan);
    const Lanes blue = colourOf(blueAndLuma, w.blueSpan);
    const WidePairs left = LeftToGreen<Offset>(redAndLuma, LumaSpan(Bits), red, blue, w, 0);
    const Lanes green = RoundedQuotientOf(left, w.green >> 1, w.overGreen);
    StoreNative(to.first + i, Limit(red + All(kBlack), least, most));
    StoreNative(to.second + i, Limit(green + All(kBlack), least, most));
    StoreNative(to.third + i, Limit(blue + All(kBlack), least, most));
  }
}

}  // namespace vorel::inline VOREL_INSTRUCTIONS
