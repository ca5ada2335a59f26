// Predictions of 4:2:2 rows on a strip, for encoders: source samples are known on both sides of every
// position, so no step waits for another.
//
// L is the sample of the same component to the left, T the one above, TL the one above the left. Left of Y'
// is the pixel before, left of chroma the pair before.
//   left-only       L
//   planar-blend    (3 * (L + T) - 2 * TL) >> 2      Y' of a later row of a progressive frame
//   half-gradient   T + ((L - TL) >> 1)              chroma of such a row
// Shifts round toward minus infinity and nothing is clamped: residuals wrap modulo 256.
#pragma once
#include "pixel/pair_strip.h"

namespace vorel {

// A residual of Y' in the low byte and one of chroma in the high byte: symbols in stream order.
inline u16 SymbolPair(int luma, int chroma) {
  return static_cast<u16>((luma & 255) | (chroma & 255) << 8);
}

inline void PredictLeftOnly(const i16* __restrict luma, const i16* __restrict chroma,
                            u16* __restrict symbols) {
  for (u32 i = 0; i < kStripPixels; ++i) {
    symbols[i] =
        SymbolPair(luma[i] - luma[static_cast<int>(i) - 1], chroma[i] - chroma[static_cast<int>(i) - 2]);
  }
}

// The difference L - TL of signed chroma bytes is one of two signed numbers, from -255 to 255.
inline void PredictFromAbove(const i16* __restrict luma, const i16* __restrict chroma,
                             const i16* __restrict lumaAbove, const i16* __restrict chromaAbove,
                             u16* __restrict symbols) {
  for (int i = 0; i < static_cast<int>(kStripPixels); ++i) {
    const i16 blend = static_cast<i16>((3 * (luma[i - 1] + lumaAbove[i]) - 2 * lumaAbove[i - 1]) >> 2);
    const i16 gradient = static_cast<i16>(chromaAbove[i] + ((chroma[i - 2] - chromaAbove[i - 2]) >> 1));
    symbols[i] = SymbolPair(luma[i] - blend, chroma[i] - gradient);
  }
}

// The samples themselves, for a raw row.
inline void PackSamples(const i16* __restrict luma, const i16* __restrict chroma, u16* __restrict samples) {
  for (u32 i = 0; i < kStripPixels; ++i) samples[i] = SymbolPair(luma[i], chroma[i]);
}

}  // namespace vorel
