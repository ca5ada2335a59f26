// Rows of planes and of pixels are as long as the picture is wide, so a picture is one run of pixels.
#include "picture_io/planar_pixels.h"

#include "base/bytes.h"

namespace vorel::picture_io {

namespace {

// Bytes of a 'v408' pixel, and its alpha where it covers all.
constexpr std::size_t kPlaceOfCb = 0;
constexpr std::size_t kPlaceOfLuma = 1;
constexpr std::size_t kPlaceOfCr = 2;
constexpr std::size_t kPlaceOfAlpha = 3;
constexpr u8 kOpaque = 0xEB;

// Lowest bits of the samples in a 'v410' word.
constexpr u32 kBitOfCb = 2;
constexpr u32 kBitOfLuma = 12;
constexpr u32 kBitOfCr = 22;
constexpr u32 kMask10 = 0x3FF;

constexpr std::size_t kPixelBytes = 4;

template <bool HasAlpha>
void BytesFromPlanes(const u8* planes, std::size_t width, std::size_t height, u8* rows) {
  const std::size_t pixels = width * height;
  const u8* __restrict const luma = planes;
  const u8* __restrict const cb = planes + pixels;
  const u8* __restrict const cr = planes + 2 * pixels;
  const u8* __restrict const alpha = planes + 3 * pixels;  // one past the planes if there are three
  u8* __restrict const out = rows;
  for (std::size_t i = 0; i < pixels; ++i) {
    u8* const pixel = out + i * kPixelBytes;
    pixel[kPlaceOfCb] = cb[i];
    pixel[kPlaceOfLuma] = luma[i];
    pixel[kPlaceOfCr] = cr[i];
    pixel[kPlaceOfAlpha] = HasAlpha ? alpha[i] : kOpaque;
  }
}

template <bool HasAlpha>
void PlanesFromBytes(const u8* rows, std::size_t width, std::size_t height, u8* planes) {
  const std::size_t pixels = width * height;
  const u8* __restrict const in = rows;
  u8* __restrict const luma = planes;
  u8* __restrict const cb = planes + pixels;
  u8* __restrict const cr = planes + 2 * pixels;
  u8* __restrict const alpha = planes + 3 * pixels;
  for (std::size_t i = 0; i < pixels; ++i) {
    const u8* const pixel = in + i * kPixelBytes;
    luma[i] = pixel[kPlaceOfLuma];
    cb[i] = pixel[kPlaceOfCb];
    cr[i] = pixel[kPlaceOfCr];
    if constexpr (HasAlpha) alpha[i] = pixel[kPlaceOfAlpha];
  }
}

u32 SampleAt(const u8* plane, std::size_t i) {
  return LoadNative<u16>(plane + 2 * i);
}

void WordsFromPlanes(const u8* planes, std::size_t width, std::size_t height, u8* rows) {
  const std::size_t pixels = width * height;
  const u8* __restrict const luma = planes;
  const u8* __restrict const cb = planes + 2 * pixels;
  const u8* __restrict const cr = planes + 4 * pixels;
  u8* __restrict const out = rows;
  for (std::size_t i = 0; i < pixels; ++i) {
    StoreNative<u32>(out + i * kPixelBytes, SampleAt(cr, i) << kBitOfCr | SampleAt(luma, i) << kBitOfLuma |
                                                SampleAt(cb, i) << kBitOfCb);
  }
}

void PlanesFromWords(const u8* rows, std::size_t width, std::size_t height, u8* planes) {
  const std::size_t pixels = width * height;
  const u8* __restrict const in = rows;
  u8* __restrict const luma = planes;
  u8* __restrict const cb = planes + 2 * pixels;
  u8* __restrict const cr = planes + 4 * pixels;
  for (std::size_t i = 0; i < pixels; ++i) {
    const u32 word = LoadNative<u32>(in + i * kPixelBytes);
    StoreNative(luma + 2 * i, static_cast<u16>(word >> kBitOfLuma & kMask10));
    StoreNative(cb + 2 * i, static_cast<u16>(word >> kBitOfCb & kMask10));
    StoreNative(cr + 2 * i, static_cast<u16>(word >> kBitOfCr));
  }
}

// Four planes stand before three: they are what 'v408' has a place for.
constexpr PlanarRoutines kRoutines[] = {
    {kV408, {8, 4, false}, BytesFromPlanes<true>, PlanesFromBytes<true>},
    {kV408, {8, 3, false}, BytesFromPlanes<false>, PlanesFromBytes<false>},
    {kV410, {10, 3, false}, WordsFromPlanes, PlanesFromWords},
};

}  // namespace

std::span<const PlanarRoutines> PixelRoutines() {
  return kRoutines;
}

}  // namespace vorel::picture_io
