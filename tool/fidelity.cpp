// Pixel formats are held against frame layouts, each by what its samples mean.
#include "tool/fidelity.h"

#include <algorithm>
#include <iterator>

#include "base/bytes.h"
#include "frame/frame_tags.h"
#include "frame/tag_rules.h"
#include "vorel/pixel_formats.h"

namespace vorel::tool {

namespace {

using picture_io::ClipFormat;

const char* ChangeText(ColourModel from) {
  return from == ColourModel::rgb ? "R'G'B' (it becomes Y'CbCr)" : "Y'CbCr (it becomes R'G'B')";
}

void AddPart(std::string& list, const std::string& part) {
  list += (list.empty() ? "" : ", ") + part;
}

void AddDroppedBits(std::string& list, u32 had, u32 kept) {
  if (had <= kept) return;
  AddPart(list,
          "the lower " + std::to_string(had - kept) + " of " + std::to_string(had) + " bits of a sample");
}

// R'G'B' pictures of video range. Frames hold full range: what lies beyond black and white is lost in them.
constexpr u32 kVideoRgb[] = {FourCharacterCode("VRGB"), FourCharacterCode("S10k"), FourCharacterCode("S210")};

bool IsVideoRgb(u32 pixelFormat) {
  return std::find(std::begin(kVideoRgb), std::end(kVideoRgb), pixelFormat) != std::end(kVideoRgb);
}

// The frames that are made for pictures of this pixel format; null for one that is only written. The generic
// rule leaves 'VUYA' out.
const FrameLayout* NaturalLayout(u32 pixelFormat) {
  const FrameLayout* const layout = LayoutOfTag(ChooseTag(VOREL_GENERIC, pixelFormat, 0)).layout;
  return layout != nullptr ? layout : LayoutOfTag(ChooseTag(VOREL_YCBCR_8B_444, pixelFormat, 0)).layout;
}

ColourModel ModelOf(u32 pixelFormat) {
  const FrameLayout* const natural = NaturalLayout(pixelFormat);
  return natural == nullptr ? ColourModel::rgb : natural->samples.model;
}

// What of pictures their frames cannot hold.
struct Losses {
  bool model;   // it becomes the other one, by a matrix
  bool range;   // codes beyond black and white
  u32 bits;     // of a sample that are left; of no account if they were fewer
  bool chroma;  // that of every second pixel
  bool alpha;
};

Losses LossesOf(const ClipFormat& format, const FrameLayout& layout) {
  const u32 pixelFormat = format.pixelFormat;
  const VorelPixelFormatInfo& pixels = *VorelFindPixelFormat(pixelFormat);
  const FrameLayout* const natural = NaturalLayout(pixelFormat);
  const bool isOtherModel = ModelOf(pixelFormat) != layout.samples.model;
  const bool isOtherRange =
      !isOtherModel && natural != nullptr && natural->samples.range != layout.samples.range;
  return {isOtherModel, isOtherRange || IsVideoRgb(pixelFormat), layout.samples.bits,
          pixels.unitPixels == 1 && layout.samples.unit == Unit::pair,
          pixels.hasAlpha != 0 && !format.isOpaque && !layout.samples.alpha};
}

// 8-bit R'G'B' comes back from Y'CbCr of 10 bits at every pixel in each of its colours; all else that goes
// through a matrix does not.
bool IsExactMatrix(u32 pixelFormat, const FrameLayout& layout) {
  constexpr u32 kByte = 8;
  constexpr u32 kTenBits = 10;
  return ModelOf(pixelFormat) == ColourModel::rgb && VorelFindPixelFormat(pixelFormat)->sampleBits == kByte &&
         layout.samples.bits == kTenBits;
}

}  // namespace

std::string UnkeptOfPictures(const ClipFormat& format, u32 sampleBits, u32 tag) {
  const FrameLayout* const layout = LayoutOfTag(tag).layout;
  if (VorelFindPixelFormat(format.pixelFormat) == nullptr || layout == nullptr) return "";
  const Losses losses = LossesOf(format, *layout);
  std::string unkept;
  if (losses.model) AddPart(unkept, ChangeText(ModelOf(format.pixelFormat)));
  if (losses.range) AddPart(unkept, "codes beyond black and white");
  AddDroppedBits(unkept, sampleBits, losses.bits);
  if (losses.chroma) AddPart(unkept, "the chroma of every pixel");
  if (losses.alpha) AddPart(unkept, "alpha");
  return unkept;
}

bool HoldsPictures(const ClipFormat& format, u32 sampleBits, u32 tag) {
  const FrameLayout* const layout = LayoutOfTag(tag).layout;
  if (VorelFindPixelFormat(format.pixelFormat) == nullptr || layout == nullptr) return false;
  const Losses losses = LossesOf(format, *layout);
  return !losses.range && sampleBits <= losses.bits && !losses.chroma && !losses.alpha &&
         (!losses.model || IsExactMatrix(format.pixelFormat, *layout));
}

std::string WayToHoldPictures(const ClipFormat& format, u32 sampleBits, const FrameCoding& coding) {
  const u32 pixelFormat = format.pixelFormat;
  const auto holds = [&](u32 tag) { return HoldsPictures(format, sampleBits, tag); };
  if (holds(ChooseTag(coding.family, pixelFormat, coding.formatChoice | VOREL_KEEP_ALPHA)))
    return "--alpha keep holds them whole";
  if (const std::string codecs = CodecsThat(pixelFormat, VOREL_KEEP_ALPHA, holds); !codecs.empty()) {
    const bool dropsAlpha = LossesOf(format, *LayoutOfTag(coding.tag).layout).alpha;
    return "choose a codec that holds them whole" + std::string(dropsAlpha ? ", and --alpha keep" : "") +
           ": --codec " + codecs;
  }
  constexpr u32 kMostFrameBits = 10;
  if (sampleBits > kMostFrameBits) {
    return "frames hold 10 bits at most: keep the " + std::to_string(sampleBits) +
           "-bit files, or take 8-bit or 10-bit pictures (DPX)";
  }
  return "no codec holds them whole; keep the files, or take pictures of full range";
}

std::string UnkeptOfFrames(u32 tag, u32 pixelFormat) {
  const VorelPixelFormatInfo* const pixels = VorelFindPixelFormat(pixelFormat);
  const FrameLayout* const layout = LayoutOfTag(tag).layout;
  if (pixels == nullptr || layout == nullptr) return "";
  std::string unkept;
  if (layout->samples.model != ModelOf(pixelFormat)) {
    AddPart(unkept, ChangeText(layout->samples.model));
  }
  AddDroppedBits(unkept, layout->samples.bits, pixels->sampleBits);
  if (layout->samples.unit == Unit::pixel && pixels->unitPixels > 1)
    AddPart(unkept, "the chroma of every pixel");
  if (layout->samples.alpha && pixels->hasAlpha == 0) AddPart(unkept, "alpha");
  return unkept;
}

}  // namespace vorel::tool
