// The comparison of a picture with its copy. Every bit of small pictures is turned over alone; which of them
// matter is typed in here as bytes of memory, apart from the table of the comparison.
#include <gtest/gtest.h>

#include <cstdlib>
#include <vector>

#include "base/bytes.h"
#include "tests/core/guarded.h"
#include "vorel/pixel_formats.h"

namespace vorel {
namespace {

constexpr u32 kCode(const char (&text)[5]) {
  return FourCharacterCode(text);
}

using Bytes = std::vector<u8>;

enum class Counted { pixels, pairs, wholePairs };

struct MaskCase {
  const char* name;
  u32 code;
  int hasAlpha;
  u32 flags;
  Counted counted;
  Bytes mask;  // of a pixel or a pair, in memory order
};

constexpr u8 kFF = 0xFF;

const std::vector<MaskCase>& MaskCases() {
  static const std::vector<MaskCase> kCases = {
      {"b64a with alpha", kCode("b64a"), 1, 0, Counted::pixels, {kFF, kFF, kFF, kFF, kFF, kFF, kFF, kFF}},
      {"b64a with alpha, swapped",
       kCode("b64a"),
       1,
       4,
       Counted::pixels,
       {kFF, kFF, kFF, kFF, kFF, kFF, kFF, kFF}},
      {"b64a", kCode("b64a"), 0, 0, Counted::pixels, {0, 0, kFF, kFF, kFF, kFF, kFF, kFF}},
      {"b64a, flags but bit 2", kCode("b64a"), 0, ~4u, Counted::pixels, {0, 0, kFF, kFF, kFF, kFF, kFF, kFF}},
      {"b64a, swapped", kCode("b64a"), 0, 4, Counted::pixels, {kFF, kFF, kFF, kFF, kFF, kFF, 0, 0}},
      {"b64a, all flags", kCode("b64a"), 0, ~0u, Counted::pixels, {kFF, kFF, kFF, kFF, kFF, kFF, 0, 0}},
      {"L64A with alpha", kCode("L64A"), 1, 0, Counted::pixels, {kFF, kFF, kFF, kFF, kFF, kFF, kFF, kFF}},
      {"L64A", kCode("L64A"), 0, 0, Counted::pixels, {kFF, kFF, kFF, kFF, kFF, kFF, 0, 0}},
      {"L64A, flag", kCode("L64A"), 0, 4, Counted::pixels, {kFF, kFF, kFF, kFF, kFF, kFF, 0, 0}},
      {"b48r", kCode("b48r"), 0, 0, Counted::pixels, {kFF, kFF, kFF, kFF, kFF, kFF}},
      {"b48r with alpha", kCode("b48r"), 1, 4, Counted::pixels, {kFF, kFF, kFF, kFF, kFF, kFF}},
      // R stands in byte 0 and the top of byte 1; its bits 3 and 2 (bits 1 and 0 of byte 0) go unchecked.
      {"R10k", kCode("R10k"), 0, 0, Counted::pixels, {0xFC, kFF, kFF, kFF}},
      {"R10k with alpha", kCode("R10k"), 1, 4, Counted::pixels, {0xFC, kFF, kFF, kFF}},
      {"r210", kCode("r210"), 0, 0, Counted::pixels, {0x3F, kFF, kFF, kFF}},
      {"r210 with alpha", kCode("r210"), 1, 4, Counted::pixels, {0x3F, kFF, kFF, kFF}},
      {"32 with alpha", 32, 1, 0, Counted::pixels, {kFF, kFF, kFF, kFF}},
      {"32", 32, 0, 0, Counted::pixels, {0, kFF, kFF, kFF}},
      {"32, flag", 32, 0, 4, Counted::pixels, {0, kFF, kFF, kFF}},
      {"ABGR with alpha", kCode("ABGR"), 1, 0, Counted::pixels, {kFF, kFF, kFF, kFF}},
      {"ABGR", kCode("ABGR"), 0, 0, Counted::pixels, {0, kFF, kFF, kFF}},
      {"RGBA with alpha", kCode("RGBA"), 1, 0, Counted::pixels, {kFF, kFF, kFF, kFF}},
      {"RGBA", kCode("RGBA"), 0, 0, Counted::pixels, {kFF, kFF, kFF, 0}},
      {"BGRA with alpha", kCode("BGRA"), 1, 0, Counted::pixels, {kFF, kFF, kFF, kFF}},
      {"BGRA", kCode("BGRA"), 0, 0, Counted::pixels, {kFF, kFF, kFF, 0}},
      {"24", 24, 0, 0, Counted::pixels, {kFF, kFF, kFF}},
      {"24 with alpha", 24, 1, 4, Counted::pixels, {kFF, kFF, kFF}},
      {"24BG", kCode("24BG"), 0, 0, Counted::pixels, {kFF, kFF, kFF}},
      {"24BG with alpha", kCode("24BG"), 1, 4, Counted::pixels, {kFF, kFF, kFF}},
      {"v410", kCode("v410"), 0, 0, Counted::pixels, {0xFC, kFF, kFF, kFF}},
      {"v410 with alpha", kCode("v410"), 1, 4, Counted::pixels, {0xFC, kFF, kFF, kFF}},
      {"v408 with alpha", kCode("v408"), 1, 0, Counted::pixels, {kFF, kFF, kFF, kFF}},
      {"v408", kCode("v408"), 0, 0, Counted::pixels, {kFF, kFF, kFF, 0}},
      {"VUYA with alpha", kCode("VUYA"), 1, 0, Counted::pixels, {kFF, kFF, kFF, kFF}},
      {"VUYA", kCode("VUYA"), 0, 0, Counted::pixels, {kFF, kFF, kFF, 0}},
      {"r408 with alpha", kCode("r408"), 1, 0, Counted::pixels, {kFF, kFF, kFF, kFF}},
      {"r408", kCode("r408"), 0, 0, Counted::pixels, {0, kFF, kFF, kFF}},
      {"v216", kCode("v216"), 0, 0, Counted::wholePairs, {kFF, kFF, kFF, kFF, kFF, kFF, kFF, kFF}},
      {"v216 with alpha", kCode("v216"), 1, 4, Counted::wholePairs, {kFF, kFF, kFF, kFF, kFF, kFF, kFF, kFF}},
      {"Y216", kCode("Y216"), 0, 0, Counted::wholePairs, {kFF, kFF, kFF, kFF, kFF, kFF, kFF, kFF}},
      {"Y216 with alpha", kCode("Y216"), 1, 4, Counted::wholePairs, {kFF, kFF, kFF, kFF, kFF, kFF, kFF, kFF}},
      {"2vuy", kCode("2vuy"), 0, 0, Counted::pairs, {kFF, kFF, kFF, kFF}},
      {"2vuy with alpha", kCode("2vuy"), 1, 4, Counted::pairs, {kFF, kFF, kFF, kFF}},
      {"yuvs", kCode("yuvs"), 0, 0, Counted::pairs, {kFF, kFF, kFF, kFF}},
      {"yuvs with alpha", kCode("yuvs"), 1, 4, Counted::pairs, {kFF, kFF, kFF, kFF}},
      {"yuvu", kCode("yuvu"), 0, 0, Counted::pairs, {kFF, kFF, kFF, kFF}},
      {"yuvu with alpha", kCode("yuvu"), 1, 4, Counted::pairs, {kFF, kFF, kFF, kFF}},
  };
  return kCases;
}

std::size_t ComparedBytes(const MaskCase& format, u32 width) {
  std::size_t units = width;
  if (format.counted == Counted::pairs) units = (width + 1) / 2;
  if (format.counted == Counted::wholePairs) units = width / 2;
  return units * format.mask.size();
}

// Bits of a row of `rowLength` bytes that matter.
Bytes MaskOfRow(const MaskCase& format, u32 width, std::size_t rowLength) {
  Bytes mask(rowLength, 0);
  for (std::size_t i = 0; i < ComparedBytes(format, width); ++i)
    mask[i] = format.mask[i % format.mask.size()];
  return mask;
}

// Words of memory, lowest byte first.
Bytes MaskOfWords(const std::vector<u32>& words, std::size_t rowLength) {
  Bytes mask;
  for (const u32 word : words) {
    for (int shift = 0; shift < 32; shift += 8) mask.push_back(static_cast<u8>(word >> shift));
  }
  mask.resize(rowLength, 0);
  return mask;
}

struct Call {
  u32 code;
  int hasAlpha;
  u32 flags;
  u32 width;
  u32 height;
  i32 rowBytes;
};

VorelStatus Compare(const Call& call, const Bytes& source, const Bytes& copy) {
  return VorelComparePictures(call.code, call.hasAlpha, call.flags, call.width, call.height, call.rowBytes,
                              source.data(), copy.data());
}

// Every row has the same mask, so either order of rows gives the same picture of what matters.
void ExpectEachBitMattersAsMasked(const Call& call, const Bytes& rowMask) {
  const std::size_t rowLength = static_cast<std::size_t>(std::abs(call.rowBytes));
  ASSERT_EQ(rowMask.size(), rowLength);
  Bytes source(rowLength * call.height);
  u32 state = 12345 + call.width;
  for (u8& byte : source) byte = static_cast<u8>((state = state * 1664525 + 1013904223) >> 24);
  Bytes copy = source;
  ASSERT_EQ(Compare(call, source, copy), 0u);
  for (std::size_t i = 0; i < source.size(); ++i) {
    for (u32 bit = 0; bit < 8; ++bit) {
      const u8 flip = static_cast<u8>(1u << bit);
      const u32 expected = (rowMask[i % rowLength] & flip) != 0 ? 6 : 0;
      copy[i] ^= flip;
      ASSERT_EQ(Compare(call, source, copy), expected) << "byte " << i << " bit " << bit;
      copy[i] ^= flip;
    }
  }
  // All that does not matter, at once.
  for (std::size_t i = 0; i < source.size(); ++i) copy[i] ^= static_cast<u8>(~rowMask[i % rowLength]);
  EXPECT_EQ(Compare(call, source, copy), 0u);
}

TEST(ComparePictures, ExactlyTheMaskedBitsMatter) {
  for (const MaskCase& format : MaskCases()) {
    for (const u32 width : {1u, 2u, 3u, 4u, 5u, 8u, 9u}) {
      for (const u32 height : {1u, 2u, 3u}) {
        for (const i32 sign : {1, -1}) {
          const i32 rowBytes = sign * 80;
          SCOPED_TRACE(testing::Message()
                       << format.name << ", " << width << " x " << height << ", " << rowBytes);
          ExpectEachBitMattersAsMasked({format.code, format.hasAlpha, format.flags, width, height, rowBytes},
                                       MaskOfRow(format, width, 80));
        }
      }
    }
  }
}

// Which words of a row of v210 matter, by the number of whole pairs. Behind whole groups one pair makes two
// words and two pairs three: no number of pairs leaves a single word.
TEST(ComparePictures, V210ComparesTheWordsOfWholePairs) {
  constexpr u32 all = 0x3FFFFFFF;
  constexpr u32 one = 0x000003FF;  // Y'1
  constexpr u32 two = 0x000FFFFF;  // Cr1 and Y'3
  const std::vector<std::vector<u32>> wordsByPairs = {
      {},
      {all, one},
      {all, all, two},
      {all, all, all, all},
      {all, all, all, all, all, one},
      {all, all, all, all, all, all, two},
      {all, all, all, all, all, all, all, all},
      {all, all, all, all, all, all, all, all, all, one},
  };
  for (u32 width = 1; width <= 15; ++width) {
    for (const u32 height : {1u, 3u}) {
      for (const i32 rowBytes : {48, -48}) {
        for (const int hasAlpha : {0, 1}) {
          SCOPED_TRACE(testing::Message() << width << " x " << height << ", " << rowBytes);
          ExpectEachBitMattersAsMasked({kCode("v210"), hasAlpha, 0, width, height, rowBytes},
                                       MaskOfWords(wordsByPairs[width / 2], 48));
        }
      }
    }
  }
}

TEST(ComparePictures, V210OfOnePixelComparesNothing) {
  const Bytes source(8, 0x11);
  const Bytes copy(8, 0xEE);
  EXPECT_EQ(Compare({kCode("v210"), 0, 0, 1, 1, 8}, source, copy), 0u);
}

TEST(ComparePictures, TheLastPixelOfAnOddWidthCountsIn8BitPairsOnly) {
  const Bytes source(16, 0);
  Bytes copy(16, 0);
  copy[4] = 1;  // a sample of the second of two 8-bit pairs
  for (const u32 code : {kCode("2vuy"), kCode("yuvs"), kCode("yuvu")})
    EXPECT_EQ(Compare({code, 0, 0, 3, 1, 16}, source, copy), 6u);
  copy[4] = 0;
  copy[8] = 1;  // and of the second of two 16-bit pairs
  for (const u32 code : {kCode("v216"), kCode("Y216")}) {
    EXPECT_EQ(Compare({code, 0, 0, 3, 1, 16}, source, copy), 0u);
    EXPECT_EQ(Compare({code, 0, 0, 4, 1, 16}, source, copy), 6u);
  }
}

TEST(ComparePictures, AnEmptyPictureHasNoDifference) {
  const Bytes source(64, 0);
  const Bytes copy(64, 0xFF);
  for (const MaskCase& format : MaskCases()) {
    EXPECT_EQ(Compare({format.code, format.hasAlpha, format.flags, 0, 1, 64}, source, copy), 0u)
        << format.name;
    EXPECT_EQ(Compare({format.code, format.hasAlpha, format.flags, 4, 0, 64}, source, copy), 0u)
        << format.name;
  }
  EXPECT_EQ(Compare({kCode("v210"), 0, 0, 0, 1, 64}, source, copy), 0u);
}

TEST(ComparePictures, FormatsWithoutAComparisonAreRefusedEvenIfPicturesAreTheSame) {
  const Bytes picture(64, 0x40);
  const Bytes other(64, 0x41);
  for (const u32 code : {kCode("A46L"), kCode("F10k"), kCode("S10k"), kCode("F210"), kCode("S210"),
                         kCode("VRGB"), kCode("V416"), kCode("L555"), kCode("L565"), kCode("V210"),
                         kCode("yuv2"), kCode("2Vuy"), kCode("2VUY"), 0u, 3u, 16u, 33u}) {
    for (const int hasAlpha : {0, 1}) {
      for (const u32 flags : {0u, 4u}) {
        EXPECT_EQ(Compare({code, hasAlpha, flags, 2, 1, 16}, picture, picture), 7u) << code;
        EXPECT_EQ(Compare({code, hasAlpha, flags, 2, 1, 16}, picture, other), 7u) << code;
        EXPECT_EQ(Compare({code, hasAlpha, flags, 0, 0, 16}, picture, other), 7u) << code;
      }
    }
  }
}

TEST(ComparePictures, AnyNumberButZeroKeepsAlpha) {
  const Bytes source = {0, 1, 2, 3};
  const Bytes copy = {9, 1, 2, 3};
  for (const int hasAlpha : {1, 2, -1, 256}) EXPECT_EQ(Compare({32, hasAlpha, 0, 1, 1, 4}, source, copy), 6u);
  EXPECT_EQ(Compare({32, 0, 0, 1, 1, 4}, source, copy), 0u);
}

// Rows as close as what is compared of them, and memory that ends with the last one.
TEST(ComparePictures, ReadsNothingBehindTheComparedPixels) {
  for (const MaskCase& format : MaskCases()) {
    for (const u32 width : {1u, 2u, 3u, 5u, 8u, 9u, 16u}) {
      const std::size_t length = ComparedBytes(format, width);
      const i32 rowBytes = static_cast<i32>(length);
      Fenced source(Bytes(2 * length, 0x5A));
      Fenced copy(Bytes(2 * length, 0x5A));
      for (const i32 distance : {rowBytes, -rowBytes}) {
        EXPECT_EQ(VorelComparePictures(format.code, format.hasAlpha, format.flags, width, 2, distance,
                                       source.data(), copy.data()),
                  0u)
            << format.name;
      }
    }
  }
  // Words of whole pairs, by width.
  const std::size_t words[] = {0, 0, 2, 2, 3, 3, 4, 4, 6, 6, 7, 7, 8, 8, 10};
  for (u32 width = 1; width < std::size(words); ++width) {
    const Bytes picture(words[width] * 4, 0x5A);
    Fenced source(picture);
    Fenced copy(picture);
    EXPECT_EQ(VorelComparePictures(kCode("v210"), 0, 0, width, 1, 64, source.data(), copy.data()), 0u)
        << width;
  }
}

// The first row of a bottom-up picture is the last one in memory; both lie inside the picture.
TEST(ComparePictures, FindsADifferenceInTheFirstAndInTheLastRowOfEitherDirection) {
  for (const i32 rowBytes : {8, -8}) {
    for (const std::size_t place : {0u, 24u}) {
      const Bytes source(32, 0);
      Bytes copy(32, 0);
      copy[place] = 1;
      EXPECT_EQ(Compare({24, 0, 0, 2, 4, rowBytes}, source, copy), 6u) << rowBytes << ' ' << place;
      EXPECT_EQ(Compare({24, 0, 0, 2, place == 0 ? 1u : 3u, rowBytes}, source, copy), place == 0 ? 6u : 0u);
    }
  }
}

TEST(ComparePictures, TakesPicturesAtAnyAddress) {
  Bytes source(41, 0x22);
  Bytes copy(41, 0x22);
  for (std::size_t shift = 1; shift < 8; ++shift) {
    const u8* moved = copy.data() + shift;
    EXPECT_EQ(VorelComparePictures(32, 1, 0, 2, 4, 8, source.data() + 1, moved), 0u);
    copy[shift + 31] = 0x23;
    EXPECT_EQ(VorelComparePictures(32, 1, 0, 2, 4, 8, source.data() + 1, moved), 6u);
    copy[shift + 31] = 0x22;
  }
}

}  // namespace
}  // namespace vorel
