#include "frame/frame_tags.h"

#include <gtest/gtest.h>

#include <set>

#include "frame/frame_bounds.h"
#include "frame/tag_rules.h"

namespace vorel {
namespace {

struct TagRow {
  u32 tag;
  const char* name;
  const char* family;
  u32 bytesOfTinyFrame;  // frame bound of 1 x 1, worked by hand
};

// Typed in again, apart from the table of layouts.
constexpr TagRow kTags[] = {
    {0x58424752, "RGB 10bf p", "Vrl7", 14},
    {0x58424772, "RGB 10bf i", "Vrl7", 14},
    {0x58475241, "RGBA 10bf p", "Vrl7", 18},
    {0x58477241, "RGBA 10bf i", "Vrl7", 18},
    {0x42475220, "RGB 8bf p", "Vrl1", 14},
    {0x42477220, "RGB 8bf i", "Vrl1", 14},
    {0x42475241, "RGBA 8bf p", "Vrl1", 17},
    {0x42477241, "RGBA 8bf i", "Vrl1", 17},
    {0x0A524259, "Y'CbCr 10bv 4:4:4p", "Vrl5", 14},
    {0x0A524279, "Y'CbCr 10bv 4:4:4i", "Vrl5", 14},
    {0x70344143, "Y'CbCrA 10bv 4:4:4:4p", "Vrl5", 18},
    {0x69344143, "Y'CbCrA 10bv 4:4:4:4i", "Vrl5", 18},
    {0x52425920, "Y'CbCr 8bv 4:4:4p", "Vrl2", 14},
    {0x52427920, "Y'CbCr 8bv 4:4:4i", "Vrl2", 14},
    {0x52425941, "Y'CbCrA 8bv 4:4:4:4p", "Vrl2", 17},
    {0x52427941, "Y'CbCrA 8bv 4:4:4:4i", "Vrl2", 17},
    {0x52625920, "Y'CbCr 8bu 4:4:4p", "Vrl2", 14},
    {0x52627920, "Y'CbCr 8bu 4:4:4i", "Vrl2", 14},
    {0x52625941, "Y'CbCrA 8bu 4:4:4:4p", "Vrl2", 17},
    {0x52627941, "Y'CbCrA 8bu 4:4:4:4i", "Vrl2", 17},
    {0x595259A2, "Y'CbCr 10bv 4:2:2p", "Vrl6", 18},
    {0x795259A2, "Y'CbCr 10bv 4:2:2i", "Vrl6", 18},
    {0x70324143, "Y'CbCrA 10bv 4:2:2:4p", "Vrl6", 24},
    {0x69324143, "Y'CbCrA 10bv 4:2:2:4i", "Vrl6", 24},
    {0x59525942, "Y'CbCr 8bv 4:2:2p", "Vrl3", 17},
    {0x79525942, "Y'CbCr 8bv 4:2:2i", "Vrl3", 17},
    {0x70323843, "Y'CbCrA 8bv 4:2:2:4p", "Vrl3", 23},
    {0x69323843, "Y'CbCrA 8bv 4:2:2:4i", "Vrl3", 23},
    {0x72596259, "Y'CbCr 8bw 4:2:2p", "Vrl4", 17},
    {0x72796259, "Y'CbCr 8bw 4:2:2i", "Vrl4", 17},
};

u32 Code(const char* text) {
  return u32{static_cast<u8>(text[0])} << 24 | u32{static_cast<u8>(text[1])} << 16 |
         u32{static_cast<u8>(text[2])} << 8 | static_cast<u8>(text[3]);
}

TEST(FrameTags, ThirtyTagsNameLayoutScanAndFamily) {
  std::set<u32> seen;
  for (std::size_t i = 0; i < std::size(kTags); ++i) {
    const TagRow& row = kTags[i];
    const TaggedLayout found = LayoutOfTag(row.tag);
    ASSERT_NE(found.layout, nullptr) << row.name;
    EXPECT_EQ(found.scan, i % 2 == 0 ? Scan::p : Scan::i) << row.name;
    EXPECT_STREQ(found.layout->shownName[i % 2], row.name);
    EXPECT_EQ(FamilyOfTag(row.tag), Code(row.family)) << row.name;
    EXPECT_EQ(NormalizeFormatTag(row.tag), row.tag) << row.name;
    EXPECT_EQ(MaxFrameBytesOfTag(row.tag, 1, 1), row.bytesOfTinyFrame) << row.name;
    seen.insert(row.tag);
  }
  EXPECT_EQ(seen.size(), 30u);
}

TEST(FrameTags, AnUnknownWordSurvivesTheNormaliserAndBelongsToNobody) {
  for (const u32 word : {0u, 0xFFFFFFFFu, WordOfBytes("abcd"), WordOfBytes("BGRB")}) {
    EXPECT_EQ(NormalizeFormatTag(word), word);
    EXPECT_EQ(LayoutOfTag(word).layout, nullptr);
    EXPECT_EQ(FamilyOfTag(word), 0u);
    EXPECT_EQ(MaxFrameBytesOfTag(word, 10, 10), 0u);
  }
}

TEST(FrameTags, SpellingsWithAndWithoutAlphaStayApart) {
  EXPECT_EQ(NormalizeFormatTag(WordOfBytes("BGRA")), WordOfBytes("ARGB"));
  EXPECT_EQ(NormalizeFormatTag(WordOfBytes(" BGR")), WordOfBytes(" RGB"));
}

TEST(FrameBounds, EmptyPicturesTakeNothing) {
  for (const TagRow& row : kTags) {
    EXPECT_EQ(MaxFrameBytesOfTag(row.tag, 0, 5), 0u);
    EXPECT_EQ(MaxFrameBytesOfTag(row.tag, 5, 0), 0u);
  }
}

TEST(FrameBounds, OfAnotherSpellingIsNothing) {
  EXPECT_EQ(MaxFrameBytesOfTag(WordOfBytes("rYbY"), 5, 5), 0u);
}

TEST(FrameBounds, AnOddWidthCountsAWholePair) {
  EXPECT_EQ(MaxFrameBytesOfTag(WordOfBytes("YbYr"), 1, 1), 1u + 4 + 8 + 4);
  EXPECT_EQ(MaxFrameBytesOfTag(WordOfBytes("YbYr"), 2, 1), 1u + 4 + 8 + 4);
  EXPECT_EQ(MaxFrameBytesOfTag(WordOfBytes("YbYr"), 3, 9), 2u + 4 * 9 * 2 + 16 + 4);
}

TEST(RowDecision, EightBitPairsAreCountedAndOthersWeighTheWidth) {
  EXPECT_TRUE(PredictedRowStays(YCbCr8bw422, 4, 7));
  EXPECT_FALSE(PredictedRowStays(YCbCr8bw422, 5, 7));
  // With alpha an odd width falls back although its raw row would be longer: 4 * 6 bytes against 3 * 7.
  EXPECT_TRUE(PredictedRowStays(YCbCrA8bv4224, 5, 7));
  EXPECT_FALSE(PredictedRowStays(YCbCrA8bv4224, 6, 7));
}

TEST(TagRules, TheGenericRuleLeavesVuyaOut) {
  EXPECT_EQ(ChooseTag(VOREL_GENERIC, FourCharacterCode("VUYA"), 0), 0u);
  EXPECT_EQ(ChooseTag(VOREL_YCBCR_8BV_422, FourCharacterCode("VUYA"), 1), WordOfBytes("C82p"));
}

TEST(TagRules, AlphaIsIgnoredWhereThePixelFormatHasNone) {
  EXPECT_EQ(ChooseTag(VOREL_GENERIC, FourCharacterCode("yuvu"), 3), WordOfBytes("Ybyr"));
  EXPECT_EQ(ChooseTag(VOREL_GENERIC, 24, 1), WordOfBytes(" RGB"));
}

TEST(TagRules, AFamilyOutsideTheTableKnowsNothing) {
  EXPECT_EQ(ChooseTag(8, FourCharacterCode("yuvu"), 0), 0u);
}

}  // namespace
}  // namespace vorel
