// Predictions of a strip for encoders, plane by plane: source samples are known on both sides of every position,
// so no step waits for another.
//
// L is the sample of the same component to the left, T the one above, TL the one above the left. Cells left of a
// strip hold what stands there; at the start of a row, the start values, or T where a row is above.
//   left-only       L
//   planar-blend    (3 * (L + T) - 2 * TL) >> 2
//   half-gradient   T + ((L - TL) >> 1)              chroma of pairs
// Shifts round toward minus infinity and nothing is clamped: residuals wrap modulo the alphabet.
#pragma once
#include "base/instructions.h"
#include "entropy/symbol_codes.h"
#include "pixel/sample_strip.h"

namespace vorel::inline VOREL_INSTRUCTIONS {

enum class Rule : u8 { leftOnly, planarBlend, halfGradient };

// With anything above the bits of the alphabet. All numbers on the way fit 16 bits with a sign, and say so, or
// vectors would have wider lanes.
template <Rule UsedRule>
inline u16 Residual(const i16* row, const i16* above, i32 i) {
  i16 prediction = row[i - 1];
  if constexpr (UsedRule == Rule::planarBlend) {
    const i16 fourfold = static_cast<i16>(3 * (row[i - 1] + above[i]) - 2 * above[i - 1]);
    prediction = static_cast<i16>(fourfold >> 2);
  }
  if constexpr (UsedRule == Rule::halfGradient) {
    const i16 gradient = static_cast<i16>(row[i - 1] - above[i - 1]);
    prediction = static_cast<i16>(above[i] + (gradient >> 1));
  }
  return static_cast<u16>(row[i] - prediction);
}

template <Rule UsedRule, u16 Mask>
[[gnu::noinline]] void PredictPlane(const i16* __restrict row, const i16* __restrict above,
                                    u16* __restrict symbols) {
  for (i32 i = 0; i < static_cast<i32>(kStripPixels); ++i)
    symbols[i] = Residual<UsedRule>(row, above, i) & Mask;
}

// Residuals of Cb and Cr of pairs take turns in one plane.
template <Rule UsedRule, u16 Mask>
[[gnu::noinline]] void PredictChroma(const i16* __restrict cb, const i16* __restrict cbAbove,
                                     const i16* __restrict cr, const i16* __restrict crAbove,
                                     u16* __restrict symbols) {
  for (i32 i = 0; i < static_cast<i32>(kStripPairs); ++i) {
    symbols[2 * i] = Residual<UsedRule>(cb, cbAbove, i) & Mask;
    symbols[2 * i + 1] = Residual<UsedRule>(cr, crAbove, i) & Mask;
  }
}

// The later colours of a pixel are coded by the difference of their error to that of the colour before.
template <u16 Mask>
[[gnu::noinline]] inline void ChainColours(const u16* __restrict first, u16* __restrict second,
                                           u16* __restrict third) {
  for (u32 i = 0; i < kStripPixels; ++i) {
    const u16 errorOfSecond = second[i];
    second[i] = static_cast<u16>((errorOfSecond - first[i]) & Mask);
    third[i] = static_cast<u16>((third[i] - errorOfSecond) & Mask);
  }
}

// Joint indexes of neighbouring symbols, see entropy/symbol_codes.h.
template <int Symbols>
[[gnu::noinline]] void IndexPairs(const u16* __restrict first, const u16* __restrict second,
                                  u16* __restrict indexes) {
  for (u32 i = 0; i < kStripPixels; ++i)
    indexes[i] = JointIndex<Symbols>(JointPlace<Symbols>(first[i]), JointPlace<Symbols>(second[i]));
}

}  // namespace vorel::inline VOREL_INSTRUCTIONS
