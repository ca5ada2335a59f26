// Which tables the rows of a frame layout are coded with.
#pragma once
#include "base/instructions.h"
#include "entropy/symbol_codes.h"
#include "entropy/symbol_groups.h"
#include "frame/frame_layout.h"

namespace vorel::inline VOREL_INSTRUCTIONS {

// The classes of a pixel's samples in the order of the stream. In pairs each pixel has one of the two chroma
// samples behind its Y'.
constexpr ClassPattern PatternOf(const FrameLayout& layout) {
  if (layout.samples.unit == Unit::pair) return layout.samples.alpha ? kPatternBAB : kPatternAB;
  return layout.samples.alpha ? kPatternABAA : kPatternBAA;
}

template <CodeSetId Id>
constexpr const auto& CodeSetOf() {
  if constexpr (Id == CodeSetId::wide8Progressive) return kWide8Progressive;
  if constexpr (Id == CodeSetId::wide8Interlaced) return kWide8Interlaced;
  if constexpr (Id == CodeSetId::video8Progressive422) return kVideo8Progressive422;
  if constexpr (Id == CodeSetId::video8Interlaced422) return kVideo8Interlaced422;
  if constexpr (Id == CodeSetId::video10Progressive422) return kVideo10Progressive422;
  if constexpr (Id == CodeSetId::video10Interlaced422) return kVideo10Interlaced422;
  if constexpr (Id == CodeSetId::progressive8b444) return kProgressive8b444;
  if constexpr (Id == CodeSetId::interlaced8b444) return kInterlaced8b444;
  if constexpr (Id == CodeSetId::video10Progressive444) return kVideo10Progressive444;
  if constexpr (Id == CodeSetId::video10Interlaced444) return kVideo10Interlaced444;
  if constexpr (Id == CodeSetId::rgb8Progressive) return kRgb8Progressive;
  if constexpr (Id == CodeSetId::rgb8Interlaced) return kRgb8Interlaced;
  if constexpr (Id == CodeSetId::rgb10Progressive) return kRgb10Progressive;
  if constexpr (Id == CodeSetId::rgb10Interlaced) return kRgb10Interlaced;
}

template <const FrameLayout& Layout>
inline constexpr int kSymbolsOf = 1 << Layout.samples.bits;

template <const FrameLayout& Layout, Scan FrameScan>
const RowCodes<kSymbolsOf<Layout>>& RowCodesOfLayout() {
  constexpr CodeSetId kId = Layout.codes[Index(FrameScan)];
  return RowCodesOfSet<kSymbolsOf<Layout>, CodeSetOf<kId>(), PatternOf(Layout)>();
}

template <const FrameLayout& Layout, Scan FrameScan>
const SymbolCodes<kSymbolsOf<Layout>>& SymbolCodesOfLayout() {
  constexpr CodeSetId kId = Layout.codes[Index(FrameScan)];
  return SymbolCodesOfSet<kSymbolsOf<Layout>, CodeSetOf<kId>(), PatternOf(Layout)>();
}

}  // namespace vorel::inline VOREL_INSTRUCTIONS
