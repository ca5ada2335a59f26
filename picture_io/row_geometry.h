// How the rows of a pixel format lie in a picture's memory and in raw files.
#pragma once
#include "base/integers.h"

namespace vorel::picture_io {

// Bytes, all 0 for an unknown pixel format.
struct RowGeometry {
  u32 pixelBytes;   // from the first pixel to the end of the last
  u32 memoryBytes;  // distance of two rows in a picture, a multiple of 4
  u32 fileBytes;    // distance of two rows in a raw file
};

// Rows of a raw file have no gaps, but for 'v210', whose rows are filled up to whole blocks of 48 pixels in
// 128 bytes, as is the custom. Width is 1..kLargestSide.
RowGeometry RowsOf(u32 pixelFormat, u32 width);

}  // namespace vorel::picture_io
