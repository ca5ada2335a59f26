// The fast row loop of 8-bit 4:2:2 without alpha, from pictures that hold the samples of the frame, byte by byte:
// nothing has to be taken apart into planes.
#pragma once
#include <algorithm>
#include <array>

#include "base/instructions.h"
#include "codec422/pair_prediction.h"
#include "codec422/pair_rebuild.h"
#include "entropy/row_codes.h"
#include "entropy/symbol_writer.h"
#include "frame/frame_limits.h"
#include "frame/row_walk.h"
#include "pixel/pair_strip.h"

namespace vorel::inline VOREL_INSTRUCTIONS {

using Writer = BitWriter<NativeWindow>;

// A pair in stream order as one number, with one Y' for both pixels: what stands left of a row.
constexpr u32 PairWord(PairStart start) {
  return start.luma * 0x00010001u | u32{start.cb} << 8 | u32{start.cr} << 24;
}

// The same from the first pair of a row: its Y'0, Cb and Cr.
template <const PixelLayout& Pixel>
u32 FirstPairWord(const u8* row) {
  PairStrip strip = {};
  const u8* cells = FillPairs<Pixel>(row, 0, 1, 0, strip);
  return PairWord({cells[0], cells[1], cells[3]});
}

// Codes a row strip by strip: `fill` makes the cells of some pairs, `predict` the symbols of the last ones that were made.
//
// Prediction reads cells and their neighbours across the vectors that were stored, for which a processor waits until they
// are in memory. They come there while the strip before is coded.
template <typename Fill, typename Predict>
[[gnu::always_inline]] inline void PutStrips(Writer& writer, const SymbolCodes<256>& codes, u32 pairs,
                                             Fill fill, Predict predict) {
  std::array<u16, kStripPixels> symbols;
  u32 count = std::min(kStripPairs, pairs);
  fill(0, count);
  for (u32 pair = 0; pair < pairs; pair += kStripPairs) {
    predict(symbols.data());
    const u32 now = count;
    if (pairs - pair > kStripPairs) {
      count = std::min(kStripPairs, pairs - pair - kStripPairs);
      fill(pair + kStripPairs, count);
    }
    PutSteps<2>(writer, codes, {symbols.data(), {}}, now * 2);
  }
}

// Codes a row by the left-only rule. `leftOfRow` stands for the pair before the first one: Y', Cb, Y', Cr.
template <const PixelLayout& Pixel>
[[gnu::noinline]] void PutLeftOnlyRow(Writer& writer, const SymbolCodes<256>& codes, const u8* row, u32 pairs,
                                      u32 leftOfRow) {
  PairStrip strip = {};
  const u8* cells = nullptr;
  PutStrips(
      writer, codes, pairs,
      [&](u32 pair, u32 count) { cells = FillPairs<Pixel>(row, pair, count, leftOfRow, strip); },
      [&](u16* symbols) { PredictLeftOnly(cells, symbols); });
}

// Codes a later row of a progressive frame; the row above is read from the source too. Nothing is left of the
// first pair: L and TL are both T there.
template <const FrameLayout& Layout, const PixelLayout& Pixel>
[[gnu::noinline]] void PutRowFromAbove(Writer& writer, const SymbolCodes<256>& codes, const u8* row,
                                       const u8* rowAbove, u32 pairs) {
  PairStrip strip = {};
  PairStrip stripAbove = {};
  const u8* cells = nullptr;
  const u8* above = nullptr;
  const u32 top = FirstPairWord<Pixel>(rowAbove);
  PutStrips(
      writer, codes, pairs,
      [&](u32 pair, u32 count) {
        cells = FillPairs<Pixel>(row, pair, count, top, strip);
        above = FillPairs<Pixel>(rowAbove, pair, count, top, stripAbove);
      },
      [&](u16* symbols) { PredictFromAbove<Layout.chromaSign>(cells, above, symbols); });
}

template <const PixelLayout& Pixel>
[[gnu::noinline]] void PutRawRow(Writer& writer, const u8* row, u32 pairs) {
  PairStrip strip = {};
  for (u32 pair = 0; pair < pairs; pair += kStripPairs) {
    const u32 count = std::min(kStripPairs, pairs - pair);
    PutRawBytes(writer, FillPairs<Pixel>(row, pair, count, 0, strip), count * kPairCellBytes);
  }
}

template <const FrameLayout& Layout, Scan FrameScan, const PixelLayout& Pixel>
Status EncodePairs(const FrameCall& call) {
  const StreamCursor cursor = Fold({*call.wordCursor, *call.bitCursor});
  const u64 limit = FrameLimit<Layout>(call, cursor);
  const u32 pairs = UnitsPerRow(Layout, call.width);
  const SymbolCodes<256>& codes = SymbolCodesOfLayout<Layout, FrameScan>();
  Writer writer = OpenWriter<NativeWindow>(call.frame, cursor, limit);
  RowWalk walk = OpenRowWalk(call.base, call.height, call.rowBytes);
  u32 leftOfRow = PairWord(kFirstRowStart<Layout>);
  Status status = Status::complete;
  for (u32 row = 0; row < call.height; ++row) {
    const u8* source = CurrentRow(walk);
    const Writer rowStart = writer;
    PutBits(writer, NativeWindow{0}, 1);
    if (FrameScan == Scan::p && row != 0) {
      PutRowFromAbove<Layout, Pixel>(writer, codes, source, source - call.rowBytes, pairs);
    } else {
      PutLeftOnlyRow<Pixel>(writer, codes, source, pairs, leftOfRow);
      if (Layout.interlacedRowStart == InterlacedRowStart::firstUnitAbove)
        leftOfRow = FirstPairWord<Pixel>(source);
    }
    const u64 words = (WrittenBits(writer) >> 5) - (WrittenBits(rowStart) >> 5);
    if (!PredictedRowStays(Layout, words, call.width)) {
      // The bound is tested with the attempted row in place: a frame may end here although the raw row would
      // fit.
      if (IsPastLimit(writer, limit)) {
        status = Status::frameBoundWritten;
        break;
      }
      writer = rowStart;
      PutBits(writer, NativeWindow{1}, 1);
      PutRawRow<Pixel>(writer, source, pairs);
    }
    if (!StepRow(walk)) {
      status = Status::rowLeftPictureEncode;
      break;
    }
    if (IsPastLimit(writer, limit)) {
      status = Status::frameBoundWritten;
      break;
    }
  }
  StoreCursors(call, CloseWriter(writer));
  return status;
}

}  // namespace vorel::inline VOREL_INSTRUCTIONS
