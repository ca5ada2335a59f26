// The row loop of a decoder for any frame layout, from frame to picture. It knows samples; pixel formats begin in
// the function that drains a strip.
#pragma once
#include "base/instructions.h"
#include "codec/row_buffer.h"
#include "codec/strip_rebuild.h"
#include "entropy/symbol_reader.h"
#include "frame/argument_check.h"
#include "frame/frame_limits.h"
#include "frame/row_walk.h"
#include "pixel/conversion.h"

namespace vorel::inline VOREL_INSTRUCTIONS {

// How a frame's strips are drained: chosen once a frame, called once a strip.
struct PictureTarget {
  void (*drain)(SampleStrip& strip, StripPlace place, const ColourWeights& weights, ChromaCarry& carry,
                u8* row);
  ColourWeights weights;
};

// Symbols are decoded in runs of up to this many strips, so that the reader seldom comes to the end of one.
inline constexpr u32 kRunStrips = 21;
inline constexpr u32 kRunSteps = kRunStrips * kStripPixels;

// What a decoder carries from row to row.
template <const FrameLayout& Layout>
struct PlaneSource {
  BitReader reader;
  RowWalk walk;
  u64 limit;
  u32 width;
  u32 steps;     // of a row
  u32 rowsLeft;  // of which the current one is the first
  const RowCodes<kSymbolsOf<Layout>>* codes;
};

// Takes `count` steps of the current row, symbols or samples, of which `behind` follow in the row.
template <const FrameLayout& Layout>
void GetSteps(PlaneSource<Layout>& source, bool raw, SampleOf<kSymbolsOf<Layout>>* out, u32 count,
              u32 behind) {
  constexpr std::size_t kLength = kStepLength<Layout>;
  if (raw) {
    GetRawSamples<Layout.samples.bits>(source.reader, out, count * kLength);
    return;
  }
  // A row takes a bit and at least a bit a symbol.
  const u64 bitsBehind = (source.rowsLeft - u64{1}) * (1 + u64{source.steps} * kLength) + behind * kLength;
  GetSymbols<NativeWindow, kSymbolsOf<Layout>>(source.reader, *source.codes, out, count * kLength,
                                               bitsBehind);
}

// The strips of a row on their way to the picture. Where a frame of pairs goes to pixels that each have chroma, a
// strip needs the chroma of the next one, so each is drained when the next one is there.
struct RowDrain {
  const PictureTarget* target;
  u8* row;
  u32 width;
  ChromaCarry carry;
};

inline void DrainOne(RowDrain& drain, SampleStrip& strip, u32 number) {
  drain.target->drain(strip, {number * kStripPixels, drain.width}, drain.target->weights, drain.carry,
                      drain.row);
}

// Decodes a row into the picture. `rowBuffer` holds the row above if FromAbove, and holds this row afterwards; it
// is null where no row follows that needs one. Gives the samples of the first unit.
template <const FrameLayout& Layout, bool FromAbove, bool KeepAlpha>
[[gnu::noinline]] UnitSamples DecodePlaneRow(PlaneSource<Layout>& source, const PictureTarget& target,
                                             const UnitSamples& leftOfRow, u8* rowBuffer) {
  constexpr std::size_t kLength = kStepLength<Layout>;
  std::array<SampleOf<kSymbolsOf<Layout>>, kRunSteps * kLength> symbols;
  std::array<SampleStrip, 2> strips;
  SampleStrip above;
  // A strip that is not full is drained to its end all the same, so there must be samples.
  for (SampleStrip& strip : strips) strip = {};
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
      PlaceRawSamples<Layout>(ofStrip, count, strip);
    } else {
      if constexpr (FromAbove) {
        FetchStrip<Layout, KeepAlpha>(kept, count, above);
        // Left of the first unit both rows have what stands above it.
        if (step == 0) left = leftAbove = FirstSamples(above);
        SetLeft(above, leftAbove);
        leftAbove = LastSamples<Layout>(above);
      }
      SetLeft(strip, left);
      RebuildStrip<Layout, FromAbove, KeepAlpha>(ofStrip, count, above, strip);
    }
    left = LastSamples<Layout>(strip);
    if (step == 0) firstUnit = FirstSamples(strip);
    if (kept != nullptr) KeepStrip<Layout, KeepAlpha>(strip, count, kept);
    if constexpr (kInPairs<Layout>) {
      if (number > 0) {
        SampleStrip& before = strips[(number + 1) % 2];
        Cells(before.second)[kStripPairs] = Cells(strip.second)[0];
        Cells(before.third)[kStripPairs] = Cells(strip.third)[0];
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
  bool isFirst = true;
  while (source.rowsLeft > 0) {
    if (FrameScan == Scan::p && !isFirst) {
      DecodePlaneRow<Layout, true, KeepAlpha>(source, target, leftOfRow, rowBuffer);
    } else {
      const UnitSamples firstUnit =
          DecodePlaneRow<Layout, false, KeepAlpha>(source, target, leftOfRow, rowBuffer);
      if (Layout.interlacedRowStart == InterlacedRowStart::firstUnitAbove) leftOfRow = firstUnit;
    }
    isFirst = false;
    --source.rowsLeft;
    // The checks behind a row, in their order. The row buffer has been given exactly the samples of the row, so
    // the one that stands between these two cannot fail.
    if (!StepRow(source.walk)) return Status::rowLeftPictureDecode;
    if (IsPastLimit(source.reader, source.limit)) return Status::frameBoundRead;
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
  };
  u8* const rowBuffer = FrameScan == Scan::p ? reinterpret_cast<u8*>(scratch) : nullptr;
  const Status status = DecodePlaneRows<Layout, FrameScan, KeepAlpha>(source, target, rowBuffer);
  StoreCursors(call, source.reader.position);
  return status;
}

}  // namespace vorel::inline VOREL_INSTRUCTIONS
