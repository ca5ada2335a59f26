// The symbols of a strip, plane by plane, and their order in the stream.
//
// A step is a pixel: [alpha,] Y', Cb, Cr or [alpha,] red, green, blue. In pairs it is [alpha,] Y', chroma, where
// the first pixel has Cb and the second Cr.
#pragma once
#include <array>

#include "base/instructions.h"
#include "codec/plane_prediction.h"
#include "entropy/row_codes.h"
#include "entropy/symbol_writer.h"
#include "frame/frame_layout.h"

namespace vorel::inline VOREL_INSTRUCTIONS {

template <const FrameLayout& Layout>
inline constexpr u32 kStepLength = PatternOf(Layout).length;
template <const FrameLayout& Layout>
inline constexpr bool kInPairs = Layout.samples.unit == Unit::pair;
template <const FrameLayout& Layout>
inline constexpr i16 kSampleMask = static_cast<i16>((1 << Layout.samples.bits) - 1);

// Of the cells behind a strip the first is read; it is of no account.
struct SymbolPlane {
  alignas(32) u16 cells[kIndexPitch];
};
static_assert(kIndexPitch > kStripPixels && kIndexPitch % 16 == 0);

// Residuals, or the samples of a raw row.
struct StripSymbols {
  SymbolPlane alpha;
  SymbolPlane first;
  SymbolPlane second;  // of pairs: Cb and Cr by turns
  SymbolPlane third;
};

// In the order of the stream.
template <const FrameLayout& Layout>
std::array<const u16*, kStepLength<Layout>> InOrder(const StripSymbols& symbols) {
  const u16* const a = symbols.alpha.cells;
  const u16* const y = symbols.first.cells;
  const u16* const b = symbols.second.cells;
  if constexpr (kInPairs<Layout>) {
    if constexpr (Layout.samples.alpha)
      return {a, y, b};
    else
      return {y, b};
  } else {
    const u16* const r = symbols.third.cells;
    if constexpr (Layout.samples.alpha)
      return {a, y, b, r};
    else
      return {y, b, r};
  }
}

// Residuals of a strip, as the encoder looks their codes up; see StepCells.
template <const FrameLayout& Layout>
struct StripIndexes {
  std::array<SymbolPlane, PairsUntilRepeat(kStepLength<Layout>)> pairs;
  StripSymbols symbols;
};

template <const FrameLayout& Layout>
StepCells<kStepLength<Layout>> CellsOf(const StripIndexes<Layout>& strip) {
  return {strip.pairs[0].cells, InOrder<Layout>(strip.symbols)};
}

// Cells left of both strips are set.
template <const FrameLayout& Layout, bool FromAbove>
void PredictStrip(const SampleStrip& row, const SampleStrip& above, StripIndexes<Layout>& strip) {
  constexpr int kSymbols = kSymbolsOf<Layout>;
  constexpr u16 kMask = kSampleMask<Layout>;
  constexpr Rule kRule = FromAbove ? Rule::planarBlend : Rule::leftOnly;
  constexpr Rule kChroma = FromAbove ? Rule::halfGradient : Rule::leftOnly;
  StripSymbols& symbols = strip.symbols;
  PredictPlane<kRule, kMask>(Cells(row.first), Cells(above.first), symbols.first.cells);
  if constexpr (kInPairs<Layout>) {
    PredictChroma<kChroma, kMask>(Cells(row.second), Cells(above.second), Cells(row.third),
                                  Cells(above.third), symbols.second.cells);
  } else {
    PredictPlane<kRule, kMask>(Cells(row.second), Cells(above.second), symbols.second.cells);
    PredictPlane<kRule, kMask>(Cells(row.third), Cells(above.third), symbols.third.cells);
    if constexpr (Layout.samples.model == ColourModel::rgb)
      ChainColours<kMask>(symbols.first.cells, symbols.second.cells, symbols.third.cells);
  }
  if constexpr (Layout.samples.alpha)
    PredictPlane<kRule, kMask>(Cells(row.alpha), Cells(above.alpha), symbols.alpha.cells);
  const auto planes = InOrder<Layout>(symbols);
  for (u32 pair = 0; pair < strip.pairs.size(); ++pair) {
    const u32 first = FirstOfPair(kStepLength<Layout>, pair);
    const bool endsInNextStep = first + 1 == planes.size();
    IndexPairs<kSymbols>(planes[first], endsInNextStep ? planes[0] + 1 : planes[first + 1],
                         strip.pairs[pair].cells);
  }
}

// The samples themselves, for raw rows.
template <const FrameLayout& Layout>
void CopySamples(const SampleStrip& row, StripSymbols& symbols) {
  const auto copy = [](const SamplePlane& from, SymbolPlane& to) {
    for (u32 i = 0; i < kStripPixels; ++i) to.cells[i] = static_cast<u16>(Cells(from)[i]);
  };
  copy(row.first, symbols.first);
  if constexpr (kInPairs<Layout>) {
    for (u32 i = 0; i < kStripPairs; ++i) {
      symbols.second.cells[2 * i] = static_cast<u16>(Cells(row.second)[i]);
      symbols.second.cells[2 * i + 1] = static_cast<u16>(Cells(row.third)[i]);
    }
  } else {
    copy(row.second, symbols.second);
    copy(row.third, symbols.third);
  }
  if constexpr (Layout.samples.alpha) copy(row.alpha, symbols.alpha);
}

// ---- What stands left of a row

// One sample of each component: of the first unit of a row, or the start values.
struct UnitSamples {
  i16 first;
  i16 second;
  i16 third;
  i16 alpha;
};

template <const FrameLayout& Layout, Scan FrameScan>
inline constexpr UnitSamples kStartOfFrame = {Layout.start.luma, Layout.start.chroma, Layout.start.chroma,
                                              Layout.samples.model == ColourModel::rgb ? Layout.start.luma
                                              : FrameScan == Scan::p ? Layout.start.alphaProgressive
                                                                     : Layout.start.alphaInterlaced};

inline UnitSamples SamplesAt(const SampleStrip& strip, i32 pixel, i32 chroma) {
  return {Cells(strip.first)[pixel], Cells(strip.second)[chroma], Cells(strip.third)[chroma],
          Cells(strip.alpha)[pixel]};
}
inline UnitSamples FirstSamples(const SampleStrip& strip) {
  return SamplesAt(strip, 0, 0);
}
template <const FrameLayout& Layout>
UnitSamples LastSamples(const SampleStrip& strip) {
  return SamplesAt(strip, kStripPixels - 1, kInPairs<Layout> ? kStripPairs - 1 : kStripPixels - 1);
}
inline void SetLeft(SampleStrip& strip, const UnitSamples& samples) {
  Cells(strip.first)[-1] = samples.first;
  Cells(strip.second)[-1] = samples.second;
  Cells(strip.third)[-1] = samples.third;
  Cells(strip.alpha)[-1] = samples.alpha;
}

}  // namespace vorel::inline VOREL_INSTRUCTIONS
