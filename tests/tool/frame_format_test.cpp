// Names of pixel formats and codecs, tags for pictures, and pictures for tags.
#include "tool/frame_format.h"

#include <gtest/gtest.h>

#include "base/bytes.h"
#include "base/problem.h"
#include "tool/fidelity.h"

namespace vorel::tool {

namespace {

constexpr u32 kCode(const char (&text)[5]) {
  return FourCharacterCode(text);
}

u32 TagFor(u32 pixelFormat, VorelFamily family, bool keepAlpha, picture_io::ScanOrder scan) {
  const picture_io::ClipFormat format = {pixelFormat, 64, 48, {25, 1}, scan, {}};
  return CodingOfClip(format, family, keepAlpha, 0, "clip").tag;
}

u32 TagFor(u32 pixelFormat, VorelFamily family) {
  return TagFor(pixelFormat, family, true, picture_io::ScanOrder::progressive);
}

std::string Refusal(u32 pixelFormat, VorelFamily family) {
  try {
    TagFor(pixelFormat, family);
  } catch (const Problem& problem) {
    return problem.what + " (" + problem.advice + ")";
  }
  return "";
}

}  // namespace

TEST(PixelFormatName, NumbersAndLettersAreNamesInTheirOwnCase) {
  EXPECT_EQ(PixelFormatOfName("32"), 32u);
  EXPECT_EQ(PixelFormatOfName("24"), 24u);
  EXPECT_EQ(PixelFormatOfName("v210"), 0x76323130u);
  EXPECT_EQ(PixelFormatOfName("V210"), std::nullopt);
  EXPECT_EQ(PixelFormatOfName("16"), std::nullopt);
  EXPECT_EQ(PixelFormatName(32), "32");
  EXPECT_EQ(PixelFormatName(0x76323130), "v210");
  EXPECT_EQ(PixelFormatName(7), "");
}

TEST(PixelFormatOfEnding, FourLettersNameAFormatAndNumbersDoNot) {
  EXPECT_EQ(PixelFormatOfEnding("dir.v1/clip.2vuy"), kCode("2vuy"));
  EXPECT_EQ(PixelFormatOfEnding("clip.v210.mov"), std::nullopt);
  EXPECT_EQ(PixelFormatOfEnding("clip.32"), std::nullopt);
  EXPECT_EQ(PixelFormatOfEnding("clip.24"), std::nullopt);
  EXPECT_EQ(PixelFormatOfEnding("v210"), std::nullopt);
}

TEST(CodingOfClip, TagFollowsCodecScanAndAlpha) {
  using picture_io::ScanOrder;
  EXPECT_EQ(TagFor(kCode("2vuy"), VOREL_GENERIC), WordOfBytes("BYRY"));
  EXPECT_EQ(TagFor(kCode("v210"), VOREL_GENERIC), WordOfBytes("\xA2YRY"));
  EXPECT_EQ(TagFor(kCode("v210"), VOREL_YCBCR_10BV_422, true, ScanOrder::topFirst), WordOfBytes("\xA2YRy"));
  EXPECT_EQ(TagFor(kCode("v210"), VOREL_YCBCR_8BV_422, true, ScanOrder::interlaced), WordOfBytes("BYRy"));
  EXPECT_EQ(TagFor(kCode("yuvu"), VOREL_YCBCR_8BW_422, true, ScanOrder::unknown), WordOfBytes("YbYr"));
  EXPECT_EQ(TagFor(32, VOREL_YCBCR_8BV_422, true, ScanOrder::progressive), WordOfBytes("C82p"));
  EXPECT_EQ(TagFor(32, VOREL_YCBCR_8BV_422, false, ScanOrder::progressive), WordOfBytes("BYRY"));
  EXPECT_EQ(TagFor(kCode("b64a"), VOREL_YCBCR_10BV_422, true, ScanOrder::bottomFirst), WordOfBytes("CA2i"));
}

TEST(CodingOfClip, OpaquePicturesAreCodedWithoutAlpha) {
  picture_io::ClipFormat format = {kCode("v408"), 64, 48, {25, 1}, picture_io::ScanOrder::unknown, {}};
  EXPECT_EQ(CodingOfClip(format, VOREL_GENERIC, true, 0, "clip").tag, WordOfBytes("AYBR"));
  format.isOpaque = true;
  EXPECT_EQ(CodingOfClip(format, VOREL_GENERIC, true, 0, "clip").tag, WordOfBytes(" YBR"));
  EXPECT_EQ(tool::UnkeptOfPictures(format, 8, WordOfBytes(" YBR")), "");
  EXPECT_EQ(tool::UnkeptOfPictures(format, 8, WordOfBytes("BYRY")), "the chroma of every pixel");
}

TEST(CodingOfClip, FramesOfAnotherFamilyAreRefused) {
  EXPECT_EQ(Refusal(kCode("2vuy"), VOREL_YCBCR_10BV_422),
            "codec ycbcr-10bv-422 has no frames for '2vuy' pictures "
            "(choose another with --codec: auto, ycbcr-8bv-422, rgb-8bf, rgb-10bf)");
  EXPECT_EQ(Refusal(kCode("2vuy"), VOREL_YCBCR_8BW_422),
            "codec ycbcr-8bw-422 has no frames for '2vuy' pictures "
            "(choose another with --codec: auto, ycbcr-8bv-422, rgb-8bf, rgb-10bf)");
  EXPECT_EQ(Refusal(kCode("yuvu"), VOREL_YCBCR_8BV_422),
            "codec ycbcr-8bv-422 has no frames for 'yuvu' pictures "
            "(choose another with --codec: auto, ycbcr-8bw-422)");
}

TEST(FormatOfTag, FramesComeAsWhatTheyHold) {
  EXPECT_EQ(RawFormatOfTag(WordOfBytes("BYRY")), kCode("2vuy"));
  EXPECT_EQ(RawFormatOfTag(WordOfBytes("\xA2YRy")), kCode("v210"));
  EXPECT_EQ(RawFormatOfTag(WordOfBytes("Ybyr")), kCode("yuvu"));
  EXPECT_EQ(Y4mFormatOfTag(WordOfBytes("BYRy")), kCode("2vuy"));
  EXPECT_EQ(Y4mFormatOfTag(WordOfBytes("\xA2YRY")), kCode("v216"));
  EXPECT_EQ(Y4mFormatOfTag(WordOfBytes("YbYr")), kCode("yuvu"));
  EXPECT_EQ(Y4mFormatOfTag(WordOfBytes(" YBR")), kCode("v408"));
  EXPECT_EQ(Y4mFormatOfTag(WordOfBytes("AyBR")), kCode("v408"));
  EXPECT_EQ(Y4mFormatOfTag(WordOfBytes("YBR\n")), kCode("v410"));
  EXPECT_EQ(Y4mFormatOfTag(WordOfBytes("CA4i")), kCode("v410"));
  EXPECT_EQ(Y4mFormatOfTag(WordOfBytes(" YbR")), 0u);
  EXPECT_EQ(Y4mFormatOfTag(WordOfBytes("AybR")), 0u);
  EXPECT_EQ(Y4mFormatOfTag(WordOfBytes("ARGB")), 0u);
  EXPECT_EQ(EightBitFormatOfTag(WordOfBytes(" YBR")), kCode("2vuy"));
  EXPECT_EQ(EightBitFormatOfTag(WordOfBytes("YbYr")), kCode("yuvu"));
  EXPECT_EQ(EightBitFormatOfTag(WordOfBytes("\xA2YRY")), kCode("2vuy"));
}

TEST(FormatOfTag, AlphaIsKnown) {
  EXPECT_TRUE(TagHasAlpha(WordOfBytes("CA2p")));
  EXPECT_FALSE(TagHasAlpha(WordOfBytes("BYRY")));
  EXPECT_FALSE(TagHasAlpha(0));
}

TEST(TagText, BytesThatDoNotPrintAreHexadecimal) {
  EXPECT_EQ(TagText(WordOfBytes("YbYr")), "YbYr");
  EXPECT_EQ(TagText(WordOfBytes("\xA2YRY")), "\\xA2YRY");
  EXPECT_EQ(TagText(WordOfBytes("YBR\n")), "YBR\\x0A");
}

}  // namespace vorel::tool
