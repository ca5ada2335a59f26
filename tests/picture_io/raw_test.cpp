// Raw pictures pass as they are.
#include "picture_io/raw.h"

#include <gtest/gtest.h>

#include "tests/picture_io/problem_text.h"
#include "vorel/pixel_formats.h"

namespace vorel::picture_io {

namespace {

const ClipFormat kOddClip = {kYuvu, 3, 1, {25, 1}, ScanOrder::progressive, {}};

ClipFormat ClipOf(u32 pixelFormat, u32 width, u32 height) {
  return {pixelFormat, width, height, {25, 1}, ScanOrder::progressive, {}};
}

std::vector<u8> Counted(std::size_t size) {
  std::vector<u8> bytes(size);
  for (std::size_t i = 0; i < size; ++i) bytes[i] = static_cast<u8>(i % 251 + 1);
  return bytes;
}

// The one picture of a file.
Picture PictureOf(const std::vector<u8>& bytes, const ClipFormat& format) {
  const PictureSource source = OpenRawSource(ByteInputOf(bytes, "a.raw"), format);
  StoredPicture stored;
  Picture picture;
  EXPECT_TRUE(source.fetch(stored));
  source.unpack(stored, picture);
  return picture;
}

std::vector<u8> FileOf(Picture picture) {
  std::vector<u8> written;
  const PictureSink sink = OpenRawSink(
      [&written](const u8* data, std::size_t size) { written.insert(written.end(), data, data + size); });
  StoredPicture packed;
  sink.pack(picture, packed);
  sink.store(packed);
  return written;
}

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

TEST(Raw, RowsWithoutGapsAreParted) {
  const std::vector<u8> file = Counted(9 * 2);  // two rows of three pixels
  const Picture picture = PictureOf(file, ClipOf(24, 3, 2));
  EXPECT_EQ(picture.rowBytes, 12u);
  EXPECT_EQ(picture.bytes.size(), 24u);
  for (std::size_t i = 0; i < 9; ++i) {
    EXPECT_EQ(picture.bytes[i], file[i]);
    EXPECT_EQ(picture.bytes[12 + i], file[9 + i]);
  }
  EXPECT_EQ(FileOf(picture), file);
}

TEST(Raw, RowsOfV210AreFilledUpWithZeros) {
  std::vector<u8> file = Counted(2 * 256);  // two rows of 50 pixels: 136 bytes of 256
  const Picture picture = PictureOf(file, ClipOf(kV210, 50, 2));
  EXPECT_EQ(picture.rowBytes, 256u);
  for (const std::size_t start : {0u, 256u}) {
    for (std::size_t i = 136; i < 256; ++i) file[start + i] = 0;
  }
  EXPECT_EQ(FileOf(picture), file);
}

TEST(Raw, EveryPixelFormatComesBackAtEveryWidth) {
  std::size_t count = 0;
  const VorelPixelFormatInfo* const formats = VorelPixelFormatList(&count);
  for (std::size_t i = 0; i < count; ++i) {
    for (u32 width = 1; width <= 13; ++width) {
      const ClipFormat format = ClipOf(formats[i].code, width, 3);
      std::vector<u8> file = Counted(RawPictureBytes(format));
      const Picture picture = PictureOf(file, format);
      EXPECT_EQ(picture.rowBytes % 4, 0u);
      EXPECT_GE(picture.rowBytes, VorelRowBytes(format.pixelFormat, width));
      EXPECT_EQ(picture.bytes.size(), 3 * picture.rowBytes);
      const std::size_t pixelBytes = VorelRowBytes(format.pixelFormat, width);
      for (std::size_t at = 0; at < file.size(); ++at) {
        if (at % (file.size() / 3) >= pixelBytes) file[at] = 0;
      }
      EXPECT_EQ(FileOf(picture), file) << formats[i].name << " " << width;
    }
  }
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
