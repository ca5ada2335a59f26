// Rows of pixels in memory and in files, against numbers worked out by hand.
#include "picture_io/row_geometry.h"

#include <gtest/gtest.h>

#include "picture_io/clip_format.h"

namespace vorel::picture_io {

namespace {

void ExpectRows(u32 pixelFormat, u32 width, u32 pixelBytes, u32 memoryBytes, u32 fileBytes) {
  const RowGeometry rows = RowsOf(pixelFormat, width);
  EXPECT_EQ(rows.pixelBytes, pixelBytes) << width;
  EXPECT_EQ(rows.memoryBytes, memoryBytes) << width;
  EXPECT_EQ(rows.fileBytes, fileBytes) << width;
}

}  // namespace

TEST(RowGeometry, PairsAreWhole) {
  ExpectRows(kYuvu, 1, 4, 4, 4);
  ExpectRows(k2vuy, 2, 4, 4, 4);
  ExpectRows(k2vuy, 3, 8, 8, 8);
  ExpectRows(kV216, 3, 16, 16, 16);
  ExpectRows(kYuvu, 32767, 65536, 65536, 65536);
}

TEST(RowGeometry, MemoryIsAlignedAndFilesHaveNoGaps) {
  ExpectRows(24, 1, 3, 4, 3);
  ExpectRows(24, 4, 12, 12, 12);
  ExpectRows(24, 640, 1920, 1920, 1920);
  ExpectRows(FourCharacterCode("b48r"), 3, 18, 20, 18);
  ExpectRows(FourCharacterCode("L565"), 3, 6, 8, 6);
  ExpectRows(FourCharacterCode("b64a"), 32767, 262136, 262136, 262136);
}

TEST(RowGeometry, RowsOfV210AreWholeBlocks) {
  ExpectRows(kV210, 1, 8, 128, 128);
  ExpectRows(kV210, 6, 16, 128, 128);
  ExpectRows(kV210, 48, 128, 128, 128);
  ExpectRows(kV210, 49, 136, 256, 256);
  ExpectRows(kV210, 1280, 3416, 3456, 3456);
  ExpectRows(kV210, 1920, 5120, 5120, 5120);
  ExpectRows(kV210, 32767, 87384, 87424, 87424);
}

TEST(RowGeometry, UnknownFormatsHaveNoRows) {
  ExpectRows(FourCharacterCode("abcd"), 100, 0, 0, 0);
}

}  // namespace vorel::picture_io
