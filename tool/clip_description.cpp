// Field by field in both directions.
#include "tool/clip_description.h"

#include "tool/frame_coder.h"

namespace vorel::tool {

namespace {

using picture_io::ClipFormat;
using picture_io::ScanOrder;

constexpr u32 kVendor = FourCharacterCode("Vorl");
constexpr u16 kRevision = 0x0267;
constexpr u32 kLossless = 1024;
constexpr u16 kDepth = 24;

// Rows of both fields stand interleaved; the first row belongs to the earlier field, or to the later one.
constexpr u8 kFirstRowEarly = 9;
constexpr u8 kFirstRowLate = 14;
constexpr u8 kBottomFieldFirst = 6;  // the same said in another way by other writers

ScanOrder ScanOfFields(const container::FieldOrder& order) {
  if (order.fields == 1) return ScanOrder::progressive;
  if (order.fields != 2) return ScanOrder::unknown;
  const bool isBottomFirst = order.detail == kFirstRowLate || order.detail == kBottomFieldFirst;
  return isBottomFirst ? ScanOrder::bottomFirst : ScanOrder::topFirst;
}

}  // namespace

container::SampleDescription DescribeClip(const ClipFormat& format, u32 firstFrameBytes) {
  const bool interlaced = picture_io::IsInterlaced(format.scan);
  const u32 tag = interlaced ? WordOfBytes("Ybyr") : WordOfBytes("YbYr");
  container::SampleDescription description;
  description.cType = kCodecOf8bw;
  description.revisionLevel = kRevision;
  description.vendor = kVendor;
  description.spatialQuality = kLossless;
  description.width = static_cast<u16>(format.width);
  description.height = static_cast<u16>(format.height);
  description.dataSize = firstFrameBytes;
  description.name = "Vorel " + FormatNameOfTag(tag);
  description.depth = kDepth;
  std::vector<u8> tagBytes(4);
  StoreLittle32(tagBytes.data(), tag);
  SetExtension(description, {kFormatTagExtension, tagBytes});
  if (interlaced) {
    const u8 detail = format.scan == ScanOrder::topFirst ? kFirstRowEarly : kFirstRowLate;
    SetExtension(description, container::MakeFieldOrder({2, detail}));
  } else if (format.scan == ScanOrder::progressive) {
    SetExtension(description, container::MakeFieldOrder({1, 0}));
  }
  if (IsKnown(format.aspect)) {
    SetExtension(description,
                 container::MakePixelAspect({format.aspect.numerator, format.aspect.denominator}));
  }
  return description;
}

ClipFormat ClipOfDescription(const container::SampleDescription& description, container::FrameRate rate) {
  ClipFormat format;
  format.pixelFormat = picture_io::kYuvu;
  format.width = description.width;
  format.height = description.height;
  if (rate.numerator != 0) format.rate = {rate.numerator, rate.denominator};
  if (const auto order = container::FindFieldOrder(description)) format.scan = ScanOfFields(*order);
  if (const auto aspect = container::FindPixelAspect(description)) {
    format.aspect = {aspect->horizontal, aspect->vertical};
  }
  return format;
}

u32 TagOfDescription(const container::SampleDescription& description) {
  const container::Extension* const extension = FindExtension(description, kFormatTagExtension);
  if (extension == nullptr || extension->bytes.size() != 4) return 0;
  return VorelNormalizeFormatTag(LoadLittle32(extension->bytes.data()));
}

bool IsVorelCodec(u32 codec) {
  constexpr u32 kLastCodec = FourCharacterCode("Vrl7");
  return codec >= kGenericCodec && codec <= kLastCodec;
}

}  // namespace vorel::tool
