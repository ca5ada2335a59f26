// The rows of the component table, and the names that frame formats get, against data written separately.
#include "component/component_table.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

#include "component/format_names.h"

namespace vorel::component {
namespace {

// A number as the four characters that its bytes spell, most significant first.
std::string Text(u32 code) {
  std::string text;
  for (int shift = 24; shift >= 0; shift -= 8) text += static_cast<char>(code >> shift & 0xFF);
  return text;
}

struct Expected {
  const char* entry;
  const char* type;
  const char* subtype;
  const char* manufacturer;
  int id;
  const char* name;
};

const Expected kExpected[] = {
    {"Qd_", "imdc", "Vrl0", "TmRk", 23584, "Vorel"},
    {"Qe_", "imco", "Vrl0", "TmRk", 23616, "Vorel"},
    {"Qd0", "imdc", "Vrl7", "TmRk", 23606, "Vorel RGB[A] 10bf"},
    {"Qe0", "imco", "Vrl7", "TmRk", 23638, "Vorel RGB[A] 10bf"},
    {"Qd1", "imdc", "Vrl1", "TmRk", 23586, "Vorel RGB[A] 8bf"},
    {"Qe1", "imco", "Vrl1", "TmRk", 23618, "Vorel RGB[A] 8bf"},
    {"Qd2", "imdc", "Vrl5", "TmRk", 23598, "Vorel Y'CbCr[A] 10bv 4:4:4[:4]"},
    {"Qe2", "imco", "Vrl5", "TmRk", 23630, "Vorel Y'CbCr[A] 10bv 4:4:4[:4]"},
    {"Qd3", "imdc", "Vrl2", "TmRk", 23588, "Vorel Y'CbCr[A] 8bv 4:4:4[:4]"},
    {"Qe3", "imco", "Vrl2", "TmRk", 23620, "Vorel Y'CbCr[A] 8bv 4:4:4[:4]"},
    {"Qd4", "imdc", "Vrl6", "TmRk", 23600, "Vorel Y'CbCr[A] 10bv 4:2:2[:4]"},
    {"Qe4", "imco", "Vrl6", "TmRk", 23632, "Vorel Y'CbCr[A] 10bv 4:2:2[:4]"},
    {"Qd5", "imdc", "Vrl3", "TmRk", 23592, "Vorel Y'CbCr[A] 8bv 4:2:2[:4]"},
    {"Qe5", "imco", "Vrl3", "TmRk", 23624, "Vorel Y'CbCr[A] 8bv 4:2:2[:4]"},
    {"Qd6", "imdc", "Vrl4", "TmRk", 23596, "Vorel Y'CbCr 8bw 4:2:2"},
    {"Qe6", "imco", "Vrl4", "TmRk", 23628, "Vorel Y'CbCr 8bw 4:2:2"},
    {"Qt2", "imtc", "v410", "Vrl5", 23662, "Vorel Y'CbCr[A] 10bv 4:4:4[:4]"},
    {"Qt2", "imtc", "v410", "Vrl0", 23663, "Vorel"},
    {"Qt3", "imtc", "v408", "Vrl2", 23652, "Vorel Y'CbCr[A] 8bv 4:4:4[:4]"},
    {"Qt3", "imtc", "v408", "Vrl0", 23653, "Vorel"},
    {"Qt3", "imtc", "r408", "Vrl2", 23654, "Vorel Y'CbCr[A] 8bv 4:4:4[:4]"},
    {"Qt3", "imtc", "r408", "Vrl0", 23655, "Vorel"},
    {"Qt4", "imtc", "v210", "Vrl6", 23664, "Vorel Y'CbCr[A] 10bv 4:2:2[:4]"},
    {"Qt4", "imtc", "v210", "Vrl0", 23665, "Vorel"},
    {"Qt4", "imtc", "v216", "Vrl6", 23666, "Vorel Y'CbCr[A] 10bv 4:2:2[:4]"},
    {"Qt4", "imtc", "v216", "Vrl0", 23667, "Vorel"},
    {"Qt4", "imtc", "Y216", "Vrl6", 23668, "Vorel Y'CbCr[A] 10bv 4:2:2[:4]"},
    {"Qt4", "imtc", "Y216", "Vrl0", 23669, "Vorel"},
    {"Qt5", "imtc", "2vuy", "Vrl3", 23656, "Vorel Y'CbCr[A] 8bv 4:2:2[:4]"},
    {"Qt5", "imtc", "2vuy", "Vrl0", 23657, "Vorel"},
    {"Qt5", "imtc", "yuvs", "Vrl3", 23658, "Vorel Y'CbCr[A] 8bv 4:2:2[:4]"},
    {"Qt5", "imtc", "yuvs", "Vrl0", 23659, "Vorel"},
    {"Qt6", "imtc", "yuv2", "Vrl4", 23660, "Vorel Y'CbCr 8bw 4:2:2"},
    {"Qt6", "imtc", "yuv2", "Vrl0", 23661, "Vorel"},
};

u32 Code(const char* text) {
  u32 code = 0;
  for (; *text != 0; ++text) code = code << 8 | static_cast<u8>(*text);
  return code;
}

TEST(ComponentTable, HasTheseRowsAndNoOthers) {
  EXPECT_EQ(std::size(kComponents), std::size(kExpected));
  std::set<int> ids;
  for (const Expected& expected : kExpected) {
    const ComponentRow* row =
        FindComponent(Code(expected.type), Code(expected.subtype), Code(expected.manufacturer));
    ASSERT_NE(row, nullptr) << expected.entry;
    EXPECT_STREQ(row->entry, expected.entry);
    EXPECT_EQ(row->id, expected.id);
    EXPECT_STREQ(row->name, expected.name);
    EXPECT_EQ(Text(row->subtype), expected.subtype);
    ids.insert(row->id);
  }
  EXPECT_EQ(ids.size(), std::size(kExpected));
}

TEST(ComponentTable, FindsByEntry) {
  EXPECT_EQ(FindComponent("Qe6")->id, 23628);
  EXPECT_EQ(FindComponent("Qt4")->id, 23664);
  EXPECT_EQ(FindComponent("Qd7"), nullptr);
  EXPECT_EQ(FindComponent(""), nullptr);
}

TEST(ComponentTable, CompressorOfATypeIsTheGenericOneForAnyOther) {
  const struct {
    const char* subtype;
    int id;
  } rows[] = {{"Vrl1", 23618}, {"Vrl2", 23620}, {"Vrl3", 23624}, {"Vrl4", 23628}, {"Vrl5", 23630},
              {"Vrl6", 23632}, {"Vrl7", 23638}, {"Vrl0", 23616}, {"Vrl8", 23616}, {"jpeg", 23616}};
  for (const auto& row : rows) EXPECT_EQ(CompressorOf(Code(row.subtype)).id, row.id) << row.subtype;
  EXPECT_EQ(CompressorOfFamily(VOREL_YCBCR_8BV_422).id, 23624);
  EXPECT_EQ(CompressorOfFamily(VOREL_GENERIC).id, 23616);
}

TEST(ComponentTable, NamesFitIntoCodecInformation) {
  for (const ComponentRow& row : kComponents) EXPECT_LE(std::string(row.name).size(), 31u) << row.name;
}

TEST(ComponentTable, SentencesSayWhatIsDone) {
  for (const ComponentRow& row : kComponents) {
    const std::string sentence = row.sentence;
    const char* verb = row.type == kDecompressorType ? "Decodes "
                       : row.type == kCompressorType ? "Encodes "
                                                     : "Transcodes ";
    EXPECT_TRUE(sentence.starts_with(verb)) << sentence;
    EXPECT_EQ(sentence.find('.'), sentence.size() - 1) << sentence;
    if (row.type == kTranscoderType) {
      EXPECT_NE(sentence.find(Text(row.subtype)), std::string::npos) << sentence;
    }
  }
}

TEST(ComponentTable, GroupBoxesOfDialogsHaveIdsOfTheirOwn) {
  std::set<i16> ids;
  for (VorelFamily family = 0; family < 8; ++family) {
    for (int box = 0; box < 5; ++box) ids.insert(GroupBoxId(family, box));
  }
  EXPECT_EQ(ids.size(), 40u);
}

struct NamedTag {
  const char* tag;
  const char* name;
  u32 base;       // of the generic list
  u32 alpha;      // 0 or 2
  u32 interlace;  // 0 or 1
  i16 familyList;
  u32 familyBase;  // 8bu stands behind 8bv
};

const NamedTag kNamedTags[] = {
    {"RGBX", "Vorel RGB 10bf p", 4, 0, 0, 23639, 3},
    {"rGBX", "Vorel RGB 10bf i", 4, 0, 1, 23639, 3},
    {"ARGX", "Vorel RGBA 10bf p", 4, 2, 0, 23639, 3},
    {"ArGX", "Vorel RGBA 10bf i", 4, 2, 1, 23639, 3},
    {" RGB", "Vorel RGB 8bf p", 10, 0, 0, 23619, 3},
    {" rGB", "Vorel RGB 8bf i", 10, 0, 1, 23619, 3},
    {"ARGB", "Vorel RGBA 8bf p", 10, 2, 0, 23619, 3},
    {"ArGB", "Vorel RGBA 8bf i", 10, 2, 1, 23619, 3},
    {"YBR\n", "Vorel Y'CbCr 10bv 4:4:4p", 16, 0, 0, 23631, 3},
    {"yBR\n", "Vorel Y'CbCr 10bv 4:4:4i", 16, 0, 1, 23631, 3},
    {"CA4p", "Vorel Y'CbCrA 10bv 4:4:4:4p", 16, 2, 0, 23631, 3},
    {"CA4i", "Vorel Y'CbCrA 10bv 4:4:4:4i", 16, 2, 1, 23631, 3},
    {" YBR", "Vorel Y'CbCr 8bv 4:4:4p", 22, 0, 0, 23621, 3},
    {" yBR", "Vorel Y'CbCr 8bv 4:4:4i", 22, 0, 1, 23621, 3},
    {"AYBR", "Vorel Y'CbCrA 8bv 4:4:4:4p", 22, 2, 0, 23621, 3},
    {"AyBR", "Vorel Y'CbCrA 8bv 4:4:4:4i", 22, 2, 1, 23621, 3},
    {" YbR", "Vorel Y'CbCr 8bu 4:4:4p", 26, 0, 0, 23621, 7},
    {" ybR", "Vorel Y'CbCr 8bu 4:4:4i", 26, 0, 1, 23621, 7},
    {"AYbR", "Vorel Y'CbCrA 8bu 4:4:4:4p", 26, 2, 0, 23621, 7},
    {"AybR", "Vorel Y'CbCrA 8bu 4:4:4:4i", 26, 2, 1, 23621, 7},
    {"\xA2YRY", "Vorel Y'CbCr 10bv 4:2:2p", 32, 0, 0, 23633, 3},
    {"\xA2YRy", "Vorel Y'CbCr 10bv 4:2:2i", 32, 0, 1, 23633, 3},
    {"CA2p", "Vorel Y'CbCrA 10bv 4:2:2:4p", 32, 2, 0, 23633, 3},
    {"CA2i", "Vorel Y'CbCrA 10bv 4:2:2:4i", 32, 2, 1, 23633, 3},
    {"BYRY", "Vorel Y'CbCr 8bv 4:2:2p", 38, 0, 0, 23625, 3},
    {"BYRy", "Vorel Y'CbCr 8bv 4:2:2i", 38, 0, 1, 23625, 3},
    {"C82p", "Vorel Y'CbCrA 8bv 4:2:2:4p", 38, 2, 0, 23625, 3},
    {"C82i", "Vorel Y'CbCrA 8bv 4:2:2:4i", 38, 2, 1, 23625, 3},
    {"YbYr", "Vorel Y'CbCr 8bw 4:2:2p", 44, 0, 0, 23629, 3},
    {"Ybyr", "Vorel Y'CbCr 8bw 4:2:2i", 44, 0, 1, 23629, 3},
};

// The name that a host finds in a list, by an index from 1.
const char* NameAt(i16 listId, u32 index) {
  for (const FormatNameList& list : kFormatNameLists) {
    if (list.id == listId && index >= 1 && index <= list.count) return kFormatNames[list.first + index - 2];
  }
  return "no such name";
}

TEST(FormatNames, IndexOfATagIsItsBaseAlphaAndScan) {
  ASSERT_EQ(std::size(kNamedTags), 30u);
  for (const NamedTag& row : kNamedTags) {
    const u32 tag = SwapBytes(Code(row.tag));
    EXPECT_EQ(GenericNameIndex(tag), row.base + row.alpha + row.interlace + 1) << row.name;
    EXPECT_STREQ(NameAt(23617, GenericNameIndex(tag)), row.name);
    EXPECT_STREQ(NameAt(row.familyList, row.alpha + row.interlace + row.familyBase), row.name);
  }
}

TEST(FormatNames, WordsWithoutANameHaveIndexZero) {
  for (const u32 word : {0u, 1u, 0x41524742u}) EXPECT_EQ(GenericNameIndex(word), 0u);
}

}  // namespace
}  // namespace vorel::component
