// The corners of the way into a frame, through the exported functions alone: signatures and spellings of tags
// as every family takes them, the row length as a routine takes it, the smallest frame bounds.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstring>

#include "base/bytes.h"
#include "tests/core/hand_coded.h"
#include "tests/reference/prefix_code.h"
#include "vorel/vorel.h"

namespace vorel {
namespace {

using LenientDecode = decltype(VorelGenericLenientDecode)*;

// A decoder and a tag of its own.
struct Family {
  LenientDecode decode;
  const char* tag;
  bool takesOtherSignature;
};

constexpr Family kFamilies[] = {
    {VorelGenericLenientDecode, "BYRY", true},     {VorelRGB10bfLenientDecode, "RGBX", false},
    {VorelRGB8bfLenientDecode, " RGB", true},      {VorelYCbCr10bv444LenientDecode, "CA4p", false},
    {VorelYCbCr8b444LenientDecode, " YbR", true},  {VorelYCbCr10bv422LenientDecode, "CA2p", false},
    {VorelYCbCr8bv422LenientDecode, "C82p", true}, {VorelYCbCr8bw422LenientDecode, "YbYr", true}};

// A frame of two pixels whose stream is all zeros.
using Frame = std::array<u32, 21>;

Frame FrameOf(const char* signature, u8 marker, const char* tag) {
  Frame frame = {};
  u8* const bytes = reinterpret_cast<u8*>(frame.data());
  std::memcpy(bytes, signature, 4);
  std::memcpy(bytes + 4, "\r\n\0\n", 4);
  bytes[8] = marker;
  std::memcpy(bytes + 9, "Tamrick", 7);
  std::memcpy(bytes + 16, tag, 4);
  return frame;
}

// The first pixels of the picture, and the status.
struct Decoded {
  VorelStatus status;
  std::array<u8, 16> picture;
};

Decoded Decode(LenientDecode decode, u32 pixelFormat, const Frame& frame) {
  alignas(4) std::array<u8, 16> picture = {};
  std::array<u32, 64> scratch = {};
  u32 word = 5;
  u32 bit = 0;
  const VorelStatus status =
      decode(pixelFormat, 2, 1, 16, picture.data(), 1, &word, &bit, frame.data(), 0, scratch.data());
  return {status, picture};
}

u32 PixelsOf(const Family& family) {
  return std::strcmp(family.tag, "YbYr") == 0 ? FourCharacterCode("yuvu") : 32;
}

TEST(EntryEdges, MixedSignaturesPassWhereTheOtherOneIsRead) {
  for (const Family& family : kFamilies) {
    const auto statusOf = [&family](const char* signature, u8 marker) {
      return Decode(family.decode, PixelsOf(family), FrameOf(signature, marker, family.tag)).status;
    };
    const VorelStatus other = family.takesOtherSignature ? VOREL_COMPLETE : VOREL_NO_ROUTINE;
    EXPECT_EQ(statusOf("Vorl", 0xFF), VOREL_COMPLETE) << family.tag;
    EXPECT_EQ(statusOf("Kesp", 0xAD), other) << family.tag;
    EXPECT_EQ(statusOf("Kesp", 0xFF), other) << family.tag;
    EXPECT_EQ(statusOf("Vorl", 0xAD), other) << family.tag;
    EXPECT_EQ(statusOf("Vorl", 0xFE), VOREL_NO_ROUTINE) << family.tag;
  }
}

TEST(EntryEdges, SpellingsOfRgbDecodeAsTheirTag) {
  const auto decoded = [](const char* tag) {
    return Decode(VorelRGB8bfLenientDecode, FourCharacterCode("RGBA"), FrameOf("Vorl", 0xFF, tag));
  };
  const Decoded withAlpha = decoded("ARGB");
  const Decoded without = decoded(" RGB");
  ASSERT_EQ(withAlpha.status, VOREL_COMPLETE);
  ASSERT_EQ(without.status, VOREL_COMPLETE);
  ASSERT_NE(withAlpha.picture, without.picture);  // alpha 128 and 255
  EXPECT_EQ(decoded("BGRA").status, VOREL_COMPLETE);
  EXPECT_EQ(decoded("BGRA").picture, withAlpha.picture);
  EXPECT_EQ(decoded(" BGR").status, VOREL_COMPLETE);
  EXPECT_EQ(decoded(" BGR").picture, without.picture);
}

TEST(EntryEdges, StrictDecodersTakeTheTagOfTheirEncoderAlone) {
  const auto strict = [](const char* tag) {
    const Frame frame = FrameOf("Vorl", 0xFF, tag);
    alignas(4) std::array<u8, 16> picture = {};
    std::array<u32, 64> scratch = {};
    u32 word = 0;
    u32 bit = 0;
    return VorelRGB8bfStrictDecode(FourCharacterCode("RGBA"), VOREL_KEEP_ALPHA, 2, 1, 16, picture.data(), 1,
                                   &word, &bit, frame.data(), 0, scratch.data());
  };
  EXPECT_EQ(strict("ARGB"), VOREL_COMPLETE);
  EXPECT_EQ(strict("BGRA"), VOREL_NO_ROUTINE);
}

TEST(EntryEdges, RowLengthOf2vuyIsTestedForItsBitsBeforeItsAlignment) {
  alignas(4) std::array<u8, 16> picture = {};
  std::array<u32, 32> frame = {};
  u32 word = 5;
  u32 bit = 0;
  const auto statusOf = [&](i32 rowBytes) {
    return VorelYCbCr8bv422pFrom2vuyEncode(1, 1, rowBytes, picture.data(), &word, &bit, frame.data());
  };
  EXPECT_EQ(statusOf(0), 10u);
  EXPECT_EQ(statusOf(-1), 10u);
  EXPECT_EQ(statusOf(-2), 12u);
  EXPECT_EQ(statusOf(-4), 0u);
}

TEST(EntryEdges, OnePixelOf422IsAWholePairInEveryBound) {
  const auto boundOf = [](const char* tag) { return VorelMaxFrameBytes(LoadLittle32(tag), 1, 1); };
  for (const char* const tag : {"BYRY", "BYRy", "YbYr", "Ybyr"}) EXPECT_EQ(boundOf(tag), 1u + 4 + 8 + 4);
  for (const char* const tag : {"C82p", "C82i"}) EXPECT_EQ(boundOf(tag), 1u + 6 + 12 + 4);
  // (1 + 40 + 64 + 7) / 8 + 4 and (1 + 60 + 96 + 7) / 8 + 4
  for (const char* const tag : {"\xA2YRY", "\xA2YRy"}) EXPECT_EQ(boundOf(tag), 14u + 4);
  for (const char* const tag : {"CA2p", "CA2i"}) EXPECT_EQ(boundOf(tag), 20u + 4);
}

std::string CodeText(const char* set, char codeClass, int symbol) {
  reference::Bits bits;
  AppendSymbol(bits, reference::FindCode(set, codeClass), symbol);
  std::string text;
  for (const bool bit : bits) text += bit ? '1' : '0';
  return text;
}

// Y' 255 0 above 0 0: the prediction of the last one is (3 * 0 - 2 * 255) >> 2 = -128. VUY_: Cr Cb Y'
TEST(EntryEdges, SampleUnderAPredictionBelowZeroIsCodedByItsMaskedDifference) {
  const PictureRows rows = {{128, 128, 255, 0, 128, 128, 0, 0}, {128, 128, 0, 0, 128, 128, 0, 0}};
  const std::string tail = WithoutSpaces("0 001 0 0") + CodeText("8b 4:4:4 p", 'B', 128) + "00";
  const std::string text = EncodeToText("YCbCr8bv444p", "VUY_", 2, rows);
  ASSERT_GT(text.size(), tail.size());
  EXPECT_EQ(text.substr(text.size() - tail.size()), tail);
  EXPECT_EQ(DecodeFromText("YCbCr8bv444p", "_v408", 2, 2, text)[1],
            (Bytes{128, 0, 128, 0xEB, 128, 0, 128, 0xEB}));
}

}  // namespace
}  // namespace vorel
