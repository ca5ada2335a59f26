// Clips to movies and back, through files and pipes: the same bytes come out that went in.
#include <gtest/gtest.h>

#include <cstdlib>

#include "tests/tool/movies.h"
#include "tests/tool/run_vorel.h"

namespace vorel::tool {

namespace {

// Encodes and decodes a Y4M clip and compares.
void ExpectSameBack(const std::string& clip, const std::string& codec = "auto") {
  const TestFolder folder;
  WriteFile(folder, "clip.y4m", clip);
  const Outcome encoded = RunVorel(folder, {"encode", "--codec", codec, "clip.y4m"});
  ASSERT_EQ(encoded.status, 0) << encoded.err;
  const Outcome decoded = RunVorel(folder, {"decode", "clip.mov", "-o", "back.y4m"});
  ASSERT_EQ(decoded.status, 0) << decoded.err;
  EXPECT_TRUE(FileBytes(folder, "back.y4m") == clip);
  EXPECT_EQ(FilesIn(folder), "back.y4m clip.mov clip.y4m");
}

}  // namespace

TEST(EncodeDecode, ProgressiveSampleComesBackByteForByte) {
  ExpectSameBack(FileBytes(SamplePath("brook_640x360p_8.y4m")));
}

TEST(EncodeDecode, InterlacedSampleComesBackByteForByte) {
  ExpectSameBack(FileBytes(SamplePath("brook_640x360i_8.y4m")));
}

TEST(EncodeDecode, WideRangeFramesGiveTheSameClipsBack) {
  ExpectSameBack(FileBytes(SamplePath("brook_640x360p_8.y4m")), "ycbcr-8bw-422");
  ExpectSameBack(FileBytes(SamplePath("brook_640x360i_8.y4m")), "ycbcr-8bw-422");
}

TEST(EncodeDecode, TenBitsComeBackByteForByte) {
  ExpectSameBack(NoiseClip10("YUV4MPEG2 W64 H48 F25:1 Ip A1:1 C422p10", 64 * 48 * 2, 3));
  ExpectSameBack(NoiseClip10("YUV4MPEG2 W64 H48 F25:1 It A1:1 C422p10", 64 * 48 * 2, 3));
  ExpectSameBack(NoiseClip10("YUV4MPEG2 W33 H17 F25:1 Ib A0:0 C422p10", (33 + 2 * 17) * 17, 2));
  ExpectSameBack(NoiseClip10("YUV4MPEG2 W33 H17 F25:1 I? A0:0 C422p10", (33 + 2 * 17) * 17, 2),
                 "ycbcr-10bv-422");
}

TEST(EncodeDecode, RealPicturesGetSmaller) {
  const TestFolder folder;
  MakeBrook(folder);
  EXPECT_LT(FileBytes(folder, "brook.mov").size(), FileBytes(SamplePath("brook_640x360p_8.y4m")).size());
}

TEST(EncodeDecode, OddSidesAndNoiseComeBack) {
  ExpectSameBack(NoiseClip("YUV4MPEG2 W33 H17 F30000:1001 Ip A1:1 C422", (33 + 2 * 17) * 17, 5));
}

TEST(EncodeDecode, HeadersOfEveryKindComeBack) {
  const std::size_t bytes = 64 * 48 * 2;
  ExpectSameBack(NoiseClip("YUV4MPEG2 W64 H48 F25:1 I? A0:0 C422", bytes, 1));
  ExpectSameBack(NoiseClip("YUV4MPEG2 W64 H48 F25:1 Ib A10:11 C422", bytes, 1));
  ExpectSameBack(NoiseClip("YUV4MPEG2 W64 H48 F60000:1001 It A0:0 C422", bytes, 2));
  ExpectSameBack(NoiseClip("YUV4MPEG2 W64 H48 F1:2 Ip A59:54 C422", bytes, 2));
}

TEST(EncodeDecode, RawPicturesComeBackBitForBitWithTheirPadding) {
  const TestFolder folder;
  const std::string pictures = Noise(68 * 17 * 3, 7);
  WriteFile(folder, "clip.yuv", pictures);
  const Outcome encoded = RunVorel(folder, {"encode", "--pixel-format", "yuvu", "--size", "33x17", "--rate",
                                            "23.976", "--scan", "bottom-first", "clip.yuv"});
  ASSERT_EQ(encoded.status, 0) << encoded.err;
  ASSERT_EQ(RunVorel(folder, {"decode", "clip.mov", "-o", "back.yuv"}).status, 0);
  EXPECT_TRUE(FileBytes(folder, "back.yuv") == pictures);
  const Outcome asY4m = RunVorel(folder, {"decode", "clip.mov", "-o", "-"});
  EXPECT_EQ(asY4m.out.substr(0, asY4m.out.find('\n')), "YUV4MPEG2 W33 H17 F24000:1001 Ib A0:0 C422");
}

TEST(EncodeDecode, FormatOptionGoesBeforeTheName) {
  const TestFolder folder;
  const std::string pictures = Noise(32 * 8, 9);
  const std::vector<std::string> encode = {"encode", "--pixel-format", "yuvu", "--size", "16x8", "--rate",
                                           "25",     "in.raw",         "-q"};
  WriteFile(folder, "in.raw", pictures);
  ASSERT_EQ(RunVorel(folder, encode).status, 0);
  ASSERT_EQ(RunVorel(folder, {"decode", "--format", "raw", "in.mov", "-o", "out.y4m"}).status, 0);
  EXPECT_TRUE(FileBytes(folder, "out.y4m") == pictures);
}

TEST(EncodeDecode, ResultsAreNamedAfterTheirInputs) {
  const TestFolder folder;
  WriteFile(folder, "shot.0001", NoiseClip("YUV4MPEG2 W64 H2 F25:1 C422", 256, 1));
  ASSERT_EQ(RunVorel(folder, {"encode", "shot.0001"}).status, 0);
  ASSERT_EQ(RunVorel(folder, {"decode", "shot.0001.mov"}).status, 0);
  ASSERT_EQ(RunVorel(folder, {"decode", "--format", "raw", "shot.0001.mov"}).status, 0);
  EXPECT_EQ(FilesIn(folder), "shot.0001 shot.0001.mov shot.0001.y4m shot.0001.yuv");
}

TEST(EncodeDecode, PipesOnBothSidesGiveTheSameMovieAndClip) {
  ::setenv("SOURCE_DATE_EPOCH", "1700000000", 1);
  const TestFolder folder;
  const std::string clip = FileBytes(SamplePath("brook_640x360p_8.y4m"));
  MakeBrook(folder);
  const Outcome encoded = RunVorel(folder, {"encode", "-", "-o", "-"}, clip);
  ASSERT_EQ(encoded.status, 0) << encoded.err;
  EXPECT_TRUE(encoded.out == FileBytes(folder, "brook.mov"));
  const Outcome decoded = RunVorel(folder, {"decode", "-", "-o", "-"}, encoded.out);
  ASSERT_EQ(decoded.status, 0) << decoded.err;
  EXPECT_TRUE(decoded.out == clip);
}

TEST(EncodeDecode, ThreadsDoNotChangeTheMovie) {
  ::setenv("SOURCE_DATE_EPOCH", "1700000000", 1);
  const TestFolder folder;
  const std::string clip = SamplePath("brook_640x360i_8.y4m");
  ASSERT_EQ(RunVorel(folder, {"encode", clip, "-j", "1", "-o", "one.mov"}).status, 0);
  ASSERT_EQ(RunVorel(folder, {"encode", clip, "-j", "4", "-o", "four.mov"}).status, 0);
  EXPECT_TRUE(FileBytes(folder, "one.mov") == FileBytes(folder, "four.mov"));
  ASSERT_EQ(RunVorel(folder, {"decode", "one.mov", "-j", "4", "-o", "back.y4m"}).status, 0);
  EXPECT_TRUE(FileBytes(folder, "back.y4m") == FileBytes(clip));
}

TEST(EncodeDecode, TwoEncodesGiveTheSameFrames) {
  const TestFolder folder;
  MakeBrook(folder);
  ASSERT_EQ(RunVorel(folder, {"encode", SamplePath("brook_640x360p_8.y4m"), "-o", "again.mov"}).status, 0);
  const Frames frames = FramesOf(folder, "brook.mov");
  EXPECT_EQ(frames.size(), 8u);
  EXPECT_TRUE(frames == FramesOf(folder, "again.mov"));
}

TEST(EncodeDecode, MovieSaysWhatItsFramesAre) {
  const TestFolder folder;
  const std::string clip = SamplePath("brook_640x360i_8.y4m");
  ASSERT_EQ(RunVorel(folder, {"encode", clip, "-o", "brook.mov"}).status, 0);
  const container::SampleDescription description = DescriptionOf(folder, "brook.mov");
  EXPECT_EQ(description.cType, FourCharacterCode("Vrl3"));
  EXPECT_EQ(description.name, "Vorel Y'CbCr 8bv 4:2:2i");
  const container::Extension* const tag = FindExtension(description, FourCharacterCode("Kesp"));
  ASSERT_NE(tag, nullptr);
  EXPECT_EQ(tag->bytes, (std::vector<u8>{'B', 'Y', 'R', 'y'}));
  const Frames frames = FramesOf(folder, "brook.mov");
  EXPECT_EQ(description.dataSize, frames.at(0).size());
  const std::string header(frames.at(0).begin(), frames.at(0).begin() + 20);
  EXPECT_EQ(header, std::string("Vorl\r\n\0\n\xFFTamrickBYRy", 20));
}

TEST(EncodeDecode, SeveralInputsEachGetTheirResult) {
  const TestFolder folder;
  WriteFile(folder, "a.y4m", NoiseClip("YUV4MPEG2 W64 H2 F25:1 C422", 256, 1));
  WriteFile(folder, "b.y4m", NoiseClip("YUV4MPEG2 W64 H2 F25:1 C422", 256, 2));
  ASSERT_EQ(RunVorel(folder, {"encode", "a.y4m", "b.y4m"}).status, 0);
  EXPECT_EQ(FilesIn(folder), "a.mov a.y4m b.mov b.y4m");
  EXPECT_EQ(FramesOf(folder, "b.mov").size(), 2u);
}

TEST(EncodeDecode, BadInputAmongOthersStopsOnlyItself) {
  const TestFolder folder;
  WriteFile(folder, "a.y4m", NoiseClip("YUV4MPEG2 W64 H2 F25:1 C422", 256, 1));
  WriteFile(folder, "b.y4m", "something else");
  WriteFile(folder, "c.y4m", NoiseClip("YUV4MPEG2 W64 H2 F25:1 C422", 256, 1));
  const Outcome outcome = RunVorel(folder, {"encode", "a.y4m", "b.y4m", "c.y4m"});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_NE(outcome.err.find("b.y4m: not a YUV4MPEG2 stream"), std::string::npos) << outcome.err;
  EXPECT_EQ(FilesIn(folder), "a.mov a.y4m b.y4m c.mov c.y4m");
}

TEST(EncodeDecode, DevicesAreWrittenWithoutForce) {
  const TestFolder folder;
  MakeBrook(folder);
  EXPECT_EQ(RunVorel(folder, {"decode", "brook.mov", "-o", "/dev/null"}).status, 0);
  EXPECT_EQ(RunVorel(folder, {"encode", SamplePath("brook_640x360p_8.y4m"), "-o", "/dev/null"}).status, 0);
}

TEST(EncodeDecode, UnknownRateIsAskedForAndTaken) {
  const TestFolder folder;
  WriteFile(folder, "a.y4m", NoiseClip("YUV4MPEG2 W64 H2 C422", 256, 1));
  const Outcome refused = RunVorel(folder, {"encode", "a.y4m"});
  EXPECT_EQ(refused.status, 1);
  EXPECT_EQ(refused.err, "vorel: a.y4m: the frame rate is not known\n       give it with --rate\n");
  EXPECT_EQ(FilesIn(folder), "a.y4m");
  ASSERT_EQ(RunVorel(folder, {"encode", "a.y4m", "--rate", "29.97"}).status, 0);
  const Outcome decoded = RunVorel(folder, {"decode", "a.mov", "-o", "-"});
  EXPECT_EQ(decoded.out.substr(0, decoded.out.find('\n')), "YUV4MPEG2 W64 H2 F30000:1001 I? A0:0 C422");
}

TEST(EncodeDecode, WhatAHeaderLosesIsSaid) {
  const TestFolder folder;
  WriteFile(folder, "a.y4m", NoiseClip("YUV4MPEG2 W64 H2 F25:1 C422 XCOLORRANGE=FULL", 256, 1));
  const Outcome encoded = RunVorel(folder, {"encode", "a.y4m"});
  EXPECT_NE(encoded.err.find("note: a.y4m: the movie does not keep XCOLORRANGE=FULL"), std::string::npos);
}

TEST(EncodeDecode, QuietSaysNothingAndOtherwiseOneLineIsSaid) {
  const TestFolder folder;
  WriteFile(folder, "a.y4m", NoiseClip("YUV4MPEG2 W64 H2 F25:1 C422", 256, 1));
  EXPECT_EQ(RunVorel(folder, {"encode", "-q", "a.y4m"}).err, "");
  const std::string line = RunVorel(folder, {"encode", "-f", "a.y4m"}).err;
  EXPECT_EQ(line.find("a.y4m: 1 frame, 256 B -> "), 0u) << line;
  EXPECT_EQ(line.find('\n'), line.size() - 1);
  EXPECT_EQ(line.find('\r'), std::string::npos);
}

}  // namespace vorel::tool
