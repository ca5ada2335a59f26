// Streams against bytes written by hand: frames, their parameters, and every place where a stream can end too
// early.
#include "picture_io/y4m.h"

#include <gtest/gtest.h>

#include "tests/picture_io/problem_text.h"

namespace vorel::picture_io {

namespace {

const std::string kHeader = "YUV4MPEG2 W3 H1 F25:1 Ip A1:1 C422\n";
// Y' 1 2 3, Cb 128 129, Cr 127 0
const std::string kPlanes("\x01\x02\x03\x80\x81\x7f\x00", 7);
const std::vector<u8> kRow = {0x80, 1, 0x7F, 2, 0x81, 3, 0x00, 3};
const std::vector<u8> kRowOfYuvu = {1, 0x00, 2, 0xFF, 3, 0x01, 3, 0x80};

const std::string kHeader10 = "YUV4MPEG2 W3 H1 F25:1 Ip A1:1 C422p10\n";
// Y' 1 0x302 1023, Cb 512 513, Cr 511 0
const std::string kPlanes10("\x01\x00\x02\x03\xFF\x03\x00\x02\x01\x02\xFF\x01\x00\x00", 14);
const std::vector<u8> kRow10 = {0x00, 0x80, 0x40, 0x00, 0xC0, 0x7F, 0x80, 0xC0,
                                0x40, 0x80, 0xC0, 0xFF, 0x00, 0x00, 0xC0, 0xFF};

// Y' 1 2 3, Cb 4 5 6, Cr 7 8 255, A 235 16 0
const std::string kPlanes444("\x01\x02\x03\x04\x05\x06\x07\x08\xFF", 9);
const std::string kPlane444Alpha("\xEB\x10\x00", 3);
const std::string kHeader444 = "YUV4MPEG2 W3 H1 F25:1 Ip A1:1 C444\n";
const std::string kHeader444Alpha = "YUV4MPEG2 W3 H1 F25:1 Ip A1:1 C444alpha\n";
const std::vector<u8> kRow444 = {4, 1, 7, 0xEB, 5, 2, 8, 0xEB, 6, 3, 255, 0xEB};
const std::vector<u8> kRow444Alpha = {4, 1, 7, 0xEB, 5, 2, 8, 0x10, 6, 3, 255, 0};

const std::string kHeader444p10 = "YUV4MPEG2 W2 H1 F25:1 Ip A1:1 C444p10\n";
// Y' 1 0x302, Cb 1023 2, Cr 512 0
const std::string kPlanes444p10("\x01\x00\x02\x03\xFF\x03\x02\x00\x00\x02\x00\x00", 12);
// 0x80001FFC, 0x00302008
const std::vector<u8> kRow444p10 = {0xFC, 0x1F, 0x00, 0x80, 0x08, 0x20, 0x30, 0x00};

ByteInput InputOf(const std::string& text) {
  return ByteInputOf({text.begin(), text.end()}, "a.y4m");
}

// All pictures of a stream.
std::vector<std::vector<u8>> PicturesOf(const std::string& text, u32 eightBits = k2vuy) {
  const PictureSource source = OpenY4mSource(InputOf(text), eightBits);
  std::vector<std::vector<u8>> pictures;
  StoredPicture stored;
  Picture picture;
  while (source.fetch(stored)) {
    source.unpack(stored, picture);
    pictures.push_back(picture.bytes);
  }
  return pictures;
}

// The stream again, after reading and writing.
std::string WrittenAgain(const std::string& text, u32 eightBits = k2vuy) {
  const PictureSource source = OpenY4mSource(InputOf(text), eightBits);
  std::string written;
  const PictureSink sink = OpenY4mSink(source.format, [&written](const u8* bytes, std::size_t size) {
    written.append(reinterpret_cast<const char*>(bytes), size);
  });
  StoredPicture stored;
  StoredPicture packed;
  Picture picture;
  while (source.fetch(stored)) {
    source.unpack(stored, picture);
    sink.pack(picture, packed);
    sink.store(packed);
  }
  return written;
}

std::string Refusal(const std::string& text) {
  return ProblemText([&] { PicturesOf(text); });
}

}  // namespace

TEST(Y4m, FramesBecomeRowsOfPairs) {
  const auto pictures = PicturesOf(kHeader + "FRAME\n" + kPlanes + "FRAME\n" + kPlanes);
  ASSERT_EQ(pictures.size(), 2u);
  EXPECT_EQ(pictures[0], kRow);
  EXPECT_EQ(pictures[1], kRow);
}

TEST(Y4m, FrameParametersArePassedOver) {
  const auto pictures = PicturesOf(kHeader + "FRAME Ip Xsomething\n" + kPlanes);
  ASSERT_EQ(pictures.size(), 1u);
  EXPECT_EQ(pictures[0], kRow);
}

TEST(Y4m, HeaderWithoutFramesHasNoPictures) {
  EXPECT_EQ(PicturesOf(kHeader).size(), 0u);
}

TEST(Y4m, EightBitsBecomeWideRangePairsWhereThatIsAskedFor) {
  const std::string text = kHeader + "FRAME\n" + kPlanes;
  EXPECT_EQ(OpenY4mSource(InputOf(text), kYuvu).format.pixelFormat, kYuvu);
  EXPECT_EQ(PicturesOf(text, kYuvu).at(0), kRowOfYuvu);
}

TEST(Y4m, TenBitsBecomeWordsOfSixteen) {
  const std::string text = kHeader10 + "FRAME\n" + kPlanes10;
  EXPECT_EQ(OpenY4mSource(InputOf(text), kYuvu).format.pixelFormat, kV216);
  EXPECT_EQ(PicturesOf(text).at(0), kRow10);
}

TEST(Y4m, FullChromaBecomesRowsOfPixels) {
  EXPECT_EQ(PicturesOf(kHeader444 + "FRAME\n" + kPlanes444).at(0), kRow444);
  EXPECT_EQ(PicturesOf(kHeader444Alpha + "FRAME\n" + kPlanes444 + kPlane444Alpha).at(0), kRow444Alpha);
  EXPECT_EQ(PicturesOf(kHeader444p10 + "FRAME\n" + kPlanes444p10).at(0), kRow444p10);
}

TEST(Y4m, WideRangeIsForPairsAlone) {
  EXPECT_EQ(OpenY4mSource(InputOf(kHeader444), kYuvu).format.pixelFormat, kV408);
  EXPECT_EQ(OpenY4mSource(InputOf(kHeader444p10), kYuvu).format.pixelFormat, kV410);
}

TEST(Y4m, FullChromaComesBackAsItWas) {
  const std::string frame = "FRAME\n" + kPlanes444;
  EXPECT_EQ(WrittenAgain(kHeader444 + frame + frame), kHeader444 + frame + frame);
  const std::string withAlpha = kHeader444Alpha + frame + kPlane444Alpha + frame + kPlane444Alpha;
  EXPECT_EQ(WrittenAgain(withAlpha), withAlpha);
  const std::string deep = kHeader444p10 + "FRAME\n" + kPlanes444p10 + "FRAME\n" + kPlanes444p10;
  EXPECT_EQ(WrittenAgain(deep), deep);
}

TEST(Y4m, AlphaPlaneThatIsMissingIsACutPicture) {
  EXPECT_EQ(Refusal(kHeader444Alpha + "FRAME\n" + kPlanes444),
            "a.y4m: frame 0 at byte 40: the input ends within a picture: 12 bytes expected, 9 found "
            "(fetch or make the stream again)");
}

TEST(Y4m, SampleOfMoreThanTenBitsIsRefusedInFullChromaToo) {
  for (std::size_t at = 1; at < kPlanes444p10.size(); at += 2) {
    std::string planes = kPlanes444p10;
    planes[at] = static_cast<char>(0x80 | planes[at]);
    EXPECT_EQ(Refusal(kHeader444p10 + "FRAME\n" + planes),
              "a.y4m: frame 0 at byte 38: samples have more than 10 bits "
              "(the stream is damaged, or tag C of its header is wrong)");
  }
}

TEST(Y4m, WritingGivesTheSameBytesBack) {
  const std::string text = kHeader + "FRAME\n" + kPlanes + "FRAME\n" + kPlanes;
  EXPECT_EQ(WrittenAgain(text), text);
  EXPECT_EQ(WrittenAgain(text, kYuvu), text);
  const std::string text10 = kHeader10 + "FRAME\n" + kPlanes10 + "FRAME\n" + kPlanes10;
  EXPECT_EQ(WrittenAgain(text10), text10);
}

TEST(Y4m, SampleOfMoreThanTenBitsIsRefusedWhereverItStands) {
  for (std::size_t at = 1; at < kPlanes10.size(); at += 2) {
    std::string planes = kPlanes10;
    planes[at] = 4;
    EXPECT_EQ(Refusal(kHeader10 + "FRAME\n" + kPlanes10 + "FRAME\n" + planes),
              "a.y4m: frame 1 at byte 58: samples have more than 10 bits "
              "(the stream is damaged, or tag C of its header is wrong)");
  }
}

TEST(Y4m, EmptyInputIsSaidToBeEmpty) {
  EXPECT_EQ(Refusal(""), "a.y4m: nothing to read: the input is empty ()");
}

TEST(Y4m, EndWithinTheHeaderIsFound) {
  EXPECT_EQ(Refusal("YUV4MPEG2 W3 H1 F25:1 C422"),
            "a.y4m: the stream ends within its header (fetch or make the stream again)");
}

TEST(Y4m, EndWithinAPictureNamesFrameAndBytes) {
  EXPECT_EQ(Refusal(kHeader + "FRAME\n" + kPlanes + "FRAME\n" + kPlanes.substr(0, 5)),
            "a.y4m: frame 1 at byte 48: the input ends within a picture: 7 bytes expected, 5 found "
            "(fetch or make the stream again)");
}

TEST(Y4m, EndWithinAFrameLineIsACutPicture) {
  for (const char* const cut : {"F", "FRA", "FRAME", "FRAME Ip", "FRAME\n"}) {
    EXPECT_EQ(Refusal(kHeader + cut),
              "a.y4m: frame 0 at byte 35: the input ends within a picture: 7 bytes expected, 0 found "
              "(fetch or make the stream again)")
        << cut;
  }
}

TEST(Y4m, OtherBytesWhereAFrameMustBeginAreDamage) {
  const std::vector<std::string> damages = {"FRAMES\n", "frame\n", "\n", "x", std::string(100000, 'x')};
  for (const std::string& bytes : damages) {
    EXPECT_EQ(Refusal(kHeader + "FRAME\n" + kPlanes + bytes),
              "a.y4m: frame 1 at byte 48: no FRAME line where one must stand "
              "(the stream is damaged here, or the picture size in its header is wrong)");
  }
}

TEST(Y4m, EndlessFrameLineIsRefused) {
  EXPECT_NE(Refusal(kHeader + "FRAME " + std::string(100000, 'x')).find("no FRAME line"), std::string::npos);
}

TEST(Y4m, EndlessHeaderOfAnotherFileIsNotAStream) {
  EXPECT_NE(Refusal(std::string(100000, 'x')).find("not a YUV4MPEG2 stream"), std::string::npos);
}

TEST(Y4m, ClaimOfTheLargestPictureTakesNoMemory) {
  const PictureSource source = OpenY4mSource(InputOf("YUV4MPEG2 W32767 H32767 F25:1 C422\nFRAME\nabc"));
  StoredPicture stored;
  EXPECT_NE(ProblemText([&] { source.fetch(stored); }).find("2147385345 bytes expected, 3 found"),
            std::string::npos);
  EXPECT_LT(stored.capacity(), std::size_t{1} << 24);
}

}  // namespace vorel::picture_io
