// What distinguishes one frame format from another. Fifteen layouts, each with a progressive and an
// interlaced form; frame routines are made from these rows, and tags, frame bounds and component families are
// read from them.
#pragma once
#include <array>

#include "base/bytes.h"
#include "base/integers.h"
#include "pixel/sample_domain.h"

namespace vorel {

enum class Scan : u8 { p, i };

// How chroma samples of a pair are read as numbers: this matters in the half-gradient rule alone.
enum class ChromaSign : u8 { isUnsigned, isSigned };

// Where a later row of an interlaced frame starts from. Deliberately uneven: frames of record depend on it.
enum class InterlacedRowStart : u8 { constants, firstUnitAbove };

// The 14 pairs of codes. Luma-like and chroma-like residuals have a code each; see entropy/code_tables.h.
enum class CodeSetId : u8 {
  wide8Progressive,
  wide8Interlaced,
  video8Progressive422,
  video8Interlaced422,
  video10Progressive422,
  video10Interlaced422,
  progressive8b444,
  interlaced8b444,
  video10Progressive444,
  video10Interlaced444,
  rgb8Progressive,
  rgb8Interlaced,
  rgb10Progressive,
  rgb10Interlaced,
};

// Values that stand for the left neighbour at the start of a row.
struct StartValues {
  i16 luma;              // Y', or every colour of an RGB layout
  i16 alphaProgressive;  // alpha of a progressive frame; 0 where the layout has no alpha
  i16 alphaInterlaced;   // alpha of an interlaced frame
  i16 chroma;            // Cb and Cr; the other colours of an RGB layout
};

struct FrameLayout {
  SampleDomain samples;
  ChromaSign chromaSign;
  StartValues start;
  InterlacedRowStart interlacedRowStart;
  std::array<CodeSetId, 2> codes;  // progressive, interlaced
  std::array<u32, 2> tags;         // progressive, interlaced: word 4 of a frame as a little-endian number
  u32 family;                      // component subtype
  std::array<const char*, 2> shownName;  // progressive, interlaced
};

constexpr int Index(Scan scan) {
  return static_cast<int>(scan);
}

// Samples of a unit and bits of a unit in a raw row.
constexpr u32 SamplesPerUnit(const FrameLayout& layout) {
  if (layout.samples.unit == Unit::pair) return layout.samples.alpha ? 6 : 4;
  return layout.samples.alpha ? 4 : 3;
}
constexpr u32 RawBitsPerUnit(const FrameLayout& layout) {
  return SamplesPerUnit(layout) * layout.samples.bits;
}

// Units of a row. The sum wraps in 32 bits.
constexpr u32 UnitsPerRow(const FrameLayout& layout, u32 width) {
  return layout.samples.unit == Unit::pair ? (width + 1) / 2 : width;
}

// Whether a predicted row stays: `words` are those that the row completed. 8-bit 4:2:2 rows count pairs;
// every other layout counts the bits of a raw pixel against the width, so that odd widths of the 4:2:2:4 and
// 10-bit 4:2:2 layouts fall back somewhat sooner.
constexpr bool PredictedRowStays(const FrameLayout& layout, u64 words, u32 width) {
  if (layout.samples.unit == Unit::pair && layout.samples.bits == 8 && !layout.samples.alpha)
    return words <= UnitsPerRow(layout, width);
  const u64 rawPixelBits =
      layout.samples.unit == Unit::pair ? RawBitsPerUnit(layout) / 2 : RawBitsPerUnit(layout);
  return words * 32 <= rawPixelBits * width;
}

inline constexpr StartValues kStart8bw = {128, 0, 0, 0};
inline constexpr StartValues kStart8bv = {125, 0, 0, 128};
inline constexpr StartValues kStart8bvAlpha = {125, 125, 125, 128};
inline constexpr StartValues kStart8bu = {110, 0, 0, 128};
inline constexpr StartValues kStart8buAlpha = {110, 128, 110, 128};  // alpha differs by scan
inline constexpr StartValues kStart10bv = {502, 0, 0, 512};
inline constexpr StartValues kStart10bvAlpha = {502, 502, 502, 512};
inline constexpr StartValues kStart8bf = {128, 128, 128, 128};
inline constexpr StartValues kStart10bf = {512, 512, 512, 512};

// clang-format off
#define VOREL_TAGS(P, I) {WordOfBytes(P), WordOfBytes(I)}
inline constexpr FrameLayout RGB10bf = {
    SamplesRGB10bf, ChromaSign::isUnsigned, kStart10bf,
    InterlacedRowStart::constants, {CodeSetId::rgb10Progressive, CodeSetId::rgb10Interlaced},
    VOREL_TAGS("RGBX", "rGBX"), FourCharacterCode("Vrl7"), {"RGB 10bf p", "RGB 10bf i"}};
inline constexpr FrameLayout RGBA10bf = {
    SamplesRGBA10bf, ChromaSign::isUnsigned, kStart10bf,
    InterlacedRowStart::constants, {CodeSetId::rgb10Progressive, CodeSetId::rgb10Interlaced},
    VOREL_TAGS("ARGX", "ArGX"), FourCharacterCode("Vrl7"), {"RGBA 10bf p", "RGBA 10bf i"}};
inline constexpr FrameLayout RGB8bf = {
    SamplesRGB8bf, ChromaSign::isUnsigned, kStart8bf,
    InterlacedRowStart::firstUnitAbove, {CodeSetId::rgb8Progressive, CodeSetId::rgb8Interlaced},
    VOREL_TAGS(" RGB", " rGB"), FourCharacterCode("Vrl1"), {"RGB 8bf p", "RGB 8bf i"}};
inline constexpr FrameLayout RGBA8bf = {
    SamplesRGBA8bf, ChromaSign::isUnsigned, kStart8bf,
    InterlacedRowStart::firstUnitAbove, {CodeSetId::rgb8Progressive, CodeSetId::rgb8Interlaced},
    VOREL_TAGS("ARGB", "ArGB"), FourCharacterCode("Vrl1"), {"RGBA 8bf p", "RGBA 8bf i"}};
inline constexpr FrameLayout YCbCr10bv444 = {
    SamplesYCbCr10bv444, ChromaSign::isUnsigned, kStart10bv,
    InterlacedRowStart::constants, {CodeSetId::video10Progressive444, CodeSetId::video10Interlaced444},
    VOREL_TAGS("YBR\n", "yBR\n"), FourCharacterCode("Vrl5"), {"Y'CbCr 10bv 4:4:4p", "Y'CbCr 10bv 4:4:4i"}};
inline constexpr FrameLayout YCbCrA10bv4444 = {
    SamplesYCbCrA10bv4444, ChromaSign::isUnsigned, kStart10bvAlpha,
    InterlacedRowStart::constants, {CodeSetId::video10Progressive444, CodeSetId::video10Interlaced444},
    VOREL_TAGS("CA4p", "CA4i"),
    FourCharacterCode("Vrl5"), {"Y'CbCrA 10bv 4:4:4:4p", "Y'CbCrA 10bv 4:4:4:4i"}};
inline constexpr FrameLayout YCbCr8bv444 = {
    SamplesYCbCr8bv444, ChromaSign::isUnsigned, kStart8bv,
    InterlacedRowStart::firstUnitAbove, {CodeSetId::progressive8b444, CodeSetId::interlaced8b444},
    VOREL_TAGS(" YBR", " yBR"), FourCharacterCode("Vrl2"), {"Y'CbCr 8bv 4:4:4p", "Y'CbCr 8bv 4:4:4i"}};
inline constexpr FrameLayout YCbCrA8bv4444 = {
    SamplesYCbCrA8bv4444, ChromaSign::isUnsigned, kStart8bvAlpha,
    InterlacedRowStart::firstUnitAbove, {CodeSetId::progressive8b444, CodeSetId::interlaced8b444},
    VOREL_TAGS("AYBR", "AyBR"), FourCharacterCode("Vrl2"), {"Y'CbCrA 8bv 4:4:4:4p", "Y'CbCrA 8bv 4:4:4:4i"}};
inline constexpr FrameLayout YCbCr8bu444 = {
    SamplesYCbCr8bu444, ChromaSign::isUnsigned, kStart8bu,
    InterlacedRowStart::firstUnitAbove, {CodeSetId::progressive8b444, CodeSetId::interlaced8b444},
    VOREL_TAGS(" YbR", " ybR"), FourCharacterCode("Vrl2"), {"Y'CbCr 8bu 4:4:4p", "Y'CbCr 8bu 4:4:4i"}};
inline constexpr FrameLayout YCbCrA8bu4444 = {
    SamplesYCbCrA8bu4444, ChromaSign::isUnsigned, kStart8buAlpha,
    InterlacedRowStart::firstUnitAbove, {CodeSetId::progressive8b444, CodeSetId::interlaced8b444},
    VOREL_TAGS("AYbR", "AybR"), FourCharacterCode("Vrl2"), {"Y'CbCrA 8bu 4:4:4:4p", "Y'CbCrA 8bu 4:4:4:4i"}};
inline constexpr FrameLayout YCbCr10bv422 = {
    SamplesYCbCr10bv422, ChromaSign::isUnsigned, kStart10bv,
    InterlacedRowStart::constants, {CodeSetId::video10Progressive422, CodeSetId::video10Interlaced422},
    VOREL_TAGS("\xA2YRY", "\xA2YRy"),
    FourCharacterCode("Vrl6"), {"Y'CbCr 10bv 4:2:2p", "Y'CbCr 10bv 4:2:2i"}};
inline constexpr FrameLayout YCbCrA10bv4224 = {
    SamplesYCbCrA10bv4224, ChromaSign::isUnsigned, kStart10bvAlpha,
    InterlacedRowStart::constants, {CodeSetId::video10Progressive422, CodeSetId::video10Interlaced422},
    VOREL_TAGS("CA2p", "CA2i"),
    FourCharacterCode("Vrl6"), {"Y'CbCrA 10bv 4:2:2:4p", "Y'CbCrA 10bv 4:2:2:4i"}};
inline constexpr FrameLayout YCbCr8bv422 = {
    SamplesYCbCr8bv422, ChromaSign::isUnsigned, kStart8bv,
    InterlacedRowStart::firstUnitAbove, {CodeSetId::video8Progressive422, CodeSetId::video8Interlaced422},
    VOREL_TAGS("BYRY", "BYRy"), FourCharacterCode("Vrl3"), {"Y'CbCr 8bv 4:2:2p", "Y'CbCr 8bv 4:2:2i"}};
inline constexpr FrameLayout YCbCrA8bv4224 = {
    SamplesYCbCrA8bv4224, ChromaSign::isUnsigned, kStart8bvAlpha,
    InterlacedRowStart::constants, {CodeSetId::video8Progressive422, CodeSetId::video8Interlaced422},
    VOREL_TAGS("C82p", "C82i"), FourCharacterCode("Vrl3"), {"Y'CbCrA 8bv 4:2:2:4p", "Y'CbCrA 8bv 4:2:2:4i"}};
inline constexpr FrameLayout YCbCr8bw422 = {
    SamplesYCbCr8bw422, ChromaSign::isSigned, kStart8bw,
    InterlacedRowStart::firstUnitAbove, {CodeSetId::wide8Progressive, CodeSetId::wide8Interlaced},
    VOREL_TAGS("YbYr", "Ybyr"), FourCharacterCode("Vrl4"), {"Y'CbCr 8bw 4:2:2p", "Y'CbCr 8bw 4:2:2i"}};
#undef VOREL_TAGS
// clang-format on

// In the order of the table of tags.
inline constexpr std::array<const FrameLayout*, 15> kFrameLayouts = {
    &RGB10bf,        &RGBA10bf,       &RGB8bf,        &RGBA8bf,       &YCbCr10bv444,
    &YCbCrA10bv4444, &YCbCr8bv444,    &YCbCrA8bv4444, &YCbCr8bu444,   &YCbCrA8bu4444,
    &YCbCr10bv422,   &YCbCrA10bv4224, &YCbCr8bv422,   &YCbCrA8bv4224, &YCbCr8bw422,
};

static_assert(YCbCr10bv422.tags[0] == 0x595259A2 && YCbCr10bv444.tags[1] == 0x0A524279 &&
              YCbCr8bw422.tags[1] == 0x72796259);

}  // namespace vorel
