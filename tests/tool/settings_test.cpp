// Settings of compressors: as text, from words, in the dialog, and as a record for encode.
#include <gtest/gtest.h>

#include "base/bytes.h"
#include "tests/tool/movies.h"

namespace vorel::tool {

namespace {

bool Contains(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

std::string Pair(const char (&key)[5], u32 value) {
  std::string pair(8, '\0');
  StoreLittle32(pair.data(), FourCharacterCode(key));
  StoreLittle32(pair.data() + 4, value);
  return pair;
}

std::string Record(u32 mode, u32 scan, u32 conversion, u32 standard, u32 range) {
  return Pair("Vrl0", mode) + Pair("Scan", scan) + Pair("Dest", conversion) + Pair("Vide", standard) +
         Pair("Rnge", range);
}

}  // namespace

TEST(Settings, CompressorsSayWhatTheyOpenWith) {
  const TestFolder folder;
  EXPECT_EQ(
      RunVorel(folder, {"settings"}).out,
      "Vorel\nMode: One-way\nConversion: Best\nVideo Color Standard: NTSC\nRGB Input Range: Automatic\n");
  EXPECT_EQ(RunVorel(folder, {"settings", "--codec", "ycbcr-8bw-422"}).out,
            "Vorel Y'CbCr 8bw 4:2:2\nMode: One-way\n");
}

TEST(Settings, WordsSetValuesAndTheRecordHoldsThem) {
  const TestFolder folder;
  const Outcome outcome =
      RunVorel(folder, {"settings", "--codec", "rgb-8bf", "--set", "mode=self-check", "--set",
                        "scan=interlaced", "--set", "conversion=perfect", "--set", "standard=pal", "--set",
                        "range=video", "-o", "a.settings"});
  EXPECT_EQ(outcome.out,
            "Vorel RGB 8bf i\nMode: Self-check\nConversion: Perfect\nVideo Color Standard: PAL|SÉCAM\n"
            "RGB Input Range: Video\n");
  EXPECT_EQ(FileBytes(folder, "a.settings"), Record(1, 2, 0, 3, 2));
}

TEST(Settings, DialogSelectsAndCancelLeavesAll) {
  const TestFolder folder;
  const std::vector<std::string> arguments = {"settings", "--dialog", "-o", "a.settings", "-f"};
  ASSERT_EQ(RunVorel(folder, arguments, "7\n10\n13\n20\n22\n1\n").status, 0);
  EXPECT_EQ(FileBytes(folder, "a.settings"), Record(1, 2, 0, 4, 1));
  ASSERT_EQ(RunVorel(folder, arguments, "7\n10\n2\n").status, 0);
  EXPECT_EQ(FileBytes(folder, "a.settings"), Record(0, 0, 1, 0, 0));
  ASSERT_EQ(RunVorel(folder, arguments, "7\n").status, 0);  // the input ends: as Cancel
  EXPECT_EQ(FileBytes(folder, "a.settings"), Record(0, 0, 1, 0, 0));
  ASSERT_EQ(RunVorel(folder, arguments, "7\n10\n3\n9\n1\n").status, 0);  // Revert, then another
  EXPECT_EQ(FileBytes(folder, "a.settings"), Record(0, 1, 1, 0, 0));
}

TEST(Settings, EncodeFollowsARecordWhereNothingElseIsSaid) {
  const TestFolder folder;
  WriteFile(folder, "a.settings", Record(1, 2, 1, 3, 0));
  const std::string brook = SamplePath("brook_640x360p_8.y4m");
  ASSERT_EQ(RunVorel(folder, {"encode", brook, "--settings", "a.settings", "-o", "a.mov"}).status, 0);
  const std::string info = RunVorel(folder, {"info", "a.mov"}).out;
  EXPECT_TRUE(Contains(info, "Y'CbCr 8bv 4:2:2i")) << info;
  EXPECT_TRUE(Contains(info, "colour standard pal")) << info;
  ASSERT_EQ(RunVorel(folder, {"encode", brook, "--settings", "a.settings", "--scan", "progressive",
                              "--standard", "hd", "-o", "b.mov"})
                .status,
            0);
  const std::string said = RunVorel(folder, {"info", "b.mov"}).out;
  EXPECT_TRUE(Contains(said, "Y'CbCr 8bv 4:2:2p")) << said;
  EXPECT_TRUE(Contains(said, "colour standard hd")) << said;
}

TEST(Settings, RecordOfTheOtherByteOrderIsRead) {
  const TestFolder folder;
  std::string record = Record(1, 1, 0, 2, 1);
  for (std::size_t i = 0; i < record.size(); i += 4) {
    std::swap(record[i], record[i + 3]);
    std::swap(record[i + 1], record[i + 2]);
  }
  WriteFile(folder, "big.settings", record);
  ASSERT_EQ(RunVorel(folder, {"settings", "--settings", "big.settings", "-o", "a.settings"}).status, 0);
  EXPECT_EQ(FileBytes(folder, "a.settings"), Record(1, 1, 0, 2, 1));
}

TEST(Settings, OtherFilesAreNotRecords) {
  const TestFolder folder;
  WriteFile(folder, "odd", "Vrl0");
  WriteFile(folder, "foreign", "abcdefgh");
  const std::string brook = SamplePath("brook_640x360p_8.y4m");
  for (const char* const name : {"odd", "foreign"}) {
    const Outcome outcome = RunVorel(folder, {"encode", brook, "--settings", name, "-o", "a.mov"});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_TRUE(Contains(outcome.err, std::string(name) + ": not a settings record")) << outcome.err;
  }
  EXPECT_EQ(FilesIn(folder), "foreign odd");
}

TEST(Settings, UnknownWordsAreUsageErrors) {
  const TestFolder folder;
  const Outcome outcome = RunVorel(folder, {"settings", "--set", "scan=sideways"});
  EXPECT_EQ(outcome.status, 2);
  EXPECT_TRUE(Contains(outcome.err, "scan=auto|progressive|interlaced")) << outcome.err;
}

}  // namespace vorel::tool
