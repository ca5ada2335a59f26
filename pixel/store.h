// From the samples of a row to bytes of a picture: one function for each kind of pixel format.
#pragma once
#include <cstring>

#include "pixel/pixel_layout.h"

namespace vorel {

// Stores `pairs` pairs of 8-bit samples, Y'0, Cb, Y'1, Cr, at `target`. 'yuvu' has them in this very order.
template <const PixelLayout& Pixel>
void DrainPairs(const u8* samples, std::size_t pairs, u8* target) {
  static_assert(Pixel.code == Px_yuvu.code);
  std::memcpy(target, samples, pairs * 4);
}

}  // namespace vorel
