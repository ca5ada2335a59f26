// Planes to rows and back, against bytes written by hand and against a sample-by-sample reading of the
// layout.
#include "picture_io/planar_yuvu.h"

#include <gtest/gtest.h>

#include <vector>

#include "picture_io/clip_format.h"

namespace vorel::picture_io {

namespace {

std::vector<u8> Noise(std::size_t size) {
  std::vector<u8> bytes(size);
  u32 state = 12345;
  for (u8& byte : bytes) {
    state = state * 1664525 + 1013904223;
    byte = static_cast<u8>(state >> 24);
  }
  return bytes;
}

}  // namespace

TEST(PlanarYuvu, TwoRowsOfThreePixelsByHand) {
  const std::vector<u8> planes = {1,    2,    3,    4,    5, 6,          // Y'
                                  0x80, 0x81, 0x00, 0xFF,                // Cb
                                  0x7F, 0x10, 0x90, 0xC0};               // Cr
  const std::vector<u8> expected = {1, 0x00, 2, 0xFF, 3, 0x01, 3, 0x90,  // last Y' twice
                                    4, 0x80, 5, 0x10, 6, 0x7F, 6, 0x40};
  std::vector<u8> rows(expected.size());
  YuvuFromPlanes(planes.data(), 3, 2, rows.data());
  EXPECT_EQ(rows, expected);
}

TEST(PlanarYuvu, SecondHalfOfAnOddPairIsDropped) {
  const std::vector<u8> rows = {9, 0x00, 200, 0x01};
  std::vector<u8> planes(PlanarBytes(1, 1));
  PlanesFromYuvu(rows.data(), 1, 1, planes.data());
  EXPECT_EQ(planes, (std::vector<u8>{9, 0x80, 0x81}));
}

TEST(PlanarYuvu, EveryWidthPutsEverySampleInItsPlace) {
  for (u32 width = 1; width <= 131; ++width) {
    const u32 height = 3;
    const std::vector<u8> planes = Noise(PlanarBytes(width, height));
    const std::size_t chromaWidth = (width + 1) / 2;
    std::vector<u8> rows(YuvuRowBytes(width) * height);
    YuvuFromPlanes(planes.data(), width, height, rows.data());
    for (u32 row = 0; row < height; ++row) {
      for (u32 pixel = 0; pixel < width; ++pixel) {
        const u8* const pair = &rows[row * YuvuRowBytes(width) + pixel / 2 * 4];
        const std::size_t chroma = width * height + row * chromaWidth + pixel / 2;
        ASSERT_EQ(pair[pixel % 2 * 2], planes[row * width + pixel]) << width;
        ASSERT_EQ(static_cast<signed char>(pair[1]), planes[chroma] - 128) << width;
        ASSERT_EQ(static_cast<signed char>(pair[3]), planes[chroma + chromaWidth * height] - 128) << width;
      }
    }
    std::vector<u8> back(planes.size());
    PlanesFromYuvu(rows.data(), width, height, back.data());
    ASSERT_EQ(back, planes) << width;
  }
}

TEST(PlanarYuvu, NothingIsWrittenBesideThePicture) {
  const u32 width = 65;
  const u32 height = 2;
  const std::vector<u8> planes = Noise(PlanarBytes(width, height));
  std::vector<u8> rows(YuvuRowBytes(width) * height + 8, 0xA5);
  YuvuFromPlanes(planes.data(), width, height, rows.data() + 4);
  std::vector<u8> back(planes.size() + 8, 0xA5);
  PlanesFromYuvu(rows.data() + 4, width, height, back.data() + 4);
  for (std::size_t i = 0; i < 4; ++i) {
    EXPECT_EQ(rows[i], 0xA5);
    EXPECT_EQ(rows[rows.size() - 1 - i], 0xA5);
    EXPECT_EQ(back[i], 0xA5);
    EXPECT_EQ(back[back.size() - 1 - i], 0xA5);
  }
}

TEST(PlanarBytes, LargestPictureDoesNotOverflow) {
  EXPECT_EQ(PlanarBytes(32767, 32767), std::size_t{2147385345});
}

}  // namespace vorel::picture_io
