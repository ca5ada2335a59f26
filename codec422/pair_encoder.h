// The fast row loop of 8-bit 4:2:2 without alpha, from pictures that hold the samples of the frame, byte by
// byte: nothing has to be taken apart into planes.
#pragma once
#include <algorithm>
#include <array>

#include "codec422/pair_prediction.h"
#include "codec422/pair_rebuild.h"
#include "entropy/row_codes.h"
#include "entropy/row_encoder.h"
#include "pixel/pair_strip.h"

namespace vorel::inline VOREL_INSTRUCTIONS {

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

// Codes a row strip by strip: `fill` makes the cells of some pairs, `predict` the symbols of the last ones
// that were made.
//
// Prediction reads cells and their neighbours across the vectors that were stored, for which a processor
// waits until they are in memory. They come there while the strip before is coded.
template <typename Fill, typename Predict>
[[gnu::always_inline]] inline void PutStrips(RowWriter& writer, const SymbolCodes<256>& codes, u32 pairs,
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
[[gnu::noinline]] void PutLeftOnlyRow(RowWriter& writer, const SymbolCodes<256>& codes, const u8* row,
                                      u32 pairs, u32 leftOfRow) {
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
[[gnu::noinline]] void PutRowFromAbove(RowWriter& writer, const SymbolCodes<256>& codes, const u8* row,
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
[[gnu::noinline]] void PutRawRow(RowWriter& writer, const u8* row, u32 pairs) {
  PairStrip strip = {};
  for (u32 pair = 0; pair < pairs; pair += kStripPairs) {
    const u32 count = std::min(kStripPairs, pairs - pair);
    PutRawBytes(writer, FillPairs<Pixel>(row, pair, count, 0, strip), count * kPairCellBytes);
  }
}

// Codes the rows of such a picture, for EncodeRows.
template <const FrameLayout& Layout, Scan FrameScan, const PixelLayout& Pixel>
struct PairRowCoder {
  const SymbolCodes<256>& codes;
  u32 pairs;
  u32 leftOfRow = PairWord(kFirstRowStart<Layout>);

  void PutPredicted(RowWriter& writer, const u8* row, const u8* rowAbove) {
    if (FrameScan == Scan::p && rowAbove != nullptr) {
      PutRowFromAbove<Layout, Pixel>(writer, codes, row, rowAbove, pairs);
    } else {
      PutLeftOnlyRow<Pixel>(writer, codes, row, pairs, leftOfRow);
      if (Layout.interlacedRowStart == InterlacedRowStart::firstUnitAbove)
        leftOfRow = FirstPairWord<Pixel>(row);
    }
  }
  void PutRaw(RowWriter& writer, const u8* row) const { PutRawRow<Pixel>(writer, row, pairs); }
  void GoOn() {}
};

template <const FrameLayout& Layout, Scan FrameScan, const PixelLayout& Pixel>
Status EncodePairs(const FrameCall& call) {
  PairRowCoder<Layout, FrameScan, Pixel> coder = {SymbolCodesOfLayout<Layout, FrameScan>(),
                                                  UnitsPerRow(Layout, call.width)};
  return EncodeRows<Layout, FrameScan>(call, coder);
}

}  // namespace vorel::inline VOREL_INSTRUCTIONS
