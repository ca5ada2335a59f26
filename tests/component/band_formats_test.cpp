// Which frames a decompressor takes, and into which pixel formats.
#include <algorithm>

#include "tests/component/decompressor_fixture.h"
#include "vorel/pixel_formats.h"

namespace vorel::component {

namespace {

using BandFormatTest = DecompressorTest;

struct SignatureRow {
  const char* first;
  u8 marker;
  bool written;   // what all decompressors read
  bool readable;  // what the generic one and those of 8 bits read
};

TEST_F(BandFormatTest, SignaturesAreThoseOfTheFamily) {
  const SignatureRow rows[] = {{"Vorl", 0xFF, true, true},   {"Kesp", 0xAD, false, true},
                               {"Kesp", 0xFF, false, true},  {"Vorl", 0xAD, false, true},
                               {"vorl", 0xFF, false, false}, {"Vorl", 0xFE, false, false}};
  for (const TagSource& source : TagSources()) {
    Frame frame = MakeFrame(source, 8, 2);
    const OSType target = source.subtype == FourCharacterCode("Vrl4") ? FourCharacterCode("yuvu") : 32;
    const bool deep = Holds("Vrl7 Vrl5 Vrl6", source.subtype);
    for (const OSType subtype : {source.subtype, kGenericSubtype}) {
      OpenOf(subtype);
      for (const SignatureRow& row : rows) {
        std::copy_n(row.first, 4, frame.bytes.begin());
        frame.bytes[8] = row.marker;
        const bool reads = deep && subtype != kGenericSubtype ? row.written : row.readable;
        Band band = MakeBand(ParametersFor(Describe(frame)), target, frame.bytes);
        EXPECT_EQ(DecodeBand(instance, band), reads ? 0 : -19) << source.tag << row.first << int{row.marker};
      }
      std::copy_n("Vorl", 4, frame.bytes.begin());
      frame.bytes[8] = 0xFF;
      for (const std::size_t damaged : {4u, 7u, 9u, 12u, 15u}) {
        frame.bytes[damaged] ^= 0x20;
        Band band = MakeBand(ParametersFor(Describe(frame)), target, frame.bytes);
        EXPECT_EQ(Begin(instance, band), -19) << source.tag << damaged;
        frame.bytes[damaged] ^= 0x20;
      }
    }
  }
}

constexpr std::string_view kYccTargets =
    "24 32 24BG ABGR RGBA BGRA VRGB b64a L64A A46L F10k S10k F210 S210 R10k r210 V416 v410 v408 VUYA r408 "
    "v210 "
    "v216 Y216 2vuy yuvs";
constexpr std::string_view kRgbTargetsBeside = "b48r L555 L565";
constexpr std::string_view kStrangers = "yuv4 v308 yvu9 abcd";

TEST_F(BandFormatTest, TargetsAreThoseOfTheFamily) {
  for (const TagSource& source : TagSources()) {
    const Frame frame = MakeFrame(source, 8, 2);
    const bool isWide = source.subtype == FourCharacterCode("Vrl4");
    const bool isRgb = Holds("Vrl7 Vrl1", source.subtype);
    const auto expect = [&](std::string_view list, bool accepted) {
      for (const u32 code : CodesOf(list)) {
        Band band = MakeBand(ParametersFor(Describe(frame)), code, frame.bytes);
        band.parameters.dstPixMap.pixelSize = 32;
        EXPECT_EQ(Begin(instance, band), accepted ? 0 : kRefused) << source.tag << code;
        EXPECT_EQ(End(instance, band, noErr), noErr);
      }
    };
    expect(kYccTargets, !isWide);
    expect(kRgbTargetsBeside, isRgb);
    expect("V210 2Vuy 2VUY", !isWide);
    expect("yuvu yuv2", isWide);
    expect(kStrangers, false);
  }
}

TEST_F(BandFormatTest, AlphaInBothMakesFourComponents) {
  constexpr std::string_view kWithAlpha = "32 ABGR RGBA BGRA VRGB b64a L64A A46L V416 VUYA v408 r408";
  for (const TagSource& source : TagSources()) {
    if (source.subtype == FourCharacterCode("Vrl4")) continue;
    const Frame frame = MakeFrame(source, 8, 2);
    for (const u32 code : CodesOf(kYccTargets)) {
      Band band = MakeBand(ParametersFor(Describe(frame)), code, frame.bytes);
      ASSERT_EQ(Begin(instance, band), noErr);
      EXPECT_EQ(band.parameters.dstPixMap.cmpCount, source.hasAlpha && Holds(kWithAlpha, code) ? 4 : 3)
          << source.tag << code;
      EXPECT_EQ(End(instance, band, noErr), noErr);
    }
  }
}

// --- Every format that is offered ---

// What a host's code is drawn as.
u32 DrawnAs(u32 code) {
  const std::pair<std::string_view, std::string_view> names[] = {
      {"R10k", "F10k"}, {"r210", "S210"}, {"RGBA", "BGRA"}, {"V210", "v210"},
      {"2Vuy", "2vuy"}, {"2VUY", "2vuy"}, {"yuv2", "yuvu"}};
  for (const auto& [name, format] : names) {
    if (CodeOf(name) == code) return CodeOf(format);
  }
  return code;
}

TEST_F(BandFormatTest, EveryOfferedFormatIsDrawnAsTheCoreDrawsIt) {
  constexpr u16 kWidth = 19;
  constexpr u16 kHeight = 3;
  for (const TagSource& source : TagSources()) {
    const Frame frame = MakeFrame(source, kWidth, kHeight);
    const bool isRgb = Holds("Vrl7 Vrl1", source.subtype);
    for (const OSType subtype : {source.subtype, kGenericSubtype}) {
      OpenOf(subtype);
      CodecDecompressParams parameters = ParametersFor(Describe(frame));
      ASSERT_EQ(Preflight(parameters), noErr);
      int count = 0;
      for (const OSType* code = *parameters.wantedDestinationPixelTypes; *code != 0; ++code, ++count) {
        Band band = MakeBand(parameters, *code, frame.bytes);
        if (*code == CodeOf("2VUY") || *code == CodeOf("V210")) band.parameters.dstPixMap.pixelSize = 16;
        const ComponentResult result = DecodeBand(instance, band);
        // What the lists name and the decoders lack.
        const bool isMissing =
            (!isRgb && *code == CodeOf("b48r")) || (subtype == CodeOf("Vrl6") && *code == CodeOf("A46L"));
        EXPECT_EQ(result, isMissing ? kRefused : 0) << source.tag << *code;
        if (isMissing) continue;
        const auto picture = MakePicture(*code, kWidth, kHeight);
        u32 word = 5;
        u32 bit = 0;
        std::vector<u8> scratch(VorelScratchBytes(kWidth));
        ASSERT_EQ(VorelDecodeBounded(VOREL_GENERIC, DrawnAs(*code), kWidth, kHeight, RowBytesFor(kWidth),
                                     picture->bytes.data(), VOREL_COLOUR_601, &word, &bit, frame.bytes.data(),
                                     frame.bytes.size(), 0, scratch.data()),
                  static_cast<VorelStatus>(VOREL_COMPLETE));
        EXPECT_EQ(band.picture->bytes, picture->bytes) << source.tag << *code;
      }
      EXPECT_EQ(count, source.subtype == CodeOf("Vrl4") ? 2 : isRgb ? 32 : count);
      EXPECT_GE(count, 2);
    }
  }
}

}  // namespace

}  // namespace vorel::component
