// A strip: the samples of up to 64 pixels of a 4:2:2 row of 8 bits. Row loops work strip by strip, so that
// loops have a constant length and pixel formats end where the strip is filled or drained.
//
// A cell is one Y' and the chroma sample that follows it in the stream:   15..8 Cb or Cr | 7..0 Y'
// Even cells hold Cb, odd ones Cr. In memory that is the order of the stream: Y'0, Cb, Y'1, Cr.
#pragma once
#include "base/integers.h"

namespace vorel {

inline constexpr u32 kStripPixels = 64;
inline constexpr u32 kStripPairs = kStripPixels / 2;
inline constexpr std::size_t kPairCellBytes = 4;

// The two cells left of a strip are the pair before it.
inline constexpr u32 kStripMargin = 8;

struct PairStrip {
  alignas(16) u16 cells[kStripMargin + kStripPixels];
};

}  // namespace vorel
