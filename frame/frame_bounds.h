// Worst-case sizes: the bit stream of a frame, and the row buffer of a decoder.
#pragma once
#include "frame/frame_layout.h"

namespace vorel {

// The most bytes that the bit stream of a frame may take: a row header bit per row, every row raw, one
// attempted row with all codes at their longest (16 bits), and the word that closes the stream. 0 for an
// empty picture. The arithmetic is that of 32-bit numbers and wraps as they do: 10-bit layouts count bits,
// 8-bit layouts bytes.
constexpr u32 MaxFrameBytes(const FrameLayout& layout, u32 width, u32 height) {
  if (width == 0 || height == 0) return 0;
  const u32 units = UnitsPerRow(layout, width);
  const u32 rawBits = RawBitsPerUnit(layout);
  const u32 longestBits = SamplesPerUnit(layout) * 16;
  if (layout.samples.bits == 10)
    return ((height + rawBits * height * units + longestBits * units + 7) >> 3) + 4;
  return (height + 7) / 8 + rawBits / 8 * height * units + longestBits / 8 * units + 4;
}

// The same by tag; 0 for a word that is not a canonical tag.
u32 MaxFrameBytesOfTag(u32 tag, u32 width, u32 height);

// The row buffer that a decoder of frames with this tag needs; 0 for a word that is not a canonical tag.
u32 RowStoreBytesOfTag(u32 tag, u32 width);

// The largest row buffer that a decoder of any layout needs for a width in pixels, without room for
// alignment.
u32 RowStoreBytes(u32 width);

}  // namespace vorel
