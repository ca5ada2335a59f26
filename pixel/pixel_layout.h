// The pixel formats of the frame routines: where each sample of a pixel stands in memory, in which range and
// at which depth. A row of this table is all that the conversions know of a format.
#pragma once
#include <array>

#include "base/bytes.h"
#include "pixel/sample_domain.h"

namespace vorel {

// What a sample is packed into.
//   bytes   a byte each
//   words   16 bits each, with the sample in the top bits (Y216: two bits below the top)
//   fields  ten bits of a 32-bit word that holds the pixel
//   short_  five or six bits of a 16-bit word that holds the pixel; such formats are only written
//   groups  three pairs in four 32-bit words of three 10-bit fields each
enum class Container : u8 { bytes, words, fields, shortFields, groups };

enum class ByteOrder : u8 { little, big };

inline constexpr i8 kNoPlace = -1;

struct PixelLayout {
  u32 code;  // four-character code, or 32 or 24
  ColourModel model;
  Range range;
  Unit unit;
  Container container;
  ByteOrder order;
  u8 unitBytes;   // of a pixel, a pair, or a group of three pairs
  u8 sampleBits;  // scale of a sample: 8, 10, 14 or 16
  // Of first, second, third sample and alpha, or of Y'0, Cb, Y'1, Cr: number of the byte or word in the unit,
  // or lowest bit of the field.
  std::array<i8, 4> place;
  u8 colourBits;  // of a pixel, as the argument check counts them: not the stored size
  u8 alphaBits;   // counted in addition where the frame holds alpha
  // Y216 alone: samples outside the legal codes are taken to be out of bounds.
  bool limitedOnRead;
};

constexpr bool HasAlphaPlace(const PixelLayout& pixel) {
  return pixel.unit == Unit::pixel && pixel.place[3] != kNoPlace;
}

// Bits of a pixel for the argument check.
constexpr u32 SignificantBits(const PixelLayout& pixel, bool frameHasAlpha) {
  return frameHasAlpha && HasAlphaPlace(pixel) ? pixel.colourBits + u32{pixel.alphaBits} : pixel.colourBits;
}

// Routine names put PxNAME together. An underscore stands for a fourth sample that is of no account: the same
// bytes, for frames without alpha.
// clang-format off
#define VOREL_PIXEL(NAME, CODE, MODEL, RANGE, UNIT, CONTAINER, ORDER, ...)                             \
  inline constexpr PixelLayout Px##NAME = {CODE, ColourModel::MODEL, Range::RANGE, Unit::UNIT,         \
                                           Container::CONTAINER, ByteOrder::ORDER, __VA_ARGS__};
#define VOREL_WITHOUT_ALPHA(NAME, SAME) inline constexpr const PixelLayout& Px##NAME = Px##SAME;

//                                                                                   bytes   places of R, G, B, A
VOREL_PIXEL(ARGB, 32,                        rgb, full,  pixel, bytes,       little, 4,  8, {1, 2, 3, 0}, 24, 8, false)
VOREL_PIXEL(ABGR, FourCharacterCode("ABGR"), rgb, full,  pixel, bytes,       little, 4,  8, {3, 2, 1, 0}, 24, 8, false)
VOREL_PIXEL(RGBA, FourCharacterCode("RGBA"), rgb, full,  pixel, bytes,       little, 4,  8, {0, 1, 2, 3}, 24, 8, false)
VOREL_PIXEL(BGRA, FourCharacterCode("BGRA"), rgb, full,  pixel, bytes,       little, 4,  8, {2, 1, 0, 3}, 24, 8, false)
VOREL_PIXEL(RGB,  24,                        rgb, full,  pixel, bytes,       little, 3,  8, {0, 1, 2, -1}, 24, 0, false)
VOREL_PIXEL(BGR,  FourCharacterCode("24BG"), rgb, full,  pixel, bytes,       little, 3,  8, {2, 1, 0, -1}, 24, 0, false)
VOREL_PIXEL(AVRGB, FourCharacterCode("VRGB"), rgb, video, pixel, bytes,      little, 4,  8, {1, 2, 3, 0}, 24, 8, false)
VOREL_PIXEL(L555, FourCharacterCode("L555"), rgb, full,  pixel, shortFields, little, 2,  8, {10, 5, 0, -1}, 15, 0, false)
VOREL_PIXEL(L565, FourCharacterCode("L565"), rgb, full,  pixel, shortFields, little, 2,  8, {11, 5, 0, -1}, 16, 0, false)
VOREL_PIXEL(b64a, FourCharacterCode("b64a"), rgb, full,  pixel, words,       big,    8, 16, {1, 2, 3, 0}, 30, 10, false)
VOREL_PIXEL(L64A, FourCharacterCode("L64A"), rgb, full,  pixel, words,       little, 8, 16, {1, 2, 3, 0}, 30, 10, false)
VOREL_PIXEL(A46L, FourCharacterCode("A46L"), rgb, full,  pixel, words,       little, 8, 16, {2, 1, 0, 3}, 30, 10, false)
VOREL_PIXEL(b48r, FourCharacterCode("b48r"), rgb, full,  pixel, words,       big,    6, 16, {0, 1, 2, -1}, 30, 0, false)
VOREL_PIXEL(F10k, FourCharacterCode("F10k"), rgb, full,  pixel, fields,      big,    4, 10, {22, 12, 2, -1}, 30, 0, false)
VOREL_PIXEL(S10k, FourCharacterCode("S10k"), rgb, video, pixel, fields,      big,    4, 10, {22, 12, 2, -1}, 30, 0, false)
VOREL_PIXEL(F210, FourCharacterCode("F210"), rgb, full,  pixel, fields,      big,    4, 10, {20, 10, 0, -1}, 30, 0, false)
VOREL_PIXEL(S210, FourCharacterCode("S210"), rgb, video, pixel, fields,      big,    4, 10, {20, 10, 0, -1}, 30, 0, false)
VOREL_WITHOUT_ALPHA(_RGB, ARGB)
VOREL_WITHOUT_ALPHA(_BGR, ABGR)
VOREL_WITHOUT_ALPHA(RGB_, RGBA)
VOREL_WITHOUT_ALPHA(BGR_, BGRA)
VOREL_WITHOUT_ALPHA(_VRGB, AVRGB)
VOREL_WITHOUT_ALPHA(b64_, b64a)
VOREL_WITHOUT_ALPHA(L64_, L64A)
VOREL_WITHOUT_ALPHA(_46L, A46L)

//                                                                                         places of Y', Cb, Cr, A
VOREL_PIXEL(Ar408, FourCharacterCode("r408"), ycbcr, lowered, pixel, bytes, little, 4,  8, {1, 2, 3, 0}, 24, 8, false)
VOREL_PIXEL(Av408, FourCharacterCode("v408"), ycbcr, video, pixel, bytes,  little, 4,  8, {1, 0, 2, 3}, 24, 8, false)
VOREL_PIXEL(VUYA,  FourCharacterCode("VUYA"), ycbcr, video, pixel, bytes,  little, 4,  8, {2, 1, 0, 3}, 24, 8, false)
VOREL_PIXEL(v410,  FourCharacterCode("v410"), ycbcr, video, pixel, fields, little, 4, 10, {12, 2, 22, -1}, 30, 0, false)
VOREL_PIXEL(AV416, FourCharacterCode("V416"), ycbcr, video, pixel, words,  little, 8, 16, {2, 1, 0, 3}, 30, 10, false)
VOREL_WITHOUT_ALPHA(_r408, Ar408)
VOREL_WITHOUT_ALPHA(_v408, Av408)
VOREL_WITHOUT_ALPHA(VUY_, VUYA)
VOREL_WITHOUT_ALPHA(_V416, AV416)

//                                                                                        places of Y'0, Cb, Y'1, Cr
VOREL_PIXEL(2vuy, FourCharacterCode("2vuy"), ycbcr, video, pair, bytes,   little, 4,  8, {1, 0, 3, 2}, 16, 0, false)
VOREL_PIXEL(yuvs, FourCharacterCode("yuvs"), ycbcr, video, pair, bytes,   little, 4,  8, {0, 1, 2, 3}, 16, 0, false)
VOREL_PIXEL(yuvu, FourCharacterCode("yuvu"), ycbcr, wide,  pair, bytes,   little, 4,  8, {0, 1, 2, 3}, 16, 0, false)
VOREL_PIXEL(v216, FourCharacterCode("v216"), ycbcr, video, pair, words,   little, 8, 16, {1, 0, 3, 2}, 20, 0, false)
VOREL_PIXEL(Y216, FourCharacterCode("Y216"), ycbcr, video, pair, words,   little, 8, 14, {1, 0, 3, 2}, 20, 0, true)
VOREL_PIXEL(v210, FourCharacterCode("v210"), ycbcr, video, pair, groups,  little, 16, 10, {}, 20, 0, false)
#undef VOREL_PIXEL
#undef VOREL_WITHOUT_ALPHA
// clang-format on

// Bytes that the first `pixels` pixels of a row take. Of a 'v210' row only the words that hold a sample count.
constexpr std::size_t BytesOfPixels(const PixelLayout& pixel, std::size_t pixels) {
  if (pixel.unit == Unit::pixel) return pixels * pixel.unitBytes;
  const std::size_t pairs = (pixels + 1) / 2;
  if (pixel.container == Container::groups) return (pairs * 4 + 2) / 3 * 4;
  return pairs * pixel.unitBytes;
}

static_assert(BytesOfPixels(Pxv210, 2) == 8 && BytesOfPixels(Pxv210, 4) == 12 &&
              BytesOfPixels(Pxv210, 6) == 16 && BytesOfPixels(Px2vuy, 3) == 8);

}  // namespace vorel
