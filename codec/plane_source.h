// What a decoder of any frame layout takes symbols from, and where the strips of a row go.
#pragma once
#include "base/instructions.h"
#include "codec/strip_rebuild.h"
#include "entropy/symbol_reader.h"
#include "frame/frame_limits.h"
#include "frame/row_walk.h"
#include "frame/status.h"
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

// The checks behind a row, in their order. The row buffer has been given exactly the samples of the row, so the one that
// stands between these two cannot fail.
template <const FrameLayout& Layout>
Status FinishRow(PlaneSource<Layout>& source) {
  --source.rowsLeft;
  if (!StepRow(source.walk)) return Status::rowLeftPictureDecode;
  return IsPastLimit(source.reader, source.limit) ? Status::frameBoundRead : Status::complete;
}

}  // namespace vorel::inline VOREL_INSTRUCTIONS
