// What is said of losses, and that it is what happens to the bits.
#include "tool/fidelity.h"

#include <gtest/gtest.h>

#include <cstring>

#include "base/bytes.h"
#include "base/problem.h"
#include "tests/tool/run_vorel.h"
#include "tool/frame_coder.h"
#include "tool/picture_compare.h"
#include "vorel/pixel_formats.h"

namespace vorel::tool {

namespace {

using picture_io::ClipFormat;

constexpr u32 kCode(const char (&text)[5]) {
  return FourCharacterCode(text);
}

ClipFormat Format(u32 pixelFormat) {
  ClipFormat format;
  format.pixelFormat = pixelFormat;
  format.width = 67;
  format.height = 40;
  return format;
}

std::string Unkept(u32 pixelFormat, u32 sampleBits, u32 tag) {
  return UnkeptOfPictures(Format(pixelFormat), sampleBits, tag);
}

// All bits of a picture, those of no sample too; of words with fewer bits than they have room for, the upper
// ones.
picture_io::Picture NoiseOf(const ClipFormat& format, u32 sampleBits, u32 seed) {
  picture_io::Picture picture;
  ShapePicture(format, picture);
  const std::string noise = Noise(picture.bytes.size(), seed);
  std::memcpy(picture.bytes.data(), noise.data(), noise.size());
  const bool isLifted = VorelFindPixelFormat(format.pixelFormat)->sampleBits > sampleBits;
  for (std::size_t i = 0; isLifted && i < picture.bytes.size(); i += 2)
    picture.bytes[i] &= static_cast<u8>(0xFF00 >> (sampleBits - 8));
  return picture;
}

bool ComesBack(const picture_io::Picture& picture, const ClipFormat& format, const FrameCoding& coding) {
  FrameBuffer buffer;
  EncodeFrame(picture, coding, buffer, "frame");
  const u8* const bytes = reinterpret_cast<const u8*>(buffer.words.data());
  picture_io::Picture back;
  std::vector<u8> scratch;
  DecodeFrame({bytes, bytes + buffer.bytes}, {format, coding.colourStandard}, back, scratch, "frame");
  return !FindDifference(back, picture, {false, true, 0});
}

// How the codec codes such pictures, if it has frames of its own for them.
std::optional<FrameCoding> CodingFor(const ClipFormat& format, u32 family, bool keepAlpha, u32 standard) {
  try {
    return CodingOfClip(format, static_cast<VorelFamily>(family), keepAlpha, standard, "clip");
  } catch (const Problem&) {
    return std::nullopt;
  }
}

struct Tally {
  u32 held = 0;
  u32 lost = 0;
};

// Compares what is said of a clip with what becomes of noise, for every codec, alpha and colour standard.
void ExpectTruth(ClipFormat format, u32 sampleBits, Tally& tally) {
  for (u32 family = VOREL_GENERIC; family <= VOREL_YCBCR_8BW_422; ++family) {
    for (u32 choice = 0; choice < 12; ++choice) {
      format.scan = choice & 1 ? picture_io::ScanOrder::topFirst : picture_io::ScanOrder::progressive;
      const std::optional<FrameCoding> coding = CodingFor(format, family, (choice & 2) != 0, choice / 4);
      if (!coding) continue;
      const bool isHeld = HoldsPictures(format, sampleBits, coding->tag);
      const std::string what = PixelFormatName(format.pixelFormat) + " as " + FormatNameOfTag(coding->tag);
      EXPECT_EQ(ComesBack(NoiseOf(format, sampleBits, family * 12 + choice), format, *coding), isHeld)
          << what;
      // A loss without a word would be as bad as one that is denied.
      if (!isHeld) {
        EXPECT_NE(UnkeptOfPictures(format, sampleBits, coding->tag), "") << what;
        EXPECT_NE(WayToHoldPictures(format, sampleBits, *coding), "") << what;
      }
      ++(isHeld ? tally.held : tally.lost);
    }
  }
}

}  // namespace

TEST(HoldsPictures, IsWhatHappensToNoiseInEveryFormatAndCodec) {
  std::size_t count = 0;
  const VorelPixelFormatInfo* const formats = VorelPixelFormatList(&count);
  Tally tally;
  for (std::size_t i = 0; i < count; ++i) ExpectTruth(Format(formats[i].code), formats[i].sampleBits, tally);
  EXPECT_GT(tally.held, 300u);
  EXPECT_GT(tally.lost, 300u);
}

TEST(HoldsPictures, TenBitsOfYuv4mpeg2AreHeld) {
  Tally tally;
  ExpectTruth(Format(kCode("v216")), 10, tally);
  EXPECT_GT(tally.held, 0u);
}

TEST(HoldsPictures, EveryColourOf8BitsComesBackFromTenBitVideo) {
  ClipFormat format = Format(24);
  format.width = 4096;
  format.height = 512;
  for (u32 standard = 0; standard < 3; ++standard) {
    const FrameCoding coding = *CodingFor(format, VOREL_YCBCR_10BV_444, true, standard);
    EXPECT_TRUE(HoldsPictures(format, 8, coding.tag));
    picture_io::Picture picture;
    ShapePicture(format, picture);
    for (u32 colour = 0; colour < 1u << 24;) {
      for (u8* pixel = picture.bytes.data(); pixel != picture.bytes.data() + picture.bytes.size();
           pixel += 3) {
        pixel[0] = static_cast<u8>(colour >> 16);
        pixel[1] = static_cast<u8>(colour >> 8);
        pixel[2] = static_cast<u8>(colour++);
      }
      EXPECT_TRUE(ComesBack(picture, format, coding)) << colour;
    }
  }
}

TEST(WayToHoldPictures, NamesWhatWouldHoldThem) {
  const auto way = [](u32 pixelFormat, u32 sampleBits, VorelFamily family, bool keepAlpha) {
    return WayToHoldPictures(Format(pixelFormat), sampleBits,
                             *CodingFor(Format(pixelFormat), family, keepAlpha, 0));
  };
  EXPECT_EQ(way(kCode("RGBA"), 8, VOREL_GENERIC, false), "--alpha keep holds them whole");
  EXPECT_EQ(way(kCode("v210"), 10, VOREL_YCBCR_8BV_422, true),
            "choose a codec that holds them whole: --codec auto, ycbcr-10bv-422");
  EXPECT_EQ(way(kCode("v408"), 8, VOREL_YCBCR_8BV_422, false),
            "choose a codec that holds them whole, and --alpha keep: --codec auto, ycbcr-8b-444");
  EXPECT_EQ(way(kCode("b64a"), 16, VOREL_GENERIC, true),
            "frames hold 10 bits at most: keep the 16-bit files, or take 8-bit or 10-bit pictures (DPX)");
  EXPECT_EQ(way(kCode("VRGB"), 8, VOREL_GENERIC, true),
            "no codec holds them whole; keep the files, or take pictures of full range");
}

TEST(UnkeptOfPictures, NaturalFramesKeepEverything) {
  EXPECT_EQ(Unkept(kCode("2vuy"), 8, WordOfBytes("BYRY")), "");
  EXPECT_EQ(Unkept(kCode("v210"), 10, WordOfBytes("\xA2YRY")), "");
  EXPECT_EQ(Unkept(kCode("v216"), 10, WordOfBytes("\xA2YRY")), "");
  EXPECT_EQ(Unkept(kCode("yuvu"), 8, WordOfBytes("Ybyr")), "");
  EXPECT_EQ(Unkept(32, 8, WordOfBytes("ARGB")), "");
}

TEST(UnkeptOfPictures, EachLossIsSaid) {
  EXPECT_EQ(Unkept(kCode("v210"), 10, WordOfBytes("BYRY")), "the lower 2 of 10 bits of a sample");
  EXPECT_EQ(Unkept(kCode("v216"), 16, WordOfBytes("\xA2YRY")), "the lower 6 of 16 bits of a sample");
  EXPECT_EQ(Unkept(32, 8, WordOfBytes(" RGB")), "alpha");
  EXPECT_EQ(Unkept(kCode("v408"), 8, WordOfBytes("BYRY")), "the chroma of every pixel, alpha");
  EXPECT_EQ(Unkept(32, 8, WordOfBytes("C82p")), "R'G'B' (it becomes Y'CbCr), the chroma of every pixel");
  EXPECT_EQ(Unkept(kCode("2vuy"), 8, WordOfBytes(" RGB")), "Y'CbCr (it becomes R'G'B')");
  EXPECT_EQ(Unkept(kCode("VUYA"), 8, WordOfBytes("ARGB")), "Y'CbCr (it becomes R'G'B')");
  EXPECT_EQ(Unkept(kCode("S10k"), 10, WordOfBytes("RGBX")), "codes beyond black and white");
}

TEST(UnkeptOfFrames, EachLossIsSaid) {
  EXPECT_EQ(UnkeptOfFrames(WordOfBytes("BYRY"), kCode("2vuy")), "");
  EXPECT_EQ(UnkeptOfFrames(WordOfBytes("BYRY"), kCode("v210")), "");
  EXPECT_EQ(UnkeptOfFrames(WordOfBytes("CA2p"), kCode("V416")), "");
  EXPECT_EQ(UnkeptOfFrames(WordOfBytes("CA2p"), kCode("v216")), "alpha");
  EXPECT_EQ(UnkeptOfFrames(WordOfBytes("\xA2YRy"), kCode("yuvs")), "the lower 2 of 10 bits of a sample");
  EXPECT_EQ(UnkeptOfFrames(WordOfBytes("BYRY"), 24), "Y'CbCr (it becomes R'G'B')");
  EXPECT_EQ(UnkeptOfFrames(WordOfBytes("ArGB"), kCode("2vuy")),
            "R'G'B' (it becomes Y'CbCr), the chroma of every pixel, alpha");
}

}  // namespace vorel::tool
