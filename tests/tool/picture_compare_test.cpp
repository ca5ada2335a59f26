// The first difference of two pictures.
#include "tool/picture_compare.h"

#include <gtest/gtest.h>

#include "base/bytes.h"
#include "vorel/pixel_formats.h"

namespace vorel::tool {

namespace {

constexpr Compared kPixels = {false, true, 0};
constexpr Compared kPixelsAndPadding = {true, true, 0};

picture_io::Picture PictureOf(std::vector<u8> bytes) {
  return {picture_io::kYuvu, 3, 2, 8, std::move(bytes)};
}

const std::vector<u8> kBytes = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16};

std::optional<Difference> DifferenceAt(std::size_t place, const Compared& compared) {
  std::vector<u8> changed = kBytes;
  changed[place] ^= 0xFF;
  return FindDifference(PictureOf(kBytes), PictureOf(changed), compared);
}

void ExpectDifference(const std::optional<Difference>& difference, u32 row, u32 pixel, const char* component,
                      u32 first, u32 second) {
  ASSERT_TRUE(difference);
  EXPECT_EQ(difference->row, row);
  EXPECT_EQ(difference->pixel, pixel);
  EXPECT_STREQ(difference->component, component);
  EXPECT_EQ(difference->first, first);
  EXPECT_EQ(difference->second, second);
}

// The difference of two rows of one unit, the second of which has `value` at `place`.
std::optional<Difference> InUnit(u32 pixelFormat, std::size_t place, u8 value,
                                 const Compared& compared = kPixels) {
  const VorelPixelFormatInfo& format = *VorelFindPixelFormat(pixelFormat);
  picture_io::Picture first = {pixelFormat, format.unitPixels, 1, format.unitBytes,
                               std::vector<u8>(format.unitBytes)};
  picture_io::Picture second = first;
  second.bytes.at(place) = value;
  return FindDifference(first, second, compared);
}

constexpr u32 kCode(const char (&text)[5]) {
  return FourCharacterCode(text);
}

}  // namespace

TEST(FindDifference, EqualPicturesHaveNone) {
  EXPECT_FALSE(FindDifference(PictureOf(kBytes), PictureOf(kBytes), kPixelsAndPadding));
}

TEST(FindDifference, EverySampleIsNamed) {
  ExpectDifference(DifferenceAt(0, kPixels), 0, 0, "Y'", 1, 254);
  ExpectDifference(DifferenceAt(1, kPixels), 0, 0, "Cb", 130, 125);
  ExpectDifference(DifferenceAt(2, kPixels), 0, 1, "Y'", 3, 252);
  ExpectDifference(DifferenceAt(3, kPixels), 0, 0, "Cr", 132, 123);
  ExpectDifference(DifferenceAt(12, kPixels), 1, 2, "Y'", 13, 242);
  ExpectDifference(DifferenceAt(15, kPixels), 1, 2, "Cr", 144, 111);
}

TEST(FindDifference, PaddingCountsOnlyWhereItIsAskedFor) {
  EXPECT_FALSE(DifferenceAt(14, kPixels));
  ExpectDifference(DifferenceAt(14, kPixelsAndPadding), 1, 3, "Y'", 15, 240);
}

TEST(FindDifference, FirstOfSeveralIsTold) {
  std::vector<u8> changed = kBytes;
  changed[6] = 0;  // padding
  changed[9] = 0;
  changed[15] = 0;
  ExpectDifference(FindDifference(PictureOf(kBytes), PictureOf(changed), kPixels), 1, 0, "Cb", 138, 128);
}

TEST(FindDifference, BytesOfEveryOrderAreNamed) {
  ExpectDifference(InUnit(32, 0, 9), 0, 0, "A", 0, 9);
  ExpectDifference(InUnit(32, 3, 9), 0, 0, "B", 0, 9);
  ExpectDifference(InUnit(24, 0, 9), 0, 0, "R", 0, 9);
  ExpectDifference(InUnit(kCode("24BG"), 0, 9), 0, 0, "B", 0, 9);
  ExpectDifference(InUnit(kCode("BGRA"), 1, 9), 0, 0, "G", 0, 9);
  ExpectDifference(InUnit(kCode("r408"), 1, 9), 0, 0, "Y'", 0, 9);
  ExpectDifference(InUnit(kCode("v408"), 2, 9), 0, 0, "Cr", 0, 9);
  ExpectDifference(InUnit(kCode("VUYA"), 1, 9), 0, 0, "Cb", 0, 9);
  ExpectDifference(InUnit(kCode("2vuy"), 3, 9), 0, 1, "Y'", 0, 9);
  ExpectDifference(InUnit(kCode("yuvs"), 3, 9), 0, 0, "Cr", 0, 9);
}

TEST(FindDifference, WordsOfEitherByteOrderAreNumbers) {
  ExpectDifference(InUnit(kCode("b64a"), 2, 1), 0, 0, "R", 0, 256);
  ExpectDifference(InUnit(kCode("L64A"), 2, 1), 0, 0, "R", 0, 1);
  ExpectDifference(InUnit(kCode("A46L"), 7, 1), 0, 0, "A", 0, 256);
  ExpectDifference(InUnit(kCode("b48r"), 5, 1), 0, 0, "B", 0, 1);
  ExpectDifference(InUnit(kCode("v216"), 6, 1), 0, 1, "Y'", 0, 1);
}

TEST(FindDifference, FieldsOfWordsAreNumbers) {
  ExpectDifference(InUnit(kCode("F10k"), 0, 0x80), 0, 0, "R", 0, 512);
  ExpectDifference(InUnit(kCode("F10k"), 3, 0x04), 0, 0, "B", 0, 1);
  ExpectDifference(InUnit(kCode("F210"), 0, 0x20), 0, 0, "R", 0, 512);
  ExpectDifference(InUnit(kCode("v410"), 0, 0x04), 0, 0, "Cb", 0, 1);
  ExpectDifference(InUnit(kCode("v410"), 3, 0x80), 0, 0, "Cr", 0, 512);
  ExpectDifference(InUnit(kCode("L555"), 1, 0x40), 0, 0, "R", 0, 16);
  ExpectDifference(InUnit(kCode("L565"), 1, 0x04), 0, 0, "G", 0, 32);
}

TEST(FindDifference, SamplesOfAGroupOfThreePairsAreNamed) {
  ExpectDifference(InUnit(kCode("v210"), 0, 1), 0, 0, "Cb", 0, 1);        // word 0, bits 9..0
  ExpectDifference(InUnit(kCode("v210"), 1, 4), 0, 0, "Y'", 0, 1);        // word 0, bits 19..10
  ExpectDifference(InUnit(kCode("v210"), 3, 0x20), 0, 0, "Cr", 0, 512);   // word 0, bits 29..20
  ExpectDifference(InUnit(kCode("v210"), 5, 4), 0, 2, "Cb", 0, 1);        // word 1, bits 19..10
  ExpectDifference(InUnit(kCode("v210"), 8, 1), 0, 2, "Cr", 0, 1);        // word 2, bits 9..0
  ExpectDifference(InUnit(kCode("v210"), 9, 4), 0, 3, "Y'", 0, 1);        // word 2, bits 19..10
  ExpectDifference(InUnit(kCode("v210"), 10, 16), 0, 4, "Cb", 0, 1);      // word 2, bits 29..20
  ExpectDifference(InUnit(kCode("v210"), 15, 0x20), 0, 5, "Y'", 0, 512);  // word 3, bits 29..20
}

TEST(FindDifference, BitsOfNoSampleDoNotCount) {
  EXPECT_FALSE(InUnit(kCode("v210"), 3, 0xC0));
  EXPECT_FALSE(InUnit(kCode("F10k"), 3, 0x03));
  EXPECT_FALSE(InUnit(kCode("S210"), 0, 0xC0));
  EXPECT_FALSE(InUnit(kCode("v410"), 0, 0x03));
  EXPECT_FALSE(InUnit(kCode("L555"), 1, 0x80));
}

TEST(FindDifference, AlphaCountsOnlyWhereItIsAskedFor) {
  constexpr Compared kNoAlpha = {false, false, 0};
  EXPECT_TRUE(InUnit(kCode("RGBA"), 3, 9));
  EXPECT_FALSE(InUnit(kCode("RGBA"), 3, 9, kNoAlpha));
  EXPECT_FALSE(InUnit(kCode("b64a"), 1, 9, kNoAlpha));
  EXPECT_TRUE(InUnit(kCode("RGBA"), 0, 9, kNoAlpha));
}

TEST(FindDifference, ValuesAreToldWithoutBitsThatSamplesDoNotHave) {
  ExpectDifference(InUnit(kCode("v216"), 2, 0xC0, {false, true, 6}), 0, 0, "Y'", 0, 3);
}

TEST(FindDifference, EveryPixelFormatIsKnownToItsLastSample) {
  std::size_t count = 0;
  const VorelPixelFormatInfo* const formats = VorelPixelFormatList(&count);
  for (std::size_t i = 0; i < count; ++i) {
    const u32 unitBytes = formats[i].unitBytes;
    int found = 0;
    for (u32 byte = 0; byte < unitBytes; ++byte) found += InUnit(formats[i].code, byte, 0xFF) ? 1 : 0;
    EXPECT_EQ(found, unitBytes) << formats[i].name;
  }
}

}  // namespace vorel::tool
