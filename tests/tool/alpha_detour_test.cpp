// Which frames take the detour, and where pixels are afterwards.
#include "tool/alpha_detour.h"

#include <gtest/gtest.h>

#include "base/bytes.h"
#include "picture_io/picture_file.h"

namespace vorel::tool {

using picture_io::kArgb16;
using picture_io::kRgb16;

TEST(AlphaDetour, IsTakenByFramesThatDoNotComeAsWordsWithoutAlpha) {
  EXPECT_EQ(DecodedFormatFor(WordOfBytes("RGBX"), kRgb16), kRgb16);
  EXPECT_EQ(DecodedFormatFor(WordOfBytes("ARGB"), kRgb16), kRgb16);
  EXPECT_EQ(DecodedFormatFor(WordOfBytes("\xA2YRY"), kRgb16), kArgb16);
  EXPECT_EQ(DecodedFormatFor(WordOfBytes("CA4p"), kRgb16), kArgb16);
  EXPECT_EQ(DecodedFormatFor(WordOfBytes("\xA2YRY"), 24), 24u);
  EXPECT_EQ(DecodedFormatFor(0, kRgb16), kRgb16);
}

TEST(AlphaDetour, OnlyWideRangeFramesComeAsNoRgb) {
  EXPECT_TRUE(ComesAs(WordOfBytes("BYRy"), kRgb16));
  EXPECT_TRUE(ComesAs(WordOfBytes("AYbR"), 24));
  EXPECT_FALSE(ComesAs(WordOfBytes("YbYr"), 24));
  EXPECT_FALSE(ComesAs(WordOfBytes("YbYr"), kRgb16));
}

TEST(AlphaDetour, ColoursOfEveryPixelMoveTogether) {
  picture_io::Picture picture;
  picture_io::ClipFormat format;
  format.pixelFormat = kArgb16;
  format.width = 3;
  format.height = 2;
  ShapePicture(format, picture);
  ASSERT_EQ(picture.rowBytes, 24u);
  for (std::size_t i = 0; i < picture.bytes.size(); ++i) picture.bytes[i] = static_cast<u8>(i);
  LeaveOutAlpha(picture);
  EXPECT_EQ(picture.pixelFormat, kRgb16);
  EXPECT_EQ(picture.rowBytes, 20u);  // 18 bytes and 2 that fill up
  ASSERT_EQ(picture.bytes.size(), 40u);
  for (std::size_t row = 0; row < 2; ++row) {
    for (std::size_t i = 0; i < 18; ++i) {
      EXPECT_EQ(picture.bytes[20 * row + i], 24 * row + 8 * (i / 6) + 2 + i % 6);
    }
  }
}

}  // namespace vorel::tool
