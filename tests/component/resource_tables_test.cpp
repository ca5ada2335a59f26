// What the host finds components by, against data written separately; and that the resources fit together.
#include "component/resources/resource_tables.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>

#include "component/component_table.h"
#include "component/resources/embedded_fork.h"
#include "tests/component/hand_bytes.h"

namespace vorel::component {
namespace {

const std::vector<int> kDecompressors = {23584, 23606, 23586, 23598, 23588, 23600, 23592, 23596};
const std::vector<int> kCompressors = {23616, 23638, 23618, 23630, 23620, 23632, 23624, 23628};

std::vector<int> Transcoders() {
  std::vector<int> ids;
  for (int id = 23652; id <= 23669; ++id) ids.push_back(id);
  return ids;
}

std::vector<int> Sorted(std::vector<int> ids) {
  std::sort(ids.begin(), ids.end());
  return ids;
}

std::vector<int> Components() {
  std::vector<int> ids = Transcoders();
  ids.insert(ids.end(), kDecompressors.begin(), kDecompressors.end());
  ids.insert(ids.end(), kCompressors.begin(), kCompressors.end());
  return Sorted(ids);
}

TEST(ResourceTables, ComponentsAreDescribedByteForByte) {
  EXPECT_EQ(BytesOf("thng", 23584),
            Hex("696D6463 56726C30 546D526B 00000000 00000000 00000000 0000 7374726E 5C20"
                "73747269 5C20 69636C38 5C20 00000267 00000009 5C20 00000001"
                "10200020 646C6C65 5C20 0004 74686E72 5C20"));
  EXPECT_EQ(BytesOf("thng", 23628),
            Hex("696D636F 56726C34 546D526B 00000000 00000000 00000000 0000 7374726E 5C4C"
                "73747269 5C4C 69636C38 5C20 00000267 00000009 5C20 00000001"
                "10200020 646C6C65 5C4C 0004 74686E72 5C4C"));
  EXPECT_EQ(BytesOf("thng", 23663),
            Hex("696D7463 76343130 56726C30 00000000 00000000 00000000 0000 7374726E 5C6F"
                "73747269 5C6F 69636C38 5C20 00000267 00000019 5C20 00000001"
                "10000000 646C6C65 5C6F 0004 74686E72 5C6F"));
}

TEST(ResourceTables, EveryComponentHasEveryResourceUnderItsId) {
  for (const char* type : {"thng", "dlle", "thnr", "strn", "stri", "cdci", "cpix"}) {
    EXPECT_EQ(Sorted(IdsOf(type)), Components()) << type;
  }
  EXPECT_EQ(Sorted(IdsOf("avvd")), Sorted(kDecompressors));
  std::vector<int> writers = Transcoders();
  writers.insert(writers.end(), kCompressors.begin(), kCompressors.end());
  EXPECT_EQ(Sorted(IdsOf("avvc")), Sorted(writers));
  EXPECT_EQ(Sorted(IdsOf("ccop")), Sorted(kCompressors));
  EXPECT_EQ(IdsOf("vers"), std::vector<int>{1});
  EXPECT_EQ(IdsOf("icl8"), std::vector<int>{23584});
  EXPECT_EQ(IdsOf("ICON"), std::vector<int>{23584});
}

TEST(ResourceTables, ComponentsReferToResourcesThatExist) {
  for (const int id : Components()) {
    const Bytes thing = BytesOf("thng", id);
    ASSERT_EQ(thing.size(), 76u);
    for (const std::size_t at : {26u, 32u, 38u, 62u, 70u}) {
      const std::string type = Text({thing.begin() + static_cast<std::ptrdiff_t>(at),
                                     thing.begin() + static_cast<std::ptrdiff_t>(at + 4)});
      EXPECT_FALSE(BytesOf(type, Signed16(thing, at + 4)).empty()) << type;
    }
    EXPECT_EQ(Big(thing, 44, 4), 0x267u);
    EXPECT_EQ(Big(thing, 68, 2), 4u);  // platform
    EXPECT_EQ(Signed16(thing, 52), 23584);
  }
}

TEST(ResourceTables, EntryNamesEndInZeroAndAreThoseOfTheLibrary) {
  std::set<std::string> names;
  for (const int id : Components()) {
    const Bytes bytes = BytesOf("dlle", id);
    ASSERT_EQ(bytes.size(), 4u);
    EXPECT_EQ(bytes[3], 0);
    names.insert(Text({bytes.begin(), bytes.begin() + 3}));
  }
  const std::set<std::string> expected = {"Qd_", "Qe_", "Qd0", "Qd1", "Qd2", "Qd3", "Qd4",
                                          "Qd5", "Qd6", "Qe0", "Qe1", "Qe2", "Qe3", "Qe4",
                                          "Qe5", "Qe6", "Qt2", "Qt3", "Qt4", "Qt5", "Qt6"};
  EXPECT_EQ(names, expected);
  EXPECT_EQ(BytesOf("dlle", 23616), Hex("51655F00"));
}

TEST(ResourceTables, NamesAndSentencesAreStrings) {
  EXPECT_EQ(Text(BytesOf("strn", 23596)), "\x16Vorel Y'CbCr 8bw 4:2:2");
  EXPECT_EQ(Text(BytesOf("strn", 23586)), "\x10Vorel RGB[A] 8bf");
  EXPECT_EQ(Text(BytesOf("strn", 23616)), "\x05Vorel");
  EXPECT_EQ(Text(BytesOf("strn", 23669)), "\x05Vorel");
  for (const int id : Components()) {
    for (const char* type : {"strn", "stri"}) {
      const Bytes bytes = BytesOf(type, id);
      EXPECT_EQ(bytes.size(), bytes.at(0) + 1u);
      EXPECT_GE(bytes.size(), 6u);
    }
  }
}

// Codec information of a component but for its name.
std::string Rest(const char* compressFlags, const char* formatFlags) {
  return std::string("0000 0267 546D526B 10200020 ") + compressFlags + formatFlags +
         "FF FF 00CD 00EC A6 00 0001 0001 0000 0000 00000000";
}

TEST(ResourceTables, CodecInformationByteForByte) {
  EXPECT_EQ(BytesOf("cdci", 23584),
            Join({Hex("05 566F72656C"), Bytes(26), Hex(Rest("10200020", "00001060"))}));
  EXPECT_EQ(BytesOf("cdci", 23586), Join({Hex("10 566F72656C 20 524742 5B415D 20 386266"), Bytes(15),
                                          Hex(Rest("00000000", "00001060"))}));
  EXPECT_EQ(BytesOf("cdci", 23628), Join({Hex("16 566F72656C 20 5927436243 72 20 386277 20 343A323A32"),
                                          Bytes(9), Hex(Rest("10200020", "00001040"))}));
}

TEST(ResourceTables, CodecInformationOfEveryComponent) {
  // 8bw, and transcoders into the families of 10-bit 4:4:4 and of both 4:2:2.
  const std::set<int> only24 = {23596, 23628, 23660, 23661, 23662, 23664, 23666, 23668, 23656, 23658};
  for (const int id : Components()) {
    const Bytes bytes = BytesOf("cdci", id);
    ASSERT_EQ(bytes.size(), 72u);
    EXPECT_LE(bytes[0], 31);
    EXPECT_EQ(StringAt(bytes, 0), StringAt(BytesOf("strn", id), 0));
    for (std::size_t i = 1u + bytes[0]; i < 32; ++i) EXPECT_EQ(bytes[i], 0);
    const Bytes rest(bytes.begin() + 32, bytes.end());
    const char* format = only24.contains(id) ? "00001040" : "00001060";
    EXPECT_EQ(rest, Hex(Rest(id == 23586 ? "00000000" : "10200020", format))) << id;
  }
}

TEST(ResourceTables, PixelFormatsAreCodesWithoutACount) {
  EXPECT_EQ(BytesOf("cpix", 23628), Hex("79757675 79757632"));
  EXPECT_EQ(BytesOf("cpix", 23596), Hex("79757675 79757632"));
  const Bytes rgb8 = BytesOf("cpix", 23618);
  EXPECT_EQ(Big(rgb8, 0, 4), 0x18u);  // the number 24
  EXPECT_EQ(Text({rgb8.begin() + 4, rgb8.begin() + 8}), "24BG");
  EXPECT_EQ(Big(rgb8, 8, 4), 0x20u);  // the number 32
  EXPECT_EQ(rgb8.size(), 4u * 29);
  // What RGB frames decode to, but no encoder takes: 'L555', 'L565' and 'V210'.
  EXPECT_EQ(BytesOf("cpix", 23586).size(), 4u * 32);
  for (const int id : Components()) EXPECT_EQ(BytesOf("cpix", id).size() % 4, 0u);
}

TEST(ResourceTables, TranscodersTakeTheirSubtypeAlone) {
  const std::map<int, const char*> sources = {
      {23662, "v410"}, {23663, "v410"}, {23652, "v408"}, {23653, "v408"}, {23654, "r408"}, {23655, "r408"},
      {23664, "v210"}, {23665, "v210"}, {23666, "v216"}, {23667, "v216"}, {23668, "Y216"}, {23669, "Y216"},
      {23656, "2vuy"}, {23657, "2vuy"}, {23658, "yuvs"}, {23659, "yuvs"}, {23660, "yuv2"}, {23661, "yuv2"}};
  EXPECT_EQ(sources.size(), 18u);
  for (const auto& [id, source] : sources) {
    EXPECT_EQ(Text(BytesOf("cpix", id)), source);
    EXPECT_EQ(Text(BytesOf("avvc", id)), source);
  }
}

TEST(ResourceTables, CodecsOfAviFilesAreTheOwnSubtypes) {
  EXPECT_EQ(Text(BytesOf("avvd", 23584)), "Vrl0");
  EXPECT_EQ(Text(BytesOf("avvd", 23592)), "Vrl3");
  EXPECT_EQ(Text(BytesOf("avvc", 23638)), "Vrl7");
  for (const int id : kCompressors) EXPECT_EQ(BytesOf("ccop", id), Hex("00000001"));
}

TEST(ResourceTables, PublicIdsLeadToTheComponentsOwn) {
  EXPECT_EQ(BytesOf("thnr", 23616), Hex("63646369 0001 0000 63646369 5C40 0000"
                                        "63706978 0001 0000 63706978 5C40 0000"
                                        "61767663 0001 0000 61767663 5C40 0000"
                                        "63636F70 0001 0000 63636F70 5C40 0000"));
  EXPECT_EQ(BytesOf("thnr", 23584), Hex("63646369 0001 0000 63646369 5C20 0000"
                                        "63706978 0001 0000 63706978 5C20 0000"
                                        "61767664 0001 0000 61767664 5C20 0000"));
  for (const int id : Components()) {
    const Bytes rows = BytesOf("thnr", id);
    ASSERT_EQ(rows.size() % 16, 0u);
    for (std::size_t at = 0; at < rows.size(); at += 16) {
      const std::string type = Text({rows.begin() + static_cast<std::ptrdiff_t>(at + 8),
                                     rows.begin() + static_cast<std::ptrdiff_t>(at + 12)});
      EXPECT_FALSE(BytesOf(type, Signed16(rows, at + 12)).empty()) << type;
    }
  }
}

TEST(ResourceTables, VersionIsThatOfTheComponents) {
  EXPECT_EQ(BytesOf("vers", 1),
            Join({Hex("02 67 80 00 0000 05 322E362E37 10"), Hex("566F72656C566964656F20322E362E37")}));
}

TEST(ResourceTables, IconsShowTheSamePicture) {
  const Bytes colours = BytesOf("icl8", 23584);
  const Bytes bits = BytesOf("ICON", 23584);
  ASSERT_EQ(colours.size(), 1024u);
  ASSERT_EQ(bits.size(), 128u);
  int black = 0;
  for (std::size_t i = 0; i < 1024; ++i) {
    const bool isSet = (bits[i / 8] >> (7 - i % 8) & 1) != 0;
    const bool isLight = colours[i] == 0 || colours[i] == 245;  // white or light grey
    EXPECT_EQ(isSet, !isLight) << i;
    black += isSet;
  }
  EXPECT_GT(black, 100);
  EXPECT_LT(black, 512);
}

TEST(ResourceTables, ForkReadsAsTheTablesAndWritesAsItself) {
  const Bytes built(kResourceFork, kResourceFork + kResourceForkBytes);
  const std::vector<Resource> resources = ReadFork(built.data(), built.size(), "vorel.rsrc");
  EXPECT_EQ(resources, AllResources());
  EXPECT_EQ(WriteFork(resources), built);
  std::size_t dataBytes = 0;
  for (const Resource& resource : resources) dataBytes += 4 + resource.bytes.size();
  EXPECT_EQ(Big(built, 8, 4), dataBytes);  // no gap
  EXPECT_EQ(Big(built, 4, 4) + Big(built, 12, 4), built.size());
}

TEST(ResourceTables, OfOneTypeStandTogether) {
  std::set<u32> closed;
  u32 current = 0;
  for (const Resource& resource : AllResources()) {
    EXPECT_EQ(resource.attributes, 0);
    if (resource.type == current) continue;
    EXPECT_TRUE(closed.insert(current).second);
    current = resource.type;
    EXPECT_FALSE(closed.contains(current));
  }
}

}  // namespace
}  // namespace vorel::component
