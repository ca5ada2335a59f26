// Tables of names and choices; what a tag means is asked of the core.
#include "tool/frame_format.h"

#include <algorithm>
#include <filesystem>

#include "base/bytes.h"
#include "base/problem.h"
#include "frame/dispatch.h"
#include "frame/frame_tags.h"
#include "frame/tag_rules.h"
#include "picture_io/picture_file.h"
#include "vorel/pixel_formats.h"

namespace vorel::tool {

namespace {

using picture_io::k2vuy;
using picture_io::kV210;
using picture_io::kV216;
using picture_io::kV408;
using picture_io::kV410;
using picture_io::kYuvu;

struct CodecRow {
  const char* name;
  VorelFamily family;
  u32 subtype;  // of the frames that it makes; 0 for any
};

constexpr CodecRow kCodecs[] = {
    {"auto", VOREL_GENERIC, 0},
    {"ycbcr-8bv-422", VOREL_YCBCR_8BV_422, FourCharacterCode("Vrl3")},
    {"ycbcr-10bv-422", VOREL_YCBCR_10BV_422, FourCharacterCode("Vrl6")},
    {"ycbcr-8bw-422", VOREL_YCBCR_8BW_422, FourCharacterCode("Vrl4")},
    {"ycbcr-8b-444", VOREL_YCBCR_8B_444, FourCharacterCode("Vrl2")},
    {"ycbcr-10bv-444", VOREL_YCBCR_10BV_444, FourCharacterCode("Vrl5")},
    {"rgb-8bf", VOREL_RGB_8BF, FourCharacterCode("Vrl1")},
    {"rgb-10bf", VOREL_RGB_10BF, FourCharacterCode("Vrl7")},
};

struct OutputRow {
  const FrameLayout* layout;
  u32 raw;
  u32 y4m;  // 0 for none
};

// Pictures that hold all that the frame holds, as far as there are any.
constexpr OutputRow kOutputs[] = {
    {&RGB10bf, FourCharacterCode("F10k"), 0},
    {&RGBA10bf, FourCharacterCode("b64a"), 0},
    {&RGB8bf, 24, 0},
    {&RGBA8bf, 32, 0},
    {&YCbCr10bv444, kV410, kV410},
    {&YCbCrA10bv4444, FourCharacterCode("V416"), kV410},
    {&YCbCr8bv444, kV408, kV408},
    {&YCbCrA8bv4444, kV408, kV408},
    {&YCbCr8bu444, FourCharacterCode("r408"), 0},
    {&YCbCrA8bu4444, FourCharacterCode("r408"), 0},
    {&YCbCr10bv422, kV210, kV216},
    {&YCbCrA10bv4224, FourCharacterCode("V416"), kV216},
    {&YCbCr8bv422, k2vuy, k2vuy},
    {&YCbCrA8bv4224, kV408, k2vuy},
    {&YCbCr8bw422, kYuvu, kYuvu},
};

// What stands for frames that nothing is known of; they are refused when they come.
constexpr OutputRow kUnknownOutput = {nullptr, k2vuy, k2vuy};

const OutputRow& OutputOfTag(u32 tag) {
  const FrameLayout* const layout = LayoutOfTag(tag).layout;
  for (const OutputRow& row : kOutputs) {
    if (row.layout == layout) return row;
  }
  return kUnknownOutput;
}

// The tag of the frames of its own that a codec makes of such pictures; 0 if it makes none.
u32 OwnTag(const CodecRow& codec, u32 pixelFormat, u32 formatChoice) {
  if (FindEncoder(codec.family, pixelFormat, formatChoice) == nullptr) return 0;
  const u32 tag = ChooseTag(codec.family, pixelFormat, formatChoice);
  return codec.subtype == 0 || FamilyOfTag(tag) == codec.subtype ? tag : 0;
}

const CodecRow& RowOfFamily(VorelFamily family) {
  for (const CodecRow& row : kCodecs) {
    if (row.family == family) return row;
  }
  return kCodecs[0];
}

void AddPart(std::string& list, const std::string& part) {
  list += (list.empty() ? "" : ", ") + part;
}

// Advice where a codec doesn't take a pixel format: those that do.
Problem NotTaken(const CodecRow& codec, u32 pixelFormat, const std::string& name) {
  const std::string pictures = "'" + PixelFormatName(pixelFormat) + "'";
  const std::string others = CodecsThat(pixelFormat, 0, [](u32) { return true; });
  if (others.empty())
    return {pictures + " is only written", name, "choose one that is read too, such as 24 or BGRA"};
  return {std::string("codec ") + codec.name + " has no frames for " + pictures + " pictures", name,
          "choose another with --codec: " + others};
}

}  // namespace

std::optional<u32> PixelFormatOfName(const std::string& name) {
  std::size_t count = 0;
  const VorelPixelFormatInfo* const formats = VorelPixelFormatList(&count);
  for (std::size_t i = 0; i < count; ++i) {
    if (name == formats[i].name) return formats[i].code;
  }
  return std::nullopt;
}

std::string PixelFormatName(u32 pixelFormat) {
  const VorelPixelFormatInfo* const format = VorelFindPixelFormat(pixelFormat);
  return format == nullptr ? "" : format->name;
}

std::optional<u32> PixelFormatOfEnding(const std::string& path) {
  constexpr std::size_t kDotAndFour = 5;
  const std::string ending = std::filesystem::path(path).extension().string();
  if (ending.size() != kDotAndFour) return std::nullopt;
  return PixelFormatOfName(ending.substr(1));
}

bool ReadCodec(const std::string& name, VorelFamily& family) {
  for (const CodecRow& row : kCodecs) {
    if (name != row.name) continue;
    family = row.family;
    return true;
  }
  return false;
}

std::string CodecNames() {
  std::string names;
  for (const CodecRow& row : kCodecs) AddPart(names, row.name);
  return names;
}

std::vector<std::string> CodecsOfPair(u32 pixelFormat, u32 tag) {
  std::vector<std::string> names;
  for (const CodecRow& codec : kCodecs) {
    for (const u32 formatChoice :
         {0u, u32{VOREL_KEEP_ALPHA}, u32{VOREL_INTERLACED}, u32{VOREL_KEEP_ALPHA | VOREL_INTERLACED}}) {
      if (OwnTag(codec, pixelFormat, formatChoice) != tag) continue;
      names.emplace_back(codec.name);
      break;
    }
  }
  return names;
}

std::string CodecsThat(u32 pixelFormat, u32 formatChoice, const std::function<bool(u32 tag)>& isWanted) {
  std::string names;
  for (const CodecRow& row : kCodecs) {
    const u32 tag = OwnTag(row, pixelFormat, formatChoice);
    if (tag != 0 && isWanted(tag)) AddPart(names, row.name);
  }
  return names;
}

FrameCoding CodingOfClip(const picture_io::ClipFormat& format, VorelFamily family, bool keepAlpha,
                         u32 colourStandard, const std::string& name) {
  u32 formatChoice = 0;
  if (keepAlpha && !format.isOpaque) formatChoice |= VOREL_KEEP_ALPHA;
  if (IsInterlaced(format.scan)) formatChoice |= VOREL_INTERLACED;
  const CodecRow& codec = RowOfFamily(family);
  const u32 tag = OwnTag(codec, format.pixelFormat, formatChoice);
  if (tag == 0) throw NotTaken(codec, format.pixelFormat, name);
  return {family, formatChoice, colourStandard, tag};
}

u32 PictureFormatOfTag(u32 tag, std::span<const u32> held) {
  constexpr u32 kByte = 8;
  const FrameLayout* const layout = LayoutOfTag(tag).layout;
  const bool isDeep = layout != nullptr && layout->samples.bits > kByte;
  const bool hasAlpha = layout != nullptr && layout->samples.alpha;
  const u32 nearest = picture_io::ChunkyPixelFormat(isDeep, hasAlpha);
  return std::find(held.begin(), held.end(), nearest) != held.end() ? nearest : held.front();
}

u32 RawFormatOfTag(u32 tag) {
  return OutputOfTag(tag).raw;
}

u32 Y4mFormatOfTag(u32 tag) {
  return OutputOfTag(tag).y4m;
}

u32 EightBitFormatOfTag(u32 tag) {
  return Y4mFormatOfTag(tag) == kYuvu ? kYuvu : k2vuy;
}

std::string TagText(u32 tag) {
  std::string text;
  for (int shift = 0; shift < 32; shift += 8) {
    const unsigned byte = tag >> shift & 0xFF;
    constexpr char kDigits[] = "0123456789ABCDEF";
    if (byte >= ' ' && byte <= '~') {
      text += static_cast<char>(byte);
    } else {
      text += {'\\', 'x', kDigits[byte >> 4], kDigits[byte & 15]};
    }
  }
  return text;
}

std::string FormatNameOfTag(u32 tag) {
  const TaggedLayout tagged = LayoutOfTag(tag);
  return tagged.layout == nullptr ? ""
                                  : tagged.layout->shownName[static_cast<std::size_t>(Index(tagged.scan))];
}

u32 CodecOfTag(u32 tag) {
  return FamilyOfTag(tag);
}

bool TagHasAlpha(u32 tag) {
  const FrameLayout* const layout = LayoutOfTag(tag).layout;
  return layout != nullptr && layout->samples.alpha;
}

u32 PixelBitsOfTag(u32 tag) {
  const FrameLayout* const layout = LayoutOfTag(tag).layout;
  if (layout == nullptr) return 0;
  return layout->samples.unit == Unit::pair ? RawBitsPerUnit(*layout) / 2 : RawBitsPerUnit(*layout);
}

}  // namespace vorel::tool
