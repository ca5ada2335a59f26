// Samples of a strip from its symbols, row by row: the inverse of codec/plane_prediction.h. Rows whose samples lean on the
// row above too are rebuilt many at once where that can be, see codec/band_rebuild.h.
#pragma once
#include "base/lanes.h"
#include "codec/strip_symbols.h"
#include "pixel/split_streams.h"

namespace vorel::inline VOREL_INSTRUCTIONS {

// Samples that may be read behind the symbols of a strip.
template <const FrameLayout& Layout>
inline constexpr std::size_t kReadBehindSymbols = std::size_t{32} * kStepLength<Layout>;

// The symbols of `steps` steps, in the order of the stream, into the planes of a strip.
template <const FrameLayout& Layout>
[[gnu::noinline]] void PlaceSymbols(const SampleOf<kSymbolsOf<Layout>>* symbols, u32 steps,
                                    SampleStrip& strip) {
  constexpr std::size_t kLength = kStepLength<Layout>;
  const auto split = [&](const std::array<i16*, kLength>& planes) { SplitStreams(symbols, steps, planes); };
  i16* const first = Cells(strip.first);
  if constexpr (kInPairs<Layout> && !Layout.samples.alpha) {
    SplitPairs(symbols, steps, first, Cells(strip.second), Cells(strip.third));
  } else if constexpr (kInPairs<Layout>) {
    alignas(32) std::array<i16, kStripPixels> chroma = {};  // more of it is read than was written
    split({Cells(strip.alpha), first, chroma.data()});
    SplitStreams(reinterpret_cast<const u16*>(chroma.data()), (steps + 1) / 2,
                 std::array{Cells(strip.second), Cells(strip.third)});
  } else if constexpr (Layout.samples.alpha) {
    split({Cells(strip.alpha), first, Cells(strip.second), Cells(strip.third)});
  } else {
    split({first, Cells(strip.second), Cells(strip.third)});
  }
}

// Errors of the later colours from differences to the error of the colour before. They are not cut to the alphabet.
[[gnu::noinline]] inline void UnchainColours(SampleStrip& strip) {
  const i16* __restrict first = Cells(strip.first);
  i16* __restrict second = Cells(strip.second);
  i16* __restrict third = Cells(strip.third);
  for (u32 i = 0; i < kStripPixels; ++i) {
    second[i] = static_cast<i16>(second[i] + first[i]);
    third[i] = static_cast<i16>(third[i] + second[i]);
  }
}

// Residuals of a strip from its symbols.
template <const FrameLayout& Layout>
void PlaceResiduals(const SampleOf<kSymbolsOf<Layout>>* symbols, u32 steps, SampleStrip& strip) {
  PlaceSymbols<Layout>(symbols, steps, strip);
  if constexpr (Layout.samples.model == ColourModel::rgb) UnchainColours(strip);
}

#ifdef __AVX2__

// The last sum of a vector in all lanes, and sums of the lanes up to each.
inline Lanes EndOfParts(WrappingLanes sums) {
  static constexpr auto kLast = OrderOfBytes([](int i) { return 14 + i % 2; });
  return ReorderBytes((Lanes)sums, kLast);
}
inline WrappingLanes EndOf(WrappingLanes sums) {
  return (WrappingLanes)SecondPartInBoth(EndOfParts(sums));
}
inline WrappingLanes SumLanes(WrappingLanes sums) {
  const auto addUp = [&]<int Distance>(std::integral_constant<int, Distance> /*lanes*/) {
    static constexpr auto kUp = OrderOfBytes([](int i) { return i - 2 * Distance; });
    sums += (WrappingLanes)ReorderBytes((Lanes)sums, kUp);
  };
  addUp(std::integral_constant<int, 1>());
  addUp(std::integral_constant<int, 2>());
  addUp(std::integral_constant<int, 4>());
  return sums + (WrappingLanes)FirstPartAsSecond(EndOfParts(sums));
}

#else

template <int Distance, int... To>
inline WrappingLanes MoveUpBy(WrappingLanes value, std::integer_sequence<int, To...> /*lanes*/) {
  const WrappingLanes zero = {};
  return __builtin_shufflevector(zero, value, (To < Distance ? To : 8 + To - Distance)...);
}

// The last sum of a vector in all lanes, and sums of the lanes up to each.
inline WrappingLanes EndOf(WrappingLanes sums) {
  return __builtin_shufflevector(sums, sums, 7, 7, 7, 7, 7, 7, 7, 7);
}
inline WrappingLanes SumLanes(WrappingLanes sums) {
  constexpr auto kEach = std::make_integer_sequence<int, static_cast<int>(kLanes)>();
  sums += MoveUpBy<1>(sums, kEach);
  sums += MoveUpBy<2>(sums, kEach);
  return sums + MoveUpBy<4>(sums, kEach);
}

#endif

// left-only rule: running sums behind cell -1. A whole vector may be changed behind `count` cells.
template <u16 Mask>
[[gnu::noinline]] void SumFromLeft(i16* cells, u32 count) {
  // Sums within a vector wait for nothing before it.
  WrappingLanes carry = WrappingLanes{} + static_cast<u16>(cells[-1]);
  for (u32 i = 0; i < count; i += kLanes) {
    const WrappingLanes sums = SumLanes(LoadNative<WrappingLanes>(cells + i));
    StoreNative(cells + i, (sums + carry) & Mask);
    carry += EndOf(sums);
  }
}

// A rule that leans on the row above, one sample after another.
template <Rule UsedRule, i16 Mask>
[[gnu::noinline]] void RebuildFromAbove(i16* cells, const i16* above, u32 count) {
  i32 left = cells[-1];
  for (i32 i = 0; i < static_cast<i32>(count); ++i) {
    const i32 prediction = UsedRule == Rule::planarBlend ? (3 * (left + above[i]) - 2 * above[i - 1]) >> 2
                                                         : above[i] + ((left - above[i - 1]) >> 1);
    left = (prediction + cells[i]) & Mask;
    cells[i] = static_cast<i16>(left);
  }
}

// The residuals of a strip become its samples. Cells left of it, and of the strip above, are set. Alpha that the picture
// has no place for is passed over.
template <const FrameLayout& Layout, bool FromAbove, bool KeepAlpha>
void RebuildStrip(u32 steps, const SampleStrip& above, SampleStrip& strip) {
  constexpr i16 kMask = kSampleMask<Layout>;
  const auto rebuild = [&]<Rule UsedRule>(std::integral_constant<Rule, UsedRule> /*rule*/,
                                          SamplePlane SampleStrip::*plane, u32 count) {
    if constexpr (FromAbove)
      RebuildFromAbove<UsedRule, kMask>(Cells(strip.*plane), Cells(above.*plane), count);
    else
      SumFromLeft<kMask>(Cells(strip.*plane), count);
  };
  constexpr std::integral_constant<Rule, Rule::planarBlend> kBlend;
  constexpr std::integral_constant<Rule, kInPairs<Layout> ? Rule::halfGradient : Rule::planarBlend> kSecond;
  const u32 others = kInPairs<Layout> ? steps / 2 : steps;
  rebuild(kBlend, &SampleStrip::first, steps);
  rebuild(kSecond, &SampleStrip::second, others);
  rebuild(kSecond, &SampleStrip::third, others);
  if constexpr (KeepAlpha) rebuild(kBlend, &SampleStrip::alpha, steps);
}

}  // namespace vorel::inline VOREL_INSTRUCTIONS
