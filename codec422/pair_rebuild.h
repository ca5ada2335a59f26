// From residuals back to samples, for decoders of 8-bit 4:2:2 rows. Rows are in stream order, four bytes a
// pair: Y'0, Cb, Y'1, Cr; the symbols of a row are overwritten by its samples.
//
// The rules are those of codec422/pair_prediction.h. There every sample is known; here each one waits for its
// left neighbour, so the rows of a band are rebuilt together, each one pair behind the row above it: the rows
// are the lanes of a vector.
#pragma once
#include "base/lanes.h"
#include "frame/frame_layout.h"

namespace vorel::inline VOREL_INSTRUCTIONS {

inline constexpr u32 kBandRows = kLanes;

// Bytes that must be writable before and behind each row of a band; their contents are lost.
inline constexpr std::size_t kBandFrontPadding = std::size_t{4} * kBandRows;
inline constexpr std::size_t kBandBackPadding = std::size_t{4} * kBandRows + 16;

struct PairStart {
  u8 luma;
  u8 cb;
  u8 cr;
};

// What stands left of the first row of a frame.
template <const FrameLayout& Layout>
inline constexpr PairStart kFirstRowStart = {static_cast<u8>(Layout.start.luma),
                                             static_cast<u8>(Layout.start.chroma),
                                             static_cast<u8>(Layout.start.chroma)};

// left-only rule over `pairs` pairs. Returns what the pair behind them starts from.
PairStart RebuildLeftOnly(u8* row, std::size_t pairs, PairStart start);

// One component of the rows of a band: the sample that each row has just rebuilt, and the one above that.
struct Chain {
  Lanes left;
  Lanes topLeft;
};

// Where a band stands: lane r is one pair left of lane r - 1.
struct BandState {
  Lanes luma0, luma1;  // last rebuilt samples of each row
  Lanes luma1Above;    // what stood above luma1
  Chain cb, cr;
};

// Later rows of a progressive frame, kBandRows at once, on their way from left to right.
struct PairBand {
  const u8* above;  // samples of the row above the first one, with kBandBackPadding readable bytes behind
  u8* const* rows;  // kBandRows; none overlaps another or its padding, idle ones may be one and the same
  std::size_t pairs;
  u32 rawRows;                // bit r is set if row r holds samples and not symbols
  std::ptrdiff_t groups = 0;  // of four pairs, that are rebuilt of the first row
  BandState state = {};
};

// Rebuilds the next pairs of all rows of a band: a piece that lies in the first-level cache when it goes on
// to the picture. Returns how many pairs of every row are rebuilt so far.
template <ChromaSign Sign>
std::size_t RebuildPiece(PairBand& band);

// Neighbours of a pair: the pair to the left, and the one above that.
struct PairNeighbours {
  u8 left[4];
  u8 topLeft[4];
};

// The same for one row, pair by pair; for rows that are too wide for a band. `first` says that the pair has
// nothing to its left. `above` is read and then overwritten by the samples of the row.
template <ChromaSign Sign>
void RebuildRow(u8* above, u8* row, std::size_t pairs, bool first, PairNeighbours& neighbours);

}  // namespace vorel::inline VOREL_INSTRUCTIONS
