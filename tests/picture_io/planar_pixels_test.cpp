// Planes of 4:4:4 to rows and back, sample by sample, against what stands where in a pixel.
#include "picture_io/planar_pixels.h"

#include <gtest/gtest.h>

#include <vector>

namespace vorel::picture_io {

namespace {

constexpr u32 kHeight = 3;

// Samples of any value that planes may hold.
std::vector<u8> Noise(bool isDeep, std::size_t size) {
  std::vector<u8> bytes(size);
  u32 state = 54321;
  for (std::size_t i = 0; i < size; ++i) {
    state = state * 1664525 + 1013904223;
    bytes[i] = static_cast<u8>(isDeep && i % 2 != 0 ? state >> 30 : state >> 24);
  }
  return bytes;
}

ClipFormat ClipOf(u32 pixelFormat, u32 width, bool isOpaque) {
  return {pixelFormat, width, kHeight, {}, ScanOrder::unknown, {}, isOpaque};
}

// Rows with four bytes of another kind before and behind them, made from planes.
std::vector<u8> GuardedRows(const ClipFormat& format, const std::vector<u8>& planes) {
  std::vector<u8> rows(std::size_t{format.width} * 4 * kHeight + 8, 0xA5);
  RowsFromPlanes(format, planes.data(), rows.data() + 4);
  return rows;
}

std::vector<u8> GuardedPlanes(const ClipFormat& format, const std::vector<u8>& rows) {
  std::vector<u8> planes(PlanarBytes(PlanesOf(format), format.width, kHeight) + 8, 0xA5);
  PlanesFromRows(format, rows.data() + 4, planes.data() + 4);
  return planes;
}

// Takes the guards away, once they are seen to be whole.
std::vector<u8> Inside(const std::vector<u8>& guarded) {
  for (std::size_t i = 0; i < 4; ++i) {
    EXPECT_EQ(guarded[i], 0xA5);
    EXPECT_EQ(guarded[guarded.size() - 1 - i], 0xA5);
  }
  return {guarded.begin() + 4, guarded.end() - 4};
}

}  // namespace

TEST(PlanarPixels, EveryWidthPutsEveryByteInItsPlace) {
  for (const bool isOpaque : {true, false}) {
    for (u32 width = 1; width <= 70; ++width) {
      const ClipFormat format = ClipOf(kV408, width, isOpaque);
      const std::size_t pixels = std::size_t{width} * kHeight;
      const std::vector<u8> planes = Noise(false, pixels * (isOpaque ? 3 : 4));
      const std::vector<u8> rows = Inside(GuardedRows(format, planes));
      for (std::size_t i = 0; i < pixels; ++i) {
        ASSERT_EQ(rows.at(4 * i), planes.at(pixels + i)) << width;
        ASSERT_EQ(rows.at(4 * i + 1), planes.at(i)) << width;
        ASSERT_EQ(rows.at(4 * i + 2), planes.at(2 * pixels + i)) << width;
        ASSERT_EQ(rows.at(4 * i + 3), isOpaque ? 235 : planes.at(3 * pixels + i)) << width;
      }
      ASSERT_EQ(Inside(GuardedPlanes(format, GuardedRows(format, planes))), planes) << width;
    }
  }
}

TEST(PlanarPixels, EveryWidthPutsEveryTenBitsInTheirPlace) {
  for (u32 width = 1; width <= 70; ++width) {
    const ClipFormat format = ClipOf(kV410, width, false);
    const std::size_t pixels = std::size_t{width} * kHeight;
    const std::vector<u8> planes = Noise(true, pixels * 6);
    const std::vector<u8> rows = Inside(GuardedRows(format, planes));
    const auto sampleAt = [&planes, pixels](std::size_t plane, std::size_t i) {
      const std::size_t at = 2 * (plane * pixels + i);
      return u64{planes.at(at)} + 256 * planes.at(at + 1);
    };
    for (std::size_t i = 0; i < pixels; ++i) {
      u64 word = 0;
      for (std::size_t byte = 4; byte > 0; --byte) word = word * 256 + rows.at(4 * i + byte - 1);
      ASSERT_EQ(word, sampleAt(2, i) * 4194304 + sampleAt(0, i) * 4096 + sampleAt(1, i) * 4) << width;
    }
    ASSERT_EQ(Inside(GuardedPlanes(format, GuardedRows(format, planes))), planes) << width;
  }
}

TEST(PlanarPixels, AlphaOfAnOpaqueClipIsNotLookedAt) {
  const ClipFormat format = {kV408, 1, 1, {}, ScanOrder::unknown, {}, true};
  const std::vector<u8> row = {4, 1, 7, 99};
  std::vector<u8> planes(PlanarBytes(PlanesOf(format), 1, 1));
  PlanesFromRows(format, row.data(), planes.data());
  EXPECT_EQ(planes, (std::vector<u8>{1, 4, 7}));
}

TEST(PlanarPixels, LowestBitsOfAWordAreDropped) {
  const ClipFormat format = {kV410, 1, 1, {}, ScanOrder::unknown, {}};
  const std::vector<u8> row = {0xFF, 0x1F, 0x00, 0x80};
  std::vector<u8> planes(6);
  PlanesFromRows(format, row.data(), planes.data());
  EXPECT_EQ(planes, (std::vector<u8>{1, 0, 0xFF, 3, 0, 2}));
}

TEST(PlanarPixels, LargestPictureDoesNotOverflow) {
  EXPECT_EQ(PlanarBytes(PlanesOf({kV408, 32767, 32767, {}, ScanOrder::unknown, {}}), 32767, 32767),
            std::size_t{4294705156});
  EXPECT_EQ(PlanarBytes(PlanesOf({kV410, 32767, 32767, {}, ScanOrder::unknown, {}}), 32767, 32767),
            std::size_t{6442057734});
}

}  // namespace vorel::picture_io
