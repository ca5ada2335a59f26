#include "codec422/pair_rebuild.h"

#include <algorithm>
#include <array>

#include "base/lanes.h"

namespace vorel::inline VOREL_INSTRUCTIONS {
namespace {

using LaneWords = u32 __attribute__((vector_size(2 * kLanes)));

template <ChromaSign Sign>
inline int ReadChroma(u8 byte) {
  if constexpr (Sign == ChromaSign::isSigned) return static_cast<i8>(byte);
  return byte;
}

// Cuts a sum to the byte that is kept and reads it as its component does.
inline Lanes LumaOf(Lanes sum) {
  return sum & 255;
}
template <ChromaSign Sign>
inline Lanes ChromaOf(Lanes sum) {
  if constexpr (Sign == ChromaSign::isSigned) return (sum << 8) >> 8;
  return sum & 255;
}

// Chroma of lanes that hold two bytes of a pair.
template <ChromaSign Sign>
inline Lanes ChromaIn(Lanes bytes) {
  if constexpr (Sign == ChromaSign::isSigned) return bytes >> 8;
  return (Lanes)((WrappingLanes)bytes >> 8);
}

template <ChromaSign Sign, bool Prologue, bool AnyRaw>
inline Lanes StepChroma(Chain& chain, Lanes symbol, Lanes top, Lanes first, Lanes predicted) {
  Lanes left = chain.left;
  Lanes topLeft = chain.topLeft;
  if constexpr (Prologue) {
    left = Select(first, top, left);
    topLeft = Select(first, top, topLeft);
  }
  Lanes prediction = top + ((left - topLeft) >> 1);
  if constexpr (AnyRaw) prediction &= predicted;
  chain.left = ChromaOf<Sign>(prediction + symbol);
  chain.topLeft = top;
  return chain.left;
}

template <bool AnyRaw>
inline Lanes BlendLuma(Lanes left, Lanes top, Lanes topLeft, Lanes symbol, Lanes predicted) {
  // (3L + 3T - 2TL) >> 2 and the symbol in one sum: only 3L waits for the left neighbour. At most 2,550 in
  // magnitude.
  const Lanes known = top + (top - topLeft) * 2 + symbol * 4;
  const Lanes sum = LumaOf((left + left + left + known) >> 2);
  if constexpr (AnyRaw) return Select(predicted, sum, symbol);
  return sum;
}

// Rebuilds four pairs of each row: row r those from 4 * group - r on. In the prologue the lane of a row that
// has its first pair takes L and TL from T.
template <ChromaSign Sign, bool Prologue, bool AnyRaw>
inline void StepGroup(BandState& band, const u8* above, u8* const* rows, std::ptrdiff_t group,
                      Lanes predicted) {
  const Lanes rowNumber = LaneNumbers();
  const auto pairsOfRow = [&](u32 r) { return rows[r] + (group * 4 - static_cast<std::ptrdiff_t>(r)) * 4; };
  Square square;
  LoadRows(square, pairsOfRow);
  Transpose(square);
  for (std::size_t step = 0; step < 4; ++step) {
    const Lanes even = square.line[2 * step];                                   // Y'0 and Cb of every row
    const Lanes odd = square.line[2 * step + 1];                                // Y'1 and Cr
    const std::ptrdiff_t pair = group * 4 + static_cast<std::ptrdiff_t>(step);  // of the first row
    // The pair above the first row, its two halves in the last lanes.
    const LaneWords pairAbove = LaneWords{} + LoadNative<u32>(above + pair * 4);
    const Lanes evenAbove = (Lanes)(pairAbove << 16);
    const Lanes oddAbove = (Lanes)pairAbove;
    const Lanes first = Prologue ? rowNumber == static_cast<i16>(pair) : Lanes{};
    const Lanes top0 = MoveUp(band.luma0, evenAbove & 255);
    const Lanes top1 = MoveUp(band.luma1, oddAbove & 255);
    Lanes left0 = band.luma1;
    Lanes topLeft0 = band.luma1Above;
    if constexpr (Prologue) {
      left0 = Select(first, top0, left0);
      topLeft0 = Select(first, top0, topLeft0);
    }
    const Lanes luma0 = BlendLuma<AnyRaw>(left0, top0, topLeft0, even & 255, predicted);
    const Lanes luma1 = BlendLuma<AnyRaw>(luma0, top1, top0, odd & 255, predicted);
    const Lanes topCb = MoveUp(band.cb.left, ChromaIn<Sign>(evenAbove));
    const Lanes topCr = MoveUp(band.cr.left, ChromaIn<Sign>(oddAbove));
    const Lanes cb = StepChroma<Sign, Prologue, AnyRaw>(band.cb, even >> 8, topCb, first, predicted);
    const Lanes cr = StepChroma<Sign, Prologue, AnyRaw>(band.cr, odd >> 8, topCr, first, predicted);
    band.luma0 = luma0;
    band.luma1 = luma1;
    band.luma1Above = top1;
    square.line[2 * step] = luma0 | cb << 8;
    square.line[2 * step + 1] = luma1 | cr << 8;
  }
  Transpose(square);
  StoreRows(square, pairsOfRow);
}

// Groups that are looked at together for whether anything happens in them.
constexpr std::ptrdiff_t kFlatGroups = 16;
constexpr std::size_t kFlatBytes = kFlatGroups * 16;

// Whether the next kFlatGroups groups of all rows are of one colour, which is `pair`: it is all around them
// and above them, and all symbols are zero. The first symbols tell most of the time.
template <ChromaSign Sign>
bool AreFlat(const BandState& band, const u8* above, u8* const* rows, std::ptrdiff_t group, u32 pair) {
  if (LoadNative<u64>(rows[0] + group * 16) != 0) return false;
  const Lanes colour = (Lanes)(LaneWords{} + pair);
  const Lanes even = (Lanes)((LaneWords)colour << 16);  // Y'0 and Cb in the last lanes of pairs
  const Lanes luma = Lanes{} + static_cast<i16>(pair & 255);
  const Lanes cb = Lanes{} + ChromaIn<Sign>(even)[1];
  const Lanes cr = Lanes{} + ChromaIn<Sign>(colour)[1];
  const Lanes others = (band.luma0 ^ luma) | (band.luma1 ^ luma) | (band.luma1Above ^ luma) |
                       (band.cb.left ^ cb) | (band.cb.topLeft ^ cb) | (band.cr.left ^ cr) |
                       (band.cr.topLeft ^ cr) | ((colour & 255) ^ luma);
  if (!IsZero(others)) return false;
  Lanes aboveOthers = {};
  for (std::size_t i = 0; i < kFlatBytes; i += sizeof aboveOthers)
    aboveOthers |= LoadNative<Lanes>(above + group * 16 + i) ^ colour;
  if (!IsZero(aboveOthers)) return false;
  for (u32 r = 0; r < kBandRows; ++r) {
    if (!AreZero(rows[r] + (group * 4 - static_cast<std::ptrdiff_t>(r)) * 4, kFlatBytes)) return false;
  }
  return true;
}

// Samples of groups that are flat. What the band remembers stays as it is.
void FillGroups(u8* const* rows, std::ptrdiff_t group, u32 pair) {
  const auto colour = (Lanes)(LaneWords{} + pair);
  for (u32 r = 0; r < kBandRows; ++r) {
    u8* const row = rows[r] + (group * 4 - static_cast<std::ptrdiff_t>(r)) * 4;
    for (std::size_t i = 0; i < kFlatBytes; i += sizeof colour) StoreNative(row + i, colour);
  }
}

// The last row is kBandRows - 1 pairs behind the first.
constexpr std::ptrdiff_t GroupsOf(std::size_t pairs) {
  return static_cast<std::ptrdiff_t>((pairs + kBandRows - 1 + 3) / 4);
}

// Groups of a piece behind the prologue.
constexpr std::ptrdiff_t kPieceGroups = 4 * kFlatGroups;

template <ChromaSign Sign, bool AnyRaw>
void RebuildGroups(PairBand& band, Lanes predicted) {
  const u8* const above = band.above;
  u8* const* const rows = band.rows;
  const std::ptrdiff_t groups = GroupsOf(band.pairs);
  BandState state = band.state;
  std::ptrdiff_t group = band.groups;
  for (; group < std::ptrdiff_t{kBandRows / 4} && group < groups; ++group)
    StepGroup<Sign, true, AnyRaw>(state, above, rows, group, predicted);
  const std::ptrdiff_t pieceEnd = std::min(group + kPieceGroups, groups);
  while (group < pieceEnd) {
    if (!AnyRaw && group + kFlatGroups <= groups) {
      const u32 pair = LoadNative<u32>(above + group * 16);
      if (AreFlat<Sign>(state, above, rows, group, pair)) {
        FillGroups(rows, group, pair);
        group += kFlatGroups;
        continue;
      }
    }
    const std::ptrdiff_t end = std::min(group + kFlatGroups, groups);
    for (; group < end; ++group) StepGroup<Sign, false, AnyRaw>(state, above, rows, group, predicted);
  }
  band.state = state;
  band.groups = group;
}

}  // namespace

template <ChromaSign Sign>
std::size_t RebuildPiece(PairBand& band) {
  const Lanes predicted = LanesWithoutBits(band.rawRows);
  if (band.rawRows == 0) {
    RebuildGroups<Sign, false>(band, predicted);
  } else {
    RebuildGroups<Sign, true>(band, predicted);
  }
  const std::size_t ofFirstRow = static_cast<std::size_t>(band.groups) * 4;
  return std::min(ofFirstRow - std::min<std::size_t>(ofFirstRow, kBandRows - 1), band.pairs);
}

template <ChromaSign Sign>
void RebuildRow(u8* above, u8* row, std::size_t pairs, bool first, PairNeighbours& neighbours) {
  const auto blend = [](int left, int top, int topLeft) { return (3 * (left + top) - 2 * topLeft) >> 2; };
  const auto gradient = [](u8 left, u8 top, u8 topLeft) {
    return ReadChroma<Sign>(top) + ((ReadChroma<Sign>(left) - ReadChroma<Sign>(topLeft)) >> 1);
  };
  for (std::size_t i = 0; i < pairs; ++i, row += 4, above += 4) {
    u8* left = neighbours.left;
    u8* topLeft = neighbours.topLeft;
    if (first && i == 0) {
      left[2] = topLeft[2] = above[0];
      left[1] = topLeft[1] = above[1];
      left[3] = topLeft[3] = above[3];
    }
    row[0] = static_cast<u8>(row[0] + blend(left[2], above[0], topLeft[2]));
    row[1] = static_cast<u8>(row[1] + gradient(left[1], above[1], topLeft[1]));
    row[2] = static_cast<u8>(row[2] + blend(row[0], above[2], above[0]));
    row[3] = static_cast<u8>(row[3] + gradient(left[3], above[3], topLeft[3]));
    std::memcpy(topLeft, above, 4);
    std::memcpy(left, row, 4);
    std::memcpy(above, row, 4);
  }
}

template std::size_t RebuildPiece<ChromaSign::isUnsigned>(PairBand&);
template std::size_t RebuildPiece<ChromaSign::isSigned>(PairBand&);
template void RebuildRow<ChromaSign::isUnsigned>(u8*, u8*, std::size_t, bool, PairNeighbours&);
template void RebuildRow<ChromaSign::isSigned>(u8*, u8*, std::size_t, bool, PairNeighbours&);

}  // namespace vorel::inline VOREL_INSTRUCTIONS
