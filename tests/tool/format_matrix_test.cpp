// What goes into what, against the rules told once more by hand: which pixel formats each codec takes and
// which frames it makes of them, and what frames are decoded to.
#include <gtest/gtest.h>

#include <map>
#include <nlohmann/json.hpp>
#include <set>
#include <sstream>

#include "tests/tool/run_vorel.h"

namespace vorel::tool {

namespace {

using Json = nlohmann::json;

// Tags of a frame format: progressive and interlaced, without and with alpha.
struct Tags {
  std::string plain[2];
  std::string alpha[2];
};

const Tags kRgb10 = {{"RGBX", "rGBX"}, {"ARGX", "ArGX"}};
const Tags kRgb8 = {{" RGB", " rGB"}, {"ARGB", "ArGB"}};
const Tags kFull10 = {{"YBR\\x0A", "yBR\\x0A"}, {"CA4p", "CA4i"}};
const Tags kFull8v = {{" YBR", " yBR"}, {"AYBR", "AyBR"}};
const Tags kFull8u = {{" YbR", " ybR"}, {"AYbR", "AybR"}};
const Tags kHalf10 = {{"\\xA2YRY", "\\xA2YRy"}, {"CA2p", "CA2i"}};
const Tags kHalf8 = {{"BYRY", "BYRy"}, {"C82p", "C82i"}};
const Tags kWide = {{"YbYr", "Ybyr"}, {"", ""}};

const std::string kRgb8Formats = "24 24BG 32 RGBA ABGR BGRA VRGB ";
const std::string kRgbDeepFormats = "b64a L64A A46L F10k S10k F210 S210 ";
const std::string kYcbcrFormats = "V416 VUYA v408 r408 v410 v210 v216 Y216 2vuy yuvs ";

std::set<std::string> Words(const std::string& text) {
  std::istringstream stream(text);
  return {std::istream_iterator<std::string>(stream), {}};
}

// The pixel formats with a place for alpha: only these are coded to frames that have it.
const std::set<std::string> kWithAlpha = Words("32 RGBA ABGR BGRA VRGB b64a L64A A46L V416 VUYA v408 r408");

struct CodecRow {
  std::string codec;
  std::string pixelFormats;
  const Tags& tags;
};

const std::vector<CodecRow> kEncoded = {
    {"auto", kRgb8Formats, kRgb8},
    {"auto", kRgbDeepFormats + "b48r", kRgb10},
    {"auto", "v408", kFull8v},  // neither 'V416' nor 'VUYA'
    {"auto", "r408", kFull8u},
    {"auto", "v410", kFull10},
    {"auto", "Y216 v210 v216", kHalf10},
    {"auto", "2vuy yuvs", kHalf8},
    {"auto", "yuvu", kWide},
    {"rgb-10bf", kRgbDeepFormats + "b48r " + kYcbcrFormats, kRgb10},
    {"rgb-8bf", kRgb8Formats + kRgbDeepFormats + "b48r " + kYcbcrFormats, kRgb8},
    {"ycbcr-10bv-444", kRgb8Formats + kRgbDeepFormats + "V416 v410", kFull10},
    {"ycbcr-8b-444", "24 24BG 32 RGBA ABGR BGRA b64a L64A A46L F10k F210 r408", kFull8u},
    {"ycbcr-8b-444", "S10k S210 V416 VRGB VUYA Y216 v210 v216 v408 v410", kFull8v},
    {"ycbcr-10bv-422",
     "24 24BG 32 RGBA ABGR BGRA b64a L64A F10k F210 S10k S210 V416 VRGB VUYA Y216 r408 v210 v216 v408 v410",
     kHalf10},  // not 'A46L'
    {"ycbcr-8bv-422", kRgb8Formats + kRgbDeepFormats + kYcbcrFormats, kHalf8},
    {"ycbcr-8bw-422", "yuvu", kWide},
};

// Pixel format and tag, and the codecs that lead there.
using Pair = std::pair<std::string, std::string>;

std::map<Pair, std::set<std::string>> EncodedPairs() {
  std::map<Pair, std::set<std::string>> pairs;
  for (const CodecRow& row : kEncoded) {
    for (const std::string& pixelFormat : Words(row.pixelFormats)) {
      for (const std::string& tag : row.tags.plain) pairs[{pixelFormat, tag}].insert(row.codec);
      if (kWithAlpha.contains(pixelFormat)) {
        for (const std::string& tag : row.tags.alpha) pairs[{pixelFormat, tag}].insert(row.codec);
      }
    }
  }
  return pairs;
}

std::set<Pair> DecodedPairs() {
  std::set<Pair> pairs;
  const auto add = [&pairs](const std::string& pixelFormats, const std::vector<Tags>& all) {
    for (const std::string& pixelFormat : Words(pixelFormats)) {
      for (const Tags& tags : all) {
        pairs.insert({{pixelFormat, tags.plain[0]}, {pixelFormat, tags.plain[1]}});
        pairs.insert({{pixelFormat, tags.alpha[0]}, {pixelFormat, tags.alpha[1]}});
      }
    }
  };
  add(kRgb8Formats + kRgbDeepFormats + kYcbcrFormats,
      {kRgb10, kRgb8, kFull10, kFull8v, kFull8u, kHalf10, kHalf8});
  add("L555 L565 b48r", {kRgb10, kRgb8});
  pairs.insert({{"yuvu", "YbYr"}, {"yuvu", "Ybyr"}});
  return pairs;
}

Json Formats() {
  const TestFolder folder;
  const Outcome outcome = RunVorel(folder, {"formats", "--json"});
  EXPECT_EQ(outcome.status, 0) << outcome.err;
  return Json::parse(outcome.out);
}

}  // namespace

TEST(FormatMatrix, PairsAreThoseOfTheRules) {
  std::map<Pair, std::set<std::string>> encoded;
  std::set<Pair> decoded;
  const Json formats = Formats();
  for (const Json& pair : formats["pairs"]) {
    const Pair key = {pair["pixelFormat"], pair["tag"]};
    const std::set<std::string> codecs = pair["codecs"];
    EXPECT_EQ(pair["encode"].get<bool>(), !codecs.empty());
    EXPECT_TRUE(pair["encode"].get<bool>() || pair["decode"].get<bool>());
    EXPECT_TRUE(codecs.empty() || encoded.emplace(key, codecs).second);
    EXPECT_TRUE(!pair["decode"].get<bool>() || decoded.insert(key).second);
  }
  EXPECT_EQ(encoded.size(), 380u);
  EXPECT_EQ(decoded.size(), 698u);
  EXPECT_EQ(encoded, EncodedPairs());
  EXPECT_EQ(decoded, DecodedPairs());
}

TEST(FormatMatrix, FrameFormatsAreThirtyWithTheirTags) {
  const Json frames = Formats()["frameFormats"];
  ASSERT_EQ(frames.size(), 30u);
  const Json& first = frames[0];
  EXPECT_EQ(first["tag"], "RGBX");
  EXPECT_EQ(first["word"], 0x58424752);
  EXPECT_EQ(first["codec"], "Vrl7");
  EXPECT_EQ(first["alpha"], false);
  EXPECT_EQ(first["pixelBits"], 30);
  const Json& last = frames[29];
  EXPECT_EQ(last["tag"], "Ybyr");
  EXPECT_EQ(last["name"], "Y'CbCr 8bw 4:2:2i");
  EXPECT_EQ(last["pixelBits"], 16);
}

// Rows by hand, a column for each tag in the order of the legend.
TEST(FormatMatrix, TableShowsTheSamePairs) {
  const TestFolder folder;
  const Outcome outcome = RunVorel(folder, {"formats", "--matrix"});
  ASSERT_EQ(outcome.status, 0) << outcome.err;
  const auto has = [&outcome](const std::string& row) {
    return ("\n" + outcome.out).find("\n" + row + "\n") != std::string::npos;
  };
  const std::string both4 = " ED ED ED ED";
  const std::string both2 = " ED ED  D  D";
  const std::string out4 = "  D  D  D  D";
  const std::string none2 = "  .  .";
  //                 RGB 10bf  RGB 8bf  10bv 444  8bv 444  8bu 444  10bv 422  8bv 422  8bw
  EXPECT_TRUE(has("24  " + out4 + both2 + both2 + out4 + both2 + both2 + both2 + none2)) << outcome.out;
  EXPECT_TRUE(has("b64a" + both4 + both4 + both4 + out4 + both4 + both4 + both4 + none2)) << outcome.out;
  EXPECT_TRUE(has("A46L" + both4 + both4 + both4 + out4 + both4 + out4 + both4 + none2)) << outcome.out;
  EXPECT_TRUE(has("V416" + both4 + both4 + both4 + both4 + out4 + both4 + both4 + none2)) << outcome.out;
  EXPECT_TRUE(has("2vuy" + both2 + both2 + out4 + out4 + out4 + out4 + both2 + none2)) << outcome.out;
  EXPECT_TRUE(has("L565" + out4 + out4 + none2 + none2 + none2 + none2 + none2 + none2 + none2 + none2 +
                  none2 + none2 + none2))
      << outcome.out;
  std::istringstream lines(outcome.out);
  std::size_t count = 0;
  for (std::string line; std::getline(lines, line); ++count) EXPECT_LE(line.size(), 100u) << line;
  EXPECT_EQ(count, 1u + 28 + 3 + 15);
}

TEST(FormatMatrix, DeepPicturesThatTheGenericCodecLacksAreRefusedBeforeAnythingIsWritten) {
  const TestFolder folder;
  WriteFile(folder, "a.raw", Noise(32 * 32 * 8, 1));
  const Outcome outcome =
      RunVorel(folder, {"encode", "--pixel-format", "V416", "--size", "32x32", "--rate", "25", "a.raw"});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.err,
            "vorel: a.raw: codec auto has no frames for 'V416' pictures\n"
            "       choose another with --codec: ycbcr-8bv-422, ycbcr-10bv-422, ycbcr-8b-444, "
            "ycbcr-10bv-444, rgb-8bf, rgb-10bf\n");
  EXPECT_EQ(FilesIn(folder), "a.raw");
}

}  // namespace vorel::tool
