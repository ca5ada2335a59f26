// The matrix of 8-bit Y'CbCr, and R'G'B' of no more than nine bits or of video range, in vectors: most
// numbers fit 16 bits there, and most divisions become the high half of a product.
#pragma once
#include "base/instructions.h"
#include "pixel/lane_arithmetic.h"
#include "pixel/matrix.h"

namespace vorel::inline VOREL_INSTRUCTIONS {

// Whether (n + before) * ratio >> shift is n / divisor, of all n below the limit.
constexpr bool IsQuotient(u32 divisor, u32 limit, u32 before, u32 ratio, u32 shift) {
  for (u32 n = 0; n < limit; ++n) {
    if ((n + before) * ratio >> shift != n / divisor) return false;
  }
  return true;
}
static_assert(IsQuotient(255, 65535, 0, 0x8081, 23) && IsQuotient(219, 65535, 1, 38304, 23));
static_assert(IsQuotient(7, 43690, 0, 37450, 18));

// n / 255 and n / 219 of n below 65535, n / 7 of n below 43690.
inline WrappingLanes DivideBy255(WrappingLanes n) {
  return MultiplyHigh(n, WrappingLanes{} + 0x8081) >> 7;
}
inline WrappingLanes DivideBy219(WrappingLanes n) {
  return MultiplyHigh(n + 1, WrappingLanes{} + 38304) >> 7;
}
inline WrappingLanes DivideBy7(WrappingLanes n) {
  return MultiplyHigh(n, WrappingLanes{} + 37450) >> 2;
}

inline WrappingLanes WeighIn16Bits(Lanes red, Lanes green, Lanes blue, const ColourWeights& w) {
  return (WrappingLanes)red * static_cast<u16>(w.red) + (WrappingLanes)green * static_cast<u16>(w.green) +
         (WrappingLanes)blue * static_cast<u16>(w.blue);
}
inline WidePairs Weigh(Lanes red, Lanes green, Lanes blue, const ColourWeights& w, i32 add) {
  return SumProducts(PairUp(red, green), AllPairs(w.red, w.green)) +
         SumProducts(PairUp(blue, All(1)), AllPairs(w.blue, add));
}

// ---- To Y'CbCr

// A colour on the scale of Y' from Bits, as a product with a fraction of 2^15.
template <int Bits>
inline constexpr i32 kSpanRatio = ((219 << 15) + (1 << Bits) / 2) / ((1 << Bits) - 1);

// Differences to Y' reach 255 where codes are outside the range of video.
inline constexpr i32 kLargestDifference = 255;

template <int Bits>
constexpr bool SpanRatioIsExact() {
  for (i32 x = 0; x < 1 << Bits; ++x) {
    const i32 quotient = Bits == 8 ? (73 * x + 42) / 85 : (3 * x + 3) / 7;
    if ((x * kSpanRatio<Bits> + (1 << 14)) >> 15 != quotient) return false;
  }
  return true;
}
static_assert(SpanRatioIsExact<8>() && SpanRatioIsExact<9>());

constexpr bool ChromaRatioIsExact(i32 span, i32 ratio) {
  for (i32 d = -kLargestDifference; d <= kLargestDifference; ++d) {
    // Far below the least difference there is, but not negative.
    constexpr i32 kFar = 512;
    const i32 quotient = (d * 112 + span * kFar + (span >> 1)) / span - kFar;
    if ((d * ratio + (1 << 14)) >> 15 != quotient) return false;
  }
  return true;
}
constexpr bool ChromaRatiosAreExact() {
  for (u32 standard = 0; standard < 3; ++standard) {
    const ColourWeights w = MakeWeights(8, standard);
    if (!ChromaRatioIsExact(w.redSpan, w.redRatio) || !ChromaRatioIsExact(w.blueSpan, w.blueRatio))
      return false;
  }
  return true;
}
static_assert(ChromaRatiosAreExact());

template <int Bits>
inline Lanes LumaOfFullColour(Lanes red, Lanes green, Lanes blue, const ColourWeights& w) {
  if constexpr (Bits == 8) {
    return (Lanes)DivideBy255(WeighIn16Bits(red, green, blue, w) + 127);
  } else {
    // n / 511 is (n + 1 + ((n + 1) >> 9)) >> 9 up to 262,653.
    static_assert(Bits == 9);
    const WidePairs sum = Weigh(red, green, blue, w, 255 + 1);
    return Pack((sum + (sum >> 9)) >> 9);
  }
}

template <int Bits, int YccBits, i32 Offset>
requires(YccBits == 8 && Bits <= 9)
    [[gnu::noinline]] void FullColourToYcc(ConstPlanes from, const ColourWeights& weights, Planes to) {
  const ColourWeights w = weights;
  for (u32 i = 0; i < kStripPixels; i += kLanes) {
    const Lanes red = LoadNative<Lanes>(from.first + i);
    const Lanes green = LoadNative<Lanes>(from.second + i);
    const Lanes blue = LoadNative<Lanes>(from.third + i);
    const Lanes y = LumaOfFullColour<Bits>(red, green, blue, w);
    const Lanes blueOverLuma = ScaleRounded(blue, All(kSpanRatio<Bits>)) - y;
    const Lanes redOverLuma = ScaleRounded(red, All(kSpanRatio<Bits>)) - y;
    StoreNative(to.first + i, y + All(Offset));
    StoreNative(to.second + i, ScaleRounded(blueOverLuma, All(w.blueRatio)) + All(ChromaZero(8)));
    StoreNative(to.third + i, ScaleRounded(redOverLuma, All(w.redRatio)) + All(ChromaZero(8)));
  }
}

// Y' with the offset 16: as weights sum to 219, no offset has to be taken from the colours before.
template <int Bits>
inline Lanes LumaOfVideoColour(Lanes red, Lanes green, Lanes blue, const ColourWeights& w) {
  if constexpr (Bits == 8) {
    // 219 is odd, so no quotient is in the middle and the rounding is the same on either side of black.
    return (Lanes)DivideBy219(WeighIn16Bits(red, green, blue, w) + 109);
  } else {
    // Below black the middle is rounded down.
    static_assert(Bits == 10);
    const WidePairs sum = Weigh(red, green, blue, w, 438 - 1);
    const WidePairs isFromBlack = sum > 64 * 219 + 438 - 2;
    return (Lanes)DivideBy219(PackUnsigned((sum - isFromBlack) >> 2));
  }
}

// With an offset of 16 as well.
template <int Bits>
inline Lanes VideoColourOnScaleOfLuma(Lanes colour) {
  if constexpr (Bits == 8) return colour;
  const Lanes overBlack = colour - 64;
  return ((overBlack + 2 + (overBlack >> 15)) >> 2) + 16;
}

// What is negative, outside the range of video, is cut toward zero: it becomes one more if there was a rest.
inline Lanes ChromaOfVideoColour(Lanes overLuma, i16 span, i16 ratio) {
  const Lanes chroma = ScaleRounded(overLuma, All(ratio)) + All(ChromaZero(8));
  const WrappingLanes dividend =
      (WrappingLanes)overLuma * 112 + static_cast<u16>(span * ChromaZero(8) + (span >> 1));
  const Lanes hasRest = dividend != (WrappingLanes)chroma * static_cast<u16>(span);
  return chroma - ((chroma >> 15) & hasRest);
}

template <int Bits, int YccBits, i32 Offset>
requires(YccBits == 8)
    [[gnu::noinline]] void VideoColourToYcc(ConstPlanes from, const ColourWeights& weights, Planes to) {
  const ColourWeights w = weights;
  for (u32 i = 0; i < kStripPixels; i += kLanes) {
    const Lanes red = LoadNative<Lanes>(from.first + i);
    const Lanes green = LoadNative<Lanes>(from.second + i);
    const Lanes blue = LoadNative<Lanes>(from.third + i);
    const Lanes y = LumaOfVideoColour<Bits>(red, green, blue, w);
    const Lanes blueOverLuma = VideoColourOnScaleOfLuma<Bits>(blue) - y;
    const Lanes redOverLuma = VideoColourOnScaleOfLuma<Bits>(red) - y;
    StoreNative(to.first + i, y + All(Offset - 16));
    StoreNative(to.second + i, ChromaOfVideoColour(blueOverLuma, w.blueSpan, w.blueRatio));
    StoreNative(to.third + i, ChromaOfVideoColour(redOverLuma, w.redSpan, w.redRatio));
  }
}

// ---- From Y'CbCr

// Cr and Cb of pixels, which give red and blue, each with Y'.
struct YccPairs {
  LanePairs redAndLuma;
  LanePairs blueAndLuma;
};
inline YccPairs LoadYcc(ConstPlanes from, u32 i) {
  const Lanes y = LoadNative<Lanes>(from.first + i);
  return {PairUp(LoadNative<Lanes>(from.third + i), y), PairUp(LoadNative<Lanes>(from.second + i), y)};
}

// Y' and chroma of pixels, for sums that begin with their products.
template <int YccBits, i32 Offset>
inline WidePairs WeighChromaAndLuma(LanePairs chromaAndLuma, i32 chroma, i32 luma, i32 add) {
  return SumProducts(chromaAndLuma, AllPairs(chroma, luma)) +
         (add - chroma * ChromaZero(YccBits) - luma * Offset);
}

// What red and blue leave to green of Y', which is scaled, with `add`.
template <i32 Offset>
inline WidePairs LeftToGreen(LanePairs chromaAndLuma, i32 scale, Lanes red, Lanes blue,
                             const ColourWeights& w, i32 add) {
  return SumProducts(chromaAndLuma, AllPairs(0, scale)) + (add - scale * Offset) +
         SumProducts(PairUp(red, blue), AllPairs(-w.red, -w.blue));
}

// Red or blue; see FullColourQuotient.
template <int Bits, i32 Offset>
inline Lanes FullColourOf(LanePairs chromaAndLuma, i32 span) {
  constexpr ColourQuotient kQuotient = FullColourQuotient(8, Bits);
  const WidePairs sum = WeighChromaAndLuma<8, Offset>(chromaAndLuma, span * kQuotient.multiply,
                                                      112 * kQuotient.multiply, kQuotient.add);
  return Pack(QuotientOf(sum, ReciprocalAbove(kQuotient.divide)));
}

template <int YccBits, int Bits, i32 Offset, Overflow Excess>
requires(YccBits == 8 && Bits <= 9)
    [[gnu::noinline]] void YccToFullColour(ConstPlanes from, const ColourWeights& weights, Planes to) {
  constexpr i32 kMaximum = (1 << Bits) - 1;
  const ColourWeights w = weights;
  const Lanes most = All(kMaximum);
  for (u32 i = 0; i < kStripPixels; i += kLanes) {
    const auto [redAndLuma, blueAndLuma] = LoadYcc(from, i);
    const Lanes red = FullColourOf<Bits, Offset>(redAndLuma, w.redSpan);
    const Lanes blue = FullColourOf<Bits, Offset>(blueAndLuma, w.blueSpan);
    const WidePairs left = LeftToGreen<Offset>(redAndLuma, kMaximum, red, blue, w, w.green >> 1);
    // The weight of green is even. What does not fit 16 bits is above the limit.
    static_assert(65535 / 79 >= 511);
    const WrappingLanes green =
        MultiplyHigh(PackUnsigned(left >> 1), WrappingLanes{} + w.greenReciprocal) >> 6;
    StoreNative(to.first + i, Limit(red, Lanes{}, most));
    StoreNative(to.second + i, Limit((Lanes)green, Lanes{}, most));
    StoreNative(to.third + i, Limit(blue, Lanes{}, most));
  }
}

// The rounding is symmetric but for 8 bits to 10, where the halves are added for either sign.
template <int Bits, i32 Offset>
inline Lanes VideoColourOf(LanePairs chromaAndLuma, i32 span) {
  // (n +- 56) / 112 and (4 * n + 56) / 112.
  constexpr bool kDeepens = Bits > 8;
  const WidePairs sum = WeighChromaAndLuma<8, Offset>(chromaAndLuma, span, 112, kDeepens ? 14 : 0);
  const WidePairs magnitude = kDeepens ? MagnitudeOf(sum) >> 2 : (MagnitudeOf(sum) + 56) >> 4;
  return WithSignOf((Lanes)DivideBy7((WrappingLanes)Pack(magnitude)), Pack(sum));
}

template <int Bits>
inline Lanes VideoGreenOf(WidePairs left, const ColourWeights& w) {
  const WrappingLanes reciprocal = WrappingLanes{} + w.greenReciprocal;
  WrappingLanes quotient;
  if constexpr (Bits == 8) {
    // What does not fit 16 bits is above the limit.
    quotient = MultiplyHigh(PackUnsigned(MagnitudeOf(left) + (w.green >> 1)), reciprocal) >> 7;
  } else {
    // From an eighth it is right or one too small, which the rest tells.
    const WidePairs magnitude = MagnitudeOf(left + (w.green >> 1));
    const WrappingLanes divisor = WrappingLanes{} + static_cast<u16>(w.green);
    quotient = MultiplyHigh(PackUnsigned(magnitude >> 3), reciprocal - 1) >> 4;
    const WrappingLanes rest = PackUnsigned(magnitude & 0xFFFF) - quotient * divisor;
    quotient -= (WrappingLanes)((Lanes)rest >= (Lanes)divisor);
  }
  return WithSignOf((Lanes)quotient, Pack(left + (Bits == 8 ? 0 : w.green >> 1)));
}

template <int YccBits, int Bits, i32 Offset>
requires(YccBits == 8)
    [[gnu::noinline]] void YccToVideoColour(ConstPlanes from, const ColourWeights& weights, Planes to) {
  constexpr i16 kBlack = 16 << (Bits - 8);
  const ColourWeights w = weights;
  const Lanes least = All(1 << (Bits - 8));
  const Lanes most = All(Bits == 8 ? 254 : 1019);
  for (u32 i = 0; i < kStripPixels; i += kLanes) {
    const auto [redAndLuma, blueAndLuma] = LoadYcc(from, i);
    const Lanes red = VideoColourOf<Bits, Offset>(redAndLuma, w.redSpan);
    const Lanes blue = VideoColourOf<Bits, Offset>(blueAndLuma, w.blueSpan);
    const WidePairs left = LeftToGreen<Offset>(redAndLuma, LumaSpan(Bits), red, blue, w, 0);
    const Lanes green = VideoGreenOf<Bits>(left, w);
    StoreNative(to.first + i, Limit(red + kBlack, least, most));
    StoreNative(to.second + i, Limit(green + kBlack, least, most));
    StoreNative(to.third + i, Limit(blue + kBlack, least, most));
  }
}

}  // namespace vorel::inline VOREL_INSTRUCTIONS
