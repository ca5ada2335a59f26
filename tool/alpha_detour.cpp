// Pixels are moved together where they are.
#include "tool/alpha_detour.h"

#include <cstring>

#include "frame/catalogue.h"
#include "picture_io/picture_file.h"
#include "picture_io/row_geometry.h"

namespace vorel::tool {

namespace {

constexpr std::size_t kAlphaBytes = 2;  // in front of the colours of a 'b64a' pixel
constexpr std::size_t kColourBytes = 6;

bool HasDecoder(u32 tag, u32 pixelFormat) {
  return FindRoutine(Direction::decode, pixelFormat, tag) != nullptr;
}

}  // namespace

u32 DecodedFormatFor(u32 tag, u32 pixelFormat) {
  const bool takesDetour = pixelFormat == picture_io::kRgb16 && !HasDecoder(tag, pixelFormat) &&
                           HasDecoder(tag, picture_io::kArgb16);
  return takesDetour ? picture_io::kArgb16 : pixelFormat;
}

bool ComesAs(u32 tag, u32 pixelFormat) {
  return HasDecoder(tag, DecodedFormatFor(tag, pixelFormat));
}

// A pixel never moves to a higher address, so none is overwritten before it has moved.
void LeaveOutAlpha(picture_io::Picture& picture) {
  const u32 rowBytes = picture_io::RowsOf(picture_io::kRgb16, picture.width).memoryBytes;
  for (std::size_t row = 0; row < picture.height; ++row) {
    const u8* from = picture.bytes.data() + row * picture.rowBytes + kAlphaBytes;
    u8* to = picture.bytes.data() + row * rowBytes;
    for (u32 i = 0; i < picture.width; ++i) {
      std::memmove(to, from, kColourBytes);
      from += kAlphaBytes + kColourBytes;
      to += kColourBytes;
    }
  }
  picture.pixelFormat = picture_io::kRgb16;
  picture.rowBytes = rowBytes;
  picture.bytes.resize(std::size_t{rowBytes} * picture.height);
}

}  // namespace vorel::tool
