// What the public functions tell of frames and tags without decoding anything.
#include <gtest/gtest.h>

#include <array>
#include <cstring>

#include "base/bytes.h"
#include "vorel/frame_codec.h"

namespace vorel {
namespace {

using Header = std::array<u8, VOREL_FRAME_HEADER_BYTES>;

Header HeaderOf(const char* first, u8 marker, const char* tag) {
  Header header = {};
  std::memcpy(header.data(), first, 4);
  const u8 middle[] = {0x0D, 0x0A, 0x00, 0x0A, marker, 'T', 'a', 'm', 'r', 'i', 'c', 'k'};
  std::memcpy(header.data() + 4, middle, sizeof middle);
  std::memcpy(header.data() + 16, tag, 4);
  return header;
}

TEST(FrameQueries, WrittenHeaderIsTheTextOfTheFormat) {
  Header header = {};
  VorelWriteFrameHeader(WordOfBytes("C82p"), header.data());
  EXPECT_EQ(header, HeaderOf("Vorl", 0xFF, "C82p"));
}

TEST(FrameQueries, EightBitDecodersTakeBothSignaturesTenBitOnesTheWrittenOne) {
  const Header written = HeaderOf("Vorl", 0xFF, "BYRY");
  const Header other = HeaderOf("Kesp", 0xAD, "BYRY");
  for (VorelFamily family = VOREL_GENERIC; family <= VOREL_YCBCR_8BW_422; ++family) {
    const bool isTenBit =
        family == VOREL_RGB_10BF || family == VOREL_YCBCR_10BV_444 || family == VOREL_YCBCR_10BV_422;
    EXPECT_EQ(VorelHasFrameSignature(family, written.data(), written.size()), 1) << family;
    EXPECT_EQ(VorelHasFrameSignature(family, other.data(), other.size()), isTenBit ? 0 : 1) << family;
  }
}

TEST(FrameQueries, ShortFramesAndUnknownFamiliesHaveNoSignature) {
  const Header written = HeaderOf("Vorl", 0xFF, "BYRY");
  EXPECT_EQ(VorelHasFrameSignature(VOREL_GENERIC, written.data(), written.size() - 1), 0);
  EXPECT_EQ(VorelHasFrameSignature(VOREL_GENERIC, nullptr, written.size()), 0);
  EXPECT_EQ(VorelHasFrameSignature(VOREL_YCBCR_8BW_422 + 1, written.data(), written.size()), 0);
}

TEST(FrameQueries, EveryByteOfTheSignatureCounts) {
  for (std::size_t i = 0; i < 16; ++i) {
    Header header = HeaderOf("Vorl", 0xFF, "BYRY");
    header[i] ^= 0x40;
    EXPECT_EQ(VorelHasFrameSignature(VOREL_GENERIC, header.data(), header.size()), 0) << i;
  }
}

TEST(FrameQueries, TagsLeadToTheirSubtypes) {
  EXPECT_EQ(VorelSubtypeOfTag(WordOfBytes("ArGX")), FourCharacterCode("Vrl7"));
  EXPECT_EQ(VorelSubtypeOfTag(WordOfBytes(" rGB")), FourCharacterCode("Vrl1"));
  EXPECT_EQ(VorelSubtypeOfTag(WordOfBytes("CA4i")), FourCharacterCode("Vrl5"));
  EXPECT_EQ(VorelSubtypeOfTag(WordOfBytes("AYbR")), FourCharacterCode("Vrl2"));
  EXPECT_EQ(VorelSubtypeOfTag(WordOfBytes("CA2p")), FourCharacterCode("Vrl6"));
  EXPECT_EQ(VorelSubtypeOfTag(WordOfBytes("C82i")), FourCharacterCode("Vrl3"));
  EXPECT_EQ(VorelSubtypeOfTag(WordOfBytes("Ybyr")), FourCharacterCode("Vrl4"));
  EXPECT_EQ(VorelSubtypeOfTag(WordOfBytes("BGRA")), 0u);  // a spelling, not a canonical tag
}

TEST(FrameQueries, RulesOfFamiliesMayNameForeignTags) {
  const u32 yuvs = FourCharacterCode("yuvs");
  EXPECT_EQ(VorelChooseFormatTag(VOREL_YCBCR_8B_444, yuvs, VOREL_INTERLACED), WordOfBytes("BYRy"));
  EXPECT_EQ(VorelChooseFormatTag(VOREL_GENERIC, FourCharacterCode("VUYA"), VOREL_KEEP_ALPHA), 0u);
  EXPECT_EQ(VorelChooseFormatTag(VOREL_RGB_10BF, 32, VOREL_KEEP_ALPHA), WordOfBytes("ARGB"));
  EXPECT_EQ(VorelChooseFormatTag(VOREL_YCBCR_8BW_422 + 1, yuvs, 0), 0u);
}

// Hand-worked for 721 and 1920 pixels.
TEST(FrameQueries, RowStoresOfTags) {
  const struct {
    u32 tag;
    u32 at721;
    u32 at1920;
  } rows[] = {
      {WordOfBytes("RGBX"), 5792, 15384}, {WordOfBytes("ArGX"), 5792, 15384},
      {WordOfBytes(" RGB"), 2896, 7692},  {WordOfBytes("ARGB"), 2896, 7692},
      {WordOfBytes("YBR\n"), 2896, 7692}, {WordOfBytes("CA4p"), 5792, 15384},
      {WordOfBytes("AYbR"), 2896, 7692},  {WordOfBytes("\xA2YRY"), 2904, 7704},
      {WordOfBytes("CA2i"), 4356, 11556}, {WordOfBytes("BYRY"), 1452, 3852},
      {WordOfBytes("C82p"), 2178, 5778},  {WordOfBytes("Ybyr"), 1456, 3852},
      {WordOfBytes("BGRA"), 0, 0},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(VorelRowStoreBytes(row.tag, 721), row.at721) << std::hex << row.tag;
    EXPECT_EQ(VorelRowStoreBytes(row.tag, 1920), row.at1920) << std::hex << row.tag;
  }
}

}  // namespace
}  // namespace vorel
