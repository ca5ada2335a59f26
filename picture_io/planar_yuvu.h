// 8-bit 4:2:2 in three planes to and from rows of 'yuvu'. Chroma has its neutral value at 128 in the planes
// and at 0, in two's complement, in 'yuvu': the top bit differs and nothing else.
#pragma once
#include "base/integers.h"

namespace vorel::picture_io {

// Planes without gaps: width * height bytes of Y', then (width + 1) / 2 * height of Cb and as many of Cr.
constexpr std::size_t PlanarBytes(u32 width, u32 height) {
  return (std::size_t{width} + (std::size_t{width} + 1) / 2 * 2) * height;
}

// Fills `rows`, YuvuRowBytes(width) * height bytes. With an odd width the last Y' of a row is stored twice.
void YuvuFromPlanes(const u8* planes, u32 width, u32 height, u8* rows);

// Fills `planes`, PlanarBytes(width, height) bytes. With an odd width the second Y' of the last pair is
// dropped.
void PlanesFromYuvu(const u8* rows, u32 width, u32 height, u8* planes);

}  // namespace vorel::picture_io
