// Patterns, the names they make, and folders with files of those names and others.
#include "picture_io/sequence.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "tests/picture_io/problem_text.h"

namespace vorel::picture_io {

namespace {

std::string PatternRefusal(const std::string& path) {
  return ProblemText([&] { ReadSequencePattern(path); });
}

constexpr const char* kAdvice =
    " (give the number's place as %d, or as %05d for five digits; a percent sign is %%)";

// A folder of its own, with empty files, that is gone after the test.
class SequenceFolder : public ::testing::Test {
 protected:
  void SetUp() override {
    std::string name = ::testing::TempDir() + "vorel-sequence-XXXXXX";
    ASSERT_NE(::mkdtemp(name.data()), nullptr);
    folder = name + "/";
  }
  void TearDown() override { std::filesystem::remove_all(folder); }

  void Make(const std::vector<std::string>& names) const {
    for (const std::string& name : names) std::ofstream(folder + name).put('x');
  }
  PictureFiles Find(const std::string& pattern, std::optional<u64> start = {}) const {
    return FindSequence(ReadSequencePattern(folder + pattern), start);
  }
  std::vector<std::string> PathsOf(const std::vector<std::string>& names) const {
    std::vector<std::string> paths;
    for (const std::string& name : names) paths.push_back(folder + name);
    return paths;
  }
  std::string Refusal(const std::string& pattern, std::optional<u64> start = {}) const {
    return ProblemText([&] { Find(pattern, start); });
  }

  std::string folder;
};

}  // namespace

TEST(SequencePattern, NumbersGoToTheirPlace) {
  EXPECT_EQ(SequencePath(ReadSequencePattern("shots/a.%05d.png"), 12), "shots/a.00012.png");
  EXPECT_EQ(SequencePath(ReadSequencePattern("%d"), 0), "0");
  EXPECT_EQ(SequencePath(ReadSequencePattern("a%3d.dpx"), 7), "a  7.dpx");
  EXPECT_EQ(SequencePath(ReadSequencePattern("/a/%04d"), 123456), "/a/123456");
  EXPECT_EQ(SequencePath(ReadSequencePattern("a%018d"), 5), "a000000000000000005");
}

TEST(SequencePattern, TwoPercentSignsAreOne) {
  EXPECT_EQ(SequencePath(ReadSequencePattern("50%%/x%%%02d%%.png"), 3), "50%/x%03%.png");
}

TEST(SequencePattern, PercentSignsMakeAPattern) {
  EXPECT_TRUE(LooksLikeSequence("a%d.png"));
  EXPECT_TRUE(LooksLikeSequence("a%%.png"));
  EXPECT_FALSE(LooksLikeSequence("a.png"));
}

TEST(SequencePattern, OtherPlacesAreRefused) {
  EXPECT_EQ(PatternRefusal("a%s.png"), std::string("a%s.png: \"%s\" is no place for a number") + kAdvice);
  EXPECT_EQ(PatternRefusal("a%05x"), std::string("a%05x: \"%05x\" is no place for a number") + kAdvice);
  EXPECT_EQ(PatternRefusal("a%"), std::string("a%: \"%\" is no place for a number") + kAdvice);
  EXPECT_EQ(PatternRefusal("a%5"), std::string("a%5: \"%5\" is no place for a number") + kAdvice);
  EXPECT_EQ(PatternRefusal("a%-5d"), std::string("a%-5d: \"%-\" is no place for a number") + kAdvice);
  EXPECT_EQ(PatternRefusal("a%ld"), std::string("a%ld: \"%l\" is no place for a number") + kAdvice);
}

TEST(SequencePattern, ThereIsOneNumber) {
  EXPECT_EQ(PatternRefusal("a%d-%d"), std::string("a%d-%d: there are two places for a number") + kAdvice);
  EXPECT_EQ(PatternRefusal("a%%d"), std::string("a%%d: there is no place for a number") + kAdvice);
  EXPECT_EQ(PatternRefusal("a.png"), std::string("a.png: there is no place for a number") + kAdvice);
}

TEST(SequencePattern, NumberStandsInTheNameOfTheFile) {
  EXPECT_EQ(PatternRefusal("reel%d/a.png"),
            "reel%d/a.png: the number is in the name of a folder (it stands in the name of the file)");
}

TEST(SequencePattern, EndlessNumbersAreRefused) {
  EXPECT_EQ(PatternRefusal("%019d"), "%019d: numbers of 019 digits are too long (they have at most 18)");
  EXPECT_EQ(
      PatternRefusal("%99999999999999999999d"),
      "%99999999999999999999d: numbers of 99999999999999999999 digits are too long (they have at most 18)");
}

TEST(SequencePattern, OnlyNamesThatThePatternMakesHaveANumber) {
  const SequencePattern padded = ReadSequencePattern("x/a.%03d.png");
  EXPECT_EQ(SequenceNumber(padded, "a.007.png"), 7u);
  EXPECT_EQ(SequenceNumber(padded, "a.000.png"), 0u);
  EXPECT_EQ(SequenceNumber(padded, "a.1234.png"), 1234u);
  for (const char* const other : {"a.7.png", "a.0007.png", "a..png", "a.007.jpg", "b.007.png", "a.-07.png",
                                  "a. 07.png", "a.0x7.png", "a.png", "", "a.9999999999999999999.png"}) {
    EXPECT_EQ(SequenceNumber(padded, other), std::nullopt) << other;
  }
  const SequencePattern spaced = ReadSequencePattern("%3d");
  EXPECT_EQ(SequenceNumber(spaced, "  7"), 7u);
  EXPECT_EQ(SequenceNumber(spaced, "007"), std::nullopt);
  EXPECT_EQ(SequenceNumber(spaced, "   "), std::nullopt);
  const SequencePattern plain = ReadSequencePattern("%d");
  EXPECT_EQ(SequenceNumber(plain, "0"), 0u);
  EXPECT_EQ(SequenceNumber(plain, "00"), std::nullopt);
}

TEST_F(SequenceFolder, BeginsWithTheLowestNumber) {
  Make({"a.0011.png", "a.0009.png", "a.0010.png", "a.0010.tif", "b.0001.png", "a.8.png"});
  const PictureFiles files = Find("a.%04d.png");
  EXPECT_EQ(files.name, folder + "a.%04d.png");
  EXPECT_EQ(files.paths, PathsOf({"a.0009.png", "a.0010.png", "a.0011.png"}));
}

TEST_F(SequenceFolder, BeginsWhereItIsTold) {
  Make({"a1", "a2", "a3", "a10"});
  EXPECT_EQ(Find("a%d", 10).paths, PathsOf({"a10"}));
  EXPECT_EQ(Refusal("a%d", 5), folder + "a5: there is no such file, and the sequence is to begin with it " +
                                   "(the files go from number 1 to 10)");
  EXPECT_EQ(Refusal("a%d", 11).substr(0, folder.size() + 4), folder + "a11:");
}

TEST_F(SequenceFolder, MissingFileIsNamed) {
  Make({"a08", "a09", "a12"});
  EXPECT_EQ(Refusal("a%02d"),
            folder + "a10: a picture of the sequence is missing, the next there is has number 12 " +
                "(put it there, or move the pictures behind it away)");
}

TEST_F(SequenceFolder, GapBeforeTheStartDoesNotMatter) {
  Make({"a1", "a3", "a4"});
  EXPECT_EQ(Find("a%d", 3).paths, PathsOf({"a3", "a4"}));
}

TEST_F(SequenceFolder, NumbersGrowOutOfTheirPlaces) {
  Make({"a98", "a99", "a100", "a101"});
  EXPECT_EQ(Find("a%02d").paths, PathsOf({"a98", "a99", "a100", "a101"}));
}

TEST_F(SequenceFolder, WithoutFilesThereIsNoSequence) {
  Make({"a.png"});
  EXPECT_EQ(Refusal("a%d.png"),
            folder + "a%d.png: no file has a name of this sequence (look at the folder and the digits)");
}

TEST(SequencePattern, StillIsOneFileWhateverItsNumber) {
  const SequencePattern still = PatternOfStill("x/50%d.png");
  EXPECT_EQ(still.text, "x/50%d.png");
  EXPECT_EQ(still.folder, "x/");
  EXPECT_EQ(SequencePath(still, 0), "x/50%d.png");
  EXPECT_EQ(SequencePath(still, 7), "x/50%d.png");
}

TEST_F(SequenceFolder, NumbersAreThoseOfThePatternAlone) {
  Make({"a10.png", "a9.png", "a09.png", "b1.png", "a1.tif", "a.png"});
  EXPECT_EQ(NumbersInFolder(ReadSequencePattern(folder + "a%d.png")), (std::vector<u64>{9, 10}));
  EXPECT_EQ(NumbersInFolder(ReadSequencePattern(folder + "c%d.png")), std::vector<u64>{});
}

TEST_F(SequenceFolder, FolderThatIsNotThereIsNamed) {
  EXPECT_EQ(Refusal("none/a%d.png"), folder + "none/: cannot list the folder: No such file or directory ()");
}

}  // namespace vorel::picture_io
