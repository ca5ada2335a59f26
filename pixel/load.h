// From bytes of a picture to a strip: one function for each kind of pixel format.
#pragma once
#include <algorithm>

#include "pixel/pair_strip.h"
#include "pixel/pixel_layout.h"

namespace vorel {

// Bytes of a pair in a picture.
template <const PixelLayout& Pixel>
inline constexpr u32 kPairBytes = 4;

// Fills a strip from a whole strip of 'yuvu' pixels.
inline void FillWholeStripYuvu(const u8* __restrict source, i16* __restrict luma, i16* __restrict chroma) {
  for (u32 i = 0; i < kStripPixels; ++i) {
    const u16 pixel = LoadNative<u16>(source + std::size_t{2} * i);
    luma[i] = static_cast<i16>(pixel & 255);
    chroma[i] = static_cast<i16>(static_cast<i16>(pixel) >> 8);
  }
}

// Fills a strip from `pairs` pairs at `source`; bytes behind them are not read, and the rest of the strip
// takes any value.
template <const PixelLayout& Pixel>
void FillStrip(const u8* source, u32 pairs, PairStrip& strip) {
  if (pairs == kStripPairs) {
    FillWholeStripYuvu(source, Luma(strip), Chroma(strip));
    return;
  }
  u8 padded[kStripPairs * kPairBytes<Pixel>] = {};
  std::copy_n(source, std::size_t{pairs} * kPairBytes<Pixel>, padded);
  FillWholeStripYuvu(padded, Luma(strip), Chroma(strip));
}

}  // namespace vorel
