// What a member of the catalogue is made of: EncodeFrame and DecodeFrame for a frame layout, scan and pixel
// format. All members of a layout and scan share one row loop in each direction and differ in the function that
// fills or drains a strip; pictures that hold the samples of 8-bit pairs as a frame does have faster loops of
// their own.
#pragma once
#include "base/instructions.h"
#include "codec/plane_decoder.h"
#include "codec/plane_encoder.h"
#include "codec422/pair_decoder.h"
#include "codec422/pair_encoder.h"
#include "frame/member_macros.h"

namespace vorel::inline VOREL_INSTRUCTIONS {

// 8-bit pairs whose bytes need no more than another order.
template <const FrameLayout& Layout, const PixelLayout& Pixel>
inline constexpr bool kBytesArePairs =
    kInPairs<Layout> && !Layout.samples.alpha && Layout.samples.bits == 8 && Pixel.unit == Unit::pair &&
    Pixel.container == Container::bytes;

template <const FrameLayout& Layout, Scan FrameScan, const PixelLayout& Pixel>
Status EncodeFrame(const FrameCall& call, const char* routineName) {
  const Status checked = CheckArguments(call, SignificantBits(Pixel, Layout.samples.alpha), routineName);
  if (checked != Status::complete) return checked;
  if constexpr (kBytesArePairs<Layout, Pixel>) {
    return EncodePairs<Layout, FrameScan, Pixel>(call);
  } else {
    return EncodePlanes<Layout, FrameScan>(
        call, {FillStrip<Layout.samples, Pixel>, WeightsOfFrame<Layout.samples, Pixel>(call.colourStandard)});
  }
}

template <const FrameLayout& Layout, Scan FrameScan, const PixelLayout& Pixel>
Status DecodeFrame(const FrameCall& call, const char* routineName) {
  const Status checked = CheckArguments(call, SignificantBits(Pixel, Layout.samples.alpha), routineName);
  if (checked != Status::complete) return checked;
  if (FrameScan == Scan::p && call.scratch == nullptr) return Status::scratchMissing;
  if constexpr (kBytesArePairs<Layout, Pixel>) {
    return DecodePairs<Layout, FrameScan, Pixel>(call);
  } else {
    constexpr bool kKeepAlpha = Layout.samples.alpha && HasAlphaPlace(Pixel);
    return DecodePlanes<Layout, FrameScan, kKeepAlpha>(
        call,
        {DrainStrip<Layout.samples, Pixel>, WeightsOfFrame<Layout.samples, Pixel>(call.colourStandard)});
  }
}

}  // namespace vorel::inline VOREL_INSTRUCTIONS
