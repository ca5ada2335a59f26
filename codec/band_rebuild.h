// Samples from residuals for later rows of progressive frames, where every sample waits for its left neighbour and for
// the row above. The rows of a band are rebuilt together, each one sample behind the row above it: the rows are the
// lanes of a vector. The rules are those of codec/plane_prediction.h.
#pragma once
#include "base/lanes.h"
#include "codec/plane_prediction.h"
#include "pixel/sample_strip.h"

namespace vorel::inline VOREL_INSTRUCTIONS {

inline constexpr u32 kBandLanes = kLanes;

// The last row is that many samples behind the first.
inline constexpr i32 kLastRowLag = static_cast<i32>(kBandLanes) - 1;
static_assert(kLastRowLag < static_cast<i32>(kStripMargin));

// Strips of rows lie so far apart that no load of a square has the low twelve bits of the address that a store of the
// square before it had: a processor would take the one for the other and wait.
struct BandStrip : SampleStrip {
  std::array<u8, 160> apart;
};

// A strip of each row of a band: residuals, which become samples; rows above a raw one too. Cells left of the strips
// hold the samples that stand there.
struct BandStrips {
  std::array<BandStrip, kBandLanes> rows;
};

// What all steps of a run have in common.
struct BandRun {
  bool startsRows;  // nothing is left of the strips: L and TL are T there
  Lanes predicted;  // all ones in the lanes of rows that hold residuals, zeros in those of raw rows
};

// Goes through `count` samples of planes of a band. Cells on both sides of the strips, as far as kLastRowLag and a whole
// square, are overwritten.
//
// Instances are made in codec/band_rebuild.cpp, for the planes that layouts ask for together; others do not link.
template <Rule UsedRule, i16 Mask, bool AnyRaw, SamplePlane SampleStrip::*... Planes>
void RebuildPlanes(BandStrips& band, const SampleStrip& above, u32 count, const BandRun& run);

}  // namespace vorel::inline VOREL_INSTRUCTIONS
