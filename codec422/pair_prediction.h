// Predictions of 4:2:2 rows of 8 bits, for encoders, a strip at a time: source samples are known on both
// sides of every position, so no step waits for another.
//
// L is the sample of the same component to the left, T the one above, TL the one above the left. Left of Y'
// is the pixel before, left of chroma the pair before.
//   left-only       L
//   planar-blend    (3 * (L + T) - 2 * TL) >> 2      Y' of a later row of a progressive frame
//   half-gradient   T + ((L - TL) >> 1)              chroma of such a row
// Shifts round toward minus infinity and nothing is clamped: residuals wrap modulo 256.
//
// Cells are those of pixel/pair_strip.h; the ones left of the strip are read too. A residual of Y' and one of
// chroma make a symbol pair in the same arrangement.
#pragma once
#include "base/bytes.h"
#include "base/instructions.h"
#include "frame/frame_layout.h"
#include "pixel/pair_strip.h"

namespace vorel::inline VOREL_INSTRUCTIONS {

// Cell i of a strip, which may stand at any address in a picture.
inline u16 Cell(const u8* cells, int i) {
  return LoadNative<u16>(cells + std::ptrdiff_t{2} * i);
}

inline i16 LumaOfCell(u16 cell) {
  return static_cast<i16>(cell & 255);
}

// Chroma as the number that it is in its range: the half-gradient rule halves a difference of two such
// numbers.
template <ChromaSign Sign>
inline i16 ChromaOfCell(u16 cell) {
  if constexpr (Sign == ChromaSign::isSigned) return static_cast<i16>(static_cast<i16>(cell) >> 8);
  return static_cast<i16>(cell >> 8);
}

// Differences of bytes need no sign: they wrap.
inline void PredictLeftOnly(const u8* __restrict cells, u16* __restrict symbols) {
  for (int i = 0; i < static_cast<int>(kStripPixels); ++i) {
    const u16 here = Cell(cells, i);
    const u16 luma = static_cast<u16>(here - Cell(cells, i - 1));
    const u16 chroma = static_cast<u16>((here & 0xFF00) - (Cell(cells, i - 2) & 0xFF00));
    symbols[i] = static_cast<u16>((luma & 0xFF) | chroma);
  }
}

template <ChromaSign Sign>
inline void PredictFromAbove(const u8* __restrict cells, const u8* __restrict above,
                             u16* __restrict symbols) {
  for (int i = 0; i < static_cast<int>(kStripPixels); ++i) {
    const u16 here = Cell(cells, i);
    const u16 top = Cell(above, i);
    const i16 left = LumaOfCell(Cell(cells, i - 1));
    const i16 topLeft = LumaOfCell(Cell(above, i - 1));
    const i16 blend = static_cast<i16>((3 * (left + LumaOfCell(top)) - 2 * topLeft) >> 2);
    const i16 gradient = static_cast<i16>(
        (ChromaOfCell<Sign>(Cell(cells, i - 2)) - ChromaOfCell<Sign>(Cell(above, i - 2))) >> 1);
    const u16 luma = static_cast<u16>(here - blend);
    // In the high byte: the low ones of the two cells fall away, and so does what they borrow.
    const u16 chroma = static_cast<u16>((here & 0xFF00) - (top & 0xFF00) - (gradient << 8));
    symbols[i] = static_cast<u16>((luma & 0xFF) | chroma);
  }
}

}  // namespace vorel::inline VOREL_INSTRUCTIONS
