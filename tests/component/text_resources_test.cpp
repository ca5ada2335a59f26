// Settings text and names of frame formats, against lists written out by hand.
#include <gtest/gtest.h>

#include <algorithm>

#include "tests/component/hand_bytes.h"

namespace vorel::component {
namespace {

using Lines = std::vector<std::string>;

Lines WithReturns(const Lines& lines) {
  Lines ended;
  for (const std::string& line : lines) ended.push_back(line + "\r");
  return ended;
}

Lines Settings(Lines names) {
  for (const char* line :
       {"Mode: One-way", "Mode: Self-check", "Conversion: Perfect", "Conversion: Best",
        "Video Color Standard: NTSC", "Video Color Standard: PAL|S\203CAM", "Video Color Standard: HD",
        "Video Color Standard: HD 1035", "Video Color Standard: unknown", "RGB Input Range: Full",
        "RGB Input Range: Video", "RGB Input Range: Automatic"}) {
    names.emplace_back(line);
  }
  return WithReturns(names);
}

TEST(SettingsText, OfEachCompressor) {
  EXPECT_EQ(Strings(BytesOf("STR#", 23616)),
            Settings({"Vorel", "Vorel p", "Vorel i", "Vorel A", "Vorel A p", "Vorel A i"}));
  EXPECT_EQ(Strings(BytesOf("STR#", 23638)),
            Settings({"Vorel RGB 10bf", "Vorel RGB 10bf p", "Vorel RGB 10bf i", "Vorel RGBA 10bf",
                      "Vorel RGBA 10bf p", "Vorel RGBA 10bf i"}));
  EXPECT_EQ(Strings(BytesOf("STR#", 23618)),
            Settings({"Vorel RGB 8bf", "Vorel RGB 8bf p", "Vorel RGB 8bf i", "Vorel RGBA 8bf",
                      "Vorel RGBA 8bf p", "Vorel RGBA 8bf i"}));
  EXPECT_EQ(
      Strings(BytesOf("STR#", 23630)),
      Settings({"Vorel Y'CbCr 10bv 4:4:4", "Vorel Y'CbCr 10bv 4:4:4p", "Vorel Y'CbCr 10bv 4:4:4i",
                "Vorel Y'CbCrA 10bv 4:4:4:4", "Vorel Y'CbCrA 10bv 4:4:4:4p", "Vorel Y'CbCrA 10bv 4:4:4:4i"}));
  EXPECT_EQ(
      Strings(BytesOf("STR#", 23620)),
      Settings({"Vorel Y'CbCr 8bv 4:4:4", "Vorel Y'CbCr 8bv 4:4:4p", "Vorel Y'CbCr 8bv 4:4:4i",
                "Vorel Y'CbCrA 8bv 4:4:4:4", "Vorel Y'CbCrA 8bv 4:4:4:4p", "Vorel Y'CbCrA 8bv 4:4:4:4i"}));
  EXPECT_EQ(
      Strings(BytesOf("STR#", 23632)),
      Settings({"Vorel Y'CbCr 10bv 4:2:2", "Vorel Y'CbCr 10bv 4:2:2p", "Vorel Y'CbCr 10bv 4:2:2i",
                "Vorel Y'CbCrA 10bv 4:2:2:4", "Vorel Y'CbCrA 10bv 4:2:2:4p", "Vorel Y'CbCrA 10bv 4:2:2:4i"}));
  EXPECT_EQ(
      Strings(BytesOf("STR#", 23624)),
      Settings({"Vorel Y'CbCr 8bv 4:2:2", "Vorel Y'CbCr 8bv 4:2:2p", "Vorel Y'CbCr 8bv 4:2:2i",
                "Vorel Y'CbCrA 8bv 4:2:2:4", "Vorel Y'CbCrA 8bv 4:2:2:4p", "Vorel Y'CbCrA 8bv 4:2:2:4i"}));
}

TEST(SettingsText, Of8bwEndsWithTheModes) {
  EXPECT_EQ(Strings(BytesOf("STR#", 23628)),
            WithReturns({"Vorel Y'CbCr 8bw 4:2:2", "Vorel Y'CbCr 8bw 4:2:2p", "Vorel Y'CbCr 8bw 4:2:2i",
                         "Vorel Y'CbCr 8bw 4:2:2", "Vorel Y'CbCr 8bw 4:2:2p", "Vorel Y'CbCr 8bw 4:2:2i",
                         "Mode: One-way", "Mode: Self-check"}));
}

TEST(FormatNameLists, OfFamilies) {
  EXPECT_EQ(Strings(BytesOf("STR#", 23639)),
            (Lines{"Vorel RGB 10bf", "Vorel RGBA 10bf", "Vorel RGB 10bf p", "Vorel RGB 10bf i",
                   "Vorel RGBA 10bf p", "Vorel RGBA 10bf i"}));
  EXPECT_EQ(Strings(BytesOf("STR#", 23619)),
            (Lines{"Vorel RGB 8bf", "Vorel RGBA 8bf", "Vorel RGB 8bf p", "Vorel RGB 8bf i",
                   "Vorel RGBA 8bf p", "Vorel RGBA 8bf i"}));
  EXPECT_EQ(
      Strings(BytesOf("STR#", 23631)),
      (Lines{"Vorel Y'CbCr 10bv 4:4:4", "Vorel Y'CbCrA 10bv 4:4:4:4", "Vorel Y'CbCr 10bv 4:4:4p",
             "Vorel Y'CbCr 10bv 4:4:4i", "Vorel Y'CbCrA 10bv 4:4:4:4p", "Vorel Y'CbCrA 10bv 4:4:4:4i"}));
  EXPECT_EQ(Strings(BytesOf("STR#", 23621)),
            (Lines{"Vorel Y'CbCr 8bv 4:4:4", "Vorel Y'CbCrA 8bv 4:4:4:4", "Vorel Y'CbCr 8bv 4:4:4p",
                   "Vorel Y'CbCr 8bv 4:4:4i", "Vorel Y'CbCrA 8bv 4:4:4:4p", "Vorel Y'CbCrA 8bv 4:4:4:4i",
                   "Vorel Y'CbCr 8bu 4:4:4p", "Vorel Y'CbCr 8bu 4:4:4i", "Vorel Y'CbCrA 8bu 4:4:4:4p",
                   "Vorel Y'CbCrA 8bu 4:4:4:4i"}));
  EXPECT_EQ(
      Strings(BytesOf("STR#", 23633)),
      (Lines{"Vorel Y'CbCr 10bv 4:2:2", "Vorel Y'CbCrA 10bv 4:2:2:4", "Vorel Y'CbCr 10bv 4:2:2p",
             "Vorel Y'CbCr 10bv 4:2:2i", "Vorel Y'CbCrA 10bv 4:2:2:4p", "Vorel Y'CbCrA 10bv 4:2:2:4i"}));
  EXPECT_EQ(Strings(BytesOf("STR#", 23625)),
            (Lines{"Vorel Y'CbCr 8bv 4:2:2", "Vorel Y'CbCrA 8bv 4:2:2:4", "Vorel Y'CbCr 8bv 4:2:2p",
                   "Vorel Y'CbCr 8bv 4:2:2i", "Vorel Y'CbCrA 8bv 4:2:2:4p", "Vorel Y'CbCrA 8bv 4:2:2:4i"}));
  EXPECT_EQ(Strings(BytesOf("STR#", 23629)),
            (Lines{"Vorel Y'CbCr 8bw 4:2:2", "Vorel Y'CbCr 8bw 4:2:2", "Vorel Y'CbCr 8bw 4:2:2p",
                   "Vorel Y'CbCr 8bw 4:2:2i", "Vorel Y'CbCr 8bw 4:2:2p", "Vorel Y'CbCr 8bw 4:2:2i"}));
}

TEST(FormatNameLists, GenericListIsTwoHeadsAndThenAllFamilies) {
  Lines all = {"Vorel", "Vorel [A]"};
  for (const int family : {23639, 23619, 23631, 23621, 23633, 23625, 23629}) {
    for (const std::string& name : Strings(BytesOf("STR#", family))) all.push_back(name);
  }
  EXPECT_EQ(all.size(), 48u);
  EXPECT_EQ(Strings(BytesOf("STR#", 23617)), all);
}

TEST(FormatNameLists, OfTranscodersBeginWithTheProgressiveName) {
  EXPECT_EQ(Strings(BytesOf("STR#", 23662)), (Lines{"Vorel Y'CbCr 10bv 4:4:4p", "Vorel Y'CbCr 10bv 4:4:4i"}));
  EXPECT_EQ(Strings(BytesOf("STR#", 23664)), (Lines{"Vorel Y'CbCr 10bv 4:2:2p", "Vorel Y'CbCr 10bv 4:2:2i"}));
  EXPECT_EQ(Strings(BytesOf("STR#", 23656)), (Lines{"Vorel Y'CbCr 8bv 4:2:2p", "Vorel Y'CbCr 8bv 4:2:2i"}));
  EXPECT_EQ(Strings(BytesOf("STR#", 23660)), (Lines{"Vorel Y'CbCr 8bw 4:2:2p", "Vorel Y'CbCr 8bw 4:2:2i"}));
  EXPECT_EQ(Strings(BytesOf("STR#", 23652)),
            (Lines{"Vorel Y'CbCr 8bv 4:4:4p", "Vorel Y'CbCr 8bv 4:4:4i", "Vorel Y'CbCrA 8bv 4:4:4:4p",
                   "Vorel Y'CbCrA 8bv 4:4:4:4i", "Vorel Y'CbCr 8bu 4:4:4p", "Vorel Y'CbCr 8bu 4:4:4i",
                   "Vorel Y'CbCrA 8bu 4:4:4:4p", "Vorel Y'CbCrA 8bu 4:4:4:4i"}));
}

TEST(StringLists, AreTheseAndNoOthers) {
  std::vector<int> ids = IdsOf("STR#");
  std::sort(ids.begin(), ids.end());
  EXPECT_EQ(ids,
            (std::vector<int>{23616, 23617, 23618, 23619, 23620, 23621, 23624, 23625, 23628, 23629, 23630,
                              23631, 23632, 23633, 23638, 23639, 23652, 23656, 23660, 23662, 23664}));
}

}  // namespace
}  // namespace vorel::component
