// Exit statuses and texts of the command line itself.
#include <gtest/gtest.h>

#include "tests/tool/run_vorel.h"

namespace vorel::tool {

TEST(CommandLine, VersionAndHelpAreGoodAndGoToStdout) {
  const TestFolder folder;
  const Outcome version = RunVorel(folder, {"--version"});
  EXPECT_EQ(version.status, 0);
  EXPECT_EQ(version.out, "vorel 2.6.7\n");
  const Outcome help = RunVorel(folder, {"--help"});
  EXPECT_EQ(help.status, 0);
  for (const char* const command : {"encode", "decode", "verify", "info", "formats"}) {
    EXPECT_NE(help.out.find(command), std::string::npos);
    const Outcome own = RunVorel(folder, {command, "--help"});
    EXPECT_EQ(own.status, 0);
    EXPECT_NE(own.out.find("--quiet"), std::string::npos);
    EXPECT_EQ(own.err, "");
  }
}

TEST(CommandLine, WhatCannotBeMeantHasStatusTwoAndMakesNothing) {
  const std::vector<std::vector<std::string>> lines = {
      {},
      {"encrypt"},
      {"encode"},
      {"encode", "--loss", "a.y4m"},
      {"encode", "a.y4m", "b.y4m", "-o", "c.mov"},
      {"encode", "-"},
      {"encode", "a.y4m", "dir/../a.yuv", "a.yuv"},
      {"encode", "-j", "-1", "a.y4m"},
      {"encode", "-j", "many", "a.y4m"},
      {"encode", "-j", "5000", "a.y4m"},
      {"encode", "--pixel-format", "yuvu", "a.yuv"},
      {"encode", "--pixel-format", "2VUY", "--size", "2x2", "a.yuv"},
      {"encode", "--codec", "ycbcr", "a.y4m"},
      {"encode", "--alpha", "some", "a.y4m"},
      {"encode", "--standard", "secam", "a.y4m"},
      {"encode", "--size", "2x2", "a.yuv"},
      {"encode", "--pixel-format", "yuvu", "--size", "0x2", "a.yuv"},
      {"encode", "--pixel-format", "yuvu", "--size", "2x2", "--rate", "0", "a.yuv"},
      {"encode", "--scan", "sideways", "a.y4m"},
      {"encode", "a.mov"},
      {"encode", "--conversion", "good", "a.png"},
      {"encode", "--start", "-1", "a.%d.png"},
      {"encode", "--start", "1", "a.y4m"},
      {"encode", "--start", "1", "a.png"},
      {"encode", "a.%s.png"},
      {"encode", "a.%d.%d.png"},
      {"encode", "a%dir/%d.png"},
      {"encode", "--pixel-format", "24", "--size", "2x2", "a.png"},
      {"decode", "--format", "gif", "a.mov"},
      {"decode", "--format", "png", "-o", "-", "a.mov"},
      {"decode", "-o", "a.%d", "a.mov"},
      {"decode", "-o", "a.%d.%d.png", "a.mov"},
      {"decode", "--start", "1", "a.mov"},
      {"decode", "--start", "1", "-o", "a.png", "a.mov"},
      {"decode", "--pixel-format", "rgb", "a.mov"},
      {"decode", "--pixel-format", "v210", "--format", "y4m", "a.mov"},
      {"decode", "--pixel-format", "32", "a.mov", "-o", "a.y4m"},
      {"decode", "-"},
      {"verify", "a.mov", "b.mov", "--against", "a.y4m"},
      {"verify", "-", "--against", "-"},
      {"info", "--xml", "a.mov"},
      {"formats", "v210"},
  };
  const TestFolder folder;
  for (const std::vector<std::string>& line : lines) {
    std::string shown;
    for (const std::string& argument : line) shown += argument + " ";
    const Outcome outcome = RunVorel(folder, line);
    EXPECT_EQ(outcome.status, 2) << shown;
    EXPECT_NE(outcome.err, "") << shown;
    EXPECT_EQ(outcome.out, "") << shown;
  }
  EXPECT_EQ(FilesIn(folder), "");
}

TEST(CommandLine, WhatIsNoPixelFormatIsRefusedByName) {
  const TestFolder folder;
  for (const char* const name : {"V210", "v21", "v2100", "33", "", "R10k", "r210"}) {
    const Outcome outcome =
        RunVorel(folder, {"encode", "--pixel-format", name, "--size", "2x2", "--rate", "25", "a.yuv"});
    EXPECT_EQ(outcome.status, 2);
    EXPECT_NE(
        outcome.err.find(std::string("\"") + name + "\" is not a pixel format: vorel formats lists them"),
        std::string::npos)
        << outcome.err;
  }
}

}  // namespace vorel::tool
