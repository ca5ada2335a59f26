// From bytes of a picture to a strip: one function for each kind of pixel format.
#pragma once
#include <cstring>

#include "pixel/pair_strip.h"
#include "pixel/pixel_layout.h"

namespace vorel {

// Bytes of a pair in a picture.
template <const PixelLayout& Pixel>
inline constexpr u32 kPairBytes = 4;

// The cells of `pairs` pairs from pair `first` of a row on, with the pair before them to their left; a whole
// strip may be read, of which those behind `pairs` have any value. The left neighbour of the first pair is
// `leftOfRow`, a pair in stream order. Bytes of the row behind its last pair are not read.
//
// 'yuvu' has its bytes in the order of the cells, so within a row they are read where they stand.
template <const PixelLayout& Pixel>
inline const u8* FillStrip(const u8* row, u32 first, u32 pairs, u32 leftOfRow, PairStrip& strip) {
  static_assert(Pixel.code == Px_yuvu.code);
  const u8* source = row + std::size_t{first} * kPairCellBytes;
  if (first != 0 && pairs == kStripPairs) return source;
  u8* cells = reinterpret_cast<u8*>(strip.cells + kStripMargin);
  StoreNative(cells - kPairCellBytes, first == 0 ? leftOfRow : LoadNative<u32>(source - kPairCellBytes));
  std::memcpy(cells, source, pairs * kPairCellBytes);
  return cells;
}

}  // namespace vorel
