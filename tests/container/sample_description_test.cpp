// Image descriptions against bytes written by hand.
#include "container/sample_description.h"

#include <gtest/gtest.h>

#include "base/problem.h"
#include "tests/container/hand_movie.h"

namespace vorel::container {
namespace {

// 86 bytes: size, codec, reserved and data reference, version and revision, vendor, qualities, 640 x 360, 72
// dpi twice, data size, one frame, name of 11, depth, colour table.
const u8 kFields[] = {
    0,   0,    0,   0,   'V', 'r',  'l', '4', 0,    0,    0,    0,    0,    0,    0,    1,    0,    3,
    0,   4,    'V', 'o', 'r', 'l',  0,   0,   0,    0,    0,    0,    4,    0,    0x02, 0x80, 0x01, 0x68,
    0,   0x48, 0,   0,   0,   0x48, 0,   0,   0x00, 0x01, 0xE2, 0x40, 0,    1,    11,   'V',  'o',  'r',
    'e', 'l',  ' ', '4', ':', '2',  ':', '2', 0,    0,    0,    0,    0,    0,    0,    0,    0,    0,
    0,   0,    0,   0,   0,   0,    0,   0,   0,    0,    0,    24,   0xFF, 0xFF,
};
static_assert(sizeof kFields == 86);

// Kesp 4 bytes, fiel interlaced with the first row early, colr of 709, pasp 40:33. 86 + 12 + 10 + 18 + 16 =
// 142.
const u8 kExtensions[] = {
    0, 0, 0, 12, 'K', 'e', 's', 'p', 'a', 'b', 'c', 'd',                     //
    0, 0, 0, 10, 'f', 'i', 'e', 'l', 2,   9,                                 //
    0, 0, 0, 18, 'c', 'o', 'l', 'r', 'n', 'c', 'l', 'c', 0, 1, 0, 1,  0, 1,  //
    0, 0, 0, 16, 'p', 'a', 's', 'p', 0,   0,   0,   40,  0, 0, 0, 33,        //
};
static_assert(sizeof kFields + sizeof kExtensions == 0x8E);

std::vector<u8> Golden() {
  std::vector<u8> bytes(sizeof kFields + sizeof kExtensions);
  std::copy(std::begin(kFields), std::end(kFields), bytes.begin());
  std::copy(std::begin(kExtensions), std::end(kExtensions), bytes.begin() + sizeof kFields);
  bytes[3] = 0x8E;
  return bytes;
}

SampleDescription Known() {
  SampleDescription description;
  description.cType = FourCharacterCode("Vrl4");
  description.version = 3;
  description.revisionLevel = 4;
  description.vendor = FourCharacterCode("Vorl");
  description.spatialQuality = 1024;
  description.width = 640;
  description.height = 360;
  description.dataSize = 123456;
  description.name = "Vorel 4:2:2";
  SetExtension(description, {FourCharacterCode("Kesp"), {'a', 'b', 'c', 'd'}});
  SetExtension(description, MakeFieldOrder({2, 9}));
  SetExtension(description, MakeColour({1, 1, 1}));
  SetExtension(description, MakePixelAspect({40, 33}));
  return description;
}

TEST(SampleDescription, SerializesToTheBytesOfTheFormat) {
  EXPECT_EQ(SerializeSampleDescription(Known()), Golden());
}

TEST(SampleDescription, ParsesTheBytesOfTheFormat) {
  const std::vector<u8> bytes = Golden();
  const SampleDescription description = ParseSampleDescription(bytes.data(), bytes.size(), "memory");
  EXPECT_EQ(description.cType, 0x56726C34u);
  EXPECT_EQ(description.dataRefIndex, 1);
  EXPECT_EQ(description.version, 3);
  EXPECT_EQ(description.revisionLevel, 4);
  EXPECT_EQ(description.vendor, 0x566F726Cu);
  EXPECT_EQ(description.temporalQuality, 0u);
  EXPECT_EQ(description.spatialQuality, 1024u);
  EXPECT_EQ(description.width, 640);
  EXPECT_EQ(description.height, 360);
  EXPECT_EQ(description.hRes, 0x480000u);
  EXPECT_EQ(description.vRes, 0x480000u);
  EXPECT_EQ(description.dataSize, 123456u);
  EXPECT_EQ(description.frameCount, 1);
  EXPECT_EQ(description.name, "Vorel 4:2:2");
  EXPECT_EQ(description.depth, 24);
  EXPECT_EQ(description.clutID, -1);
  ASSERT_EQ(description.extensions.size(), 4u);
  EXPECT_EQ(description.extensions[0].type, 0x4B657370u);
  EXPECT_EQ(description.extensions[0].bytes, (std::vector<u8>{'a', 'b', 'c', 'd'}));
}

TEST(SampleDescription, UnknownExtensionsAndReservedFieldsSurvive) {
  std::vector<u8> bytes(std::begin(kFields), std::end(kFields));
  bytes[9] = 0x77;
  bytes[13] = 0x66;
  const Blob more = Atom("Zzzz", "123") + Atom("Yyyy", "") + Atom("Zzzz", "4");
  bytes.insert(bytes.end(), more.begin(), more.end());
  bytes[3] = static_cast<u8>(bytes.size());
  EXPECT_EQ(SerializeSampleDescription(ParseSampleDescription(bytes.data(), bytes.size(), "memory")), bytes);
}

TEST(SampleDescription, ZeroWordBehindTheExtensionsIsTolerated) {
  std::vector<u8> bytes = Golden();
  bytes.resize(bytes.size() + 4);
  bytes[3] = 0x92;
  EXPECT_EQ(SerializeSampleDescription(ParseSampleDescription(bytes.data(), bytes.size(), "memory")),
            Golden());
}

TEST(SampleDescription, EveryShorterLengthIsRefusedOrHasFewerExtensions) {
  const std::vector<u8> golden = Golden();
  for (std::size_t count = 0; count < golden.size(); ++count) {
    std::vector<u8> bytes(golden.begin(), golden.begin() + static_cast<std::ptrdiff_t>(count));
    EXPECT_THROW(ParseSampleDescription(bytes.data(), count, "memory"), Problem) << count;
    if (count < 4) continue;
    bytes[3] = static_cast<u8>(count);
    const bool whole = count == 86 || count == 98 || count == 108 || count == 126;
    if (whole) {
      EXPECT_NO_THROW(ParseSampleDescription(bytes.data(), count, "memory")) << count;
    } else {
      EXPECT_THROW(ParseSampleDescription(bytes.data(), count, "memory"), Problem) << count;
    }
  }
}

TEST(SampleDescription, NameIsCutAtThirtyOneBytes) {
  SampleDescription description;
  description.name = "0123456789012345678901234567890123456789";
  const std::vector<u8> bytes = SerializeSampleDescription(description);
  ASSERT_EQ(bytes.size(), 86u);
  EXPECT_EQ(bytes[50], 31);
  EXPECT_EQ(bytes[81], '0');
  EXPECT_EQ(ParseSampleDescription(bytes.data(), 86, "m").name, "0123456789012345678901234567890");
}

TEST(SampleDescription, NameLengthBeyondItsFieldIsCut) {
  std::vector<u8> bytes(std::begin(kFields), std::end(kFields));
  bytes[3] = 86;
  bytes[50] = 255;
  EXPECT_EQ(ParseSampleDescription(bytes.data(), 86, "m").name.size(), 31u);
}

TEST(SampleDescription, ColourTableOfAnIndexedPictureIsKept) {
  std::vector<u8> bytes(std::begin(kFields), std::end(kFields));
  bytes[83] = 8;
  bytes[84] = bytes[85] = 0;
  const Blob table = Be32(0) + Be16(0) + Be16(1) + Zeros(8) + Be64(~u64{0});
  const Blob more = table + Atom("fiel", "\x01\x01");
  bytes.insert(bytes.end(), more.begin(), more.end());
  bytes[3] = static_cast<u8>(bytes.size());
  const SampleDescription description = ParseSampleDescription(bytes.data(), bytes.size(), "m");
  EXPECT_EQ(Blob(description.colourTable.begin(), description.colourTable.end()), table);
  ASSERT_EQ(description.extensions.size(), 1u);
  EXPECT_EQ(SerializeSampleDescription(description), bytes);
}

TEST(SampleDescription, SetExtensionReplacesInPlaceAndDropsDoubles) {
  SampleDescription description;
  description.extensions = {{1, {1}}, {2, {2}}, {1, {3}}, {3, {4}}};
  SetExtension(description, {1, {9}});
  EXPECT_EQ(description.extensions, (std::vector<Extension>{{1, {9}}, {2, {2}}, {3, {4}}}));
  RemoveExtension(description, 2);
  EXPECT_EQ(FindExtension(description, 2), nullptr);
  ASSERT_NE(FindExtension(description, 3), nullptr);
}

TEST(SampleDescription, KnownExtensionsAreFound) {
  const std::vector<u8> bytes = Golden();
  const SampleDescription description = ParseSampleDescription(bytes.data(), bytes.size(), "m");
  EXPECT_EQ(FindFieldOrder(description)->fields, 2);
  EXPECT_EQ(FindFieldOrder(description)->detail, 9);
  EXPECT_EQ(FindPixelAspect(description)->horizontal, 40u);
  EXPECT_EQ(FindPixelAspect(description)->vertical, 33u);
  EXPECT_FALSE(FindCleanAperture(description).has_value());
}

TEST(SampleDescription, ColourOfAllKinds) {
  const auto colour = [](const Blob& bytes) {
    SampleDescription description;
    description.extensions = {{FourCharacterCode("colr"), {bytes.begin(), bytes.end()}}};
    return FindColour(description);
  };
  EXPECT_EQ(colour("nclc" + Be16(6) + Be16(7) + Be16(1))->transfer, 7);
  EXPECT_EQ(colour("nclx" + Be16(6) + Be16(7) + Be16(1) + "\x80")->matrix, 1);
  EXPECT_EQ(colour(Blob("clcn\x06\x00\x01\x00\x06\x00", 10))->primaries, 6);
  EXPECT_FALSE(colour("prof" + Zeros(100)).has_value());
  EXPECT_FALSE(colour("nclc" + Be16(6)).has_value());
}

TEST(SampleDescription, WrongLengthsAndZeroTermsAreNotFound) {
  SampleDescription description;
  description.extensions = {{kFieldOrderType, {1}}, {kPixelAspectType, {0, 0, 0, 0, 0, 0, 0, 1}}};
  EXPECT_FALSE(FindFieldOrder(description).has_value());
  EXPECT_FALSE(FindPixelAspect(description).has_value());
}

TEST(SampleDescription, CleanApertureBytes) {
  const CleanAperture aperture = {704, 1, 480, 1, -3, 2, 0, 1};
  const Blob bytes =
      Be32(704) + Be32(1) + Be32(480) + Be32(1) + Be32(0xFFFFFFFD) + Be32(2) + Be32(0) + Be32(1);
  const Extension extension = MakeCleanAperture(aperture);
  EXPECT_EQ(Blob(extension.bytes.begin(), extension.bytes.end()), bytes);
  SampleDescription description;
  SetExtension(description, extension);
  EXPECT_EQ(FindCleanAperture(description)->horizontalNumerator, -3);
}

}  // namespace
}  // namespace vorel::container
