// Strips of a band in which nothing happens: all around them and above them is one colour, and all residuals are zero.
// Their samples are those above. Screens and titles are mostly made of them.
#pragma once
#include "base/instructions.h"
#include "codec/strip_rebuild.h"

namespace vorel::inline VOREL_INSTRUCTIONS {

// Whether the residuals of a strip are zero. Most are told by the first of them.
template <const FrameLayout& Layout>
bool AreZeroResiduals(const SampleOf<kSymbolsOf<Layout>>* symbols, u32 steps) {
  const u8* const bytes = reinterpret_cast<const u8*>(symbols);
  return LoadNative<u64>(bytes) == 0 && AreZero(bytes, steps * kStepLength<Layout> * sizeof *symbols);
}

inline bool AreAll(const SamplePlane& plane, u32 count, i16 sample) {
  u16 other = 0;
  for (u32 i = 0; i < count; ++i) other |= static_cast<u16>(Cells(plane)[i] ^ sample);
  return other == 0;
}

template <bool KeepAlpha>
bool AreSame(const UnitSamples& a, const UnitSamples& b) {
  return a.first == b.first && a.second == b.second && a.third == b.third &&
         (!KeepAlpha || a.alpha == b.alpha);
}

// Whether the first `steps` steps of a strip have the samples `colour`.
template <const FrameLayout& Layout, bool KeepAlpha>
bool AreAll(const SampleStrip& strip, u32 steps, const UnitSamples& colour) {
  const u32 others = kInPairs<Layout> ? steps / 2 : steps;
  return AreAll(strip.first, steps, colour.first) && AreAll(strip.second, others, colour.second) &&
         AreAll(strip.third, others, colour.third) &&
         (!KeepAlpha || AreAll(strip.alpha, steps, colour.alpha));
}

template <const FrameLayout& Layout, bool KeepAlpha>
void CopyStrip(const SampleStrip& from, SampleStrip& to) {
  const auto copy = [&](SamplePlane SampleStrip::*plane, u32 count) {
    std::memcpy(Cells(to.*plane), Cells(from.*plane), count * sizeof(i16));
  };
  constexpr u32 kOthers = kInPairs<Layout> ? kStripPairs : kStripPixels;
  copy(&SampleStrip::first, kStripPixels);
  copy(&SampleStrip::second, kOthers);
  copy(&SampleStrip::third, kOthers);
  if constexpr (KeepAlpha) copy(&SampleStrip::alpha, kStripPixels);
}

}  // namespace vorel::inline VOREL_INSTRUCTIONS
