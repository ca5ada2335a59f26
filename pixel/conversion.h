// From bytes of a picture to the samples that a frame holds, and back: where pixel formats end. There is one
// pair of functions for each frame layout and pixel format that a routine links; nothing in them tests a format.
//
// They are instances made in conversions_*.cpp, for the pairs of the catalogue; another pair does not link.
#pragma once
#include "base/instructions.h"
#include "pixel/chroma.h"
#include "pixel/pixel_layout.h"
#include "pixel/sample_strip.h"
#include "pixel/weights.h"

namespace vorel::inline VOREL_INSTRUCTIONS {

// 96 pixels of a row, or those that are left of it, from pixel `first` on, a multiple of 96.
struct StripPlace {
  u32 first;
  u32 width;  // of the row
};

// Depth of Y'CbCr in the matrix between a frame and a pixel format of the other colour model; 0 if there is none.
constexpr int MatrixBits(const SampleDomain& frame, const PixelLayout& pixel) {
  if (frame.model == pixel.model) return 0;
  if (frame.model == ColourModel::ycbcr) return frame.bits;
  if (pixel.sampleBits == 8) return 8;
  return frame.bits == 10 && pixel.sampleBits != 10 ? 12 : 10;
}

// Weights of a frame's conversion: made once. Of no account where no matrix is needed.
template <SampleDomain Frame, const PixelLayout& Pixel>
constexpr ColourWeights WeightsOfFrame(u32 colourStandard) {
  constexpr int kBits = MatrixBits(Frame, Pixel);
  return kBits == 0 ? ColourWeights{} : MakeWeights(kBits, colourStandard);
}

// Bytes of the pixels of `row` become samples of the frame: cells 0 on, one a pixel, and where the frame has
// pairs one of Cb and Cr a pair. The pair at the end of an odd width is whole: where the picture has no second
// pixel, it is the first one again. Cells behind these hold anything, cells before cell 0 stay. Nothing behind
// the row's last pixel is read.
//
// Strips of a row are filled in order, with one `carry`, which begins as anything.
template <SampleDomain Frame, const PixelLayout& Pixel>
void FillStrip(const u8* row, StripPlace place, const ColourWeights& weights, ChromaCarry& carry,
               SampleStrip& strip);

// The reverse. Where a frame of pairs goes to pixels that each have chroma, the cells behind the strip's last
// pair hold the chroma of the next pair, if the row has one. Cells behind the strip's last pixel may be changed.
// Only bytes of the row's pixels are stored.
template <SampleDomain Frame, const PixelLayout& Pixel>
void DrainStrip(SampleStrip& strip, StripPlace place, const ColourWeights& weights, ChromaCarry& carry,
                u8* row);

}  // namespace vorel::inline VOREL_INSTRUCTIONS
