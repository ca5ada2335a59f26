// The depths at which the stages of a conversion work.
#pragma once
#include "base/instructions.h"
#include "pixel/conversion.h"

namespace vorel::inline VOREL_INSTRUCTIONS {

// Depth of colour on the picture's side of a matrix or of a map of ranges: 8 bits, or one bit more than the
// frame where the picture has more, for 8-bit frames; what the picture has, up to 12 bits, for 10-bit ones.
constexpr int PictureColourBits(const SampleDomain& frame, const PixelLayout& pixel) {
  if (pixel.sampleBits == 8 || pixel.range == Range::video) return pixel.sampleBits;
  if (frame.bits == 8) return 9;
  return pixel.sampleBits == 10 ? 10 : 12;
}

// Depth at which colour is loaded: that of the frame, or that at which the matrix or a map of ranges works.
constexpr int LoadBits(const SampleDomain& frame, const PixelLayout& pixel) {
  if (pixel.model == ColourModel::rgb) {
    return frame.model == pixel.model && pixel.range == Range::full ? frame.bits
                                                                    : PictureColourBits(frame, pixel);
  }
  if (frame.model != pixel.model) return MatrixBits(frame, pixel);
  // Chroma of ten bits is filtered before it is cut to eight.
  if (frame.unit == Unit::pair && pixel.unit == Unit::pixel && pixel.sampleBits > 8) return 10;
  return frame.bits;
}

// Depth at which colour is stored; chroma is filtered at it.
constexpr int StoreBits(const SampleDomain& frame, const PixelLayout& pixel) {
  if (pixel.model == ColourModel::rgb) return LoadBits(frame, pixel);
  if (frame.model != pixel.model) return MatrixBits(frame, pixel);
  const bool filters = frame.unit == Unit::pixel && pixel.unit == Unit::pair;
  if (pixel.range == Range::lowered || (filters && pixel.sampleBits <= 10)) return pixel.sampleBits;
  return frame.bits;
}

// The code of black in Y' of the side of the matrix that is Y'CbCr.
constexpr i32 BlackOf(Range range, int bits) {
  return range == Range::lowered ? 0 : 16 << (bits - 8);
}

}  // namespace vorel::inline VOREL_INSTRUCTIONS
