// The options that choose frames: codec, alpha, scan and colour standard, and what is said of their losses.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "tests/tool/movies.h"
#include "tests/tool/raw_clips.h"
#include "tests/tool/run_vorel.h"

namespace vorel::tool {

namespace {

bool Contains(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

}  // namespace

TEST(CodingOptions, OpaqueAlphaStaysOrGoesAsAskedFor) {
  const TestFolder folder;
  std::string pictures(kRawWidth * 4 * kRawHeight, '\x50');
  for (std::size_t i = 0; i < pictures.size(); i += 4) pictures[i] = static_cast<char>(0xEB);
  for (std::size_t i = 2; i < pictures.size(); i += 4) pictures[i] = '\x50';
  const auto tagWith = [&](const char* alpha) {
    EXPECT_EQ(EncodeRaw(folder, "32", pictures, {"--codec", "ycbcr-8bv-422", "--alpha", alpha}).status, 0);
    return TagOfFirstFrame(folder);
  };
  EXPECT_EQ(tagWith("drop"), "BYRY");
  EXPECT_EQ(DescriptionOf(folder, "clip.mov").depth, 24);
  EXPECT_EQ(tagWith("keep"), "C82p");
  EXPECT_EQ(DescriptionOf(folder, "clip.mov").depth, 32);
}

TEST(CodingOptions, AlphaThatFramesDropIsNotVerified) {
  const TestFolder folder;
  std::string pictures(kRawWidth * 4 * kRawHeight, '\x80');  // 'v408': Cb, Y', Cr neutral grey, any alpha
  for (std::size_t i = 3; i < pictures.size(); i += 4) pictures[i] = static_cast<char>(i);
  ASSERT_EQ(EncodeRaw(folder, "v408", pictures, {"--codec", "ycbcr-8bv-422", "--alpha", "drop"}).status, 0);
  EXPECT_EQ(VerifyRaw(folder, "v408").status, 0);
  pictures[0] = '\x40';
  WriteFile(folder, "in.raw", pictures);
  const Outcome changed = VerifyRaw(folder, "v408");
  EXPECT_EQ(changed.status, 1);
  EXPECT_TRUE(Contains(changed.err, "row 0, pixel 0, Cb is 128, there 64")) << changed.err;
}

TEST(CodingOptions, CodecOptionChoosesTheFrames) {
  const TestFolder folder;
  const auto tagOf = [&folder](const char* name, const char* codec) {
    const Outcome outcome = EncodeRaw(folder, name, RawPictures(name), {"--codec", codec});
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    return TagOfFirstFrame(folder);
  };
  EXPECT_EQ(tagOf("2vuy", "auto"), "BYRY");
  EXPECT_EQ(tagOf("yuvu", "auto"), "YbYr");
  EXPECT_EQ(tagOf("v210", "auto"), "\xA2YRY");
  EXPECT_EQ(tagOf("2vuy", "ycbcr-8bv-422"), "BYRY");
  EXPECT_EQ(tagOf("v210", "ycbcr-10bv-422"), "\xA2YRY");
  EXPECT_EQ(tagOf("v210", "ycbcr-8bv-422"), "BYRY");
  EXPECT_EQ(tagOf("24", "ycbcr-10bv-422"), "\xA2YRY");
  EXPECT_EQ(tagOf("yuvu", "ycbcr-8bw-422"), "YbYr");
  EXPECT_EQ(tagOf("24", "rgb-8bf"), " RGB");
  EXPECT_EQ(tagOf("b64a", "rgb-8bf"), "ARGB");
  EXPECT_EQ(tagOf("b64a", "rgb-10bf"), "ARGX");
  EXPECT_EQ(tagOf("24", "ycbcr-8b-444"), " YbR");
  EXPECT_EQ(tagOf("v410", "ycbcr-8b-444"), " YBR");
  EXPECT_EQ(tagOf("24", "ycbcr-10bv-444"), "YBR\n");
  EXPECT_EQ(tagOf("b64a", "ycbcr-10bv-444"), "CA4p");
}

TEST(CodingOptions, DroppedBitsAreSaidAndFoundByVerify) {
  const TestFolder folder;
  WriteFile(folder, "a.y4m", NoiseClip10("YUV4MPEG2 W50 H18 F25:1 C422p10", 50 * 18 * 2, 1));
  const Outcome encoded = RunVorel(folder, {"encode", "--codec", "ycbcr-8bv-422", "a.y4m"});
  ASSERT_EQ(encoded.status, 0) << encoded.err;
  EXPECT_TRUE(
      Contains(encoded.err, "note: a.y4m: the movie does not keep the lower 2 of 10 bits of a sample\n"))
      << encoded.err;
  const Outcome verified = RunVorel(folder, {"verify", "a.mov", "--against", "a.y4m"});
  EXPECT_EQ(verified.status, 1);
  EXPECT_TRUE(Contains(verified.err, "differs from a.y4m: row 0, pixel ")) << verified.err;
}

TEST(CodingOptions, TenBitDifferencesAreToldWithTenBits) {
  const TestFolder folder;
  std::string clip = NoiseClip10("YUV4MPEG2 W50 H18 F25:1 Ip A0:0 C422p10", 50 * 18 * 2, 1);
  WriteFile(folder, "a.y4m", clip);
  ASSERT_EQ(RunVorel(folder, {"encode", "a.y4m"}).status, 0);
  EXPECT_EQ(RunVorel(folder, {"verify", "a.mov", "--against", "a.y4m"}).status, 0);
  const std::size_t at = clip.find("FRAME\n") + 6 + 2 * (3 * 50 + 7);  // Y' of row 3, pixel 7
  const int value = static_cast<u8>(clip[at]) + 256 * static_cast<u8>(clip[at + 1]);
  clip[at] = static_cast<char>(clip[at] ^ 1);
  WriteFile(folder, "b.y4m", clip);
  const Outcome outcome = RunVorel(folder, {"verify", "a.mov", "--against", "b.y4m"});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_TRUE(Contains(outcome.err, "row 3, pixel 7, Y' is " + std::to_string(value) + ", there " +
                                        std::to_string(value ^ 1) + "\n"))
      << outcome.err;
}

TEST(CodingOptions, ScanOptionKeepsTheOrderOfFieldsWhereItIsKnown) {
  const auto headerWith = [](const char* interlacing, const char* scan) {
    const TestFolder folder;
    WriteFile(folder, "a.y4m",
              NoiseClip(std::string("YUV4MPEG2 W64 H8 F25:1 ") + interlacing + " A0:0 C422", 64 * 8 * 2, 1));
    EXPECT_EQ(RunVorel(folder, {"encode", "--scan", scan, "a.y4m", "-o", "clip.mov"}).status, 0);
    const std::string decoded = RunVorel(folder, {"decode", "clip.mov", "-o", "-"}).out;
    return TagOfFirstFrame(folder) + decoded.substr(decoded.find(" I"), 3);
  };
  EXPECT_EQ(headerWith("Ip", "auto"), "BYRY Ip");
  EXPECT_EQ(headerWith("It", "auto"), "BYRy It");
  EXPECT_EQ(headerWith("I?", "auto"), "BYRY I?");
  EXPECT_EQ(headerWith("Ib", "interlaced"), "BYRy Ib");
  EXPECT_EQ(headerWith("I?", "interlaced"), "BYRy I?");
  EXPECT_EQ(headerWith("Ip", "top-first"), "BYRy It");
  EXPECT_EQ(headerWith("It", "bottom-first"), "BYRy Ib");
  EXPECT_EQ(headerWith("It", "progressive"), "BYRY Ip");
}

TEST(CodingOptions, InterlacedOfUnknownOrderIsSaid) {
  const TestFolder folder;
  ASSERT_EQ(EncodeRaw(folder, "2vuy", RawPictures("2vuy"), {"--scan", "interlaced"}).status, 0);
  const nlohmann::json info = nlohmann::json::parse(RunVorel(folder, {"info", "--json", "clip.mov"}).out);
  EXPECT_EQ(info["video"]["scan"], "interlaced");
  EXPECT_EQ(info["video"]["tag"], "BYRy");
}

TEST(CodingOptions, ColourStandardIsToldByOptionOrHeight) {
  const TestFolder folder;
  const auto standardOf = [&folder](const std::vector<std::string>& more) {
    std::vector<std::string> encode = {"encode", "-f", "a.y4m"};
    encode.insert(encode.end(), more.begin(), more.end());
    EXPECT_EQ(RunVorel(folder, encode).status, 0);
    const nlohmann::json info = nlohmann::json::parse(RunVorel(folder, {"info", "--json", "a.mov"}).out);
    return info["video"]["colourStandard"].get<std::string>();
  };
  WriteFile(folder, "a.y4m", NoiseClip("YUV4MPEG2 W64 H8 F25:1 C422", 64 * 8 * 2, 1));
  EXPECT_EQ(standardOf({}), "ntsc");
  for (const char* const name : {"ntsc", "pal", "hd", "hd1035", "unknown"}) {
    EXPECT_EQ(standardOf({"--standard", name}), name);
  }
  WriteFile(folder, "a.y4m", NoiseClip("YUV4MPEG2 W16 H720 F25:1 C422", 16 * 720 * 2, 1));
  EXPECT_EQ(standardOf({}), "hd");
}

TEST(CodingOptions, MatrixOfTheMovieIsDecodedBy) {
  const TestFolder folder;
  std::string red(kRawWidth * 3 * kRawHeight, '\0');
  for (std::size_t i = 0; i < red.size(); i += 3) red[i] = static_cast<char>(200);
  for (const char* const standard : {"ntsc", "hd", "hd1035"}) {
    const Outcome encoded =
        EncodeRaw(folder, "24", red, {"--codec", "ycbcr-10bv-422", "--standard", standard});
    ASSERT_EQ(encoded.status, 0) << encoded.err;
    ASSERT_EQ(RunVorel(folder, {"decode", "-f", "clip.mov", "--pixel-format", "24"}).status, 0);
    EXPECT_TRUE(FileBytes(folder, "clip.raw") == red) << standard;
  }
}

}  // namespace vorel::tool
