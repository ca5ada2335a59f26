// The pixel formats of the frame routines for whoever holds pictures in memory or in files: their names, what
// stands where, and how long a row is.
#include <iterator>
#include <utility>

#include "base/bytes.h"
#include "vorel/pixel_formats.h"

namespace vorel {
namespace {

constexpr u32 kCode(const char (&text)[5]) {
  return FourCharacterCode(text);
}

constexpr char kFull[] = "full";
constexpr char kVideo[] = "video";
constexpr char kVideoButAlpha[] = "video, A full";
constexpr char kFromZero[] = "video, Y' from 0, A full";
constexpr char kAsItComes[] = "as it comes, Cb and Cr signed";

// clang-format off
constexpr VorelPixelFormatInfo kFormats[] = {
    // code, name, layout, range                                          unit: bytes, pixels; bits; alpha
    {32, "32", "bytes A, R, G, B", kFull,                                                       4, 1, 8, 1},
    {kCode("ABGR"), "ABGR", "bytes A, B, G, R", kFull,                                          4, 1, 8, 1},
    {kCode("RGBA"), "RGBA", "bytes R, G, B, A", kFull,                                          4, 1, 8, 1},
    {kCode("BGRA"), "BGRA", "bytes B, G, R, A", kFull,                                          4, 1, 8, 1},
    {24, "24", "bytes R, G, B", kFull,                                                          3, 1, 8, 0},
    {kCode("24BG"), "24BG", "bytes B, G, R", kFull,                                             3, 1, 8, 0},
    {kCode("VRGB"), "VRGB", "bytes A, R, G, B", kVideoButAlpha,                                 4, 1, 8, 1},
    {kCode("L555"), "L555", "u16 LE: one zero bit, then R, G, B of 5 bits", kFull,              2, 1, 5, 0},
    {kCode("L565"), "L565", "u16 LE: R, G, B of 5, 6, 5 bits", kFull,                           2, 1, 5, 0},
    {kCode("b64a"), "b64a", "u16 BE A, R, G, B", kFull,                                         8, 1, 16, 1},
    {kCode("L64A"), "L64A", "u16 LE A, R, G, B", kFull,                                         8, 1, 16, 1},
    {kCode("A46L"), "A46L", "u16 LE B, G, R, A", kFull,                                         8, 1, 16, 1},
    {kCode("b48r"), "b48r", "u16 BE R, G, B", kFull,                                            6, 1, 16, 0},
    {kCode("F10k"), "F10k", "u32 BE: R, G, B of 10 bits, then two zero bits", kFull,            4, 1, 10, 0},
    {kCode("S10k"), "S10k", "u32 BE: R, G, B of 10 bits, then two zero bits", kVideo,           4, 1, 10, 0},
    {kCode("F210"), "F210", "u32 BE: two zero bits, then R, G, B of 10 bits", kFull,            4, 1, 10, 0},
    {kCode("S210"), "S210", "u32 BE: two zero bits, then R, G, B of 10 bits", kVideo,           4, 1, 10, 0},
    {kCode("r408"), "r408", "bytes A, Y', Cb, Cr", kFromZero,                                   4, 1, 8, 1},
    {kCode("v408"), "v408", "bytes Cb, Y', Cr, A", kVideo,                                      4, 1, 8, 1},
    {kCode("VUYA"), "VUYA", "bytes Cr, Cb, Y', A", kVideo,                                      4, 1, 8, 1},
    {kCode("v410"), "v410", "u32 LE: Cr, Y', Cb of 10 bits, then two zero bits", kVideo,        4, 1, 10, 0},
    {kCode("V416"), "V416", "u16 LE Cr, Cb, Y', A", kVideo,                                     8, 1, 16, 1},
    {kCode("2vuy"), "2vuy", "bytes Cb, Y'0, Cr, Y'1", kVideo,                                   4, 2, 8, 0},
    {kCode("yuvs"), "yuvs", "bytes Y'0, Cb, Y'1, Cr", kVideo,                                   4, 2, 8, 0},
    {kCode("yuvu"), "yuvu", "bytes Y'0, Cb, Y'1, Cr", kAsItComes,                               4, 2, 8, 0},
    {kCode("v216"), "v216", "u16 LE Cb, Y'0, Cr, Y'1", kVideo,                                  8, 2, 16, 0},
    {kCode("Y216"), "Y216", "u16 LE Cb, Y'0, Cr, Y'1, two bits below the top", kVideo,          8, 2, 14, 0},
    {kCode("v210"), "v210", "u32 LE of three 10-bit samples, 3 pairs in 4 words", kVideo,       16, 6, 10, 0},
};
// clang-format on

static_assert(std::size(kFormats) == 28);

// The one unit that a row may leave before its end: a group of three pairs in four words.
constexpr u32 kGroupPixels = 6;

constexpr u64 BytesOfRow(const VorelPixelFormatInfo& format, u64 width) {
  if (format.unitPixels == kGroupPixels) {
    const u64 pairs = (width + 1) / 2;
    return (pairs * 4 + 2) / 3 * 4;  // one pair takes two words, two pairs take three
  }
  return (width + format.unitPixels - 1) / format.unitPixels * format.unitBytes;
}

constexpr u64 UpToMultipleOf4(u64 bytes) {
  return (bytes + 3) & ~u64{3};
}

constexpr std::size_t IfAddressable(u64 bytes) {
  return std::in_range<std::size_t>(bytes) ? static_cast<std::size_t>(bytes) : 0;
}

}  // namespace
}  // namespace vorel

extern "C" const VorelPixelFormatInfo* VorelPixelFormatList(size_t* count) {
  *count = std::size(vorel::kFormats);
  return vorel::kFormats;
}

extern "C" const VorelPixelFormatInfo* VorelFindPixelFormat(uint32_t code) {
  for (const VorelPixelFormatInfo& format : vorel::kFormats) {
    if (format.code == code) return &format;
  }
  return nullptr;
}

extern "C" size_t VorelRowBytes(uint32_t code, uint32_t width) {
  const VorelPixelFormatInfo* format = VorelFindPixelFormat(code);
  return format == nullptr ? 0 : vorel::IfAddressable(vorel::BytesOfRow(*format, width));
}

extern "C" size_t VorelAlignedRowBytes(uint32_t code, uint32_t width) {
  const VorelPixelFormatInfo* format = VorelFindPixelFormat(code);
  if (format == nullptr) return 0;
  return vorel::IfAddressable(vorel::UpToMultipleOf4(vorel::BytesOfRow(*format, width)));
}
