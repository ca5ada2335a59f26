// The row loop of a decoder for any frame layout, from frame to picture. It knows samples; pixel formats
// begin in the function that drains a strip.
#pragma once
#include "base/instructions.h"
#include "codec/plane_bands.h"
#include "codec/plane_source.h"
#include "codec/row_buffer.h"
#include "codec/strip_rebuild.h"
#include "frame/argument_check.h"

namespace vorel::inline VOREL_INSTRUCTIONS {

// Decodes a row into the picture. `rowBuffer` holds the row above if FromAbove, and holds this row
// afterwards; it is null where no row follows that needs one. Gives the samples of the first unit.
template <const FrameLayout& Layout, bool FromAbove, bool KeepAlpha>
[[gnu::noinline]] UnitSamples DecodePlaneRow(PlaneSource<Layout>& source, const PictureTarget& target,
                                             const UnitSamples& leftOfRow, u8* rowBuffer) {
  constexpr std::size_t kLength = kStepLength<Layout>;
  std::array<SampleOf<kSymbolsOf<Layout>>, kRunSteps * kLength + kReadBehindSymbols<Layout>> symbols;
  std::array<SampleStrip, 2> strips;
  // A strip that is not full is drained to its end all the same, and its last cells are looked at, so there
  // must be samples.
  for (SampleStrip& strip : strips) strip = {};
  SampleStrip above = {};
  RowDrain drain = {&target, CurrentRow(source.walk), source.width, {}};
  UnitSamples firstUnit = {};
  UnitSamples left = leftOfRow;
  UnitSamples leftAbove = {};
  const bool raw = GetBit(source.reader) != 0;
  u32 number = 0;
  for (u32 step = 0; step < source.steps; step += kStripPixels, ++number) {
    const u32 inRun = number % kRunStrips * kStripPixels;
    if (inRun == 0) {
      const u32 count = std::min(kRunSteps, source.steps - step);
      GetSteps<Layout>(source, raw, symbols.data(), count, source.steps - step - count);
    }
    const u32 count = std::min(kStripPixels, source.steps - step);
    SampleStrip& strip = strips[number % 2];
    const auto* const ofStrip = symbols.data() + inRun * kLength;
    u8* const kept = rowBuffer == nullptr ? nullptr : rowBuffer + RowBufferBytes<Layout, KeepAlpha>(step);
    if (raw) {
      PlaceSymbols<Layout>(ofStrip, count, strip);
    } else {
      PlaceResiduals<Layout>(ofStrip, count, strip);
      if constexpr (FromAbove) {
        FetchStrip<Layout, KeepAlpha>(kept, count, above);
        // Left of the first unit both rows have what stands above it.
        if (step == 0) left = leftAbove = FirstSamples(above);
        SetLeft(above, leftAbove);
        leftAbove = LastSamples<Layout>(above);
      }
      SetLeft(strip, left);
      RebuildStrip<Layout, FromAbove, KeepAlpha>(count, above, strip);
    }
    left = LastSamples<Layout>(strip);
    if (step == 0) firstUnit = FirstSamples(strip);
    if (kept != nullptr) KeepStrip<Layout, KeepAlpha>(strip, count, kept);
    if constexpr (kInPairs<Layout>) {
      if (number > 0) {
        SampleStrip& before = strips[(number + 1) % 2];
        SetNextChroma(before, strip);
        DrainOne(drain, before, number - 1);
      }
    } else {
      DrainOne(drain, strip, number);
    }
  }
  if constexpr (kInPairs<Layout>) DrainOne(drain, strips[(number - 1) % 2], number - 1);
  return firstUnit;
}

template <const FrameLayout& Layout, Scan FrameScan, bool KeepAlpha>
Status DecodePlaneRows(PlaneSource<Layout>& source, const PictureTarget& target, u8* rowBuffer) {
  UnitSamples leftOfRow = kStartOfFrame<Layout, FrameScan>;
  if constexpr (FrameScan == Scan::p) {
    DecodePlaneRow<Layout, false, KeepAlpha>(source, target, leftOfRow, rowBuffer);
    Status status = FinishRow(source);
    if (status != Status::complete) return status;
    if (RowsOfBand<Layout>(source.steps) >= 2)
      return DecodePlaneBands<Layout, KeepAlpha>(source, target, rowBuffer);
    while (source.rowsLeft > 0) {
      DecodePlaneRow<Layout, true, KeepAlpha>(source, target, leftOfRow, rowBuffer);
      status = FinishRow(source);
      if (status != Status::complete) return status;
    }
  } else {
    while (source.rowsLeft > 0) {
      const UnitSamples firstUnit =
          DecodePlaneRow<Layout, false, KeepAlpha>(source, target, leftOfRow, nullptr);
      if (Layout.interlacedRowStart == InterlacedRowStart::firstUnitAbove) leftOfRow = firstUnit;
      const Status status = FinishRow(source);
      if (status != Status::complete) return status;
    }
  }
  return Status::complete;
}

// One body for all pixel formats of a layout and scan.
template <const FrameLayout& Layout, Scan FrameScan, bool KeepAlpha>
[[gnu::noinline]] Status DecodePlanes(const FrameCall& call, const PictureTarget& target) {
  const StreamCursor cursor = Fold({*call.wordCursor, *call.bitCursor});
  const std::uintptr_t scratch = (reinterpret_cast<std::uintptr_t>(call.scratch) + 3) & ~std::uintptr_t{3};
  PlaneSource<Layout> source = {
      .reader = OpenReader(call.frame, cursor, call.readableFrom, call.readableTo),
      .walk = OpenRowWalk(call.base, call.height, call.rowBytes),
      .limit = FrameLimit<Layout>(call, cursor),
      .width = call.width,
      .steps = kInPairs<Layout> ? (call.width + 1) / 2 * 2 : call.width,
      .rowsLeft = call.height,
      .codes = &RowCodesOfLayout<Layout, FrameScan>(),
      .guess = {},
  };
  u8* const rowBuffer = FrameScan == Scan::p ? reinterpret_cast<u8*>(scratch) : nullptr;
  const Status status = DecodePlaneRows<Layout, FrameScan, KeepAlpha>(source, target, rowBuffer);
  StoreCursors(call, source.reader.position);
  return status;
}

}  // namespace vorel::inline VOREL_INSTRUCTIONS
