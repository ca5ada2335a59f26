// What is refused or fails, in which words, and that nothing is left behind or lost.
#include <gtest/gtest.h>

#include "base/bytes.h"
#include "tests/tool/movies.h"
#include "tests/tool/run_vorel.h"

namespace vorel::tool {

namespace {

const std::string kClip = NoiseClip("YUV4MPEG2 W64 H2 F25:1 C422", 256, 2);

bool Contains(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

}  // namespace

TEST(Refusal, ExistingMovieStaysAsItIs) {
  const TestFolder folder;
  WriteFile(folder, "a.y4m", kClip);
  WriteFile(folder, "a.mov", "precious");
  const Outcome outcome = RunVorel(folder, {"encode", "a.y4m"});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_TRUE(Contains(outcome.err, "a.mov")) << outcome.err;
  EXPECT_EQ(FileBytes(folder, "a.mov"), "precious");
  EXPECT_EQ(FilesIn(folder), "a.mov a.y4m");
}

TEST(Refusal, ExistingPicturesStayAsTheyAre) {
  const TestFolder folder;
  MakeBrook(folder);
  WriteFile(folder, "brook.y4m", "precious");
  EXPECT_EQ(RunVorel(folder, {"decode", "brook.mov"}).status, 1);
  EXPECT_EQ(FileBytes(folder, "brook.y4m"), "precious");
  EXPECT_EQ(FilesIn(folder), "brook.mov brook.y4m");
}

TEST(Refusal, ForceReplacesBoth) {
  const TestFolder folder;
  WriteFile(folder, "a.y4m", kClip);
  WriteFile(folder, "a.mov", "stale");
  EXPECT_EQ(RunVorel(folder, {"encode", "-f", "a.y4m"}).status, 0);
  WriteFile(folder, "b.y4m", "stale");
  EXPECT_EQ(RunVorel(folder, {"decode", "-f", "a.mov", "-o", "b.y4m"}).status, 0);
  EXPECT_EQ(FramesOf(folder, "a.mov").size(), 2u);
  EXPECT_EQ(FileBytes(folder, "b.y4m"), NoiseClip("YUV4MPEG2 W64 H2 F25:1 I? A0:0 C422", 256, 2));
}

TEST(Refusal, FailureWithForceKeepsWhatWasThere) {
  const TestFolder folder;
  WriteFile(folder, "a.y4m", kClip.substr(0, kClip.size() - 10));
  WriteFile(folder, "a.mov", "precious");
  EXPECT_EQ(RunVorel(folder, {"encode", "-f", "a.y4m"}).status, 1);
  EXPECT_EQ(FileBytes(folder, "a.mov"), "precious");
  EXPECT_EQ(FilesIn(folder), "a.mov a.y4m");
}

TEST(Refusal, CutInputIsNamedAndLeavesNoMovie) {
  const TestFolder folder;
  WriteFile(folder, "a.y4m", kClip.substr(0, kClip.size() - 10));
  const Outcome outcome = RunVorel(folder, {"encode", "a.y4m"});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_TRUE(Contains(outcome.err,
                       "a.y4m: frame 1 at byte 290: the input ends within a picture: "
                       "256 bytes expected, 246 found"))
      << outcome.err;
  EXPECT_EQ(FilesIn(folder), "a.y4m");
}

TEST(Refusal, CutRawInputLeavesNoMovie) {
  const TestFolder folder;
  WriteFile(folder, "a.yuv", Noise(300, 1));
  const Outcome outcome =
      RunVorel(folder, {"encode", "--pixel-format", "yuvu", "--size", "64x2", "--rate", "25", "a.yuv"});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_TRUE(Contains(outcome.err, "a.yuv: frame 1 at byte 256")) << outcome.err;
  EXPECT_EQ(FilesIn(folder), "a.yuv");
}

TEST(Refusal, ClipWithoutFramesMakesNoMovie) {
  const TestFolder folder;
  WriteFile(folder, "a.y4m", "YUV4MPEG2 W64 H2 F25:1 C422\n");
  const Outcome outcome = RunVorel(folder, {"encode", "a.y4m"});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_TRUE(Contains(outcome.err, "no pictures follow the header")) << outcome.err;
  EXPECT_EQ(FilesIn(folder), "a.y4m");
}

TEST(Refusal, OtherChromaIsNamed) {
  const TestFolder folder;
  WriteFile(folder, "a.y4m", "YUV4MPEG2 W64 H2 F25:1 C420jpeg\nFRAME\n");
  const Outcome outcome = RunVorel(folder, {"encode", "a.y4m"});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.err,
            "vorel: a.y4m: header: chroma C420jpeg is not handled\n"
            "       4:2:2 and 4:4:4 with 8 or 10 bits are handled (C422, C422p10, C444, C444p10, C444alpha); "
            "convert the clip to one of them\n");
}

TEST(Refusal, OnePixelIsMoreThanItsFrameMayTake) {
  const TestFolder folder;
  WriteFile(folder, "a.y4m", "YUV4MPEG2 W1 H1 F25:1 C422\nFRAME\nabc");
  const Outcome outcome = RunVorel(folder, {"encode", "a.y4m"});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_TRUE(Contains(outcome.err, "a.y4m: frame 0: cannot encode: ")) << outcome.err;
  EXPECT_EQ(FilesIn(folder), "a.y4m");
}

TEST(Refusal, CutMovieIsRefused) {
  const TestFolder folder;
  MakeBrook(folder);
  const std::string movie = FileBytes(folder, "brook.mov");
  WriteFile(folder, "cut.mov", movie.substr(0, movie.size() / 2));
  const Outcome outcome = RunVorel(folder, {"decode", "cut.mov"});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_TRUE(Contains(outcome.err, "cut.mov")) << outcome.err;
  EXPECT_EQ(FilesIn(folder), "brook.mov cut.mov");
}

TEST(Refusal, FrameWithADamagedHeaderIsNamedAndLeavesNoPictures) {
  const TestFolder folder;
  MakeBrook(folder);
  std::string movie = FileBytes(folder, "brook.mov");
  const u64 offset = OffsetOfFrame(folder, "brook.mov", 3);
  movie[offset] = 'X';
  WriteFile(folder, "bad.mov", movie);
  const Outcome outcome = RunVorel(folder, {"decode", "bad.mov"});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_TRUE(Contains(outcome.err,
                       "bad.mov: frame 3 at byte " + std::to_string(offset) + ": not a VorelVideo frame"))
      << outcome.err;
  EXPECT_EQ(FilesIn(folder), "bad.mov brook.mov");
}

TEST(Refusal, FrameCutShortIsNamedThoughItDecodes) {
  const TestFolder folder;
  MakeBrook(folder);
  RemakeMovie(folder, "brook.mov", "bad.mov",
              [](Frames& frames, auto&) { frames.at(5).resize(frames.at(5).size() - 24); });
  const Outcome outcome = RunVorel(folder, {"decode", "bad.mov"});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_TRUE(Contains(outcome.err, "bad.mov: frame 5 at byte ")) << outcome.err;
  EXPECT_TRUE(Contains(outcome.err, "the frame is cut short or damaged: its bits need ")) << outcome.err;
  EXPECT_EQ(FilesIn(folder), "bad.mov brook.mov");
}

TEST(Refusal, FirstBadFrameIsTheOneReportedWhateverTheThreads) {
  const TestFolder folder;
  MakeBrook(folder);
  RemakeMovie(folder, "brook.mov", "bad.mov", [](Frames& frames, auto&) {
    for (const std::size_t frame : {2, 3, 4, 5, 6, 7}) frames.at(frame).at(0) = 'X';
  });
  for (int run = 0; run < 5; ++run) {
    const Outcome outcome = RunVorel(folder, {"decode", "-j", "4", "bad.mov"});
    EXPECT_TRUE(Contains(outcome.err, "bad.mov: frame 2 at byte ")) << outcome.err;
  }
}

TEST(Refusal, FrameThatDoesNotComeAsSuchPicturesIsNamed) {
  const TestFolder folder;
  MakeBrook(folder);
  RemakeMovie(folder, "brook.mov", "mixed.mov",
              [](Frames& frames, auto&) { StoreLittle32(&frames.at(3).at(16), WordOfBytes("YbYr")); });
  const Outcome outcome = RunVorel(folder, {"decode", "mixed.mov"});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_TRUE(Contains(outcome.err, "mixed.mov: frame 3 at byte ")) << outcome.err;
  EXPECT_TRUE(Contains(outcome.err,
                       "frames of format Y'CbCr 8bw 4:2:2p (tag \"YbYr\") do not come as '2vuy' pictures\n"
                       "       choose another pixel format with --pixel-format\n"))
      << outcome.err;
}

TEST(Refusal, PicturesThatYuv4mpegCannotHoldAreNamed) {
  const TestFolder folder;
  MakeBrook(folder);
  RemakeMovie(folder, "brook.mov", "rgb.mov",
              [](Frames& frames, auto&) { StoreLittle32(&frames.at(0).at(16), WordOfBytes(" RGB")); });
  const Outcome outcome = RunVorel(folder, {"decode", "rgb.mov"});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_TRUE(Contains(outcome.err, "rgb.mov: YUV4MPEG2 files don't hold pictures of format RGB 8bf p\n"))
      << outcome.err;
  EXPECT_EQ(FilesIn(folder), "brook.mov rgb.mov");
}

TEST(Refusal, PixelFormatThatIsOnlyWrittenIsSaidToBe) {
  const TestFolder folder;
  WriteFile(folder, "a.raw", Noise(64 * 8 * 2, 1));
  for (const char* const name : {"L555", "L565"}) {
    const Outcome outcome =
        RunVorel(folder, {"encode", "--pixel-format", name, "--size", "64x8", "--rate", "25", "a.raw"});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.err, std::string("vorel: a.raw: '") + name +
                               "' is only written\n       choose one that is read too, such as 24 or BGRA\n");
  }
  EXPECT_EQ(FilesIn(folder), "a.raw");
}

TEST(Refusal, CodecWithoutFramesForThePicturesNamesThoseThatHaveThem) {
  const TestFolder folder;
  WriteFile(folder, "a.y4m", kClip);
  const Outcome narrow = RunVorel(folder, {"encode", "--codec", "ycbcr-10bv-422", "a.y4m"});
  EXPECT_EQ(narrow.status, 1);
  EXPECT_EQ(narrow.err,
            "vorel: a.y4m: codec ycbcr-10bv-422 has no frames for '2vuy' pictures\n"
            "       choose another with --codec: auto, ycbcr-8bv-422, rgb-8bf, rgb-10bf\n");
  WriteFile(folder, "b.raw", Noise(64 * 8 * 4, 1));
  const Outcome generic =
      RunVorel(folder, {"encode", "--pixel-format", "VUYA", "--size", "64x8", "--rate", "25", "b.raw"});
  EXPECT_TRUE(Contains(
      generic.err,
      "b.raw: codec auto has no frames for 'VUYA' pictures\n"
      "       choose another with --codec: ycbcr-8bv-422, ycbcr-10bv-422, ycbcr-8b-444, rgb-8bf, rgb-10bf"))
      << generic.err;
  EXPECT_EQ(FilesIn(folder), "a.y4m b.raw");
}

TEST(Refusal, TenBitSampleThatHasMoreIsNamed) {
  const TestFolder folder;
  std::string clip = NoiseClip10("YUV4MPEG2 W64 H2 F25:1 C422p10", 256, 2);
  clip.back() = 4;
  WriteFile(folder, "a.y4m", clip);
  const Outcome outcome = RunVorel(folder, {"encode", "a.y4m"});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_TRUE(Contains(outcome.err, "a.y4m: frame 1 at byte 549: samples have more than 10 bits"))
      << outcome.err;
  EXPECT_EQ(FilesIn(folder), "a.y4m");
}

TEST(Refusal, OtherCodecsAreNamed) {
  const TestFolder folder;
  MakeBrook(folder);
  const auto withCodec = [&](const char* name, u32 codec) {
    RemakeMovie(folder, "brook.mov", name,
                [codec](Frames&, auto& description) { description.cType = codec; });
    return RunVorel(folder, {"decode", name}).err;
  };
  EXPECT_TRUE(Contains(withCodec("other.mov", FourCharacterCode("abcd")),
                       "the video is of codec 'abcd', not VorelVideo"));
  EXPECT_EQ(withCodec("generic.mov", FourCharacterCode("Vrl0")).find("vorel:"), std::string::npos);
  EXPECT_EQ(withCodec("sibling.mov", FourCharacterCode("Vrl1")).find("vorel:"), std::string::npos);
}

TEST(Refusal, ClaimOfAHugePictureWithASmallFrameIsRefusedAtOnce) {
  const TestFolder folder;
  MakeBrook(folder);
  RemakeMovie(folder, "brook.mov", "huge.mov", [](Frames&, auto& description) {
    description.width = 32767;
    description.height = 32767;
  });
  const Outcome outcome = RunVorel(folder, {"decode", "huge.mov", "-o", "/dev/null"});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_TRUE(Contains(outcome.err, "the frame is cut short: it has ")) << outcome.err;
}

TEST(Refusal, MissingInputIsNamed) {
  const TestFolder folder;
  for (const char* const command : {"encode", "decode", "verify", "info"}) {
    const Outcome outcome = RunVorel(folder, {command, "nothing.dat"});
    EXPECT_EQ(outcome.status, 1) << command;
    EXPECT_TRUE(Contains(outcome.err, "nothing.dat: ")) << outcome.err;
  }
  EXPECT_EQ(FilesIn(folder), "");
}

TEST(Refusal, FolderThatIsNotThereIsNamed) {
  const TestFolder folder;
  WriteFile(folder, "a.y4m", kClip);
  const Outcome outcome = RunVorel(folder, {"encode", "a.y4m", "-o", "nowhere/a.mov"});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_TRUE(Contains(outcome.err, "nowhere")) << outcome.err;
}

}  // namespace vorel::tool
