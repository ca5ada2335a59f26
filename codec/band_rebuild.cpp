#include "codec/band_rebuild.h"

namespace vorel::inline VOREL_INSTRUCTIONS {
namespace {

// A plane of a band on its way: what stands left of each lane's sample, and above that.
struct LaneChain {
  Lanes left;
  Lanes topLeft;
  Lanes leftOfStrip;
  Lanes topLeftOfStrip;
};

// Rebuilds the next sample of each row. In the prologue lane `first` comes to the first sample of its strip. Lanes that are
// not in their strip yet, or no more, hold anything, and sums of it may wrap.
template <Rule UsedRule, i16 Mask, bool AnyRaw, bool Prologue>
inline Lanes StepLanes(LaneChain& chain, Lanes residual, const i16* above, const BandRun& run, i16 first) {
  Lanes left = chain.left;
  Lanes topLeft = chain.topLeft;
  const Lanes top = MoveUp(left, LoadLanesUpTo(above));
  if constexpr (Prologue) {
    const Lanes isFirst = LaneNumbers() == first;
    left = Select(isFirst, run.startsRows ? top : chain.leftOfStrip, left);
    topLeft = Select(isFirst, run.startsRows ? top : chain.topLeftOfStrip, topLeft);
  }
  const auto r = (WrappingLanes)residual;
  const auto l = (WrappingLanes)left;
  const auto t = (WrappingLanes)top;
  const auto tl = (WrappingLanes)topLeft;
  Lanes sample;
  if constexpr (UsedRule == Rule::planarBlend) {
    // (3L + 3T - 2TL) >> 2 and the residual in one sum, in which as little as can be waits for L and T.
    const WrappingLanes known = (r + r - tl) * 2;
    sample = (Lanes)((known + t) + (t + t) + (l + l + l)) >> 2;
  } else {
    static_assert(UsedRule == Rule::halfGradient);
    const Lanes gradient = (Lanes)(l - tl) >> 1;
    sample = (Lanes)((r + t) + (WrappingLanes)gradient);
  }
  sample &= Mask;
  if constexpr (AnyRaw) sample = Select(run.predicted, sample, residual);
  chain.left = sample;
  chain.topLeft = top;
  return sample;
}

template <SamplePlane SampleStrip::*... Planes>
inline constexpr std::array<SamplePlane SampleStrip::*, sizeof...(Planes)> kPlaneList = {Planes...};

}  // namespace

template <Rule UsedRule, i16 Mask, bool AnyRaw, SamplePlane SampleStrip::*... Planes>
void RebuildPlanes(BandStrips& band, const SampleStrip& above, u32 count, const BandRun& run) {
  constexpr std::size_t kPlanes = sizeof...(Planes);
  std::array<LaneChain, kPlanes> chains;
  for (std::size_t p = 0; p < kPlanes; ++p) {
    LaneChain& chain = chains[p];
    chain.left = chain.topLeft = chain.leftOfStrip = Lanes{};
    for (u32 r = 0; r < kBandLanes; ++r)
      chain.leftOfStrip[r] = Cells(band.rows[r].*kPlaneList<Planes...>[p])[-1];
    chain.topLeftOfStrip = MoveUp(chain.leftOfStrip, Lanes{} + Cells(above.*kPlaneList<Planes...>[p])[-1]);
  }
  const auto stepSquare = [&]<bool Prologue>(std::bool_constant<Prologue> /*isPrologue*/, i32 column) {
    std::array<Square, kPlanes> squares;
    const auto rowOf = [&](std::size_t p) {
      return [&band, column, p](u32 r) {
        return Cells(band.rows[r].*kPlaneList<Planes...>[p]) + column - static_cast<i32>(r);
      };
    };
    for (std::size_t p = 0; p < kPlanes; ++p) {
      LoadRows(squares[p], rowOf(p));
      Transpose(squares[p]);
    }
    for (i32 step = 0; step < static_cast<i32>(kPartLanes); ++step) {
      for (std::size_t p = 0; p < kPlanes; ++p) {
        Lanes& line = squares[p].line[static_cast<std::size_t>(step)];
        line = StepLanes<UsedRule, Mask, AnyRaw, Prologue>(
            chains[p], line, Cells(above.*kPlaneList<Planes...>[p]) + (column + step), run,
            static_cast<i16>(column + step));
      }
    }
    for (std::size_t p = 0; p < kPlanes; ++p) {
      Transpose(squares[p]);
      StoreRows(squares[p], rowOf(p));
    }
  };
  const i32 end = static_cast<i32>(count) + kLastRowLag;
  i32 column = 0;
  for (; column < static_cast<i32>(kBandLanes); column += kPartLanes) stepSquare(std::true_type(), column);
  for (; column < end; column += kPartLanes) stepSquare(std::false_type(), column);
}

#define VOREL_REBUILD(RULE, MASK, ANY_RAW, ...)                                                             \
  template void RebuildPlanes<Rule::RULE, MASK, ANY_RAW, __VA_ARGS__>(BandStrips&, const SampleStrip&, u32, \
                                                                      const BandRun&);
#define VOREL_REBUILD_ALL(MASK, ANY_RAW)                                               \
  VOREL_REBUILD(planarBlend, MASK, ANY_RAW, &SampleStrip::first, &SampleStrip::second) \
  VOREL_REBUILD(planarBlend, MASK, ANY_RAW, &SampleStrip::third)                       \
  VOREL_REBUILD(planarBlend, MASK, ANY_RAW, &SampleStrip::third, &SampleStrip::alpha)  \
  VOREL_REBUILD(planarBlend, MASK, ANY_RAW, &SampleStrip::first)                       \
  VOREL_REBUILD(planarBlend, MASK, ANY_RAW, &SampleStrip::first, &SampleStrip::alpha)  \
  VOREL_REBUILD(halfGradient, MASK, ANY_RAW, &SampleStrip::second, &SampleStrip::third)

VOREL_REBUILD_ALL(255, false)
VOREL_REBUILD_ALL(255, true)
VOREL_REBUILD_ALL(1023, false)
VOREL_REBUILD_ALL(1023, true)

}  // namespace vorel::inline VOREL_INSTRUCTIONS
