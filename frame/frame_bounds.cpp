#include "frame/frame_bounds.h"

#include <algorithm>

#include "frame/frame_tags.h"

namespace vorel {

namespace {

u32 RowStoreBytesOfLayout(const FrameLayout& layout, u32 width) {
  const SampleDomain& samples = layout.samples;
  const u32 pairs = width / 2;
  if (samples.unit == Unit::pixel) {
    const bool isWide = samples.bits == 10 && (samples.model == ColourModel::rgb || samples.alpha);
    return isWide ? 8 * width + 24 : 4 * width + 12;
  }
  if (samples.bits == 10) {
    // Rows of 'v210' have their samples packed by threes and end at a multiple of 128 bytes.
    const u32 v210Row = ((pairs * 4 | 2) / 3 * 4 + 127) & ~u32{127};
    return std::max(samples.alpha ? pairs * 12 + 36 : pairs * 8 + 24, v210Row);
  }
  if (samples.alpha) return pairs * 6 + 18;
  return (&layout == &YCbCr8bw422 ? (width + 1) / 2 : pairs) * 4 + 12;
}

}  // namespace

u32 MaxFrameBytesOfTag(u32 tag, u32 width, u32 height) {
  const TaggedLayout found = LayoutOfTag(tag);
  return found.layout == nullptr ? 0 : MaxFrameBytes(*found.layout, width, height);
}

u32 RowStoreBytesOfTag(u32 tag, u32 width) {
  const TaggedLayout found = LayoutOfTag(tag);
  return found.layout == nullptr ? 0 : RowStoreBytesOfLayout(*found.layout, width);
}

u32 RowStoreBytes(u32 width) {
  u32 most = 0;
  for (const FrameLayout* layout : {&RGB10bf, &RGBA10bf, &RGB8bf, &RGBA8bf, &YCbCr10bv444, &YCbCrA10bv4444,
                                    &YCbCr8bv444, &YCbCrA8bv4444, &YCbCr8bu444, &YCbCrA8bu4444, &YCbCr10bv422,
                                    &YCbCrA10bv4224, &YCbCr8bv422, &YCbCrA8bv4224, &YCbCr8bw422}) {
    most = std::max(most, RowStoreBytesOfLayout(*layout, width));
  }
  return most;
}

}  // namespace vorel
