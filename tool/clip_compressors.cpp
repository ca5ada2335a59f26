#include "tool/clip_compressors.h"

#include "base/bytes.h"
#include "base/problem.h"
#include "component/component_table.h"
#include "tool/clip_description.h"
#include "tool/fidelity.h"
#include "tool/settings_record.h"
#include "vorel/pixel_formats.h"

namespace vorel::tool {

namespace {

using component::Settings;

// Pixel formats that the check knows under another name alone. The range makes them the same to a compressor.
struct CheckedName {
  u32 pixelFormat;
  u32 name;
  u32 rgbRange;
};

constexpr CheckedName kCheckedNames[] = {
    {FourCharacterCode("F10k"), FourCharacterCode("R10k"), VOREL_RGB_RANGE_FULL},
    {FourCharacterCode("F210"), FourCharacterCode("r210"), VOREL_RGB_RANGE_FULL}};

CheckedName CheckedNameOf(u32 pixelFormat) {
  for (const CheckedName& row : kCheckedNames) {
    if (row.pixelFormat == pixelFormat) return row;
  }
  return {pixelFormat, pixelFormat, VOREL_RGB_RANGE_AUTOMATIC};
}

bool HasComparison(u32 pixelFormat) {
  const u32 name = CheckedNameOf(pixelFormat).name;
  return VorelComparePictures(name, 0, 0, 0, 0, 0, nullptr, nullptr) != VOREL_NO_ROUTINE;
}

VorelFamily FamilyOfTag(u32 tag) {
  return component::CompressorOf(VorelSubtypeOfTag(tag)).family;
}

}  // namespace

void AllowSelfCheck(FrameCoding& coding, const picture_io::ClipFormat& format, u32 sampleBits,
                    const MovieChoice& choice, const std::string& name) {
  const std::string pictures = "'" + PixelFormatName(format.pixelFormat) + "'";
  if (!HoldsPictures(format, sampleBits, coding.tag)) {
    throw Problem{"no self-check can pass: frames of format " + FormatNameOfTag(coding.tag) +
                      " do not keep " + UnkeptOfPictures(format, sampleBits, coding.tag),
                  name, WayToHoldPictures(format, sampleBits, coding)};
  }
  if (!HasComparison(format.pixelFormat)) {
    throw Problem{"the self-check does not compare " + pictures + " pictures", name,
                  "leave --self-check out, and compare with vorel verify --against when all is done"};
  }
  // The generic compressor checks R'G'B' alone.
  const VorelFamily family = FamilyOfTag(coding.tag);
  const bool isRgb = family == VOREL_RGB_10BF || family == VOREL_RGB_8BF;
  if (coding.family != VOREL_GENERIC || isRgb) return;
  if (choice.isGeneric) {
    throw Problem{"the generic codec checks R'G'B' pictures alone, these are " + pictures, name,
                  "choose --codec auto"};
  }
  coding.family = family;
}

Compression CompressionOfClip(const picture_io::ClipFormat& format, const FrameCoding& coding,
                              const MovieChoice& choice) {
  Settings settings = {};
  settings.conversion = component::kConversionBest;  // what may be lost is settled before
  settings.scan = IsInterlaced(format.scan) ? component::kScanInterlaced : component::kScanProgressive;
  settings.videoStandard = coding.colourStandard;
  Compression compression;
  compression.compressor = component::CompressorOfFamily(coding.family).subtype;
  compression.description = DescribeClip(format, coding);
  if (choice.isGeneric) compression.description.cType = component::kGenericSubtype;
  compression.pixelFormat = format.pixelFormat;
  if (choice.selfCheck) {
    const CheckedName checked = CheckedNameOf(format.pixelFormat);
    settings.mode = component::kModeSelfCheck;
    settings.rgbRange = checked.rgbRange;
    compression.pixelFormat = checked.name;
  }
  compression.settings = RecordOfSettings(settings);
  return compression;
}

void ClipCompressors::Compress(u64 frame, picture_io::Picture& picture, FrameBuffer& buffer,
                               container::SampleDescription& description) {
  FrameCompressor& own = threads.local();
  const std::string place = name + ": frame " + std::to_string(frame);
  if (own.instance == nullptr) OpenFrameCompressor(own, compression, place);
  CompressFrame(own, coding, picture, buffer, place);
  if (frame == 0) description = DescriptionOfHost(own.description.get());
}

}  // namespace vorel::tool
