// Chroma from each pixel to each pair and back. Y' and alpha are not touched.
#pragma once
#include "base/instructions.h"
#include "pixel/lane_arithmetic.h"
#include "pixel/sample_strip.h"

namespace vorel::inline VOREL_INSTRUCTIONS {

// The filter of a strip begins with the pixel left of it, so this is carried from strip to strip: chroma of the
// last pixel, before it was filtered.
struct ChromaCarry {
  i16 cb;
  i16 cr;
};

// A three-tap filter centred on the first pixel of the pair: (C[-1] + 2 * C[0] + C[1]) / 4, rounded up at the
// half. Cell -1 is read. ExtraBits more are cut off in the same step. Values before the cut may have a sign.
template <int ExtraBits>
[[gnu::noinline]] void FilterChroma(const i16* __restrict pixels, i16* __restrict pairs) {
  const Lanes ones = All(1);
  // Left neighbours are not loaded across the vectors that were just stored, for which a processor would wait.
  Lanes before = All(pixels[-1]);
  // Of kLanes / 2 pairs: C[-1] + C[0] and C[0] + C[1] are numbers that lie side by side.
  const auto filter = [&](const i16* pixel) {
    const auto own = LoadNative<Lanes>(pixel);
    const WideLanes sum = SumProducts(MoveUp(own, before), ones) + SumProducts(own, ones);
    before = own;
    return (sum + (2 << ExtraBits)) >> (2 + ExtraBits);
  };
  for (u32 k = 0; k < kStripPairs; k += kLanes) {
    const WideLanes first = filter(pixels + 2 * k);
    StoreNative(pairs + k, PackInOrder(first, filter(pixels + 2 * k + kLanes)));
  }
}

static_assert(kStripMargin >= 1);

// The first pixel of a pair takes its chroma, the second the mean of its pair and the next. The cell behind
// the last pair is read.
[[gnu::noinline]] inline void InterpolateChroma(const i16* __restrict pairs, i16* __restrict pixels) {
  for (u32 k = 0; k < kStripPairs; k += kLanes) {
    const auto own = LoadNative<Lanes>(pairs + k);
    StoreInterleaved(own, MeanOf(own, LoadNative<Lanes>(pairs + k + 1)), pixels + 2 * k);
  }
}

}  // namespace vorel::inline VOREL_INSTRUCTIONS
