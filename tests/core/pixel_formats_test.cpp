#include "vorel/pixel_formats.h"

#include <gtest/gtest.h>

#include <set>

#include "base/bytes.h"
#include "tests/core/vector_file.h"

namespace vorel {
namespace {

constexpr u32 kCode(const char (&text)[5]) {
  return FourCharacterCode(text);
}

constexpr u32 kAutomatic = 0;
constexpr u32 kFull = 1;
constexpr u32 kVideo = 2;

u32 NormalizeName(u32 code, u32 range) {
  return VorelNormalizePixelFormat(32, code, 0, 0, 0, range);
}

// ---- Normalisation

TEST(NormalizePixelFormat, R10kIsFullRangeUnlessTheRangeIsVideo) {
  EXPECT_EQ(NormalizeName(kCode("R10k"), kAutomatic), kCode("F10k"));
  EXPECT_EQ(NormalizeName(kCode("R10k"), kFull), kCode("F10k"));
  EXPECT_EQ(NormalizeName(kCode("R10k"), kVideo), kCode("S10k"));
}

TEST(NormalizePixelFormat, SmallR210IsVideoRangeUnlessTheRangeIsFull) {
  EXPECT_EQ(NormalizeName(kCode("r210"), kAutomatic), kCode("S210"));
  EXPECT_EQ(NormalizeName(kCode("r210"), kFull), kCode("F210"));
  EXPECT_EQ(NormalizeName(kCode("r210"), kVideo), kCode("S210"));
}

TEST(NormalizePixelFormat, ThirtyTwoIsVrgbIfTheRangeIsVideo) {
  EXPECT_EQ(NormalizeName(32, kAutomatic), 32u);
  EXPECT_EQ(NormalizeName(32, kFull), 32u);
  EXPECT_EQ(NormalizeName(32, kVideo), kCode("VRGB"));
}

TEST(NormalizePixelFormat, ARangeOutsideTheSettingActsAsAutomatic) {
  for (const u32 range : {3u, 0xFFFFFFFFu}) {
    EXPECT_EQ(NormalizeName(kCode("R10k"), range), kCode("F10k"));
    EXPECT_EQ(NormalizeName(kCode("r210"), range), kCode("S210"));
    EXPECT_EQ(NormalizeName(32, range), 32u);
  }
}

TEST(NormalizePixelFormat, BitmapsGoByDepthAloneWhateverMasksAndRangeAre) {
  for (const u32 bitmap : {0u, 0x20424944u, 0x20524742u, 0x52474241u}) {
    for (const u32 range : {kAutomatic, kFull, kVideo}) {
      EXPECT_EQ(VorelNormalizePixelFormat(32, bitmap, 0xFF, 0xFF00, 0xFF0000, range), kCode("BGRA"));
      EXPECT_EQ(VorelNormalizePixelFormat(24, bitmap, 0xFF, 0xFF00, 0xFF0000, range), kCode("24BG"));
      EXPECT_EQ(VorelNormalizePixelFormat(16, bitmap, 0xF800, 0x7E0, 0x1F, range), kCode("L555"));
    }
    for (const u32 depth : {0u, 1u, 8u, 15u, 17u, 31u, 33u, 64u})
      EXPECT_EQ(VorelNormalizePixelFormat(depth, bitmap, 0xF800, 0x7E0, 0x1F, 0), 0u) << depth;
  }
}

TEST(NormalizePixelFormat, TheIntegerOfRgbaIsABitmap) {
  EXPECT_EQ(VorelNormalizePixelFormat(32, kCode("RGBA"), 0, 0, 0, kFull), kCode("BGRA"));
  EXPECT_EQ(VorelNormalizePixelFormat(16, kCode("RGBA"), 0, 0, 0, kFull), kCode("L555"));
  EXPECT_EQ(VorelNormalizePixelFormat(8, kCode("RGBA"), 0, 0, 0, kFull), 0u);
}

struct MaskCase {
  u32 depth, red, green, blue, result;
};

constexpr MaskCase kMaskCases[] = {
    {16, 0x7C00, 0x3E0, 0x1F, kCode("L555")},          {16, 0xF800, 0x7E0, 0x1F, kCode("L565")},
    {24, 0xFF0000, 0xFF00, 0xFF, kCode("BGRA")},       {24, 0xFF, 0xFF00, 0xFF0000, kCode("RGBA")},
    {24, 0xFF000000, 0xFF0000, 0xFF00, kCode("ABGR")}, {24, 0xFF00, 0xFF0000, 0xFF000000, 32},
};

TEST(NormalizePixelFormat, BitFieldsGoByDepthAndAllThreeMasks) {
  for (const MaskCase& row : kMaskCases) {
    EXPECT_EQ(VorelNormalizePixelFormat(row.depth, 3, row.red, row.green, row.blue, kVideo), row.result);
    EXPECT_EQ(VorelNormalizePixelFormat(row.depth, 3, row.red ^ 1, row.green, row.blue, 0), 0u);
    EXPECT_EQ(VorelNormalizePixelFormat(row.depth, 3, row.red, row.green ^ 0x200, row.blue, 0), 0u);
    EXPECT_EQ(VorelNormalizePixelFormat(row.depth, 3, row.red, row.green, row.blue ^ 0x80000000, 0), 0u);
    EXPECT_EQ(VorelNormalizePixelFormat(row.depth ^ 8, 3, row.red, row.green, row.blue, 0), 0u);
    EXPECT_EQ(VorelNormalizePixelFormat(32, 3, row.red, row.green, row.blue, 0), 0u);
  }
}

// Integers typed out: the first letter of each spelling stands in the low byte.
struct Alias {
  u32 code;
  const char* spelling;
};

constexpr Alias kAliasesOf2vuy[] = {
    {0x32323459, "Y422"}, {0x32565559, "YUV2"}, {0x32567579, "yuV2"}, {0x32767579, "yuv2"},
    {0x43594448, "HDYC"}, {0x564E5955, "UYNV"}, {0x56555943, "CYUV"}, {0x59565955, "UYVY"},
};

constexpr Alias kAliasesOfYuvs[] = {
    {0x32595559, "YUY2"},
    {0x564E5559, "YUNV"},
    {0x56595559, "YUYV"},
    {0x59555956, "VYUY"},
};

TEST(NormalizePixelFormat, AliasesOfPairsAreSpeltFromTheLowByte) {
  for (const u32 range : {kAutomatic, kFull, kVideo}) {
    for (const Alias& alias : kAliasesOf2vuy)
      EXPECT_EQ(NormalizeName(alias.code, range), kCode("2vuy")) << alias.spelling;
    for (const Alias& alias : kAliasesOfYuvs)
      EXPECT_EQ(NormalizeName(alias.code, range), kCode("yuvs")) << alias.spelling;
  }
  // Spelt from the high byte they are other codes.
  for (const char* other : {"Y422", "YUV2", "yuV2", "HDYC", "UYNV", "CYUV", "UYVY", "YUY2", "YUNV"})
    EXPECT_EQ(NormalizeName(PixelFormatFromText(other), 0), PixelFormatFromText(other)) << other;
}

TEST(NormalizePixelFormat, TheHostsYuv2IsYuvuAndItsMirrorIs2vuy) {
  EXPECT_EQ(NormalizeName(0x79757632, kAutomatic), kCode("yuvu"));
  EXPECT_EQ(NormalizeName(0x32767579, kAutomatic), kCode("2vuy"));
}

TEST(NormalizePixelFormat, OtherCodesComeBackUnchanged) {
  for (const char* name : {"24",   "ABGR", "BGRA", "24BG", "VRGB", "L555", "L565", "b64a", "L64A",
                           "A46L", "b48r", "F10k", "S10k", "F210", "S210", "r408", "v408", "VUYA",
                           "v410", "V416", "yuvs", "yuvu", "v216", "Y216", "v210", "V210", "abcd"}) {
    for (const u32 range : {kAutomatic, kFull, kVideo})
      EXPECT_EQ(NormalizeName(PixelFormatFromText(name), range), PixelFormatFromText(name)) << name;
  }
  for (const u32 code : {1u, 2u, 4u, 16u, 31u, 33u, 0xFFFFFFFFu})
    EXPECT_EQ(NormalizeName(code, kVideo), code);
}

// Results are four characters, a number below 256, or hexadecimal after 0x.
u32 ResultFromText(const std::string& text) {
  if (text.size() == 4 && text.compare(0, 2, "0x") != 0) return PixelFormatFromText(text);
  return static_cast<u32>(std::stoul(text, nullptr, 0));
}

TEST(NormalizePixelFormat, Vectors) {
  const auto lines = LoadLines("functions.txt", "normalize_pixel_format");
  ASSERT_EQ(lines.size(), 81u);
  for (const auto& line : lines) {
    u32 numbers[6];
    for (std::size_t i = 0; i < 6; ++i) {
      const int base = i == 0 || i == 5 ? 10 : 16;
      numbers[i] = static_cast<u32>(std::stoul(line[1 + i], nullptr, base));
    }
    EXPECT_EQ(
        VorelNormalizePixelFormat(numbers[0], numbers[1], numbers[2], numbers[3], numbers[4], numbers[5]),
        ResultFromText(line[7]))
        << line[1] << ' ' << line[2] << ' ' << line[3] << ' ' << line[6];
  }
}

// ---- Queries

struct QueryCase {
  const char* name;
  u32 bytes, chroma, components;
  int alpha;
  u32 bits;
};

constexpr QueryCase kQueryCases[] = {
    {"32", 4, 1, 4, 1, 8},    {"ABGR", 4, 1, 4, 1, 8},  {"RGBA", 4, 1, 4, 1, 8},  {"BGRA", 4, 1, 4, 1, 8},
    {"VRGB", 4, 1, 4, 1, 8},  {"24", 3, 1, 3, 0, 8},    {"24BG", 3, 1, 3, 0, 8},  {"L555", 2, 1, 3, 0, 5},
    {"L565", 2, 1, 3, 0, 5},  {"b64a", 8, 1, 4, 1, 16}, {"L64A", 8, 1, 4, 1, 16}, {"A46L", 8, 1, 4, 1, 16},
    {"b48r", 6, 1, 3, 0, 16}, {"R10k", 4, 1, 3, 0, 10}, {"r210", 4, 1, 3, 0, 10}, {"F10k", 4, 1, 3, 0, 10},
    {"S10k", 4, 1, 3, 0, 10}, {"F210", 4, 1, 3, 0, 10}, {"S210", 0, 0, 1, 0, 0},  {"r408", 4, 1, 4, 1, 8},
    {"v408", 4, 1, 4, 1, 8},  {"VUYA", 4, 1, 4, 1, 8},  {"v410", 4, 1, 3, 0, 10}, {"V416", 8, 1, 4, 1, 16},
    {"2vuy", 2, 2, 2, 0, 8},  {"yuvs", 2, 2, 2, 0, 8},  {"yuvu", 2, 2, 2, 0, 8},  {"v216", 4, 2, 2, 0, 16},
    {"Y216", 4, 2, 2, 0, 16}, {"v210", 3, 2, 2, 0, 10}, {"V210", 3, 2, 2, 0, 10}, {"yuv2", 0, 0, 1, 0, 0},
    {"abcd", 0, 0, 1, 0, 0},  {"YUY2", 0, 0, 1, 0, 0},  {"UYVY", 0, 0, 1, 0, 0},
};

void ExpectAnswers(u32 code, const QueryCase& row) {
  EXPECT_EQ(VorelBytesPerPixel(code), row.bytes) << row.name;
  EXPECT_EQ(VorelChromaKind(code), row.chroma) << row.name;
  EXPECT_EQ(VorelComponentCount(code), row.components) << row.name;
  EXPECT_EQ(VorelHasAlpha(code), row.alpha) << row.name;
  EXPECT_EQ(VorelSignificantBits(code), row.bits) << row.name;
}

TEST(PixelFormatQueries, AnswerForEveryFormatAndLeaveS210Out) {
  for (const QueryCase& row : kQueryCases) ExpectAnswers(PixelFormatFromText(row.name), row);
}

TEST(PixelFormatQueries, KnowTheAliasesOfPairsByTheirIntegers) {
  for (const Alias& alias : kAliasesOf2vuy) ExpectAnswers(alias.code, {alias.spelling, 2, 2, 2, 0, 8});
  for (const Alias& alias : kAliasesOfYuvs) ExpectAnswers(alias.code, {alias.spelling, 2, 2, 2, 0, 8});
}

TEST(PixelFormatQueries, DoNotKnowTheCodesOfBitmaps) {
  for (const u32 code : {0u, 3u, 16u, 0x20424944u, 0x20524742u, 0xFFFFFFFFu})
    ExpectAnswers(code, {"a bitmap or nothing", 0, 0, 1, 0, 0});
}

// ---- Rows in memory

struct FormatCase {
  const char* name;
  u32 unitBytes, unitPixels, sampleBits, alpha;
  std::size_t row1, row3, row8;              // bytes of rows of 1, 3 and 8 pixels
  std::size_t aligned1, aligned3, aligned8;  // the same, as row bytes
};

constexpr FormatCase kFormatCases[] = {
    {"32", 4, 1, 8, 1, 4, 12, 32, 4, 12, 32},    {"ABGR", 4, 1, 8, 1, 4, 12, 32, 4, 12, 32},
    {"RGBA", 4, 1, 8, 1, 4, 12, 32, 4, 12, 32},  {"BGRA", 4, 1, 8, 1, 4, 12, 32, 4, 12, 32},
    {"24", 3, 1, 8, 0, 3, 9, 24, 4, 12, 24},     {"24BG", 3, 1, 8, 0, 3, 9, 24, 4, 12, 24},
    {"VRGB", 4, 1, 8, 1, 4, 12, 32, 4, 12, 32},  {"L555", 2, 1, 5, 0, 2, 6, 16, 4, 8, 16},
    {"L565", 2, 1, 5, 0, 2, 6, 16, 4, 8, 16},    {"b64a", 8, 1, 16, 1, 8, 24, 64, 8, 24, 64},
    {"L64A", 8, 1, 16, 1, 8, 24, 64, 8, 24, 64}, {"A46L", 8, 1, 16, 1, 8, 24, 64, 8, 24, 64},
    {"b48r", 6, 1, 16, 0, 6, 18, 48, 8, 20, 48}, {"F10k", 4, 1, 10, 0, 4, 12, 32, 4, 12, 32},
    {"S10k", 4, 1, 10, 0, 4, 12, 32, 4, 12, 32}, {"F210", 4, 1, 10, 0, 4, 12, 32, 4, 12, 32},
    {"S210", 4, 1, 10, 0, 4, 12, 32, 4, 12, 32}, {"r408", 4, 1, 8, 1, 4, 12, 32, 4, 12, 32},
    {"v408", 4, 1, 8, 1, 4, 12, 32, 4, 12, 32},  {"VUYA", 4, 1, 8, 1, 4, 12, 32, 4, 12, 32},
    {"v410", 4, 1, 10, 0, 4, 12, 32, 4, 12, 32}, {"V416", 8, 1, 16, 1, 8, 24, 64, 8, 24, 64},
    {"2vuy", 4, 2, 8, 0, 4, 8, 16, 4, 8, 16},    {"yuvs", 4, 2, 8, 0, 4, 8, 16, 4, 8, 16},
    {"yuvu", 4, 2, 8, 0, 4, 8, 16, 4, 8, 16},    {"v216", 8, 2, 16, 0, 8, 16, 32, 8, 16, 32},
    {"Y216", 8, 2, 14, 0, 8, 16, 32, 8, 16, 32}, {"v210", 16, 6, 10, 0, 8, 12, 24, 8, 12, 24},
};

TEST(PixelFormatList, HoldsEveryFormatOfTheFrameRoutinesOnce) {
  std::size_t count = 0;
  const VorelPixelFormatInfo* list = VorelPixelFormatList(&count);
  ASSERT_EQ(count, 28u);
  std::set<std::string> names;
  for (std::size_t i = 0; i < count; ++i) {
    names.insert(list[i].name);
    EXPECT_EQ(list[i].code, PixelFormatFromText(list[i].name)) << list[i].name;
    EXPECT_EQ(VorelFindPixelFormat(list[i].code), &list[i]) << list[i].name;
  }
  std::set<std::string> expected;
  for (const FormatCase& row : kFormatCases) expected.insert(row.name);
  EXPECT_EQ(names, expected);
}

TEST(PixelFormatList, TellsUnitsBitsAndAlpha) {
  for (const FormatCase& row : kFormatCases) {
    const VorelPixelFormatInfo* format = VorelFindPixelFormat(PixelFormatFromText(row.name));
    ASSERT_NE(format, nullptr) << row.name;
    EXPECT_EQ(format->unitBytes, row.unitBytes) << row.name;
    EXPECT_EQ(format->unitPixels, row.unitPixels) << row.name;
    EXPECT_EQ(format->sampleBits, row.sampleBits) << row.name;
    EXPECT_EQ(format->hasAlpha, row.alpha) << row.name;
  }
}

TEST(PixelFormatList, TellsTheRangesApart) {
  const auto range = [](const char* name) {
    return std::string(VorelFindPixelFormat(PixelFormatFromText(name))->range);
  };
  for (const char* name : {"32", "ABGR", "RGBA", "BGRA", "24", "24BG", "L555", "L565", "b64a", "L64A", "A46L",
                           "b48r", "F10k", "F210"})
    EXPECT_EQ(range(name), "full") << name;
  for (const char* name :
       {"S10k", "S210", "v408", "VUYA", "v410", "V416", "2vuy", "yuvs", "v216", "Y216", "v210"})
    EXPECT_EQ(range(name), "video") << name;
  EXPECT_EQ(range("VRGB"), "video, A full");
  EXPECT_EQ(range("r408"), "video, Y' from 0, A full");
  EXPECT_EQ(range("yuvu"), "as it comes, Cb and Cr signed");
}

TEST(PixelFormatList, DoesNotHoldAliases) {
  for (const u32 code :
       {kCode("R10k"), kCode("r210"), kCode("V210"), kCode("yuv2"), kCode("2Vuy"), 0u, 3u, 16u}) {
    EXPECT_EQ(VorelFindPixelFormat(code), nullptr);
    EXPECT_EQ(VorelRowBytes(code, 8), 0u);
    EXPECT_EQ(VorelAlignedRowBytes(code, 8), 0u);
  }
}

TEST(RowBytes, OfEveryFormat) {
  for (const FormatCase& row : kFormatCases) {
    const u32 code = PixelFormatFromText(row.name);
    EXPECT_EQ(VorelRowBytes(code, 0), 0u) << row.name;
    EXPECT_EQ(VorelRowBytes(code, 1), row.row1) << row.name;
    EXPECT_EQ(VorelRowBytes(code, 3), row.row3) << row.name;
    EXPECT_EQ(VorelRowBytes(code, 8), row.row8) << row.name;
    EXPECT_EQ(VorelAlignedRowBytes(code, 0), 0u) << row.name;
    EXPECT_EQ(VorelAlignedRowBytes(code, 1), row.aligned1) << row.name;
    EXPECT_EQ(VorelAlignedRowBytes(code, 3), row.aligned3) << row.name;
    EXPECT_EQ(VorelAlignedRowBytes(code, 8), row.aligned8) << row.name;
  }
}

// One pair over takes two words, two pairs over take three, three pairs four.
TEST(RowBytes, OfV210EndWithTheLastWordThatHoldsASample) {
  const struct {
    u32 width;
    std::size_t bytes;
  } rows[] = {{1, 8},    {2, 8},    {3, 12},   {4, 12},      {5, 16},      {6, 16},
              {7, 24},   {8, 24},   {9, 28},   {10, 28},     {11, 32},     {12, 32},
              {47, 128}, {48, 128}, {49, 136}, {1919, 5120}, {1920, 5120}, {1921, 5128}};
  for (const auto& row : rows) {
    EXPECT_EQ(VorelRowBytes(kCode("v210"), row.width), row.bytes) << row.width;
    EXPECT_EQ(VorelAlignedRowBytes(kCode("v210"), row.width), row.bytes) << row.width;
  }
}

TEST(RowBytes, OfTheWidestRowsDoNotWrap) {
  if constexpr (sizeof(std::size_t) < 8) GTEST_SKIP() << "no such rows here";
  const u32 widest = 0xFFFFFFFF;
  EXPECT_EQ(VorelRowBytes(kCode("b64a"), widest), 0x7FFFFFFF8u);
  EXPECT_EQ(VorelRowBytes(24, widest), 0x2FFFFFFFDu);
  EXPECT_EQ(VorelAlignedRowBytes(24, widest), 0x300000000u);
  EXPECT_EQ(VorelRowBytes(kCode("2vuy"), widest), 0x200000000u);
  EXPECT_EQ(VorelRowBytes(kCode("v216"), widest), 0x400000000u);
  // 2^31 pairs are 715,827,882 groups and two pairs: 4 words a group and 3 more.
  EXPECT_EQ(VorelRowBytes(kCode("v210"), widest), (715827882u * std::size_t{4} + 3) * 4);
}

}  // namespace
}  // namespace vorel
