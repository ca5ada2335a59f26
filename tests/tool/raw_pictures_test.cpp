// Raw pictures of every pixel format into movies and back, and the choice of one on the way out.
#include <gtest/gtest.h>

#include "tests/tool/raw_clips.h"
#include "tests/tool/run_vorel.h"

namespace vorel::tool {

namespace {

bool Contains(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

}  // namespace

TEST(RawPictures, ComeBackBitForBitInBothScans) {
  for (const RawClip& clip : kRawClips) {
    for (const char* const scan : {"progressive", "top-first"}) {
      const TestFolder folder;
      const std::string pictures = RawPictures(clip.name);
      const Outcome encoded = EncodeRaw(folder, clip.name, pictures, {"--scan", scan});
      ASSERT_EQ(encoded.status, 0) << clip.name << encoded.err;
      const Outcome decoded =
          RunVorel(folder, {"decode", "clip.mov", "--pixel-format", clip.name, "-o", "back.raw"});
      ASSERT_EQ(decoded.status, 0) << clip.name << decoded.err;
      EXPECT_TRUE(FileBytes(folder, "back.raw") == pictures) << clip.name << " " << scan;
      const Outcome verified = VerifyRaw(folder, clip.name);
      EXPECT_EQ(verified.status, 0) << clip.name << verified.err;
    }
  }
}

TEST(RawPictures, EveryChangedSampleIsFoundByVerify) {
  for (const RawClip& clip : kRawClips) {
    const TestFolder folder;
    std::string pictures = RawPictures(clip.name);
    ASSERT_EQ(EncodeRaw(folder, clip.name, pictures).status, 0);
    const std::size_t lastRow = pictures.size() - clip.rowBytes;
    pictures[lastRow + 1] = static_cast<char>(pictures[lastRow + 1] ^ 0x10);
    WriteFile(folder, "in.raw", pictures);
    const Outcome verified = VerifyRaw(folder, clip.name);
    EXPECT_EQ(verified.status, 1) << clip.name;
    EXPECT_TRUE(Contains(verified.err, "clip.mov: frame 1 at byte ")) << clip.name << verified.err;
    EXPECT_TRUE(Contains(verified.err, "differs from in.raw: row 17, pixel 0, "))
        << clip.name << verified.err;
  }
}

TEST(RawPictures, OddWidthsKeepTheirLastPairWhole) {
  for (const char* const name : {"2vuy", "yuvs", "yuvu"}) {
    const TestFolder folder;
    const std::string pictures = Noise(68 * 17, 3);
    WriteFile(folder, "in.raw", pictures);
    const std::vector<std::string> encode = {
        "encode", "in.raw", "--pixel-format", name, "--size", "33x17", "--rate", "25", "-o", "clip.mov"};
    ASSERT_EQ(RunVorel(folder, encode).status, 0);
    ASSERT_EQ(RunVorel(folder, {"decode", "clip.mov", "--pixel-format", name, "-o", "back.raw"}).status, 0);
    EXPECT_TRUE(FileBytes(folder, "back.raw") == pictures) << name;
  }
}

TEST(RawPictures, PaddingOfV210IsIgnoredOnReadingAndZeroOnWriting) {
  const TestFolder folder;
  const std::string clean = RawPictures("v210");
  std::string dirty = clean;
  for (std::size_t i = 0; i < dirty.size(); ++i) {
    if (i % 256 >= 136) dirty[i] = 'x';
  }
  ASSERT_EQ(EncodeRaw(folder, "v210", dirty).status, 0);
  EXPECT_EQ(VerifyRaw(folder, "v210").status, 0);
  ASSERT_EQ(RunVorel(folder, {"decode", "clip.mov", "-o", "back.v210"}).status, 0);
  EXPECT_TRUE(FileBytes(folder, "back.v210") == clean);
}

TEST(RawPictures, FramesTellTheirOwnPixelFormatOfRawPictures) {
  for (const char* const name : {"24", "32", "F10k", "b64a", "v410", "r408", "2vuy", "v210", "yuvu"}) {
    const TestFolder folder;
    const std::string pictures = RawPictures(name);
    ASSERT_EQ(EncodeRaw(folder, name, pictures).status, 0);
    ASSERT_EQ(RunVorel(folder, {"decode", "clip.mov", "--format", "raw"}).status, 0);
    EXPECT_TRUE(FileBytes(folder, "clip.yuv") == pictures) << name;
  }
}

TEST(RawPictures, PixelFormatOnTheWayOutIsNamedByOptionOrEnding) {
  const TestFolder folder;
  const std::string pictures = RawPictures("2vuy");
  ASSERT_EQ(EncodeRaw(folder, "2vuy", pictures).status, 0);
  ASSERT_EQ(RunVorel(folder, {"decode", "clip.mov", "--pixel-format", "yuvs"}).status, 0);
  const std::string swapped = FileBytes(folder, "clip.raw");
  ASSERT_EQ(swapped.size(), pictures.size());
  for (std::size_t i = 0; i < pictures.size(); ++i) ASSERT_EQ(swapped[i], pictures[i ^ 1]);
  ASSERT_EQ(RunVorel(folder, {"decode", "clip.mov", "-o", "out.yuvs"}).status, 0);
  EXPECT_TRUE(FileBytes(folder, "out.yuvs") == swapped);
  ASSERT_EQ(RunVorel(folder, {"decode", "clip.mov", "--pixel-format", "v216", "-o", "out.y4m"}).status, 0);
  const std::string clip = FileBytes(folder, "out.y4m");
  const std::size_t planes = clip.find("FRAME\n") + 6;
  EXPECT_TRUE(Contains(clip, " C422p10\nFRAME\n"));
  EXPECT_EQ(static_cast<u8>(clip.at(planes)) + 256 * static_cast<u8>(clip.at(planes + 1)),
            4 * static_cast<u8>(pictures.at(1)));
}

TEST(RawPictures, TenBitMoviesGiveEightBitPicturesWhereThatIsAskedFor) {
  const TestFolder folder;
  const std::string clip = NoiseClip10("YUV4MPEG2 W50 H18 F25:1 Ip A0:0 C422p10", 50 * 18 * 2, 1);
  WriteFile(folder, "a.y4m", clip);
  ASSERT_EQ(RunVorel(folder, {"encode", "a.y4m"}).status, 0);
  const Outcome decoded = RunVorel(folder, {"decode", "a.mov", "--pixel-format", "2vuy", "-o", "b.y4m"});
  ASSERT_EQ(decoded.status, 0) << decoded.err;
  EXPECT_TRUE(
      Contains(decoded.err, "note: a.mov: the pictures do not keep the lower 2 of 10 bits of a sample\n"))
      << decoded.err;
  std::string expected = "YUV4MPEG2 W50 H18 F25:1 Ip A0:0 C422\nFRAME\n";
  const std::size_t planes = clip.find("FRAME\n") + 6;
  for (std::size_t i = planes; i < clip.size(); i += 2) {
    expected += static_cast<char>((static_cast<u8>(clip[i]) + 256 * static_cast<u8>(clip[i + 1])) / 4);
  }
  EXPECT_TRUE(FileBytes(folder, "b.y4m") == expected);
}

TEST(RawPictures, ChunkyRowsWithoutGapsAreReadAsTheyAre) {
  const TestFolder folder;
  const std::string grey(51 * 3 * kRawHeight, '\x80');  // rows of 153 bytes
  WriteFile(folder, "in.raw", grey);
  const Outcome encoded = RunVorel(folder, {"encode", "in.raw", "--pixel-format", "24", "--size", "51x18",
                                            "--rate", "25", "--codec", "ycbcr-8bv-422", "--standard", "hd"});
  ASSERT_EQ(encoded.status, 0) << encoded.err;
  EXPECT_TRUE(
      Contains(encoded.err,
               "note: in.raw: the movie does not keep R'G'B' (it becomes Y'CbCr), the chroma of every "
               "pixel\n"))
      << encoded.err;
  ASSERT_EQ(RunVorel(folder, {"decode", "in.mov", "--pixel-format", "24", "-o", "back.raw"}).status, 0);
  const std::string back = FileBytes(folder, "back.raw");
  ASSERT_EQ(back.size(), grey.size());
  for (const char byte : back) ASSERT_NEAR(static_cast<u8>(byte), 0x80, 1);
}

TEST(RawPictures, InputThatIsNotAWholeNumberOfPicturesIsNamed) {
  const TestFolder folder;
  const Outcome outcome = EncodeRaw(folder, "v210", std::string(256 * kRawHeight + 136, '\0'));
  EXPECT_EQ(outcome.status, 1);
  EXPECT_TRUE(Contains(outcome.err,
                       "in.raw: frame 1 at byte 4608: the input ends within a picture: 4608 bytes expected, "
                       "136 found"))
      << outcome.err;
  EXPECT_EQ(FilesIn(folder), "in.raw");
}

}  // namespace vorel::tool
