// The row loop of a decoder for any frame layout, from frame to picture. It knows samples; pixel formats begin in
// the function that drains a strip.
#pragma once
#include "base/instructions.h"
#include "codec/band_rebuild.h"
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
  RunGuess guess;
};

// Takes `count` steps of the current row, symbols or samples, of which `behind` follow in the row. Zeros are put behind
// them: strips are taken in whole vectors, and a conversion must not meet numbers that no sample has.
template <const FrameLayout& Layout>
void GetSteps(PlaneSource<Layout>& source, bool raw, SampleOf<kSymbolsOf<Layout>>* out, u32 count,
              u32 behind) {
  constexpr std::size_t kLength = kStepLength<Layout>;
  std::memset(out + count * kLength, 0, kReadBehindSymbols<Layout> * sizeof *out);
  if (raw) {
    GetRawSamples<Layout.samples.bits>(source.reader, out, count * kLength);
    return;
  }
  // A row takes a bit and at least a bit a symbol.
  const u64 bitsBehind = (source.rowsLeft - u64{1}) * (1 + u64{source.steps} * kLength) + behind * kLength;
  const u64 withinLimit = BitsToLimit(source.reader, source.limit, count * kLength);
  GetSymbols<NativeWindow, kSymbolsOf<Layout>>(source.reader, *source.codes, out, count * kLength,
                                               std::min(bitsBehind, withinLimit), source.guess);
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

// Puts the first chroma of a strip behind that of the strip before it.
inline void SetNextChroma(SampleStrip& before, const SampleStrip& strip) {
  Cells(before.second)[kStripPairs] = Cells(strip.second)[0];
  Cells(before.third)[kStripPairs] = Cells(strip.third)[0];
}

// Decodes a row into the picture. `rowBuffer` holds the row above if FromAbove, and holds this row afterwards; it
// is null where no row follows that needs one. Gives the samples of the first unit.
template <const FrameLayout& Layout, bool FromAbove, bool KeepAlpha>
[[gnu::noinline]] UnitSamples DecodePlaneRow(PlaneSource<Layout>& source, const PictureTarget& target,
                                             const UnitSamples& leftOfRow, u8* rowBuffer) {
  constexpr std::size_t kLength = kStepLength<Layout>;
  std::array<SampleOf<kSymbolsOf<Layout>>, kRunSteps * kLength + kReadBehindSymbols<Layout>> symbols;
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

// ---- Bands of rows

// Symbols of the rows of a band, one row after another.
inline constexpr std::size_t kBandSymbolBytes = std::size_t{sizeof(void*) == 8 ? 256 : 96} << 10;

// Bytes that the symbols of a row take in a band.
template <const FrameLayout& Layout>
constexpr std::size_t SymbolRowBytes(u32 steps) {
  return (std::size_t{steps} * kStepLength<Layout> +
          kReadBehindSymbols<Layout>)*sizeof(SampleOf<kSymbolsOf<Layout>>);
}

// Rows that a band has at this width; fewer than two are not worth one.
template <const FrameLayout& Layout>
u32 RowsOfBand(u32 steps) {
  return static_cast<u32>(
      std::min<std::size_t>(kBandLanes, kBandSymbolBytes / SymbolRowBytes<Layout>(steps)));
}

// The symbols of a band, and what there is to know of its rows.
template <const FrameLayout& Layout>
struct BandSymbols {
  using Sample = SampleOf<kSymbolsOf<Layout>>;
  alignas(32) std::array<u8, kBandSymbolBytes> bytes;
  std::size_t rowBytes;
  u32 rows;     // how many were read
  u32 rawRows;  // bit r is set if row r holds samples and not symbols

  Sample* Row(u32 r) { return reinterpret_cast<Sample*>(bytes.data() + r * rowBytes); }
};

// The checks behind a row, in their order. The row buffer has been given exactly the samples of the row, so the one that
// stands between these two cannot fail.
template <const FrameLayout& Layout>
Status FinishRow(PlaneSource<Layout>& source) {
  --source.rowsLeft;
  if (!StepRow(source.walk)) return Status::rowLeftPictureDecode;
  return IsPastLimit(source.reader, source.limit) ? Status::frameBoundRead : Status::complete;
}

// Reads up to `wanted` rows, as far as they pass their checks; the row that fails is the last one.
template <const FrameLayout& Layout>
[[gnu::noinline]] Status GetBand(PlaneSource<Layout>& source, u32 wanted, BandSymbols<Layout>& symbols) {
  symbols.rows = 0;
  symbols.rawRows = 0;
  Status status = Status::complete;
  while (symbols.rows < wanted && status == Status::complete) {
    const bool raw = GetBit(source.reader) != 0;
    symbols.rawRows |= u32{raw} << symbols.rows;
    GetSteps<Layout>(source, raw, symbols.Row(symbols.rows), source.steps, 0);
    ++symbols.rows;
    status = FinishRow(source);
  }
  return status;
}

template <const FrameLayout& Layout, bool KeepAlpha, bool AnyRaw>
void RebuildBandStrips(BandStrips& band, const SampleStrip& above, u32 steps, const BandRun& run) {
  using Strip = SampleStrip;
  constexpr i16 kMask = kSampleMask<Layout>;
  constexpr Rule kBlend = Rule::planarBlend;
  if constexpr (kInPairs<Layout>) {
    RebuildPlanes<Rule::halfGradient, kMask, AnyRaw, &Strip::second, &Strip::third>(band, above, steps / 2,
                                                                                    run);
    if constexpr (KeepAlpha)
      RebuildPlanes<kBlend, kMask, AnyRaw, &Strip::first, &Strip::alpha>(band, above, steps, run);
    else
      RebuildPlanes<kBlend, kMask, AnyRaw, &Strip::first>(band, above, steps, run);
  } else {
    RebuildPlanes<kBlend, kMask, AnyRaw, &Strip::first, &Strip::second>(band, above, steps, run);
    if constexpr (KeepAlpha)
      RebuildPlanes<kBlend, kMask, AnyRaw, &Strip::third, &Strip::alpha>(band, above, steps, run);
    else
      RebuildPlanes<kBlend, kMask, AnyRaw, &Strip::third>(band, above, steps, run);
  }
}

inline Lanes LanesOfPredictedRows(u32 rawRows) {
  Lanes predicted;
  for (u32 r = 0; r < kLanes; ++r) predicted[r] = (rawRows >> r & 1) != 0 ? i16{0} : i16{-1};
  return predicted;
}

// Rebuilds the rows of a band strip by strip and drains them. `rowBuffer` holds the row above the band, and holds its
// last row afterwards. `target` is the first row in the picture.
template <const FrameLayout& Layout, bool KeepAlpha>
[[gnu::noinline]] void DrainBand(BandSymbols<Layout>& symbols, const PlaneSource<Layout>& source,
                                 const PictureTarget& target, u8* firstRow, u8* rowBuffer,
                                 std::array<BandStrips, kInPairs<Layout> ? 2 : 1>& bands) {
  std::array<RowDrain, kBandLanes> drains;
  std::array<UnitSamples, kBandLanes> left = {};
  for (u32 r = 0; r < symbols.rows; ++r)
    drains[r] = {&target, firstRow + static_cast<std::intptr_t>(r) * source.walk.step, source.width, {}};
  SampleStrip above = {};
  UnitSamples leftAbove = {};
  BandRun run = {true, LanesOfPredictedRows(symbols.rawRows)};
  u32 number = 0;
  const auto drainAll = [&](BandStrips& band, u32 strip) {
    for (u32 r = 0; r < symbols.rows; ++r) DrainOne(drains[r], band.rows[r], strip);
  };
  for (u32 step = 0; step < source.steps; step += kStripPixels, ++number) {
    const u32 count = std::min(kStripPixels, source.steps - step);
    BandStrips& band = bands[number % bands.size()];
    u8* const kept = rowBuffer + RowBufferBytes<Layout, KeepAlpha>(step);
    FetchStrip<Layout, KeepAlpha>(kept, count, above);
    SetLeft(above, leftAbove);
    leftAbove = LastSamples<Layout>(above);
    for (u32 r = 0; r < symbols.rows; ++r) {
      SampleStrip& strip = band.rows[r];
      const auto* const ofStrip = symbols.Row(r) + std::size_t{step} * kStepLength<Layout>;
      if ((symbols.rawRows >> r & 1) != 0)
        PlaceSymbols<Layout>(ofStrip, count, strip);
      else
        PlaceResiduals<Layout>(ofStrip, count, strip);
      SetLeft(strip, left[r]);
    }
    if (symbols.rawRows == 0)
      RebuildBandStrips<Layout, KeepAlpha, false>(band, above, count, run);
    else
      RebuildBandStrips<Layout, KeepAlpha, true>(band, above, count, run);
    run.startsRows = false;
    for (u32 r = 0; r < symbols.rows; ++r) left[r] = LastSamples<Layout>(band.rows[r]);
    KeepStrip<Layout, KeepAlpha>(band.rows[symbols.rows - 1], count, kept);
    if constexpr (kInPairs<Layout>) {
      if (number > 0) {
        BandStrips& before = bands[(number + 1) % 2];
        for (u32 r = 0; r < symbols.rows; ++r) SetNextChroma(before.rows[r], band.rows[r]);
        drainAll(before, number - 1);
      }
    } else {
      drainAll(band, number);
    }
  }
  if constexpr (kInPairs<Layout>) drainAll(bands[(number - 1) % 2], number - 1);
}

// Decodes the later rows of a progressive frame band by band.
template <const FrameLayout& Layout, bool KeepAlpha>
[[gnu::noinline]] Status DecodePlaneBands(PlaneSource<Layout>& source, const PictureTarget& target,
                                          u8* rowBuffer) {
  BandSymbols<Layout> symbols;
  symbols.rowBytes = SymbolRowBytes<Layout>(source.steps);
  // Lanes without a row, and cells behind the end of one, must hold something.
  std::array<BandStrips, kInPairs<Layout> ? 2 : 1> bands = {};
  const u32 rows = RowsOfBand<Layout>(source.steps);
  while (source.rowsLeft > 0) {
    u8* const firstRow = CurrentRow(source.walk);
    const Status status = GetBand(source, std::min(rows, source.rowsLeft), symbols);
    DrainBand<Layout, KeepAlpha>(symbols, source, target, firstRow, rowBuffer, bands);
    if (status != Status::complete) return status;
  }
  return Status::complete;
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
