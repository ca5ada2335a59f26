// Sequences and stills into movies: what is taken, under which name, and what is refused.
#include <gtest/gtest.h>

#include <filesystem>

#include "picture_io/dpx.h"
#include "picture_io/png.h"
#include "picture_io/tiff.h"
#include "tests/tool/movies.h"
#include "tests/tool/picture_clips.h"
#include "tests/tool/run_vorel.h"

namespace vorel::tool {

namespace {

using picture_io::kDpxFiles;
using picture_io::kPngFiles;
using picture_io::kTiffFiles;

bool Contains(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

std::size_t CountOf(const std::string& text, const std::string& part) {
  std::size_t count = 0;
  for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) ++count;
  return count;
}

}  // namespace

TEST(SequenceEncode, BitsThatFramesDoNotHoldAreSaidOnceForAClip) {
  const TestFolder folder;
  for (u32 number = 0; number < 5; ++number) {
    picture_io::Picture picture = NoisePicture(picture_io::kRgb16, 50, 18, number);
    picture.bytes[1] |= 0x3F;
    WritePicture(folder, "a." + std::to_string(number) + ".png", kPngFiles, picture);
  }
  const Outcome encoded = RunVorel(folder, {"encode", "a.%d.png"});
  ASSERT_EQ(encoded.status, 0) << encoded.err;
  EXPECT_EQ(CountOf(encoded.err, "a.%d.png: the movie does not keep the lower 6 of 16 bits of a sample\n"),
            1u)
      << encoded.err;
  ASSERT_EQ(
      RunVorel(folder, {"decode", "a.mov", "-o", "b.%d.png", "--format", "png", "--pixel-format", "b48r"})
          .status,
      0);
  ExpectSequence(folder, "b.%d.png", picture_io::kRgb16, 0, 5, 0);
  const Outcome verified = RunVorel(folder, {"verify", "a.mov", "--against", "a.%d.png"});
  EXPECT_EQ(verified.status, 1);
  EXPECT_TRUE(Contains(verified.err, "differs from a.%d.png: row 0, pixel 0, R is ")) << verified.err;
}

TEST(SequenceEncode, MissingPictureIsNamedAndNoMovieIsMade) {
  const TestFolder folder;
  WriteSequence(folder, "a.%02d.png", kPngFiles, 24, 1, 2);
  WriteSequence(folder, "a.%02d.png", kPngFiles, 24, 5, 1);
  const Outcome encoded = RunVorel(folder, {"encode", "a.%02d.png"});
  EXPECT_EQ(encoded.status, 1);
  EXPECT_EQ(encoded.err,
            "vorel: a.03.png: a picture of the sequence is missing, the next there is has number 5\n"
            "       put it there, or move the pictures behind it away\n");
  EXPECT_EQ(FilesIn(folder), "a.01.png a.02.png a.05.png");
}

TEST(SequenceEncode, BeginsWhereStartSays) {
  const TestFolder folder;
  WriteSequence(folder, "a%d.png", kPngFiles, 24, 1, 1);
  WriteSequence(folder, "a%d.png", kPngFiles, 24, 8, 4);
  ASSERT_EQ(RunVorel(folder, {"encode", "-q", "--start", "9", "a%d.png"}).status, 0);
  EXPECT_EQ(FramesOf(folder, "a.mov").size(), 3u);
  EXPECT_EQ(RunVorel(folder, {"verify", "a.mov", "--against", "a%d.png", "--start", "9"}).status, 0);
  EXPECT_EQ(RunVorel(folder, {"verify", "a.mov", "--against", "a%d.png", "--start", "8"}).status, 1);
  const Outcome missing = RunVorel(folder, {"encode", "--start", "7", "a%d.png", "-o", "b.mov"});
  EXPECT_EQ(missing.status, 1);
  EXPECT_TRUE(Contains(missing.err, "a7.png: there is no such file")) << missing.err;
}

TEST(SequenceEncode, StillIsAClipOfOneFrame) {
  const TestFolder folder;
  WritePicture(folder, "a.PNG", kPngFiles, NoisePicture(24, 33, 17, 1));
  const Outcome encoded = RunVorel(folder, {"encode", "a.PNG"});
  ASSERT_EQ(encoded.status, 0) << encoded.err;
  EXPECT_EQ(encoded.err.find("note"), std::string::npos) << encoded.err;
  EXPECT_EQ(FramesOf(folder, "a.mov").size(), 1u);
  EXPECT_EQ(RunVorel(folder, {"verify", "a.mov", "--against", "a.PNG"}).status, 0);
}

TEST(SequenceEncode, NameWithAPercentSignThatAFileHasIsThatFile) {
  const TestFolder folder;
  WritePicture(folder, "a50%.png", kPngFiles, NoisePicture(24, 33, 17, 1));
  ASSERT_EQ(RunVorel(folder, {"encode", "-q", "a50%.png"}).status, 0);
  ASSERT_EQ(RunVorel(folder, {"decode", "-q", "--format", "tiff", "a50%.mov"}).status, 0);
  EXPECT_EQ(FilesIn(folder), "a50%.00000.tif a50%.mov a50%.png");
}

TEST(SequenceEncode, MoviesAreNamedAfterTheirPictures) {
  const std::vector<std::vector<std::string>> names = {
      {"shot.%05d.png", "shot.mov"},
      {"shot_%d.tiff", "shot.mov"},
      {"shot-._%03d.tif", "shot.mov"},
      {"2019-12-%02d.dpx", "2019-12.mov"},
      {"shot%4d.png", "shot.mov"},
      {"100%%.%d.png", "100%.mov"},
      {"v1.2.%03d.grade.png", "v1.2.mov"},
      {"dir/shot.%d.png", "dir/shot.mov"},
      {"dir/%05d.png", "dir.mov"},
      {"dir/.%d.png", "dir.mov"},
      {"a.tiff", "a.mov"},
      {"a.b.dpx", "a.b.mov"},
  };
  for (const std::vector<std::string>& name : names) {
    const TestFolder folder;
    std::filesystem::create_directory(folder.path + "/dir");
    const picture_io::PictureFileKind& kind = *picture_io::FindPictureFileKind(name[0]);
    const bool isSequence = picture_io::LooksLikeSequence(name[0]);
    const std::string path = isSequence ? SequencePath(picture_io::ReadSequencePattern(name[0]), 7) : name[0];
    WritePicture(folder, path, kind, NoisePicture(kind.pixelFormats[0], 50, 18, 1));
    const Outcome encoded = RunVorel(folder, {"encode", name[0]});
    EXPECT_EQ(encoded.status, 0) << encoded.err;
    EXPECT_TRUE(std::filesystem::exists(folder.path + "/" + name[1])) << name[0];
  }
}

TEST(SequenceEncode, NumbersAloneNeedAName) {
  const TestFolder folder;
  WriteSequence(folder, "%d.png", kPngFiles, 24, 1, 2);
  for (const char* const pattern : {"%d.png", "./%d.png", "../%d.png", "_%d.png"}) {
    const Outcome outcome = RunVorel(folder, {"encode", pattern});
    EXPECT_EQ(outcome.status, 2) << pattern;
    EXPECT_TRUE(Contains(outcome.err, "nothing but a number names the pictures; name the result with -o"));
  }
  EXPECT_EQ(RunVorel(folder, {"encode", "%d.png", "-o", "a.mov"}).status, 0);
}

TEST(SequenceEncode, DamagedPictureIsNamedAndNoMovieIsMade) {
  const TestFolder folder;
  WriteSequence(folder, "a.%d.png", kPngFiles, 24, 0, 9);
  const std::string good = FileBytes(folder, "a.4.png");
  WriteFile(folder, "a.4.png", good.substr(0, good.size() / 2));
  const std::string files = FilesIn(folder);
  const Outcome encoded = RunVorel(folder, {"encode", "-q", "a.%d.png"});
  EXPECT_EQ(encoded.status, 1);
  EXPECT_EQ(encoded.err.find("vorel: a.4.png: the PNG file cannot be read: "), 0u) << encoded.err;
  EXPECT_EQ(FilesIn(folder), files);
}

TEST(SequenceEncode, PictureOfAnotherSizeIsNamedAndNoMovieIsMade) {
  const TestFolder folder;
  WriteSequence(folder, "a.%d.tif", kTiffFiles, 24, 0, 3);
  WritePicture(folder, "a.3.tif", kTiffFiles, NoisePicture(24, 18, 50, 3));
  const Outcome encoded = RunVorel(folder, {"encode", "-q", "a.%d.tif"});
  EXPECT_EQ(encoded.status, 1);
  EXPECT_EQ(encoded.err.find("vorel: a.3.tif: the picture is 18 x 50, 8-bit RGB, but the sequence began with "
                             "50 x 18, 8-bit RGB\n"),
            0u)
      << encoded.err;
  EXPECT_EQ(FilesIn(folder), "a.0.tif a.1.tif a.2.tif a.3.tif");
}

TEST(SequenceEncode, PatternWithoutFilesIsNamed) {
  const TestFolder folder;
  const Outcome none = RunVorel(folder, {"encode", "a.%d.png"});
  EXPECT_EQ(none.status, 1);
  EXPECT_TRUE(Contains(none.err, "vorel: a.%d.png: no file has a name of this sequence")) << none.err;
  const Outcome unknown = RunVorel(folder, {"encode", "a.%d.gif"});
  EXPECT_EQ(unknown.status, 1);
  EXPECT_TRUE(Contains(unknown.err, "sequences are read from .png, .tif, .tiff and .dpx files"))
      << unknown.err;
  EXPECT_EQ(FilesIn(folder), "");
}

TEST(SequenceEncode, RateIsWhatIsSaidOrWhatFilesSayOr24) {
  const TestFolder folder;
  WriteSequence(folder, "a.%d.png", kPngFiles, 24, 0, 2);
  const auto rateOf = [&folder](const std::vector<std::string>& more) {
    std::vector<std::string> line = {"encode", "-f", "-o", "a.mov"};
    line.insert(line.end(), more.begin(), more.end());
    const Outcome encoded = RunVorel(folder, line);
    EXPECT_EQ(encoded.status, 0) << encoded.err;
    const bool isNoted = Contains(encoded.err, ": taken as 24 frames per second; --rate gives another\n");
    const std::string info = RunVorel(folder, {"info", "a.mov"}).out;
    const std::size_t at = info.find("2 frames, ") + 10;
    return info.substr(at, info.find(" frames/s", at) - at) + (isNoted ? " taken" : "");
  };
  EXPECT_EQ(rateOf({"a.%d.png"}), "24 taken");
  EXPECT_EQ(rateOf({"a.%d.png", "--rate", "24"}), "24");
  ASSERT_EQ(RunVorel(folder, {"encode", "-f", "a.%d.png", "--rate", "30000/1001", "-o", "b.mov"}).status, 0);
  ASSERT_EQ(RunVorel(folder, {"decode", "b.mov", "-o", "b.%d.dpx"}).status, 0);
  EXPECT_EQ(rateOf({"b.%d.dpx"}), "30000/1001");
  EXPECT_EQ(rateOf({"b.%d.dpx", "--rate", "50"}), "50");
}

TEST(SequenceEncode, AlphaIsKeptUnlessItIsToBeDropped) {
  const TestFolder folder;
  WritePicture(folder, "a.png", kPngFiles, NoisePicture(picture_io::kRgba8, 50, 18, 1));
  ASSERT_EQ(RunVorel(folder, {"encode", "-q", "a.png"}).status, 0);
  EXPECT_EQ(DescriptionOf(folder, "a.mov").depth, 32);
  const Outcome dropped = RunVorel(folder, {"encode", "-f", "--alpha", "drop", "a.png"});
  EXPECT_TRUE(Contains(dropped.err, "note: a.png: the movie does not keep alpha\n")) << dropped.err;
  EXPECT_EQ(DescriptionOf(folder, "a.mov").depth, 24);
}

TEST(SequenceEncode, PerfectConversionRefusesEveryLossBeforeAnythingIsWritten) {
  const TestFolder folder;
  WritePicture(folder, "deep.png", kPngFiles, NoisePicture(picture_io::kRgb16, 50, 18, 1));
  WritePicture(folder, "ten.dpx", kDpxFiles, NoisePicture(picture_io::kRgb10, 50, 18, 1));
  WritePicture(folder, "alpha.png", kPngFiles, NoisePicture(picture_io::kRgba8, 50, 18, 1));
  const std::string files = FilesIn(folder);
  const auto refusal = [&folder](const std::string& name, const std::vector<std::string>& more) {
    std::vector<std::string> line = {"encode", "--conversion", "perfect", name, "-o", "a.mov"};
    line.insert(line.end(), more.begin(), more.end());
    const Outcome encoded = RunVorel(folder, line);
    EXPECT_EQ(encoded.status, 1) << encoded.err;
    return encoded.err;
  };
  EXPECT_EQ(
      refusal("deep.png", {}),
      "vorel: deep.png: frames of format RGB 10bf p do not keep the lower 6 of 16 bits of a sample, and "
      "--conversion perfect allows no loss\n"
      "       frames hold 10 bits at most: keep the 16-bit files, or take 8-bit or 10-bit pictures (DPX)\n");
  EXPECT_EQ(refusal("ten.dpx", {"--codec", "rgb-8bf"}),
            "vorel: ten.dpx: frames of format RGB 8bf p do not keep the lower 2 of 10 bits of a sample, and "
            "--conversion perfect allows no loss\n"
            "       choose a codec that holds them whole: --codec auto, rgb-10bf\n");
  EXPECT_EQ(
      refusal("alpha.png", {"--alpha", "drop"}),
      "vorel: alpha.png: frames of format RGB 8bf p do not keep alpha, and --conversion perfect allows no "
      "loss\n"
      "       --alpha keep holds them whole\n");
  EXPECT_TRUE(Contains(refusal("alpha.png", {"--alpha", "drop", "--codec", "ycbcr-8b-444"}),
                       "choose a codec that holds them whole, and --alpha keep: --codec auto, "));
  EXPECT_EQ(FilesIn(folder), files);
  EXPECT_EQ(RunVorel(folder, {"encode", "--conversion", "perfect", "ten.dpx"}).status, 0);
  EXPECT_EQ(RunVorel(folder, {"encode", "--conversion", "perfect", "alpha.png"}).status, 0);
}

}  // namespace vorel::tool
