// The row loop of an encoder for any frame layout, from picture to frame. It knows samples; pixel formats end
// in the function that fills a strip.
#pragma once
#include "base/instructions.h"
#include "codec/strip_symbols.h"
#include "entropy/row_encoder.h"
#include "frame/argument_check.h"
#include "pixel/conversion.h"

namespace vorel::inline VOREL_INSTRUCTIONS {

// How a frame's strips are filled: chosen once a frame, called once a strip.
struct PictureSource {
  void (*fill)(const u8* row, StripPlace place, const ColourWeights& weights, ChromaCarry& carry,
               SampleStrip& strip);
  ColourWeights weights;
};

// Samples of a row and of the row above it stay on the stack up to 4,128 pixels. Of wider rows a strip is
// made when it is needed, and those of the row above are made again.
inline constexpr u32 kKeptStrips = 43;

struct KeptRow {
  std::array<SampleStrip, kKeptStrips> strips;
};

template <const FrameLayout& Layout>
struct RowStrips {
  const PictureSource* source;
  u32 width;
  bool keeps;  // the strips of a row
  KeptRow* now;
  KeptRow* above;

  SampleStrip& At(KeptRow& kept, u32 number) const { return kept.strips[keeps ? number : 0]; }

  // Makes a strip of `row`, with the samples left of it in place, in the kept row or in its first strip. The
  // left neighbour of the first strip is the caller's.
  void Make(KeptRow& kept, const u8* row, u32 number, const UnitSamples& leftOfRow,
            ChromaCarry& carry) const {
    SampleStrip& strip = At(kept, number);
    const UnitSamples left = number == 0 ? leftOfRow : LastSamples<Layout>(At(kept, number - 1));
    source->fill(row, {number * kStripPixels, width}, source->weights, carry, strip);
    SetLeft(strip, left);
  }
};

template <const FrameLayout& Layout>
u32 StepsAt(u32 width, u32 strip) {
  const u32 steps = kInPairs<Layout> ? (width + 1) / 2 * 2 : width;
  return std::min(kStripPixels, steps - strip * kStripPixels);
}

template <const FrameLayout& Layout>
u32 StripsOf(u32 width) {
  return (width + kStripPixels - 1) / kStripPixels;
}

// Codes a row as predicted. Gives the samples of its first unit.
template <const FrameLayout& Layout, bool FromAbove>
[[gnu::noinline]] UnitSamples PutPredictedRow(RowWriter& writer, const SymbolCodes<kSymbolsOf<Layout>>& codes,
                                              const RowStrips<Layout>& rows, const u8* row,
                                              const u8* rowAbove, const UnitSamples& leftOfRow) {
  ChromaCarry carry = {};
  ChromaCarry carryAbove = {};
  UnitSamples left = leftOfRow;
  const auto make = [&](u32 i) {
    if constexpr (FromAbove) {
      if (!rows.keeps) rows.Make(*rows.above, rowAbove, i, left, carryAbove);
      if (i == 0) {
        // Left of the first unit both rows have what stands above it.
        left = FirstSamples(rows.above->strips[0]);
        SetLeft(rows.above->strips[0], left);
      }
    }
    rows.Make(*rows.now, row, i, left, carry);
  };
  StripIndexes<Layout> symbols = {};
  const u32 strips = StripsOf<Layout>(rows.width);
  make(0);
  const UnitSamples firstUnit = FirstSamples(rows.now->strips[0]);
  for (u32 i = 0; i < strips; ++i) {
    PredictStrip<Layout, FromAbove>(rows.At(*rows.now, i), rows.At(*rows.above, i), symbols);
    // Prediction reads samples and their neighbours across the vectors that were stored, for which a
    // processor waits until they are in memory. They come there while the strip before is coded.
    if (i + 1 < strips) make(i + 1);
    PutSteps<kStepLength<Layout>>(writer, codes, CellsOf<Layout>(symbols), StepsAt<Layout>(rows.width, i));
  }
  return firstUnit;
}

template <const FrameLayout& Layout>
[[gnu::noinline]] void PutRawRow(RowWriter& writer, const RowStrips<Layout>& rows, const u8* row) {
  ChromaCarry carry = {};
  StripSymbols symbols;
  const u32 strips = StripsOf<Layout>(rows.width);
  for (u32 i = 0; i < strips; ++i) {
    if (!rows.keeps) rows.Make(*rows.now, row, i, UnitSamples{}, carry);
    CopySamples<Layout>(rows.At(*rows.now, i), symbols);
    PutRawSteps<kStepLength<Layout>, Layout.samples.bits>(writer, InOrder<Layout>(symbols),
                                                          StepsAt<Layout>(rows.width, i));
  }
}

// Codes the rows of a picture of any pixel format, for EncodeRows.
template <const FrameLayout& Layout, Scan FrameScan>
struct PlaneRowCoder {
  const SymbolCodes<kSymbolsOf<Layout>>& codes;
  RowStrips<Layout> rows;
  UnitSamples leftOfRow = kStartOfFrame<Layout, FrameScan>;

  void PutPredicted(RowWriter& writer, const u8* row, const u8* rowAbove) {
    if (FrameScan == Scan::p && rowAbove != nullptr) {
      PutPredictedRow<Layout, true>(writer, codes, rows, row, rowAbove, leftOfRow);
    } else {
      const UnitSamples firstUnit =
          PutPredictedRow<Layout, false>(writer, codes, rows, row, nullptr, leftOfRow);
      if (Layout.interlacedRowStart == InterlacedRowStart::firstUnitAbove) leftOfRow = firstUnit;
    }
  }
  void PutRaw(RowWriter& writer, const u8* row) const { PutRawRow<Layout>(writer, rows, row); }
  void GoOn() { std::swap(rows.now, rows.above); }
};

// One body for all pixel formats of a layout and scan.
template <const FrameLayout& Layout, Scan FrameScan>
[[gnu::noinline]] Status EncodePlanes(const FrameCall& call, const PictureSource& source) {
  std::array<KeptRow, 2> kept;
  const bool keeps = StripsOf<Layout>(call.width) <= kKeptStrips;
  PlaneRowCoder<Layout, FrameScan> coder = {SymbolCodesOfLayout<Layout, FrameScan>(),
                                            {&source, call.width, keeps, &kept[0], &kept[1]}};
  return EncodeRows<Layout, FrameScan>(call, coder);
}

}  // namespace vorel::inline VOREL_INSTRUCTIONS
