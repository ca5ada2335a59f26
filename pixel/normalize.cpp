// Reduces what hosts call their pictures to the codes of the frame routines. Three kinds of codes come in,
// and no code is of two kinds, so that the tables can be asked in any order:
//   bitmaps     headers of bitmaps, which tell the layout by depth
//   bit fields  headers of bitmaps, which tell it by masks
//   names       pixel format codes with another name here, which may depend on the range of R'G'B'
#include <array>

#include "base/bytes.h"
#include "vorel/pixel_formats.h"

namespace vorel {
namespace {

constexpr u32 kBitFields = 3;

// The last one is also the code 'RGBA', and the bitmap wins. Only masks lead to the pixel format 'RGBA'.
constexpr u32 kBitmaps[] = {0, WordOfBytes("DIB "), WordOfBytes("BGR "), WordOfBytes("ABGR")};

struct DepthRow {
  u32 depth;
  u32 result;
};

constexpr DepthRow kDepths[] = {
    {32, FourCharacterCode("BGRA")},
    {24, FourCharacterCode("24BG")},
    {16, FourCharacterCode("L555")},
};

struct MaskRow {
  u32 depth;
  u32 red;
  u32 green;
  u32 blue;
  u32 result;
};

// Masks of four-byte pixels stand with a depth of 24: alpha is not counted.
constexpr MaskRow kMasks[] = {
    {16, 0x7C00, 0x3E0, 0x1F, FourCharacterCode("L555")},
    {16, 0xF800, 0x7E0, 0x1F, FourCharacterCode("L565")},
    {24, 0xFF0000, 0xFF00, 0xFF, FourCharacterCode("BGRA")},
    {24, 0xFF, 0xFF00, 0xFF0000, FourCharacterCode("RGBA")},
    {24, 0xFF000000, 0xFF0000, 0xFF00, FourCharacterCode("ABGR")},
    {24, 0xFF00, 0xFF0000, 0xFF000000, 32},
};

struct NameRow {
  u32 code;
  std::array<u32, 3> results;  // by VOREL_RGB_RANGE_*
};

constexpr NameRow AnyRange(u32 code, const char (&result)[5]) {
  return {code, {FourCharacterCode(result), FourCharacterCode(result), FourCharacterCode(result)}};
}

constexpr u32 kF10k = FourCharacterCode("F10k");
constexpr u32 kS10k = FourCharacterCode("S10k");
constexpr u32 kF210 = FourCharacterCode("F210");
constexpr u32 kS210 = FourCharacterCode("S210");
constexpr u32 kVRGB = FourCharacterCode("VRGB");

constexpr NameRow kNames[] = {
    // They differ on purpose: under automatic, 'R10k' is full range and 'r210' is video range.
    {FourCharacterCode("R10k"), {kF10k, kF10k, kS10k}},
    {FourCharacterCode("r210"), {kS210, kF210, kS210}},
    {32, {32, 32, kVRGB}},
    // Windows spells its codes with the first letter in the low byte. "yuv2" spelt so is '2vuy' itself.
    AnyRange(WordOfBytes("Y422"), "2vuy"),
    AnyRange(WordOfBytes("YUV2"), "2vuy"),
    AnyRange(WordOfBytes("yuV2"), "2vuy"),
    AnyRange(WordOfBytes("yuv2"), "2vuy"),
    AnyRange(WordOfBytes("HDYC"), "2vuy"),
    AnyRange(WordOfBytes("UYNV"), "2vuy"),
    AnyRange(WordOfBytes("CYUV"), "2vuy"),
    AnyRange(WordOfBytes("UYVY"), "2vuy"),
    AnyRange(WordOfBytes("YUY2"), "yuvs"),
    AnyRange(WordOfBytes("YUNV"), "yuvs"),
    AnyRange(WordOfBytes("YUYV"), "yuvs"),
    AnyRange(WordOfBytes("VYUY"), "yuvs"),
    AnyRange(FourCharacterCode("yuv2"), "yuvu"),
};

constexpr bool IsBitmap(u32 code) {
  for (const u32 bitmap : kBitmaps) {
    if (code == bitmap) return true;
  }
  return false;
}

constexpr bool EveryCodeIsOfOneKind() {
  for (const NameRow& row : kNames) {
    if (IsBitmap(row.code) || row.code == kBitFields) return false;
    u32 rows = 0;
    for (const NameRow& other : kNames) rows += other.code == row.code ? 1 : 0;
    if (rows != 1) return false;
  }
  return !IsBitmap(kBitFields);
}

static_assert(EveryCodeIsOfOneKind());
static_assert(kBitmaps[1] == 0x20424944 && kBitmaps[2] == 0x20524742 && kBitmaps[3] == 0x52474241);
static_assert(kBitmaps[3] == FourCharacterCode("RGBA"));

u32 BitmapByDepth(u32 depth) {
  for (const DepthRow& row : kDepths) {
    if (row.depth == depth) return row.result;
  }
  return 0;
}

u32 BitmapByMasks(u32 depth, u32 red, u32 green, u32 blue) {
  for (const MaskRow& row : kMasks) {
    if (row.depth == depth && row.red == red && row.green == green && row.blue == blue) return row.result;
  }
  return 0;
}

}  // namespace
}  // namespace vorel

extern "C" uint32_t VorelNormalizePixelFormat(uint32_t depth, uint32_t code, uint32_t redMask,
                                              uint32_t greenMask, uint32_t blueMask, uint32_t rgbRange) {
  if (vorel::IsBitmap(code)) return vorel::BitmapByDepth(depth);
  if (code == vorel::kBitFields) return vorel::BitmapByMasks(depth, redMask, greenMask, blueMask);
  for (const vorel::NameRow& row : vorel::kNames) {
    if (row.code == code) return row.results[rgbRange < row.results.size() ? rgbRange : 0];
  }
  return code;
}
