// The list of pixel formats, for people and as JSON.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <sstream>

#include "tests/tool/run_vorel.h"

namespace vorel::tool {

namespace {

using Json = nlohmann::json;

Json FormatNamed(const Json& formats, const std::string& name) {
  for (const Json& format : formats) {
    if (format["name"] == name) return format;
  }
  return {};
}

}  // namespace

TEST(Formats, JsonTellsWhatStandsWhere) {
  const TestFolder folder;
  const Outcome outcome = RunVorel(folder, {"formats", "--json"});
  ASSERT_EQ(outcome.status, 0) << outcome.err;
  const Json formats = Json::parse(outcome.out)["pixelFormats"];
  EXPECT_EQ(formats.size(), 28u);
  const Json v210 = FormatNamed(formats, "v210");
  EXPECT_EQ(v210["code"], 0x76323130);
  EXPECT_EQ(v210["unitBytes"], 16);
  EXPECT_EQ(v210["unitPixels"], 6);
  EXPECT_EQ(v210["sampleBits"], 10);
  EXPECT_EQ(v210["alpha"], false);
  EXPECT_EQ(v210["range"], "video");
  const Json chunky = FormatNamed(formats, "32");
  EXPECT_EQ(chunky["code"], 32);
  EXPECT_EQ(chunky["alpha"], true);
  EXPECT_EQ(chunky["layout"], "bytes A, R, G, B");
}

TEST(Formats, TableHasARowForEachAndAlignedColumns) {
  const TestFolder folder;
  const Outcome outcome = RunVorel(folder, {"formats"});
  ASSERT_EQ(outcome.status, 0) << outcome.err;
  std::istringstream lines(outcome.out);
  std::string head;
  ASSERT_TRUE(std::getline(lines, head));
  const std::size_t depth = head.find("depth");
  const std::size_t layout = head.find("layout");
  ASSERT_NE(layout, std::string::npos);
  int rows = 0;
  for (std::string line; std::getline(lines, line); ++rows) {
    ASSERT_GT(line.size(), layout) << line;
    EXPECT_EQ(line.substr(depth - 2, 2), "  ") << line;
    EXPECT_TRUE(line.at(depth) >= '0' && line.at(depth) <= '9') << line;
    EXPECT_EQ(line.substr(layout - 2, 2), "  ") << line;
    EXPECT_NE(line.at(layout), ' ') << line;
  }
  EXPECT_EQ(rows, 28);
  EXPECT_NE(outcome.out.find("\nv210  16 for 6  10 "), std::string::npos) << outcome.out;
}

TEST(Formats, NothingIsSaidBesideTheList) {
  const TestFolder folder;
  EXPECT_EQ(RunVorel(folder, {"formats", "-q"}).out, RunVorel(folder, {"formats"}).out);
  EXPECT_EQ(RunVorel(folder, {"formats"}).err, "");
}

}  // namespace vorel::tool
