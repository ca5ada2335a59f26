// Samples of a strip from its symbols: the inverse of codec/plane_prediction.h, where every sample waits for its
// left neighbour. The components of a pixel do not wait for each other, so their chains run side by side.
#pragma once
#include "base/instructions.h"
#include "codec/strip_symbols.h"

namespace vorel::inline VOREL_INSTRUCTIONS {

// The sample that a residual stands for. `left` is the sample before, and becomes this one.
template <Rule UsedRule, i16 Mask>
inline i16 RebuildSample(i32& left, i32 residual, const i16* above, u32 i) {
  const std::ptrdiff_t at = static_cast<std::ptrdiff_t>(i);
  i32 prediction = left;
  if constexpr (UsedRule == Rule::planarBlend) prediction = (3 * (left + above[at]) - 2 * above[at - 1]) >> 2;
  if constexpr (UsedRule == Rule::halfGradient) prediction = above[at] + ((left - above[at - 1]) >> 1);
  left = (prediction + residual) & Mask;
  return static_cast<i16>(left);
}

// `symbols` are those of `steps` steps in the order of the stream. Cells left of both strips are set. Alpha that
// the picture has no place for is passed over.
template <const FrameLayout& Layout, bool FromAbove, bool KeepAlpha>
[[gnu::noinline]] void RebuildStrip(const SampleOf<kSymbolsOf<Layout>>* symbols, u32 steps,
                                    const SampleStrip& rowAbove, SampleStrip& strip) {
  constexpr i16 kMask = kSampleMask<Layout>;
  constexpr Rule kRule = FromAbove ? Rule::planarBlend : Rule::leftOnly;
  constexpr u32 kLength = kStepLength<Layout>;
  constexpr u32 kFirst = Layout.samples.alpha ? 1 : 0;
  const i16* const aboveFirst = Cells(rowAbove.first);
  const i16* const aboveSecond = Cells(rowAbove.second);
  const i16* const aboveThird = Cells(rowAbove.third);
  const i16* const aboveAlpha = Cells(rowAbove.alpha);
  i16* __restrict first = Cells(strip.first);
  i16* __restrict second = Cells(strip.second);
  i16* __restrict third = Cells(strip.third);
  i16* __restrict alpha = Cells(strip.alpha);
  i32 leftFirst = first[-1];
  i32 leftSecond = second[-1];
  i32 leftThird = third[-1];
  [[maybe_unused]] i32 leftAlpha = KeepAlpha ? alpha[-1] : 0;
  if constexpr (kInPairs<Layout>) {
    constexpr Rule kChroma = FromAbove ? Rule::halfGradient : Rule::leftOnly;
    for (u32 k = 0; k < steps / 2; ++k) {
      const auto* const pair = symbols + std::size_t{k} * 2 * kLength;
      first[2 * k] = RebuildSample<kRule, kMask>(leftFirst, pair[kFirst], aboveFirst, 2 * k);
      second[k] = RebuildSample<kChroma, kMask>(leftSecond, pair[kFirst + 1], aboveSecond, k);
      first[2 * k + 1] =
          RebuildSample<kRule, kMask>(leftFirst, pair[kLength + kFirst], aboveFirst, 2 * k + 1);
      third[k] = RebuildSample<kChroma, kMask>(leftThird, pair[kLength + kFirst + 1], aboveThird, k);
      if constexpr (KeepAlpha) {
        alpha[2 * k] = RebuildSample<kRule, kMask>(leftAlpha, pair[0], aboveAlpha, 2 * k);
        alpha[2 * k + 1] = RebuildSample<kRule, kMask>(leftAlpha, pair[kLength], aboveAlpha, 2 * k + 1);
      }
    }
  } else {
    for (u32 i = 0; i < steps; ++i) {
      const auto* const pixel = symbols + std::size_t{i} * kLength;
      i32 residual = pixel[kFirst];
      first[i] = RebuildSample<kRule, kMask>(leftFirst, residual, aboveFirst, i);
      residual = pixel[kFirst + 1] + (Layout.samples.model == ColourModel::rgb ? residual : 0);
      second[i] = RebuildSample<kRule, kMask>(leftSecond, residual, aboveSecond, i);
      residual = pixel[kFirst + 2] + (Layout.samples.model == ColourModel::rgb ? residual : 0);
      third[i] = RebuildSample<kRule, kMask>(leftThird, residual, aboveThird, i);
      if constexpr (KeepAlpha) alpha[i] = RebuildSample<kRule, kMask>(leftAlpha, pixel[0], aboveAlpha, i);
    }
  }
}

// The samples of a raw row.
template <const FrameLayout& Layout>
[[gnu::noinline]] void PlaceRawSamples(const SampleOf<kSymbolsOf<Layout>>* samples, u32 steps,
                                       SampleStrip& strip) {
  constexpr u32 kLength = kStepLength<Layout>;
  constexpr u32 kFirst = Layout.samples.alpha ? 1 : 0;
  for (u32 i = 0; i < steps; ++i) {
    const auto* const step = samples + std::size_t{i} * kLength;
    if constexpr (Layout.samples.alpha) Cells(strip.alpha)[i] = static_cast<i16>(step[0]);
    Cells(strip.first)[i] = static_cast<i16>(step[kFirst]);
    if constexpr (kInPairs<Layout>) {
      Cells(i % 2 == 0 ? strip.second : strip.third)[i / 2] = static_cast<i16>(step[kFirst + 1]);
    } else {
      Cells(strip.second)[i] = static_cast<i16>(step[kFirst + 1]);
      Cells(strip.third)[i] = static_cast<i16>(step[kFirst + 2]);
    }
  }
}

}  // namespace vorel::inline VOREL_INSTRUCTIONS
