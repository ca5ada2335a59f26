// 4:2:2 in three planes to and from rows of pairs. Planes hold a sample in a byte, or in a little-endian word
// of 16 bits where it has 10 bits.
//
//   'yuvu'   8 bits    Y'0 Cb Y'1 Cr   chroma is neutral at 128 in the planes and at 0, in two's
//                                      complement, in the pair: the top bit differs and nothing else
//   '2vuy'   8 bits    Cb Y'0 Cr Y'1   bytes as they are
//   'v216'   10 bits   Cb Y'0 Cr Y'1   samples at the top of 16 bits: 6 bits higher than in the planes
#pragma once
#include "base/integers.h"

namespace vorel::picture_io {

// Bits of a sample in planes that go with a pixel format: 8 or 10, or 0 for a pixel format not listed above.
u32 PlaneBits(u32 pixelFormat);

// Planes without gaps: width * height samples of Y', then (width + 1) / 2 * height of Cb and as many of Cr.
std::size_t PlanarBytes(u32 pixelFormat, u32 width, u32 height);

// Fills `rows`, which are RowsOf(pixelFormat, width).memoryBytes apart. With an odd width the last Y' of a
// row is stored twice.
void RowsFromPlanes(u32 pixelFormat, const u8* planes, u32 width, u32 height, u8* rows);

// Fills `planes`, PlanarBytes(pixelFormat, width, height) bytes. With an odd width the second Y' of the last
// pair is dropped, and so are the lower 6 bits of 'v216'.
void PlanesFromRows(u32 pixelFormat, const u8* rows, u32 width, u32 height, u8* planes);

}  // namespace vorel::picture_io
