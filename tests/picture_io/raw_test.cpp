// Raw pictures pass as they are.
#include "picture_io/raw.h"

#include <gtest/gtest.h>

#include "tests/picture_io/problem_text.h"

namespace vorel::picture_io {

namespace {

const ClipFormat kOddClip = {kYuvu, 3, 1, {25, 1}, ScanOrder::progressive, {}};

}  // namespace

TEST(Raw, PicturesComeAndGoBitForBitWithTheirPadding) {
  const std::vector<u8> bytes = {1, 2, 3, 4, 5, 6, 77, 8, 11, 12, 13, 14, 15, 16, 78, 18};
  const PictureSource source = OpenRawSource(ByteInputOf(bytes, "a.yuv"), kOddClip);
  EXPECT_TRUE(source.keepsPadding);
  EXPECT_EQ(source.format, kOddClip);
  std::vector<u8> written;
  const PictureSink sink = OpenRawSink(
      [&written](const u8* data, std::size_t size) { written.insert(written.end(), data, data + size); });
  StoredPicture stored;
  Picture picture;
  int pictures = 0;
  while (source.fetch(stored)) {
    source.unpack(stored, picture);
    EXPECT_EQ(picture.rowBytes, 8u);
    EXPECT_EQ(picture.bytes[6], 77 + pictures);
    ++pictures;
    StoredPicture packed;
    sink.pack(picture, packed);
    sink.store(packed);
  }
  EXPECT_EQ(pictures, 2);
  EXPECT_EQ(written, bytes);
}

TEST(Raw, CutPictureIsNamedWithBytesExpectedAndFound) {
  const PictureSource source = OpenRawSource(ByteInputOf(std::vector<u8>(13), "a.yuv"), kOddClip);
  StoredPicture stored;
  EXPECT_TRUE(source.fetch(stored));
  EXPECT_EQ(ProblemText([&] { source.fetch(stored); }),
            "a.yuv: frame 1 at byte 8: the input ends within a picture: 8 bytes expected, 5 found "
            "(--size or --pixel-format is not that of its pictures, or the input is not complete)");
}

TEST(Raw, EmptyInputHasNoPictures) {
  const PictureSource source = OpenRawSource(ByteInputOf({}, "a.yuv"), kOddClip);
  StoredPicture stored;
  EXPECT_FALSE(source.fetch(stored));
}

}  // namespace vorel::picture_io
