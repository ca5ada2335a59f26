// Plain loops over whole pairs, free of aliasing so that they vectorise; the pair of an odd width is done by
// hand.
#include "picture_io/planar_yuvu.h"

#include "picture_io/clip_format.h"

namespace vorel::picture_io {

namespace {

void InterleavePairs(const u8* __restrict luma, const u8* __restrict cb, const u8* __restrict cr,
                     std::size_t pairs, u8* __restrict out) {
  for (std::size_t i = 0; i < pairs; ++i) {
    out[4 * i] = luma[2 * i];
    out[4 * i + 1] = static_cast<u8>(cb[i] ^ 0x80);
    out[4 * i + 2] = luma[2 * i + 1];
    out[4 * i + 3] = static_cast<u8>(cr[i] ^ 0x80);
  }
}

void PartPairs(const u8* __restrict in, std::size_t pairs, u8* __restrict luma, u8* __restrict cb,
               u8* __restrict cr) {
  for (std::size_t i = 0; i < pairs; ++i) {
    luma[2 * i] = in[4 * i];
    cb[i] = static_cast<u8>(in[4 * i + 1] ^ 0x80);
    luma[2 * i + 1] = in[4 * i + 2];
    cr[i] = static_cast<u8>(in[4 * i + 3] ^ 0x80);
  }
}

void InterleaveRow(const u8* luma, const u8* cb, const u8* cr, std::size_t width, u8* out) {
  const std::size_t pairs = width / 2;
  InterleavePairs(luma, cb, cr, pairs, out);
  if (width % 2 != 0) {
    const u8 last[2] = {luma[2 * pairs], luma[2 * pairs]};
    InterleavePairs(last, cb + pairs, cr + pairs, 1, out + 4 * pairs);
  }
}

void PartRow(const u8* in, std::size_t width, u8* luma, u8* cb, u8* cr) {
  const std::size_t pairs = width / 2;
  PartPairs(in, pairs, luma, cb, cr);
  if (width % 2 != 0) {
    u8 last[2];
    PartPairs(in + 4 * pairs, 1, last, cb + pairs, cr + pairs);
    luma[2 * pairs] = last[0];
  }
}

}  // namespace

void YuvuFromPlanes(const u8* planes, u32 width, u32 height, u8* rows) {
  const std::size_t chromaWidth = (std::size_t{width} + 1) / 2;
  const u8* const cb = planes + std::size_t{width} * height;
  const u8* const cr = cb + chromaWidth * height;
  for (std::size_t row = 0; row < height; ++row) {
    InterleaveRow(planes + row * width, cb + row * chromaWidth, cr + row * chromaWidth, width,
                  rows + row * YuvuRowBytes(width));
  }
}

void PlanesFromYuvu(const u8* rows, u32 width, u32 height, u8* planes) {
  const std::size_t chromaWidth = (std::size_t{width} + 1) / 2;
  u8* const cb = planes + std::size_t{width} * height;
  u8* const cr = cb + chromaWidth * height;
  for (std::size_t row = 0; row < height; ++row) {
    PartRow(rows + row * YuvuRowBytes(width), width, planes + row * width, cb + row * chromaWidth,
            cr + row * chromaWidth);
  }
}

}  // namespace vorel::picture_io
