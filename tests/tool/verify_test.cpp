// What verify finds, and what it says of it.
#include <gtest/gtest.h>

#include "tests/tool/movies.h"
#include "tests/tool/run_vorel.h"

namespace vorel::tool {

namespace {

const std::string kBrook = SamplePath("brook_640x360p_8.y4m");
constexpr std::size_t kHeaderBytes = 45;  // of the clip's first line
constexpr std::size_t kLumaBytes = 640 * 360;
constexpr std::size_t kFrameBytes = 6 + 2 * kLumaBytes;

bool Contains(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

// Writes brook as changed.y4m with one more on the byte at each of the places.
void WriteChanged(const TestFolder& folder, const std::vector<std::size_t>& places) {
  std::string clip = FileBytes(kBrook);
  for (const std::size_t place : places) clip.at(place) = static_cast<char>(clip.at(place) + 1);
  WriteFile(folder, "changed.y4m", clip);
}

}  // namespace

TEST(Verify, GoodMovieIsGood) {
  const TestFolder folder;
  MakeBrook(folder);
  const Outcome outcome = RunVorel(folder, {"verify", "brook.mov"});
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(outcome.err.find("brook.mov: 8 frames, all good"), 0u) << outcome.err;
}

TEST(Verify, GoodMovieAgreesWithItsSource) {
  const TestFolder folder;
  MakeBrook(folder);
  EXPECT_EQ(RunVorel(folder, {"verify", "brook.mov", "--against", kBrook}).status, 0);
  EXPECT_EQ(RunVorel(folder, {"verify", "brook.mov", "--against", "-"}, FileBytes(kBrook)).status, 0);
  EXPECT_EQ(RunVorel(folder, {"verify", "-", "--against", kBrook}, FileBytes(folder, "brook.mov")).status, 0);
}

TEST(Verify, FirstDifferenceIsSaidAndFramesAreCounted) {
  const TestFolder folder;
  MakeBrook(folder);
  const std::size_t second = kHeaderBytes + 2 * kFrameBytes + 6;
  WriteChanged(folder, {second + 100 * 640 + 77, second + 101 * 640, second + 4 * kFrameBytes});
  const int value = static_cast<u8>(FileBytes(kBrook).at(second + 100 * 640 + 77));
  const Outcome outcome = RunVorel(folder, {"verify", "brook.mov", "--against", "changed.y4m"});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_TRUE(Contains(outcome.err, "brook.mov: frame 2 at byte ")) << outcome.err;
  EXPECT_TRUE(Contains(outcome.err, ": differs from changed.y4m: row 100, pixel 77, Y' is " +
                                        std::to_string(value) + ", there " +
                                        std::to_string((value + 1) & 255) + "\n"))
      << outcome.err;
  EXPECT_TRUE(Contains(outcome.err, "brook.mov: 2 of 8 frames compared differ from changed.y4m\n"))
      << outcome.err;
}

TEST(Verify, ChromaThatDiffersIsNamedInVideoLevels) {
  const TestFolder folder;
  MakeBrook(folder);
  const std::size_t cr = kHeaderBytes + 6 + kLumaBytes + kLumaBytes / 2 + 5 * 320 + 9;
  WriteChanged(folder, {cr});
  const int value = static_cast<u8>(FileBytes(kBrook).at(cr));
  const Outcome outcome = RunVorel(folder, {"verify", "brook.mov", "--against", "changed.y4m"});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_TRUE(Contains(outcome.err, "row 5, pixel 18, Cr is " + std::to_string(value) + ", there " +
                                        std::to_string((value + 1) & 255)))
      << outcome.err;
}

TEST(Verify, FewerAndMoreFramesAreDifferences) {
  const TestFolder folder;
  MakeBrook(folder);
  const std::string clip = FileBytes(kBrook);
  WriteFile(folder, "fewer.y4m", clip.substr(0, clip.size() - kFrameBytes));
  const Outcome fewer = RunVorel(folder, {"verify", "brook.mov", "--against", "fewer.y4m"});
  EXPECT_EQ(fewer.status, 1);
  EXPECT_TRUE(Contains(fewer.err, "the number of frames differs: 8 here, 7 in fewer.y4m")) << fewer.err;
  const std::string frame = clip.substr(clip.size() - kFrameBytes);
  WriteFile(folder, "more.y4m", clip + frame + frame);
  const Outcome more = RunVorel(folder, {"verify", "brook.mov", "--against", "more.y4m"});
  EXPECT_EQ(more.status, 1);
  EXPECT_TRUE(Contains(more.err, "the number of frames differs: 8 here, 10 in more.y4m")) << more.err;
}

TEST(Verify, OtherSizeIsADifference) {
  const TestFolder folder;
  MakeBrook(folder);
  WriteFile(folder, "small.y4m", NoiseClip("YUV4MPEG2 W64 H2 F25:1 C422", 256, 8));
  const Outcome outcome = RunVorel(folder, {"verify", "brook.mov", "--against", "small.y4m"});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_TRUE(Contains(outcome.err, "pictures differ in size: 640 x 360 here, 64 x 2 in small.y4m"))
      << outcome.err;
}

TEST(Verify, PaddingCountsAgainstRawPicturesOnly) {
  const TestFolder folder;
  std::string pictures = Noise(68 * 17, 3);
  WriteFile(folder, "clip.yuv", pictures);
  const std::vector<std::string> raw = {"--pixel-format", "yuvu", "--size", "33x17"};
  std::vector<std::string> encode = {"encode", "clip.yuv", "--rate", "25", "-q"};
  encode.insert(encode.end(), raw.begin(), raw.end());
  ASSERT_EQ(RunVorel(folder, encode).status, 0);
  ASSERT_EQ(RunVorel(folder, {"decode", "clip.mov", "-q"}).status, 0);
  EXPECT_EQ(RunVorel(folder, {"verify", "clip.mov", "--against", "clip.y4m"}).status, 0);
  pictures.at(66) = static_cast<char>(pictures.at(66) + 1);
  WriteFile(folder, "changed.yuv", pictures);
  std::vector<std::string> verify = {"verify", "clip.mov", "--against", "changed.yuv"};
  verify.insert(verify.end(), raw.begin(), raw.end());
  const Outcome outcome = RunVorel(folder, verify);
  EXPECT_EQ(outcome.status, 1);
  EXPECT_TRUE(Contains(outcome.err, "row 0, pixel 33, Y' is ")) << outcome.err;
}

TEST(Verify, EveryDamagedFrameIsReported) {
  const TestFolder folder;
  MakeBrook(folder);
  RemakeMovie(folder, "brook.mov", "bad.mov", [](Frames& frames, auto&) {
    frames.at(1).at(3) = 'X';
    frames.at(6).resize(100);
  });
  const Outcome outcome = RunVorel(folder, {"verify", "bad.mov"});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_TRUE(Contains(outcome.err, "bad.mov: frame 1 at byte ")) << outcome.err;
  EXPECT_TRUE(Contains(outcome.err, "bad.mov: frame 6 at byte ")) << outcome.err;
  EXPECT_TRUE(Contains(outcome.err, "bad.mov: 2 of 8 frames are damaged\n")) << outcome.err;
}

TEST(Verify, BitsThatDoNotFillTheFrameAreDamage) {
  const TestFolder folder;
  MakeBrook(folder);
  RemakeMovie(folder, "brook.mov", "bad.mov", [](Frames& frames, auto&) { frames.at(4).push_back(0); });
  const Outcome verified = RunVorel(folder, {"verify", "bad.mov"});
  EXPECT_EQ(verified.status, 1);
  EXPECT_TRUE(Contains(verified.err, "bad.mov: frame 4 at byte ")) << verified.err;
  EXPECT_TRUE(Contains(verified.err, "the frame's bits call for a size of ")) << verified.err;
  const Outcome decoded = RunVorel(folder, {"decode", "bad.mov"});
  EXPECT_EQ(decoded.status, 0);
  EXPECT_TRUE(Contains(decoded.err, "note: bad.mov: 1 frame is not as long as its bits say")) << decoded.err;
}

TEST(Verify, SourceThatIsCutShortIsAFailure) {
  const TestFolder folder;
  MakeBrook(folder);
  const std::string clip = FileBytes(kBrook);
  WriteFile(folder, "cut.y4m", clip.substr(0, clip.size() - 1));
  const Outcome outcome = RunVorel(folder, {"verify", "brook.mov", "--against", "cut.y4m"});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_TRUE(Contains(outcome.err, "cut.y4m: frame 7 at byte ")) << outcome.err;
}

}  // namespace vorel::tool
