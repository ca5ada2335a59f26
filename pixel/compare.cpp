// Whether a picture that was coded and decoded again is the same as its source. Each format has a mask of the
// bits that count; it repeats over the row.
#include "base/bytes.h"
#include "vorel/pixel_formats.h"

namespace vorel {
namespace {

// What a row holds that is compared.
enum class Units : u8 {
  pixels,
  pairs,       // the last pair of an odd width is whole in memory, and compared
  wholePairs,  // the last pixel of an odd width is left out
  groupWords,  // of whole pairs, three to four words
};

// Masks are numbers of eight bytes in memory, the first byte lowest: two pixels of four bytes, one of eight.
struct ComparedRow {
  u32 code;
  Units units;
  u8 unitBytes;
  u64 withoutAlpha;
  u64 withAlpha;
};

constexpr u32 kCode(const char (&text)[5]) {
  return FourCharacterCode(text);
}

constexpr u64 Twice(u32 mask) {
  return u64{mask} << 32 | mask;
}

constexpr u64 kAll = ~u64{0};
constexpr u64 kAllButFirst = Twice(0xFFFFFF00);  // of the four bytes of a pixel
constexpr u64 kAllButLast = Twice(0x00FFFFFF);
constexpr u64 kLowest2Off = Twice(0xFFFFFFFC);
constexpr u64 kBits7And6Off = Twice(0xFFFFFF3F);
constexpr u64 kTriple10 = Twice(0x3FFFFFFF);

constexpr ComparedRow kRows[] = {
    {kCode("b64a"), Units::pixels, 8, kAll << 16, kAll},
    // Alpha comes first in memory and B last, and it is B that goes unchecked: R, G and alpha are compared.
    {kCode("L64A"), Units::pixels, 8, kAll >> 16, kAll},
    {kCode("b48r"), Units::pixels, 6, kAll, kAll},
    // The word is big-endian and the mask is not: two bits of R go unchecked, and the padding is compared.
    {kCode("R10k"), Units::pixels, 4, kLowest2Off, kLowest2Off},
    {kCode("r210"), Units::pixels, 4, kBits7And6Off, kBits7And6Off},
    {32, Units::pixels, 4, kAllButFirst, kAll},
    {kCode("ABGR"), Units::pixels, 4, kAllButFirst, kAll},
    {kCode("RGBA"), Units::pixels, 4, kAllButLast, kAll},
    {kCode("BGRA"), Units::pixels, 4, kAllButLast, kAll},
    {24, Units::pixels, 3, kAll, kAll},
    {kCode("24BG"), Units::pixels, 3, kAll, kAll},
    {kCode("v410"), Units::pixels, 4, kLowest2Off, kLowest2Off},
    {kCode("v408"), Units::pixels, 4, kAllButLast, kAll},
    {kCode("VUYA"), Units::pixels, 4, kAllButLast, kAll},
    {kCode("r408"), Units::pixels, 4, kAllButFirst, kAll},
    {kCode("v210"), Units::groupWords, 4, kTriple10, kTriple10},
    {kCode("v216"), Units::wholePairs, 8, kAll, kAll},
    {kCode("Y216"), Units::wholePairs, 8, kAll, kAll},
    {kCode("2vuy"), Units::pairs, 4, kAll, kAll},
    {kCode("yuvs"), Units::pairs, 4, kAll, kAll},
    {kCode("yuvu"), Units::pairs, 4, kAll, kAll},
};

constexpr bool MasksRepeatOverTheRow() {
  for (const ComparedRow& row : kRows) {
    const bool plain = row.withoutAlpha == kAll && row.withAlpha == kAll;
    if (!plain && 8 % row.unitBytes != 0) return false;
  }
  return true;
}

static_assert(MasksRepeatOverTheRow());

// What is compared of the word that ends a part group, by the number of words in it: Y'1 of one pair, Cr1 and
// Y'3 of two pairs. A part group never has one word.
constexpr u32 kGroupEnd[4] = {0, 0, 0x000003FF, 0x000FFFFF};

constexpr std::size_t GroupWords(std::size_t wholePairs) {
  return (wholePairs * 4 + 2) / 3;
}

static_assert(GroupWords(0) == 0 && GroupWords(1) == 2 && GroupWords(2) == 3 && GroupWords(3) == 4);

std::size_t UnitCount(Units units, std::size_t width) {
  switch (units) {
    case Units::pixels:
      return width;
    case Units::pairs:
      return width / 2 + width % 2;
    case Units::wholePairs:
      return width / 2;
    case Units::groupWords:
      return GroupWords(width / 2);
  }
  return 0;
}

// A row as bytes under the repeated mask, and for part groups one more word under a mask of its own.
struct RowShape {
  std::size_t maskedBytes;
  u64 mask;
  u32 endMask;  // 0: there is no such word
};

RowShape ShapeOfRow(const ComparedRow& row, bool hasAlpha, u32 width) {
  const std::size_t units = UnitCount(row.units, width);
  const u64 mask = hasAlpha ? row.withAlpha : row.withoutAlpha;
  const u32 endMask = row.units == Units::groupWords ? kGroupEnd[units % 4] : 0;
  return {(endMask == 0 ? units : units - 1) * row.unitBytes, mask, endMask};
}

bool RowsDiffer(const u8* source, const u8* copy, const RowShape& shape) {
  u64 difference = 0;
  std::size_t i = 0;
  for (; i + 8 <= shape.maskedBytes; i += 8) {
    difference |= LoadNative<u64>(source + i) ^ LoadNative<u64>(copy + i);
  }
  u64 sourceEnd = 0;
  u64 copyEnd = 0;
  std::memcpy(&sourceEnd, source + i, shape.maskedBytes - i);
  std::memcpy(&copyEnd, copy + i, shape.maskedBytes - i);
  difference |= sourceEnd ^ copyEnd;
  if ((difference & shape.mask) != 0) return true;
  if (shape.endMask == 0) return false;
  const u32 word = LoadLittle32(source + shape.maskedBytes) ^ LoadLittle32(copy + shape.maskedBytes);
  return (word & shape.endMask) != 0;
}

const ComparedRow* FindRow(u32 code) {
  for (const ComparedRow& row : kRows) {
    if (row.code == code) return &row;
  }
  return nullptr;
}

}  // namespace
}  // namespace vorel

extern "C" VorelStatus VorelComparePictures(uint32_t pixelFormat, int hasAlpha, uint32_t flags,
                                            uint32_t width, uint32_t height, int32_t rowBytes,
                                            const void* source, const void* copy) {
  const bool littleEndian = (flags & VOREL_LITTLE_ENDIAN_B64A) != 0;
  const bool servedAsL64A = pixelFormat == vorel::kCode("b64a") && littleEndian;
  const vorel::ComparedRow* row = vorel::FindRow(servedAsL64A ? vorel::kCode("L64A") : pixelFormat);
  if (row == nullptr) return VOREL_NO_ROUTINE;
  const vorel::RowShape shape = vorel::ShapeOfRow(*row, hasAlpha != 0, width);
  // Either sign of the row bytes makes the same rows, and their order is of no account here: from the lowest.
  const std::size_t distance =
      rowBytes < 0 ? std::size_t{0} - static_cast<std::size_t>(rowBytes) : static_cast<std::size_t>(rowBytes);
  for (std::size_t line = 0; line < height; ++line) {
    const std::size_t offset = line * distance;
    if (vorel::RowsDiffer(static_cast<const vorel::u8*>(source) + offset,
                          static_cast<const vorel::u8*>(copy) + offset, shape)) {
      return VOREL_PICTURES_DIFFER;
    }
  }
  return VOREL_COMPLETE;
}
