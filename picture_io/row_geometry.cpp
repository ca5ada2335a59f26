// Rows of raw files are what the core says of a row, with one custom of files on top.
#include "picture_io/row_geometry.h"

#include "picture_io/clip_format.h"
#include "vorel/pixel_formats.h"

namespace vorel::picture_io {

namespace {

constexpr u32 kBlockPixels = 48;
constexpr u32 kBlockBytes = 128;

constexpr u32 UpToMultipleOf4(u32 bytes) {
  return (bytes + 3) & ~u32{3};
}

}  // namespace

RowGeometry RowsOf(u32 pixelFormat, u32 width) {
  const u32 pixelBytes = static_cast<u32>(VorelRowBytes(pixelFormat, width));
  const u32 fileBytes =
      pixelFormat == kV210 ? (width + kBlockPixels - 1) / kBlockPixels * kBlockBytes : pixelBytes;
  return {pixelBytes, UpToMultipleOf4(fileBytes), fileBytes};
}

}  // namespace vorel::picture_io
