// A strip of a 4:2:2 row of 8 bits in the order of the stream: the form in which pixel formats of the same
// samples go into frames and come out of them.
//
// A cell is one Y' and the chroma sample that follows it in the stream:   15..8 Cb or Cr | 7..0 Y'
// Even cells hold Cb, odd ones Cr. In memory that is the order of the stream: Y'0, Cb, Y'1, Cr.
#pragma once
#include <cstring>

#include "pixel/pixel_layout.h"
#include "pixel/sample_strip.h"

namespace vorel {

inline constexpr std::size_t kPairCellBytes = 4;

struct PairStrip {
  alignas(32) u16 cells[kStripMargin + kStripPixels];
};

// Bytes of a pair in a picture.
template <const PixelLayout& Pixel>
inline constexpr u32 kPairBytes = Pixel.unitBytes;

// The cells of `pairs` pairs from pair `first` of a row on, with the pair before them to their left; a whole
// strip may be read, of which those behind `pairs` have any value. The left neighbour of the first pair is
// `leftOfRow`, a pair in stream order. Bytes of the row behind its last pair are not read.
//
// 'yuvu' has its bytes in the order of the cells, so within a row they are read where they stand.
template <const PixelLayout& Pixel>
inline const u8* FillPairs(const u8* row, u32 first, u32 pairs, u32 leftOfRow, PairStrip& strip) {
  static_assert(Pixel.code == Pxyuvu.code);
  const u8* source = row + std::size_t{first} * kPairCellBytes;
  if (first != 0 && pairs == kStripPairs) return source;
  u8* cells = reinterpret_cast<u8*>(strip.cells + kStripMargin);
  StoreNative(cells - kPairCellBytes, first == 0 ? leftOfRow : LoadNative<u32>(source - kPairCellBytes));
  std::memcpy(cells, source, pairs * kPairCellBytes);
  return cells;
}

// Stores `pairs` pairs of 8-bit samples, Y'0, Cb, Y'1, Cr, at `target`. 'yuvu' has them in this very order.
template <const PixelLayout& Pixel>
void DrainPairs(const u8* samples, std::size_t pairs, u8* target) {
  static_assert(Pixel.code == Pxyuvu.code);
  std::memcpy(target, samples, pairs * 4);
}

}  // namespace vorel
