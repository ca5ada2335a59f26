// Later rows of progressive frames many at once: the symbols of a band of rows, then its samples strip by strip.
#pragma once
#include "base/instructions.h"
#include "codec/band_rebuild.h"
#include "codec/flat_strips.h"
#include "codec/plane_source.h"
#include "codec/row_buffer.h"

namespace vorel::inline VOREL_INSTRUCTIONS {

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

// Whether a strip of all rows of a band, `count` steps from `step` on, has nothing but the colour around it.
//
// left, leftAbove  the samples left of it, if it does not begin the rows
template <const FrameLayout& Layout, bool KeepAlpha>
bool IsFlat(BandSymbols<Layout>& symbols, u32 step, u32 count, const SampleStrip& above,
            const UnitSamples& leftAbove, const std::array<UnitSamples, kBandLanes>& left) {
  if (symbols.rawRows != 0) return false;
  for (u32 r = 0; r < symbols.rows; ++r) {
    if (!AreZeroResiduals<Layout>(symbols.Row(r) + std::size_t{step} * kStepLength<Layout>, count))
      return false;
  }
  const UnitSamples colour = FirstSamples(above);
  if (step > 0) {
    if (!AreSame<KeepAlpha>(leftAbove, colour)) return false;
    for (u32 r = 0; r < symbols.rows; ++r) {
      if (!AreSame<KeepAlpha>(left[r], colour)) return false;
    }
  }
  return AreAll<Layout, KeepAlpha>(above, count, colour);
}

// Rebuilds the strips of a band that begin at `step` from their symbols.
template <const FrameLayout& Layout, bool KeepAlpha>
void RebuildStrips(BandStrips& band, BandSymbols<Layout>& symbols, u32 step, u32 count,
                   const SampleStrip& above, const std::array<UnitSamples, kBandLanes>& left,
                   const BandRun& run) {
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
  BandRun run = {true, LanesWithoutBits(symbols.rawRows)};
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
    if (IsFlat<Layout, KeepAlpha>(symbols, step, count, above, leftAbove, left))
      for (u32 r = 0; r < symbols.rows; ++r) CopyStrip<Layout, KeepAlpha>(above, band.rows[r]);
    else
      RebuildStrips<Layout, KeepAlpha>(band, symbols, step, count, above, left, run);
    leftAbove = LastSamples<Layout>(above);
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

}  // namespace vorel::inline VOREL_INSTRUCTIONS
