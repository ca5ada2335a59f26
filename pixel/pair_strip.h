// A strip of a 4:2:2 row of 8 bits in the order of the stream: the form in which pixel formats of the same
// samples go into frames and come out of them.
//
// A cell is one Y' and the chroma sample that follows it in the stream:   15..8 Cb or Cr | 7..0 Y'
// Even cells hold Cb, odd ones Cr. In memory that is the order of the stream: Y'0, Cb, Y'1, Cr.
#pragma once
#include <cstring>

#include "base/instructions.h"
#include "pixel/pixel_layout.h"
#include "pixel/sample_strip.h"

namespace vorel::inline VOREL_INSTRUCTIONS {

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
// 'yuvu' and 'yuvs' have their bytes in the order of the cells, so within a row they are read where they stand;
// '2vuy' has each two the other way round.
template <const PixelLayout& Pixel>
inline constexpr bool kInOrderOfCells = Pixel.place[0] == 0;

// Exchanges the bytes of each cell.
inline void SwapCells(const u8* __restrict from, std::size_t cells, u8* __restrict to) {
  for (std::size_t i = 0; i < cells; ++i) {
    const u16 cell = LoadNative<u16>(from + 2 * i);
    StoreNative(to + 2 * i, static_cast<u16>(cell << 8 | cell >> 8));
  }
}

template <const PixelLayout& Pixel>
inline const u8* FillPairs(const u8* row, u32 first, u32 pairs, u32 leftOfRow, PairStrip& strip) {
  static_assert(Pixel.container == Container::bytes && Pixel.unit == Unit::pair);
  const u8* source = row + std::size_t{first} * kPairCellBytes;
  u8* cells = reinterpret_cast<u8*>(strip.cells + kStripMargin);
  if constexpr (kInOrderOfCells<Pixel>) {
    if (first != 0 && pairs == kStripPairs) return source;
    StoreNative(cells - kPairCellBytes, first == 0 ? leftOfRow : LoadNative<u32>(source - kPairCellBytes));
    std::memcpy(cells, source, pairs * kPairCellBytes);
  } else {
    if (first == 0) {
      StoreNative(cells - kPairCellBytes, leftOfRow);
    } else {
      SwapCells(source - kPairCellBytes, 2, cells - kPairCellBytes);
    }
    if (pairs == kStripPairs) {
      SwapCells(source, kStripPixels, cells);
    } else {
      SwapCells(source, std::size_t{pairs} * 2, cells);
    }
  }
  return cells;
}

// Stores `pairs` pairs of 8-bit samples, Y'0, Cb, Y'1, Cr, at `target`.
template <const PixelLayout& Pixel>
void DrainPairs(const u8* samples, std::size_t pairs, u8* target) {
  static_assert(Pixel.container == Container::bytes && Pixel.unit == Unit::pair);
  if constexpr (kInOrderOfCells<Pixel>) {
    std::memcpy(target, samples, pairs * kPairCellBytes);
  } else {
    SwapCells(samples, pairs * 2, target);
  }
}

}  // namespace vorel::inline VOREL_INSTRUCTIONS
