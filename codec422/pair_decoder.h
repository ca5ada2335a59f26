// The fast row loops of 8-bit 4:2:2 without alpha, to pictures that hold the samples of the frame, byte by
// byte.
#pragma once
#include <algorithm>
#include <array>

#include "base/instructions.h"
#include "codec422/pair_rebuild.h"
#include "entropy/row_codes.h"
#include "entropy/symbol_reader.h"
#include "frame/frame_limits.h"
#include "frame/row_walk.h"
#include "pixel/pair_strip.h"

namespace vorel::inline VOREL_INSTRUCTIONS {

// What a decoder carries from row to row.
struct RowSource {
  BitReader reader;
  RowWalk walk;
  u64 limit;
  u32 pairs;
  u32 rowsLeft;  // of which the current one is the first
  RunGuess guess;
};

// A row takes a bit and at least a bit a symbol, so in a whole frame this many follow the current row.
inline u64 BitsBehindRow(const RowSource& source) {
  return (source.rowsLeft - u64{1}) * (1 + u64{4} * source.pairs);
}

// Goes on to the next row and makes the checks behind a row, in their order. The row buffer has been given
// exactly the pairs of the row, so the check that comes before them cannot fail.
inline Status FinishRow(RowSource& source) {
  --source.rowsLeft;
  if (!StepRow(source.walk)) return Status::rowLeftPictureDecode;
  return IsPastLimit(source.reader, source.limit) ? Status::frameBoundRead : Status::complete;
}

// Takes `pairs` pairs of the current row, symbols or samples, of which `pairsBehind` follow in the row.
inline void GetPairs(RowSource& source, const RowCodes<256>& codes, bool raw, u8* out, std::size_t pairs,
                     std::size_t pairsBehind) {
  if (raw) {
    GetRawBytes(source.reader, out, pairs * 4);
  } else {
    const u64 withinLimit = BitsToLimit(source.reader, source.limit, pairs * 4);
    GetSymbols<NativeWindow, 256>(source.reader, codes, out, pairs * 4,
                                  std::min(BitsBehindRow(source) + pairsBehind * 4, withinLimit),
                                  source.guess);
  }
}

// Pairs that a row decoder handles at once where it goes through a row in pieces.
inline constexpr std::size_t kPiecePairs = 2048;

// Decodes a row by the left-only rule into the picture. The row's samples are copied to `keep` as well, if it
// is not null. Returns the first pair's samples.
template <const PixelLayout& Pixel>
[[gnu::noinline]] PairStart DecodeLeftOnlyRow(RowSource& source, const RowCodes<256>& codes, PairStart start,
                                              u8* keep) {
  std::array<u8, kPiecePairs * 4> piece;
  PairStart firstPair{};
  u8* target = CurrentRow(source.walk);
  const bool raw = GetBit(source.reader) != 0;
  for (std::size_t pair = 0; pair < source.pairs; pair += kPiecePairs) {
    const std::size_t count = std::min<std::size_t>(kPiecePairs, source.pairs - pair);
    GetPairs(source, codes, raw, piece.data(), count, source.pairs - pair - count);
    if (!raw) start = RebuildLeftOnly(piece.data(), count, start);
    if (pair == 0) firstPair = {piece[0], piece[1], piece[3]};
    DrainPairs<Pixel>(piece.data(), count, target + pair * kPairBytes<Pixel>);
    if (keep != nullptr) std::memcpy(keep + pair * 4, piece.data(), count * 4);
  }
  return firstPair;
}

// Rows of a band of up to 4,096 pixels each, and the row above them, lie on the stack. Wider pictures take
// fewer rows to a band.
inline constexpr std::size_t kBandPitch = 2048 * 4 + kBandFrontPadding + kBandBackPadding;
inline constexpr std::size_t kBandBytes = (kBandRows + 1) * kBandPitch;

struct BandPlan {
  std::size_t pitch;
  u32 rows;  // 0 if the picture is too wide for a band
};

// Besides its rows a band holds the row above and, if it has fewer rows than lanes, one row for the idle
// lanes.
inline BandPlan PlanBand(std::size_t pairs) {
  const std::size_t pitch = (pairs * 4 + kBandFrontPadding + kBandBackPadding + 15) & ~std::size_t{15};
  const std::size_t slots = kBandBytes / pitch;
  if (slots > kBandRows) return {pitch, kBandRows};
  return {pitch, slots > 2 ? static_cast<u32>(slots - 2) : 0};
}

// Decodes the later rows of a progressive frame band by band. `above` holds the samples of the row above.
template <const FrameLayout& Layout, const PixelLayout& Pixel>
[[gnu::noinline]] Status DecodeBands(RowSource& source, const RowCodes<256>& codes, const u8* above,
                                     const BandPlan& plan) {
  alignas(16) std::array<u8, kBandBytes> buffer = {};
  const auto slot = [&](std::size_t number) {
    return buffer.data() + number * plan.pitch + kBandFrontPadding;
  };
  const std::size_t rowLength = std::size_t{source.pairs} * 4;
  std::array<u8*, kBandRows> rows;
  for (u32 r = 0; r < kBandRows; ++r) rows[r] = slot(1 + std::min(r, plan.rows));
  std::memcpy(slot(0), above, rowLength);
  while (source.rowsLeft > 0) {
    const u32 wanted = std::min(plan.rows, source.rowsLeft);
    u8* target = CurrentRow(source.walk);
    const std::intptr_t step = source.walk.step;
    Status status = Status::complete;
    u32 rawRows = 0;
    u32 count = 0;
    while (count < wanted && status == Status::complete) {
      const bool raw = GetBit(source.reader) != 0;
      rawRows |= u32{raw} << count;
      GetPairs(source, codes, raw, rows[count], source.pairs, 0);
      ++count;
      status = FinishRow(source);
    }
    PairBand band = {slot(0), rows.data(), source.pairs, rawRows};
    for (std::size_t drained = 0; drained < source.pairs;) {
      const std::size_t rebuilt = RebuildPiece<Layout.chromaSign>(band);
      for (u32 r = 0; r < count; ++r) {
        u8* const row = target + static_cast<std::intptr_t>(r) * step;
        DrainPairs<Pixel>(rows[r] + drained * 4, rebuilt - drained, row + drained * kPairBytes<Pixel>);
      }
      drained = rebuilt;
    }
    if (status != Status::complete) return status;
    std::memcpy(slot(0), rows[count - 1], rowLength);
  }
  return Status::complete;
}

// Decodes the later rows of a progressive frame one by one, in pieces. The row buffer holds the row above.
template <const FrameLayout& Layout, const PixelLayout& Pixel>
[[gnu::noinline]] Status DecodeWideRows(RowSource& source, const RowCodes<256>& codes, u8* rowBuffer) {
  std::array<u8, kPiecePairs * 4> piece;
  while (source.rowsLeft > 0) {
    u8* target = CurrentRow(source.walk);
    const bool raw = GetBit(source.reader) != 0;
    PairNeighbours neighbours{};
    for (std::size_t pair = 0; pair < source.pairs; pair += kPiecePairs) {
      const std::size_t count = std::min<std::size_t>(kPiecePairs, source.pairs - pair);
      GetPairs(source, codes, raw, piece.data(), count, source.pairs - pair - count);
      u8* above = rowBuffer + pair * 4;
      if (raw) {
        std::memcpy(above, piece.data(), count * 4);
      } else {
        RebuildRow<Layout.chromaSign>(above, piece.data(), count, pair == 0, neighbours);
      }
      DrainPairs<Pixel>(piece.data(), count, target + pair * kPairBytes<Pixel>);
    }
    const Status status = FinishRow(source);
    if (status != Status::complete) return status;
  }
  return Status::complete;
}

template <const FrameLayout& Layout, Scan FrameScan, const PixelLayout& Pixel>
Status DecodeRows(RowSource& source, const RowCodes<256>& codes, [[maybe_unused]] u8* rowBuffer) {
  PairStart start = kFirstRowStart<Layout>;
  if constexpr (FrameScan == Scan::p) {
    DecodeLeftOnlyRow<Pixel>(source, codes, start, rowBuffer);
    const Status status = FinishRow(source);
    if (status != Status::complete) return status;
    const BandPlan plan = PlanBand(source.pairs);
    if (plan.rows > 0) return DecodeBands<Layout, Pixel>(source, codes, rowBuffer, plan);
    return DecodeWideRows<Layout, Pixel>(source, codes, rowBuffer);
  } else {
    while (source.rowsLeft > 0) {
      const PairStart firstPair = DecodeLeftOnlyRow<Pixel>(source, codes, start, nullptr);
      if (Layout.interlacedRowStart == InterlacedRowStart::firstUnitAbove) start = firstPair;
      const Status status = FinishRow(source);
      if (status != Status::complete) return status;
    }
    return Status::complete;
  }
}

template <const FrameLayout& Layout, Scan FrameScan, const PixelLayout& Pixel>
Status DecodePairs(const FrameCall& call) {
  const StreamCursor cursor = Fold({*call.wordCursor, *call.bitCursor});
  const std::uintptr_t scratch = (reinterpret_cast<std::uintptr_t>(call.scratch) + 3) & ~std::uintptr_t{3};
  RowSource source = {
      .reader = OpenReader(call.frame, cursor, call.readableFrom, call.readableTo),
      .walk = OpenRowWalk(call.base, call.height, call.rowBytes),
      .limit = FrameLimit<Layout>(call, cursor),
      .pairs = UnitsPerRow(Layout, call.width),
      .rowsLeft = call.height,
      .guess = {},
  };
  const RowCodes<256>& codes = RowCodesOfLayout<Layout, FrameScan>();
  const Status status = DecodeRows<Layout, FrameScan, Pixel>(source, codes, reinterpret_cast<u8*>(scratch));
  StoreCursors(call, source.reader.position);
  return status;
}

}  // namespace vorel::inline VOREL_INSTRUCTIONS
