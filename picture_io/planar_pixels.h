// 4:4:4 in three or four planes to and from rows of pixels.
//
//   'v408'   8 bits    Cb Y' Cr A   bytes as they are. With three planes A is opaque, and dropped on the way
//                                   back
//   'v410'   10 bits   a little-endian word:   31..22 Cr | 21..12 Y' | 11..2 Cb | 1..0 zero
#pragma once
#include <span>

#include "picture_io/planar_rows.h"

namespace vorel::picture_io {

std::span<const PlanarRoutines> PixelRoutines();

}  // namespace vorel::picture_io
