#include "component/compression_plan.h"

#include <algorithm>
#include <array>

#include "base/bytes.h"
#include "component/format_names.h"
#include "component/host_errors.h"
#include "vorel/pixel_formats.h"

namespace vorel::component {

namespace {

// By video standard. They tell primaries, transfer function and matrix.
constexpr ColourNumbers kColours[] = {{6, 1, 6}, {1, 1, 1}, {6, 7, 7}, {5, 1, 6}, {2, 2, 2}};

u32 StandardOf(const ColourNumbers& colour) {
  constexpr u16 kSmpteC = 6;
  if (colour.matrix == 1) return kVideoHd;
  if (colour.matrix == 7) return kVideoHd1035;
  return colour.primaries == kSmpteC ? kVideoNtsc : kVideoPal;
}

// Where four names begin in the lists of names.
constexpr u32 kNamesOfUnknown = 11;  // generic, for a pixel format without a tag
constexpr u32 kNamesOfFamily = 3;

constexpr u32 kMostPerfectBits = 10;

// The number that a family's compressor holds against the limit; it is not the number of bits.
struct PerfectNumber {
  u32 pixelFormat;
  u8 number;
};

constexpr PerfectNumber kPerfectNumbers[] = {
    {FourCharacterCode("A46L"), 18},
    {FourCharacterCode("L64A"), 18},
    {FourCharacterCode("b48r"), 18},
    {FourCharacterCode("b64a"), 18},
    {FourCharacterCode("V416"), 16},
    {FourCharacterCode("Y216"), 16},
    {FourCharacterCode("v216"), 16},
    {FourCharacterCode("F10k"), 12},
    {FourCharacterCode("F210"), 12},
    {FourCharacterCode("R10k"), 12},
    {FourCharacterCode("S10k"), 12},
    {FourCharacterCode("r210"), 12},
    {FourCharacterCode("V210"), 10},
    {FourCharacterCode("v210"), 10},
    {FourCharacterCode("v410"), 10},
    {24, 9},
    {32, 9},
    {FourCharacterCode("24BG"), 9},
    {FourCharacterCode("ABGR"), 9},
    {FourCharacterCode("BGRA"), 9},
    {FourCharacterCode("RGBA"), 9},
    {FourCharacterCode("VRGB"), 9},
    {FourCharacterCode("L555"), 6},
    {FourCharacterCode("L565"), 6},
};

u32 PerfectNumberOf(u32 pixelFormat) {
  for (const PerfectNumber& row : kPerfectNumbers) {
    if (row.pixelFormat == pixelFormat) return row.number;
  }
  return 0;
}

// Bits of a sample that the pixel format has by nature; 0 for what is no source.
u8 NaturalBits(u32 pixelFormat) {
  constexpr u32 kLeastBits = 8;
  // The core's query leaves out the one and knows the other, which is a name for targets.
  if (pixelFormat == FourCharacterCode("S210")) return 10;
  if (pixelFormat == FourCharacterCode("V210")) return 0;
  const u32 bits = VorelSignificantBits(pixelFormat);
  return bits < kLeastBits ? u8{0} : static_cast<u8>(bits);
}

// What frames of a tag hold; wide-range frames set no limit.
u32 MostBits(u32 tag) {
  switch (VorelSubtypeOfTag(tag)) {
    case FourCharacterCode("Vrl4"):
      return 255;
    case FourCharacterCode("Vrl5"):
    case FourCharacterCode("Vrl6"):
    case FourCharacterCode("Vrl7"):
      return 10;
    default:
      return 8;
  }
}

void SettleSettings(const SourceFacts& facts, CompressionPlan& plan) {
  plan.settings = facts.settings;
  if (facts.rangeExtension) plan.settings.rgbRange = *facts.rangeExtension;
  if (plan.settings.scan == kScanAutomatic)
    plan.settings.scan = facts.fieldsExtension == 2 ? kScanInterlaced : kScanProgressive;
  if (facts.colour) {
    plan.settings.videoStandard = StandardOf(*facts.colour);
  } else if (!facts.hasColourExtension) {
    plan.newColour = kColours[std::min<std::size_t>(plan.settings.videoStandard, std::size(kColours) - 1)];
  }
}

void ChooseTag(const SourceFacts& facts, CompressionPlan& plan) {
  const u32 scan = plan.settings.scan == kScanInterlaced ? u32{VOREL_INTERLACED} : 0;
  const u32 plain = VorelChooseFormatTag(facts.family, plan.pixelFormat, scan);
  const u32 withAlpha = VorelChooseFormatTag(facts.family, plan.pixelFormat, scan | VOREL_KEEP_ALPHA);
  plan.keepsAlpha = facts.hasAlpha && withAlpha != plain;
  plan.tag = plan.keepsAlpha ? withAlpha : plain;
  if (plan.tag == 0) plan.tag = facts.previousTag;
  // By the tag in the generic list; in a family's own list by alpha and scan alone, whatever the tag.
  const u32 form = (plan.keepsAlpha ? 2u : 0u) + (scan != 0 ? 1u : 0u);
  const bool isInGenericList = facts.family == VOREL_GENERIC && plain != 0;
  const u32 base = facts.family == VOREL_GENERIC ? kNamesOfUnknown : kNamesOfFamily;
  plan.nameIndex = static_cast<i16>(isInGenericList ? GenericNameIndex(plan.tag) : base + form);
}

}  // namespace

u32 SourceFormat(OSType hostFormat, u32 depth, u32 rgbRange) {
  return VorelNormalizePixelFormat(depth, hostFormat, 0, 0, 0, rgbRange);
}

CompressionPlan PlanCompression(const SourceFacts& facts) {
  CompressionPlan plan = {};
  SettleSettings(facts, plan);
  plan.pixelFormat = SourceFormat(facts.hostFormat, facts.depth, plan.settings.rgbRange);
  ChooseTag(facts, plan);

  const OSType subtype = VorelSubtypeOfTag(plan.tag);
  const bool isGeneric = facts.family == VOREL_GENERIC;
  plan.subtype = isGeneric ? facts.subtype : subtype;
  const bool fits = isGeneric ? facts.subtype == kGenericSubtype || facts.subtype == subtype : subtype != 0;
  plan.refusedSubtype = fits ? noErr : codecConditionErr;

  const u8 significantBits = facts.significantBits.value_or(NaturalBits(plan.pixelFormat));
  const u32 judged = isGeneric ? significantBits : PerfectNumberOf(plan.pixelFormat);
  const bool isTooDeep = plan.settings.conversion == kConversionPerfect && judged > kMostPerfectBits;
  plan.refusedBits = isTooDeep ? codecConditionErr : noErr;
  plan.significantBits = static_cast<u8>(std::min<u32>(significantBits, MostBits(plan.tag)));
  return plan;
}

}  // namespace vorel::component
