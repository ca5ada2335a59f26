// The rules of compression that need no host. Expected numbers are written down here by hand.
#include "component/compression_plan.h"

#include <gtest/gtest.h>

#include <string>

#include "base/bytes.h"
#include "component/host_errors.h"

namespace vorel::component {

namespace {

constexpr u32 kFamilies = 8;
constexpr OSType kSubtypes[kFamilies] = {FourCharacterCode("Vrl0"), FourCharacterCode("Vrl7"),
                                         FourCharacterCode("Vrl1"), FourCharacterCode("Vrl5"),
                                         FourCharacterCode("Vrl2"), FourCharacterCode("Vrl6"),
                                         FourCharacterCode("Vrl3"), FourCharacterCode("Vrl4")};

u32 CodeOf(const std::string& name) {
  if (name == "32") return 32;
  if (name == "24") return 24;
  return LoadBig32(reinterpret_cast<const u8*>(name.data()));
}

SourceFacts Facts(VorelFamily family, const std::string& format) {
  SourceFacts facts = {};
  facts.family = family;
  facts.subtype = kSubtypes[family];
  facts.hostFormat = CodeOf(format);
  facts.depth = 32;
  facts.settings.conversion = kConversionBest;
  return facts;
}

CompressionPlan Plan(VorelFamily family, const std::string& format, bool hasAlpha = false,
                     u32 scan = kScanProgressive) {
  SourceFacts facts = Facts(family, format);
  facts.hasAlpha = hasAlpha;
  facts.settings.scan = scan;
  return PlanCompression(facts);
}

TEST(CompressionPlanTest, SettingOfRangeMapsTheHostsFormat) {
  struct {
    const char* format;
    u32 range;
    const char* mapped;
  } const rows[] = {{"R10k", 0, "F10k"}, {"R10k", 1, "F10k"}, {"R10k", 2, "S10k"}, {"R10k", 9, "F10k"},
                    {"r210", 0, "S210"}, {"r210", 1, "F210"}, {"r210", 2, "S210"}, {"32", 0, "32"},
                    {"32", 1, "32"},     {"32", 2, "VRGB"},   {"24", 2, "24"},     {"yuv2", 0, "yuvu"},
                    {"2Vuy", 0, "2vuy"}, {"RGBA", 0, "BGRA"}};
  for (const auto& row : rows) {
    SourceFacts facts = Facts(VOREL_GENERIC, row.format);
    facts.settings.rgbRange = row.range;
    EXPECT_EQ(PlanCompression(facts).pixelFormat, CodeOf(row.mapped)) << row.format << " " << row.range;
  }
}

TEST(CompressionPlanTest, RangeOfTheDescriptionReplacesThatOfTheSettings) {
  SourceFacts facts = Facts(VOREL_GENERIC, "R10k");
  facts.settings.rgbRange = 1;
  facts.rangeExtension = 2;
  CompressionPlan plan = PlanCompression(facts);
  EXPECT_EQ(plan.pixelFormat, CodeOf("S10k"));
  EXPECT_EQ(plan.settings.rgbRange, 2u);
  facts.settings.rgbRange = 2;
  facts.rangeExtension = 0;
  plan = PlanCompression(facts);
  EXPECT_EQ(plan.pixelFormat, CodeOf("F10k"));
  EXPECT_EQ(plan.settings.rgbRange, 0u);
}

TEST(CompressionPlanTest, FieldsOfTheDescriptionSettleAutomaticScanAlone) {
  struct {
    u32 scan;
    std::optional<u8> fields;
    u32 settled;
  } const rows[] = {{0, std::nullopt, 1}, {0, 1, 1}, {0, 2, 2}, {0, 0, 1},           {0, 3, 1}, {1, 2, 1},
                    {1, std::nullopt, 1}, {2, 1, 2}, {2, 2, 2}, {2, std::nullopt, 2}};
  for (const auto& row : rows) {
    SourceFacts facts = Facts(VOREL_RGB_8BF, "32");
    facts.settings.scan = row.scan;
    facts.fieldsExtension = row.fields;
    const CompressionPlan plan = PlanCompression(facts);
    EXPECT_EQ(plan.settings.scan, row.settled) << row.scan << " " << int{row.fields.value_or(99)};
    EXPECT_EQ(plan.tag, row.settled == 2 ? 0x42477220u : 0x42475220u);
  }
}

TEST(CompressionPlanTest, VideoStandardMakesTheColourExtension) {
  constexpr ColourNumbers kExpected[] = {{6, 1, 6}, {1, 1, 1}, {6, 7, 7}, {5, 1, 6}, {2, 2, 2}};
  for (u32 standard = 0; standard < 5; ++standard) {
    SourceFacts facts = Facts(VOREL_GENERIC, "v210");
    facts.settings.videoStandard = standard;
    const CompressionPlan plan = PlanCompression(facts);
    ASSERT_TRUE(plan.newColour.has_value());
    EXPECT_EQ(plan.newColour->primaries, kExpected[standard].primaries) << standard;
    EXPECT_EQ(plan.newColour->transfer, kExpected[standard].transfer) << standard;
    EXPECT_EQ(plan.newColour->matrix, kExpected[standard].matrix) << standard;
    EXPECT_EQ(plan.settings.videoStandard, standard);
  }
}

TEST(CompressionPlanTest, ColourExtensionTellsTheVideoStandardByItsMatrix) {
  struct {
    ColourNumbers numbers;
    u32 standard;
  } const rows[] = {{{1, 1, 1}, 1}, {{6, 1, 1}, 1}, {{6, 7, 7}, 2}, {{1, 7, 7}, 2}, {{6, 1, 6}, 0},
                    {{5, 1, 6}, 3}, {{2, 2, 2}, 3}, {{1, 1, 6}, 3}, {{6, 1, 2}, 0}, {{0, 0, 0}, 3}};
  for (const auto& row : rows) {
    SourceFacts facts = Facts(VOREL_GENERIC, "v210");
    facts.settings.videoStandard = 4;
    facts.hasColourExtension = true;
    facts.colour = row.numbers;
    const CompressionPlan plan = PlanCompression(facts);
    EXPECT_EQ(plan.settings.videoStandard, row.standard)
        << row.numbers.primaries << " " << row.numbers.transfer << " " << row.numbers.matrix;
    EXPECT_FALSE(plan.newColour.has_value());
  }
}

TEST(CompressionPlanTest, ProfileLeavesTheVideoStandardAlone) {
  SourceFacts facts = Facts(VOREL_GENERIC, "v210");
  facts.settings.videoStandard = 2;
  facts.hasColourExtension = true;
  const CompressionPlan plan = PlanCompression(facts);
  EXPECT_EQ(plan.settings.videoStandard, 2u);
  EXPECT_FALSE(plan.newColour.has_value());
}

struct GenericRow {
  const char* formats;  // with a blank behind each
  u32 tags[4];          // progressive, interlaced, with alpha
  i16 base;
};

// Canonical values of the tags: little-endian numbers of their bytes.
constexpr GenericRow kGeneric[] = {
    {"b64a L64A A46L ", {0x58424752, 0x58424772, 0x58475241, 0x58477241}, 4},
    {"R10k F10k S10k r210 F210 S210 b48r ", {0x58424752, 0x58424772, 0x58424752, 0x58424772}, 4},
    {"32 ABGR BGRA VRGB RGBA ", {0x42475220, 0x42477220, 0x42475241, 0x42477241}, 10},
    {"24 24BG ", {0x42475220, 0x42477220, 0x42475220, 0x42477220}, 10},
    {"V416 ", {0x0A524259, 0x0A524279, 0x70344143, 0x69344143}, 16},
    {"v410 ", {0x0A524259, 0x0A524279, 0x0A524259, 0x0A524279}, 16},
    {"v408 ", {0x52425920, 0x52427920, 0x52425941, 0x52427941}, 22},
    {"r408 ", {0x52625920, 0x52627920, 0x52625941, 0x52627941}, 26},
    {"Y216 v210 v216 ", {0x595259A2, 0x795259A2, 0x595259A2, 0x795259A2}, 32},
    {"2vuy yuvs ", {0x59525942, 0x79525942, 0x59525942, 0x79525942}, 38},
    {"yuvu yuv2 ", {0x72596259, 0x72796259, 0x72596259, 0x72796259}, 44},
};

TEST(CompressionPlanTest, GenericTagAndNameFollowThePixelFormat) {
  int combinations = 0;
  for (const GenericRow& row : kGeneric) {
    const std::string formats = row.formats;
    for (std::size_t at = 0; at < formats.size();) {
      const std::size_t end = formats.find(' ', at);
      const std::string format = formats.substr(at, end - at);
      at = end + 1;
      for (u32 form = 0; form < 4; ++form) {
        const CompressionPlan plan = Plan(VOREL_GENERIC, format, form >= 2, form % 2 + 1);
        const bool keeps = form >= 2 && row.tags[2] != row.tags[0];
        EXPECT_EQ(plan.tag, row.tags[form]) << format << " " << form;
        EXPECT_EQ(plan.keepsAlpha, keeps) << format << " " << form;
        EXPECT_EQ(plan.nameIndex, row.base + (keeps ? 2 : 0) + static_cast<i16>(form % 2) + 1)
            << format << " " << form;
        EXPECT_EQ(plan.refusedSubtype, noErr);
        ++combinations;
      }
    }
  }
  EXPECT_EQ(combinations, 4 * 28);
}

TEST(CompressionPlanTest, FormatWithoutATagKeepsTheTagAndTakesTheNamesOf8bf) {
  for (const char* format : {"VUYA", "V210", "L555", "L565", "abcd"}) {
    SourceFacts facts = Facts(VOREL_GENERIC, format);
    facts.previousTag = 0x59525942;
    facts.hasAlpha = true;
    facts.settings.scan = kScanProgressive;
    CompressionPlan plan = PlanCompression(facts);
    EXPECT_EQ(plan.tag, 0x59525942u) << format;
    EXPECT_EQ(plan.nameIndex, 11) << format;
    EXPECT_FALSE(plan.keepsAlpha) << format;
    facts.settings.scan = kScanInterlaced;
    plan = PlanCompression(facts);
    EXPECT_EQ(plan.nameIndex, 12) << format;
  }
}

TEST(CompressionPlanTest, FamilyNamesGoByAlphaAndScanWhateverTheTag) {
  struct {
    VorelFamily family;
    const char* format;
    bool alphaTags;
  } const rows[] = {{VOREL_RGB_10BF, "b64a", true},        {VOREL_RGB_10BF, "32", true},
                    {VOREL_RGB_10BF, "24", false},         {VOREL_RGB_8BF, "V416", true},
                    {VOREL_YCBCR_10BV_444, "b64a", true},  {VOREL_YCBCR_10BV_444, "v410", false},
                    {VOREL_YCBCR_8B_444, "v408", true},    {VOREL_YCBCR_8B_444, "r408", true},
                    {VOREL_YCBCR_8B_444, "yuvs", false},   {VOREL_YCBCR_10BV_422, "VUYA", true},
                    {VOREL_YCBCR_10BV_422, "v210", false}, {VOREL_YCBCR_8BV_422, "ABGR", true},
                    {VOREL_YCBCR_8BV_422, "2vuy", false},  {VOREL_YCBCR_8BW_422, "yuvu", false}};
  for (const auto& row : rows) {
    EXPECT_EQ(Plan(row.family, row.format, false, kScanProgressive).nameIndex, 3) << row.format;
    EXPECT_EQ(Plan(row.family, row.format, false, kScanInterlaced).nameIndex, 4) << row.format;
    EXPECT_EQ(Plan(row.family, row.format, true, kScanProgressive).nameIndex, row.alphaTags ? 5 : 3)
        << row.format;
    EXPECT_EQ(Plan(row.family, row.format, true, kScanInterlaced).nameIndex, row.alphaTags ? 6 : 4)
        << row.format;
  }
}

TEST(CompressionPlanTest, FamilyCompressorsWriteTheSubtypeOfTheTag) {
  struct {
    VorelFamily family;
    const char* format;
    const char* subtype;
  } const rows[] = {{VOREL_RGB_10BF, "b64a", "Vrl7"},       {VOREL_RGB_10BF, "24", "Vrl1"},
                    {VOREL_RGB_8BF, "v210", "Vrl1"},        {VOREL_YCBCR_10BV_444, "VUYA", "Vrl2"},
                    {VOREL_YCBCR_10BV_444, "v210", "Vrl6"}, {VOREL_YCBCR_10BV_444, "2vuy", "Vrl3"},
                    {VOREL_YCBCR_10BV_444, "v410", "Vrl5"}, {VOREL_YCBCR_8B_444, "yuvs", "Vrl3"},
                    {VOREL_YCBCR_8B_444, "r408", "Vrl2"},   {VOREL_YCBCR_10BV_422, "2vuy", "Vrl3"},
                    {VOREL_YCBCR_10BV_422, "32", "Vrl6"},   {VOREL_YCBCR_8BV_422, "b64a", "Vrl3"},
                    {VOREL_YCBCR_8BW_422, "yuv2", "Vrl4"}};
  for (const auto& row : rows) {
    const CompressionPlan plan = Plan(row.family, row.format);
    EXPECT_EQ(plan.subtype, CodeOf(row.subtype)) << row.family << " " << row.format;
    EXPECT_EQ(plan.refusedSubtype, noErr) << row.family << " " << row.format;
  }
}

TEST(CompressionPlanTest, FamilyRefusesWhatItsRuleDoesNotKnow) {
  struct {
    VorelFamily family;
    const char* format;
  } const rows[] = {{VOREL_YCBCR_10BV_444, "b48r"}, {VOREL_YCBCR_8B_444, "b48r"},
                    {VOREL_YCBCR_10BV_422, "b48r"}, {VOREL_YCBCR_8BV_422, "b48r"},
                    {VOREL_YCBCR_10BV_422, "A46L"}, {VOREL_RGB_8BF, "yuvu"},
                    {VOREL_YCBCR_8BW_422, "2vuy"},  {VOREL_RGB_10BF, "L555"}};
  for (const auto& row : rows)
    EXPECT_EQ(Plan(row.family, row.format).refusedSubtype, codecConditionErr) << row.family << row.format;
}

TEST(CompressionPlanTest, GenericCompressorHoldsToAFamilyItIsAskedFor) {
  SourceFacts facts = Facts(VOREL_GENERIC, "2vuy");
  facts.subtype = FourCharacterCode("Vrl3");
  EXPECT_EQ(PlanCompression(facts).refusedSubtype, noErr);
  facts.subtype = FourCharacterCode("Vrl6");
  EXPECT_EQ(PlanCompression(facts).refusedSubtype, codecConditionErr);
  facts.subtype = FourCharacterCode("Vrl0");
  EXPECT_EQ(PlanCompression(facts).refusedSubtype, noErr);
}

TEST(CompressionPlanTest, GenericPerfectRefusesSixteenBitFormats) {
  for (const char* format : {"A46L", "L64A", "V416", "Y216", "b48r", "b64a", "v216"}) {
    SourceFacts facts = Facts(VOREL_GENERIC, format);
    EXPECT_EQ(PlanCompression(facts).refusedBits, noErr) << format;
    facts.settings.conversion = kConversionPerfect;
    EXPECT_EQ(PlanCompression(facts).refusedBits, codecConditionErr) << format;
    facts.significantBits = 11;
    EXPECT_EQ(PlanCompression(facts).refusedBits, codecConditionErr) << format;
    facts.significantBits = 10;
    EXPECT_EQ(PlanCompression(facts).refusedBits, noErr) << format;
  }
  for (const char* format :
       {"F10k", "F210", "R10k", "S10k", "S210", "r210", "v210", "v410", "32",   "24",
        "24BG", "ABGR", "BGRA", "RGBA", "VRGB", "v408", "r408", "2vuy", "yuvs", "yuvu"}) {
    SourceFacts facts = Facts(VOREL_GENERIC, format);
    facts.settings.conversion = kConversionPerfect;
    EXPECT_EQ(PlanCompression(facts).refusedBits, noErr) << format;
    facts.significantBits = 16;
    EXPECT_EQ(PlanCompression(facts).refusedBits, codecConditionErr) << format;
  }
}

TEST(CompressionPlanTest, FamilyPerfectGoesByTheFormatAlone) {
  for (VorelFamily family = VOREL_RGB_10BF; family <= VOREL_YCBCR_8BV_422; ++family) {
    for (const char* format : {"L64A", "b64a", "V416", "Y216", "v216", "F10k", "F210", "S10k", "R10k"}) {
      SourceFacts facts = Facts(family, format);
      facts.significantBits = 8;
      EXPECT_EQ(PlanCompression(facts).refusedBits, noErr) << family << format;
      facts.settings.conversion = kConversionPerfect;
      EXPECT_EQ(PlanCompression(facts).refusedBits, codecConditionErr) << family << format;
    }
    for (const char* format :
         {"v210", "v410", "24", "32", "24BG", "ABGR", "BGRA", "VRGB", "S210", "VUYA", "v408", "2vuy"}) {
      SourceFacts facts = Facts(family, format);
      facts.settings.conversion = kConversionPerfect;
      facts.significantBits = 16;
      EXPECT_EQ(PlanCompression(facts).refusedBits, noErr) << family << format;
    }
  }
}

// By tag: 10 for 10-bit frames, 8 for 8-bit ones, no limit for wide-range ones.
TEST(CompressionPlanTest, SignificantBitsAreLimitedByTheTag) {
  struct {
    VorelFamily family;
    const char* format;
    std::optional<u8> said;
    u8 written;
  } const rows[] = {{VOREL_GENERIC, "b64a", std::nullopt, 10},
                    {VOREL_GENERIC, "b64a", 12, 10},
                    {VOREL_GENERIC, "b64a", 9, 9},
                    {VOREL_GENERIC, "R10k", std::nullopt, 10},
                    {VOREL_GENERIC, "r210", std::nullopt, 10},
                    {VOREL_GENERIC, "S210", std::nullopt, 10},
                    {VOREL_GENERIC, "v210", std::nullopt, 10},
                    {VOREL_GENERIC, "32", std::nullopt, 8},
                    {VOREL_GENERIC, "32", 10, 8},
                    {VOREL_GENERIC, "32", 6, 6},
                    {VOREL_GENERIC, "v408", std::nullopt, 8},
                    {VOREL_GENERIC, "2vuy", 9, 8},
                    {VOREL_GENERIC, "yuvu", std::nullopt, 8},
                    {VOREL_GENERIC, "yuvu", 200, 200},
                    {VOREL_RGB_10BF, "2vuy", std::nullopt, 8},
                    {VOREL_RGB_10BF, "2vuy", 16, 10},
                    {VOREL_RGB_8BF, "b64a", std::nullopt, 8},
                    {VOREL_RGB_8BF, "v210", std::nullopt, 8},
                    {VOREL_YCBCR_10BV_422, "2vuy", 10, 8},
                    {VOREL_YCBCR_10BV_444, "V416", 16, 10},
                    {VOREL_YCBCR_8BW_422, "yuv2", std::nullopt, 8},
                    {VOREL_YCBCR_8BW_422, "yuv2", 16, 16},
                    {VOREL_GENERIC, "V210", std::nullopt, 0},
                    {VOREL_GENERIC, "L555", std::nullopt, 0}};
  for (const auto& row : rows) {
    SourceFacts facts = Facts(row.family, row.format);
    facts.significantBits = row.said;
    EXPECT_EQ(PlanCompression(facts).significantBits, row.written)
        << row.family << row.format << int{row.said.value_or(0)};
  }
}

}  // namespace

}  // namespace vorel::component
