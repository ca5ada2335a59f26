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
#include "pixel/sample_strip.h"

namespace vorel::inline VOREL_INSTRUCTIONS {

enum class Rule : u8 { leftOnly, planarBlend, halfGradient };

// Step is the distance of two residuals: those of Cb and Cr of pairs take turns in one plane.
template <Rule UsedRule, i16 Mask, u32 Count, u32 Step>
[[gnu::noinline]] void PredictPlane(const i16* __restrict row, const i16* __restrict above,
                                    u16* __restrict symbols) {
  for (i32 i = 0; i < static_cast<i32>(Count); ++i) {
    i32 prediction = row[i - 1];
    if constexpr (UsedRule == Rule::planarBlend)
      prediction = (3 * (row[i - 1] + above[i]) - 2 * above[i - 1]) >> 2;
    if constexpr (UsedRule == Rule::halfGradient) prediction = above[i] + ((row[i - 1] - above[i - 1]) >> 1);
    symbols[static_cast<i32>(Step) * i] = static_cast<u16>((row[i] - prediction) & Mask);
  }
}

// The later colours of a pixel are coded by the difference of their error to that of the colour before.
template <i16 Mask>
[[gnu::noinline]] inline void ChainColours(const u16* __restrict first, u16* __restrict second,
                                           u16* __restrict third) {
  for (u32 i = 0; i < kStripPixels; ++i) {
    const u16 errorOfSecond = second[i];
    second[i] = static_cast<u16>((errorOfSecond - first[i]) & Mask);
    third[i] = static_cast<u16>((third[i] - errorOfSecond) & Mask);
  }
}

}  // namespace vorel::inline VOREL_INSTRUCTIONS
