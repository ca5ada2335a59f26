// Planes to rows and back, against bytes written by hand and against a sample-by-sample reading of the
// layout.
#include "picture_io/planar_pairs.h"

#include <gtest/gtest.h>

#include <vector>

namespace vorel::picture_io {

namespace {

constexpr u32 kAll[] = {kYuvu, k2vuy, kV216};

ClipFormat ClipOf(u32 pixelFormat, u32 width, u32 height) {
  return {pixelFormat, width, height, {}, ScanOrder::unknown, {}};
}

std::size_t BytesOfPlanes(u32 pixelFormat, u32 width, u32 height) {
  return PlanarBytes(PlanesOf(ClipOf(pixelFormat, width, height)), width, height);
}

// Samples of any value that planes of this format may hold.
std::vector<u8> Noise(u32 pixelFormat, std::size_t size) {
  std::vector<u8> bytes(size);
  u32 state = 12345;
  for (std::size_t i = 0; i < size; ++i) {
    state = state * 1664525 + 1013904223;
    const bool isHighByte = pixelFormat == kV216 && i % 2 != 0;
    bytes[i] = static_cast<u8>(isHighByte ? state >> 30 : state >> 24);
  }
  return bytes;
}

std::size_t SampleBytes(u32 pixelFormat) {
  return pixelFormat == kV216 ? 2 : 1;
}

std::vector<u8> RowsOfPlanes(u32 pixelFormat, const std::vector<u8>& planes, u32 width, u32 height) {
  std::vector<u8> rows(std::size_t{width + 1} / 2 * 4 * SampleBytes(pixelFormat) * height);
  RowsFromPlanes(ClipOf(pixelFormat, width, height), planes.data(), rows.data());
  return rows;
}

// The sample at a place of a plane or a row.
int SampleAt(const std::vector<u8>& bytes, std::size_t index, u32 pixelFormat) {
  if (SampleBytes(pixelFormat) == 1) return bytes.at(index);
  return bytes.at(2 * index) + 256 * bytes.at(2 * index + 1);
}

// What a plane's sample is, from what stands in a pair.
int Planar(u32 pixelFormat, int stored, bool isChroma) {
  if (pixelFormat == kV216) return stored / 64;
  if (pixelFormat == kYuvu && isChroma) return (stored < 128 ? stored : stored - 256) + 128;
  return stored;
}

}  // namespace

TEST(PlanarPairs, TwoRowsOfThreePixelsByHand) {
  const std::vector<u8> planes = {1,    2,    3,    4,    5, 6,  // Y'
                                  0x80, 0x81, 0x00, 0xFF,        // Cb
                                  0x7F, 0x10, 0x90, 0xC0};       // Cr
  EXPECT_EQ(RowsOfPlanes(kYuvu, planes, 3, 2),
            (std::vector<u8>{1, 0x00, 2, 0xFF, 3, 0x01, 3, 0x90,  // last Y' twice
                             4, 0x80, 5, 0x10, 6, 0x7F, 6, 0x40}));
  EXPECT_EQ(RowsOfPlanes(k2vuy, planes, 3, 2), (std::vector<u8>{0x80, 1, 0x7F, 2, 0x81, 3, 0x10, 3,  //
                                                                0x00, 4, 0x90, 5, 0xFF, 6, 0xC0, 6}));
}

TEST(PlanarPairs, WordsOfOnePixelByHand) {
  const std::vector<u8> planes = {0x01, 0x02, 0xFF, 0x03, 0x00, 0x00};  // Y' 0x201, Cb 1023, Cr 0
  const std::vector<u8> row = {0xC0, 0xFF, 0x40, 0x80, 0x00, 0x00, 0x40, 0x80};
  EXPECT_EQ(RowsOfPlanes(kV216, planes, 1, 1), row);
  std::vector<u8> back(BytesOfPlanes(kV216, 1, 1));
  PlanesFromRows(ClipOf(kV216, 1, 1), row.data(), back.data());
  EXPECT_EQ(back, planes);
}

TEST(PlanarPairs, LowerBitsOfWordsAreDropped) {
  const std::vector<u8> row = {0x3F, 0x00, 0x7F, 0x00, 0xFF, 0xFF, 0xBF, 0x80};
  std::vector<u8> planes(BytesOfPlanes(kV216, 2, 1));
  PlanesFromRows(ClipOf(kV216, 2, 1), row.data(), planes.data());
  EXPECT_EQ(planes, (std::vector<u8>{1, 0, 2, 2, 0, 0, 0xFF, 3}));
}

TEST(PlanarPairs, SecondHalfOfAnOddPairIsDropped) {
  const std::vector<u8> rows = {9, 0x00, 200, 0x01};
  std::vector<u8> planes(BytesOfPlanes(kYuvu, 1, 1));
  PlanesFromRows(ClipOf(kYuvu, 1, 1), rows.data(), planes.data());
  EXPECT_EQ(planes, (std::vector<u8>{9, 0x80, 0x81}));
}

TEST(PlanarPairs, EveryWidthPutsEverySampleInItsPlace) {
  for (const u32 format : kAll) {
    const std::size_t first = format == kYuvu ? 0 : 1;  // place of Y'0 in a pair
    for (u32 width = 1; width <= 131; ++width) {
      const u32 height = 3;
      const std::vector<u8> planes = Noise(format, BytesOfPlanes(format, width, height));
      const std::size_t chromaWidth = (width + 1) / 2;
      const std::vector<u8> rows = RowsOfPlanes(format, planes, width, height);
      for (u32 row = 0; row < height; ++row) {
        for (u32 pixel = 0; pixel < width; ++pixel) {
          const std::size_t pair = (row * chromaWidth + pixel / 2) * 4;
          const std::size_t cb = width * height + row * chromaWidth + pixel / 2;
          const std::size_t cr = cb + chromaWidth * height;
          const auto inPair = [&](std::size_t place, bool isChroma) {
            return Planar(format, SampleAt(rows, pair + place, format), isChroma);
          };
          ASSERT_EQ(inPair(first + pixel % 2 * 2, false), SampleAt(planes, row * width + pixel, format));
          ASSERT_EQ(inPair(1 - first, true), SampleAt(planes, cb, format)) << width;
          ASSERT_EQ(inPair(3 - first, true), SampleAt(planes, cr, format)) << width;
        }
      }
      std::vector<u8> back(planes.size());
      PlanesFromRows(ClipOf(format, width, height), rows.data(), back.data());
      ASSERT_EQ(back, planes) << width;
    }
  }
}

TEST(PlanarPairs, NothingIsWrittenBesideThePicture) {
  const u32 width = 65;
  const u32 height = 2;
  for (const u32 format : kAll) {
    const std::vector<u8> planes = Noise(format, BytesOfPlanes(format, width, height));
    std::vector<u8> rows(33 * 4 * SampleBytes(format) * height + 8, 0xA5);
    RowsFromPlanes(ClipOf(format, width, height), planes.data(), rows.data() + 4);
    std::vector<u8> back(planes.size() + 8, 0xA5);
    PlanesFromRows(ClipOf(format, width, height), rows.data() + 4, back.data() + 4);
    for (std::size_t i = 0; i < 4; ++i) {
      EXPECT_EQ(rows[i], 0xA5);
      EXPECT_EQ(rows[rows.size() - 1 - i], 0xA5);
      EXPECT_EQ(back[i], 0xA5);
      EXPECT_EQ(back[back.size() - 1 - i], 0xA5);
    }
  }
}

TEST(PlaneBits, OtherPixelFormatsHaveNoPlanes) {
  EXPECT_EQ(PlaneBits(kYuvu), 8u);
  EXPECT_EQ(PlaneBits(k2vuy), 8u);
  EXPECT_EQ(PlaneBits(kV216), 10u);
  EXPECT_EQ(PlaneBits(kV210), 0u);
  EXPECT_EQ(PlaneBits(32), 0u);
  EXPECT_EQ(BytesOfPlanes(kV210, 6, 1), 0u);
}

TEST(PlanarBytes, LargestPictureDoesNotOverflow) {
  EXPECT_EQ(BytesOfPlanes(k2vuy, 32767, 32767), std::size_t{2147385345});
  EXPECT_EQ(BytesOfPlanes(kV216, 32767, 32767), std::size_t{4294770690});
}

}  // namespace vorel::picture_io
