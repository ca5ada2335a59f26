// Field by field in both directions.
#include "tool/clip_description.h"

#include "tool/colour_standard.h"

namespace vorel::tool {

namespace {

using picture_io::ClipFormat;
using picture_io::ScanOrder;

constexpr u32 kVendor = FourCharacterCode("Vorl");
constexpr u16 kRevision = 0x0267;
constexpr u16 kDepth = 24;
constexpr u16 kDepthWithAlpha = 32;

// Rows of both fields stand interleaved; the first row belongs to the earlier field, or to the later one.
// Other writers say the same in another way.
struct FieldRow {
  container::FieldOrder order;
  ScanOrder scan;
};

constexpr FieldRow kWritten[] = {{{1, 0}, ScanOrder::progressive},
                                 {{2, 9}, ScanOrder::topFirst},
                                 {{2, 14}, ScanOrder::bottomFirst},
                                 {{2, 0}, ScanOrder::interlaced}};
constexpr FieldRow kReadOnly[] = {{{2, 1}, ScanOrder::topFirst}, {{2, 6}, ScanOrder::bottomFirst}};

ScanOrder ScanOfFields(const container::FieldOrder& order) {
  if (order.fields == 1) return ScanOrder::progressive;
  if (order.fields != 2) return ScanOrder::unknown;
  const auto isSaid = [&order](const FieldRow& row) {
    return row.order.fields == order.fields && row.order.detail == order.detail;
  };
  for (const FieldRow& row : kWritten) {
    if (isSaid(row)) return row.scan;
  }
  for (const FieldRow& row : kReadOnly) {
    if (isSaid(row)) return row.scan;
  }
  return ScanOrder::interlaced;
}

}  // namespace

container::SampleDescription DescribeClip(const ClipFormat& format, const FrameCoding& coding) {
  container::SampleDescription description;
  description.cType = CodecOfTag(coding.tag);
  description.revisionLevel = kRevision;
  description.vendor = kVendor;
  description.width = static_cast<u16>(format.width);
  description.height = static_cast<u16>(format.height);
  description.depth = TagHasAlpha(coding.tag) ? kDepthWithAlpha : kDepth;
  for (const FieldRow& row : kWritten) {
    if (row.scan == format.scan) SetExtension(description, container::MakeFieldOrder(row.order));
  }
  SetExtension(description, container::MakeColour(ColourOfStandard(coding.colourStandard)));
  if (IsKnown(format.aspect)) {
    SetExtension(description,
                 container::MakePixelAspect({format.aspect.numerator, format.aspect.denominator}));
  }
  return description;
}

ClipFormat ClipOfDescription(const container::SampleDescription& description, container::FrameRate rate,
                             u32 pixelFormat) {
  ClipFormat format;
  format.pixelFormat = pixelFormat;
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
  return codec >= FourCharacterCode("Vrl0") && codec <= FourCharacterCode("Vrl7");
}

}  // namespace vorel::tool
