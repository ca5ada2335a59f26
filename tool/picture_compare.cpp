// Rows are compared whole; only one that differs is looked at closely, by a table of what stands where.
#include "tool/picture_compare.h"

#include <cstring>
#include <iterator>

#include "base/bytes.h"
#include "picture_io/row_geometry.h"
#include "vorel/pixel_formats.h"

namespace vorel::tool {

namespace {

// How samples stand in the words of a format: how many to a word, and where each of them is.
struct Packing {
  u32 wordBytes;
  bool isBigEndian;
  u32 perWord;
  u32 shift[3];
  u32 bits[3];
};

constexpr Packing kBytes = {1, false, 1, {0}, {8}};
constexpr Packing kLittle16 = {2, false, 1, {0}, {16}};
constexpr Packing kBig16 = {2, true, 1, {0}, {16}};
constexpr Packing kLittle555 = {2, false, 3, {10, 5, 0}, {5, 5, 5}};
constexpr Packing kLittle565 = {2, false, 3, {11, 5, 0}, {5, 6, 5}};
constexpr Packing kBigTop10 = {4, true, 3, {22, 12, 2}, {10, 10, 10}};
constexpr Packing kBigLow10 = {4, true, 3, {20, 10, 0}, {10, 10, 10}};
constexpr Packing kLittleTop10 = {4, false, 3, {22, 12, 2}, {10, 10, 10}};
constexpr Packing kLittleLow10 = {4, false, 3, {0, 10, 20}, {10, 10, 10}};

// Components in the order of their places, U for Cb and V for Cr. In a unit of pairs the n-th Y is of pixel
// n, the n-th U and V are of pair n.
struct Form {
  u32 pixelFormat;
  const Packing* packing;
  const char* components;
  u32 chromaFlip;  // the bit in which stored chroma differs from what is told
};

constexpr Form kForms[] = {
    {32, &kBytes, "ARGB", 0},
    {FourCharacterCode("ABGR"), &kBytes, "ABGR", 0},
    {FourCharacterCode("RGBA"), &kBytes, "RGBA", 0},
    {FourCharacterCode("BGRA"), &kBytes, "BGRA", 0},
    {24, &kBytes, "RGB", 0},
    {FourCharacterCode("24BG"), &kBytes, "BGR", 0},
    {FourCharacterCode("VRGB"), &kBytes, "ARGB", 0},
    {FourCharacterCode("L555"), &kLittle555, "RGB", 0},
    {FourCharacterCode("L565"), &kLittle565, "RGB", 0},
    {FourCharacterCode("b64a"), &kBig16, "ARGB", 0},
    {FourCharacterCode("L64A"), &kLittle16, "ARGB", 0},
    {FourCharacterCode("A46L"), &kLittle16, "BGRA", 0},
    {FourCharacterCode("b48r"), &kBig16, "RGB", 0},
    {FourCharacterCode("F10k"), &kBigTop10, "RGB", 0},
    {FourCharacterCode("S10k"), &kBigTop10, "RGB", 0},
    {FourCharacterCode("F210"), &kBigLow10, "RGB", 0},
    {FourCharacterCode("S210"), &kBigLow10, "RGB", 0},
    {FourCharacterCode("r408"), &kBytes, "AYUV", 0},
    {FourCharacterCode("v408"), &kBytes, "UYVA", 0},
    {FourCharacterCode("VUYA"), &kBytes, "VUYA", 0},
    {FourCharacterCode("v410"), &kLittleTop10, "VYU", 0},
    {FourCharacterCode("V416"), &kLittle16, "VUYA", 0},
    {FourCharacterCode("2vuy"), &kBytes, "UYVY", 0},
    {FourCharacterCode("yuvs"), &kBytes, "YUYV", 0},
    {FourCharacterCode("yuvu"), &kBytes, "YUYV", 0x80},
    {FourCharacterCode("v216"), &kLittle16, "UYVY", 0},
    {FourCharacterCode("Y216"), &kLittle16, "UYVY", 0},
    {FourCharacterCode("v210"), &kLittleLow10, "UYVYUYVYUYVY", 0},
};

constexpr std::size_t kMostSamples = 12;  // of a unit

const Form& FormOf(u32 pixelFormat) {
  for (const Form& form : kForms) {
    if (form.pixelFormat == pixelFormat) return form;
  }
  throw Problem{"pictures of this pixel format are not compared", "", ""};
}

const char* ComponentName(char component) {
  switch (component) {
    case 'Y':
      return "Y'";
    case 'U':
      return "Cb";
    case 'V':
      return "Cr";
    case 'R':
      return "R";
    case 'G':
      return "G";
    case 'B':
      return "B";
    default:
      return "A";
  }
}

u32 LoadWord(const Packing& packing, const u8* bytes) {
  if (packing.wordBytes == 1) return *bytes;
  if (packing.wordBytes == 2) return packing.isBigEndian ? LoadBig16(bytes) : LoadNative<u16>(bytes);
  return packing.isBigEndian ? LoadBig32(bytes) : LoadLittle32(bytes);
}

// The `index`-th sample of a unit.
u32 SampleOf(const Packing& packing, const u8* unit, u32 index) {
  const u32 place = index % packing.perWord;
  const u32 word = LoadWord(packing, unit + std::size_t{index / packing.perWord} * packing.wordBytes);
  return word >> packing.shift[place] & ((1u << packing.bits[place]) - 1);
}

// Pixel of the `index`-th sample, within its unit.
u32 PixelOf(const Form& form, u32 index) {
  u32 before = 0;
  for (u32 i = 0; i < index; ++i) before += form.components[i] == form.components[index] ? 1 : 0;
  return form.components[index] == 'Y' ? before : 2 * before;
}

struct RowPair {
  const u8* first;
  const u8* second;
  u32 row;
  u32 pixels;  // that count
};

std::optional<Difference> FindInRow(const Form& form, const VorelPixelFormatInfo& pixels, const RowPair& rows,
                                    const Compared& compared) {
  const u32 samples = static_cast<u32>(std::strlen(form.components));
  u32 pixelOf[kMostSamples];
  for (u32 i = 0; i < samples; ++i) pixelOf[i] = PixelOf(form, i);
  for (u32 at = 0; at < rows.pixels; at += pixels.unitPixels) {
    const std::size_t start = std::size_t{at / pixels.unitPixels} * pixels.unitBytes;
    for (u32 i = 0; i < samples; ++i) {
      const char component = form.components[i];
      const u32 pixel = at + pixelOf[i];
      if (pixel >= rows.pixels || (component == 'A' && !compared.alpha)) continue;
      const u32 first = SampleOf(*form.packing, rows.first + start, i);
      const u32 second = SampleOf(*form.packing, rows.second + start, i);
      if (first == second) continue;
      const u32 flip = component == 'U' || component == 'V' ? form.chromaFlip : 0;
      return Difference{rows.row, pixel, ComponentName(component), (first ^ flip) >> compared.shift,
                        (second ^ flip) >> compared.shift};
    }
  }
  return std::nullopt;
}

}  // namespace

std::optional<Difference> FindDifference(const picture_io::Picture& first, const picture_io::Picture& second,
                                         const Compared& compared) {
  const Form& form = FormOf(first.pixelFormat);
  const VorelPixelFormatInfo& pixels = *VorelFindPixelFormat(first.pixelFormat);
  const std::size_t pixelBytes = picture_io::RowsOf(first.pixelFormat, first.width).pixelBytes;
  const bool hasPadding = pixels.unitPixels > 1 && compared.padding;
  for (u32 row = 0; row < first.height; ++row) {
    const RowPair rows = {first.bytes.data() + std::size_t{row} * first.rowBytes,
                          second.bytes.data() + std::size_t{row} * second.rowBytes, row,
                          first.width + (hasPadding ? first.width % 2 : 0)};
    if (std::memcmp(rows.first, rows.second, pixelBytes) == 0) continue;
    if (const auto difference = FindInRow(form, pixels, rows, compared)) return difference;
  }
  return std::nullopt;
}

}  // namespace vorel::tool
