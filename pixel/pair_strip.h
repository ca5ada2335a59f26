// A strip: the samples of up to 64 pixels of a 4:2:2 row, as the frame layout has them, in planes on the
// stack. Row loops work strip by strip, so that loops have a constant length and formats end where the strip
// is filled or drained.
#pragma once
#include "base/integers.h"

namespace vorel {

inline constexpr u32 kStripPixels = 64;
inline constexpr u32 kStripPairs = kStripPixels / 2;

// Cells left of a strip hold its left neighbours: the luma of one pixel and the chroma of one pair.
inline constexpr int kStripMargin = 8;

struct PairStrip {
  alignas(16) i16 lumaCells[kStripMargin + kStripPixels];
  alignas(16) i16 chromaCells[kStripMargin + kStripPixels];  // Cb, Cr of a pair side by side
};

inline i16* Luma(PairStrip& strip) {
  return strip.lumaCells + kStripMargin;
}
inline i16* Chroma(PairStrip& strip) {
  return strip.chromaCells + kStripMargin;
}
inline const i16* Luma(const PairStrip& strip) {
  return strip.lumaCells + kStripMargin;
}
inline const i16* Chroma(const PairStrip& strip) {
  return strip.chromaCells + kStripMargin;
}

// Sets the cells left of a strip.
inline void SetLeftNeighbours(PairStrip& strip, i16 luma, i16 cb, i16 cr) {
  Luma(strip)[-1] = luma;
  Chroma(strip)[-2] = cb;
  Chroma(strip)[-1] = cr;
}

// Makes the last cells of a whole strip the left neighbours of the next one.
inline void CarryNeighbours(PairStrip& strip) {
  SetLeftNeighbours(strip, Luma(strip)[kStripPixels - 1], Chroma(strip)[kStripPixels - 2],
                    Chroma(strip)[kStripPixels - 1]);
}

}  // namespace vorel
