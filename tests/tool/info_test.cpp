// What info says, for people and as JSON.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "tests/tool/movies.h"
#include "tests/tool/run_vorel.h"

namespace vorel::tool {

namespace {

using Json = nlohmann::json;

}  // namespace

TEST(Info, JsonHoldsWhatTheMovieSays) {
  const TestFolder folder;
  MakeBrook(folder);
  const Outcome outcome = RunVorel(folder, {"info", "--json", "brook.mov"});
  ASSERT_EQ(outcome.status, 0) << outcome.err;
  const Json info = Json::parse(outcome.out);
  EXPECT_EQ(info["file"], "brook.mov");
  EXPECT_EQ(info["bytes"], FileBytes(folder, "brook.mov").size());
  EXPECT_EQ(info["brand"], "qt  ");
  EXPECT_NEAR(info["seconds"].get<double>(), 8 * 1001.0 / 24000, 0.002);
  ASSERT_EQ(info["tracks"].size(), 1u);
  EXPECT_EQ(info["tracks"][0]["kind"], "vide");
  EXPECT_EQ(info["tracks"][0]["codec"], "Vrl3");
  const Json& video = info["video"];
  EXPECT_EQ(video["width"], 640);
  EXPECT_EQ(video["height"], 360);
  EXPECT_EQ(video["scan"], "progressive");
  EXPECT_EQ(video["pixelAspect"], "1:1");
  EXPECT_EQ(video["colourStandard"], "ntsc");
  EXPECT_EQ(video["tag"], "BYRY");
  EXPECT_EQ(video["format"], "Y'CbCr 8bv 4:2:2p");
  EXPECT_EQ(video["frames"], 8);
  EXPECT_EQ(video["rate"], "24000/1001");
  const Json& description = video["descriptions"][0];
  EXPECT_EQ(description["codec"], "Vrl3");
  EXPECT_EQ(description["vendor"], "Vorl");
  EXPECT_EQ(description["depth"], 24);
  EXPECT_EQ(description["spatialQuality"], 1024);
  EXPECT_EQ(description["temporalQuality"], 0);
  EXPECT_EQ(description["horizontalResolution"], 72.0);
  EXPECT_EQ(description["frameCount"], 1);
  EXPECT_EQ(description["clutID"], -1);
  const Json extensions = Json::parse(R"([{"type": "fiel", "bytes": "0100"},
                                          {"type": "colr", "bytes": "6e636c63000600010006"},
                                          {"type": "pasp", "bytes": "0000000100000001"},
                                          {"type": "cspc", "bytes": "32767579"},
                                          {"type": "Kesp", "bytes": "42595259"},
                                          {"type": "sgbt", "bytes": "08"}])");
  EXPECT_EQ(description["extensions"], extensions);
}

TEST(Info, FrameSizesAndRatioAreThoseOfTheFrames) {
  const TestFolder folder;
  MakeBrook(folder);
  std::size_t total = 0;
  std::size_t largest = 0;
  std::size_t smallest = SIZE_MAX;
  for (const std::vector<u8>& frame : FramesOf(folder, "brook.mov")) {
    total += frame.size();
    largest = std::max(largest, frame.size());
    smallest = std::min(smallest, frame.size());
  }
  const Json video = Json::parse(RunVorel(folder, {"info", "--json", "brook.mov"}).out)["video"];
  EXPECT_EQ(video["frameBytes"]["total"], total);
  EXPECT_EQ(video["frameBytes"]["largest"], largest);
  EXPECT_EQ(video["frameBytes"]["smallest"], smallest);
  EXPECT_EQ(video["frameBytes"]["mean"], total / 8);
  EXPECT_NEAR(video["ratio"].get<double>(), 8.0 * 640 * 360 * 2 / static_cast<double>(total), 1e-9);
}

TEST(Info, TextNamesTheSameThings) {
  const TestFolder folder;
  ASSERT_EQ(RunVorel(folder, {"encode", SamplePath("brook_640x360i_8.y4m"), "-o", "brook.mov", "-q"}).status,
            0);
  const Outcome outcome = RunVorel(folder, {"info", "brook.mov"});
  ASSERT_EQ(outcome.status, 0) << outcome.err;
  for (const char* const part :
       {"brook.mov\n", "640 x 360", "4 frames", "25 frames/s", "interlaced, top field first",
        "Y'CbCr 8bv 4:2:2i", "tag 'BYRy'", "'fiel' 0209", "'Vrl3'", "ratio", "colour standard ntsc"}) {
    EXPECT_NE(outcome.out.find(part), std::string::npos) << part << "\n" << outcome.out;
  }
}

TEST(Info, SeveralMoviesAreAnArray) {
  const TestFolder folder;
  MakeBrook(folder);
  const Outcome outcome = RunVorel(folder, {"info", "--json", "brook.mov", "brook.mov"});
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(Json::parse(outcome.out).size(), 2u);
  const Outcome oneBad = RunVorel(folder, {"info", "--json", "nothing.mov", "brook.mov"});
  EXPECT_EQ(oneBad.status, 1);
  EXPECT_EQ(Json::parse(oneBad.out).size(), 1u);
}

TEST(Info, MovieOfAnotherCodecIsDescribedWithoutATag) {
  const TestFolder folder;
  MakeBrook(folder);
  RemakeMovie(folder, "brook.mov", "other.mov", [](Frames& frames, auto& description) {
    description.cType = FourCharacterCode("abcd");
    RemoveExtension(description, FourCharacterCode("Kesp"));
    RemoveExtension(description, FourCharacterCode("colr"));
    for (std::vector<u8>& frame : frames) frame.assign(1000, 7);
  });
  const Outcome outcome = RunVorel(folder, {"info", "--json", "other.mov"});
  ASSERT_EQ(outcome.status, 0) << outcome.err;
  const Json video = Json::parse(outcome.out)["video"];
  EXPECT_TRUE(video["tag"].is_null());
  EXPECT_TRUE(video["colourStandard"].is_null());
  EXPECT_TRUE(video["ratio"].is_null());
  EXPECT_EQ(video["frames"], 8);
}

TEST(Info, MovieComesThroughAPipe) {
  const TestFolder folder;
  MakeBrook(folder);
  const Outcome outcome = RunVorel(folder, {"info", "--json", "-"}, FileBytes(folder, "brook.mov"));
  ASSERT_EQ(outcome.status, 0) << outcome.err;
  EXPECT_EQ(Json::parse(outcome.out)["file"], "stdin");
}

}  // namespace vorel::tool
