#include "tests/prove/round_trips.h"

#include <algorithm>
#include <cstdlib>

#include "pixel/conversion.h"

namespace vorel::prove {
namespace {

// Colours wait here until a strip is full.
struct Batch {
  SampleStrip strip = {};
  u32 count = 0;
};

template <SampleDomain Frame, const PixelLayout& Pixel>
struct RoundTrip {
  ColourWeights weights;
  Batch batch = {};
  Result result = {};

  void Send(u32 first, u32 second, u32 third) {
    Cells(batch.strip.first)[batch.count] = static_cast<i16>(first);
    Cells(batch.strip.second)[batch.count] = static_cast<i16>(second);
    Cells(batch.strip.third)[batch.count] = static_cast<i16>(third);
    if (++batch.count == kStripPixels) Flush();
  }

  void Flush() {
    if (batch.count == 0) return;
    u8 row[kStripPixels * 8];
    const SampleStrip sent = batch.strip;
    SampleStrip back = {};
    ChromaCarry carry = {};
    DrainStrip<Frame, Pixel>(batch.strip, {0, batch.count}, weights, carry, row);
    FillStrip<Frame, Pixel>(row, {0, batch.count}, weights, carry, back);
    for (u32 i = 0; i < batch.count; ++i) {
      const int change = std::max({std::abs(Cells(sent.first)[i] - Cells(back.first)[i]),
                                   std::abs(Cells(sent.second)[i] - Cells(back.second)[i]),
                                   std::abs(Cells(sent.third)[i] - Cells(back.third)[i])});
      result.changed += change != 0;
      result.largest = std::max(result.largest, static_cast<u32>(change));
    }
    result.colours += batch.count;
    batch.count = 0;
  }
};

template <SampleDomain Frame, const PixelLayout& Pixel>
Result SendColours(u32 standard, u32 from, u32 to) {
  RoundTrip<Frame, Pixel> trip = {WeightsOfFrame<Frame, Pixel>(standard)};
  constexpr u32 kCodes = 1u << Frame.bits;
  for (u32 r = from; r < to; ++r) {
    for (u32 g = 0; g < kCodes; ++g) {
      for (u32 b = 0; b < kCodes; ++b) trip.Send(r, g, b);
    }
  }
  trip.Flush();
  return trip.result;
}

// The formulas with plain quotients, for the question whether a limit is needed. Weights of R' and B' on the
// scale of Y', in the order of the standards.
struct Cube {
  i64 luma;  // span of Y', and of chroma
  i64 chroma;
  i64 red, blue;
  i64 maximum;
  i64 multiply, add, divide;

  bool Holds(i64 y, i64 cb, i64 cr) const {
    const i64 green = luma - red - blue;
    const i64 r = ((luma - red) * cr + chroma * y) * multiply + add;
    const i64 b = ((luma - blue) * cb + chroma * y) * multiply + add;
    const i64 g = y * maximum + green / 2 - blue * (b / divide) - red * (r / divide);
    // A quotient between -1 and 0 is 0 without any limit.
    const auto inside = [this](i64 dividend, i64 divisor) {
      return dividend / divisor >= 0 && dividend / divisor <= maximum;
    };
    return inside(r, divide) && inside(g, green) && inside(b, divide);
  }
};

template <SampleDomain Frame, const PixelLayout& Pixel>
Result SendYcc(u32 standard, const Cube& cube, u32 from, u32 to) {
  RoundTrip<Frame, Pixel> trip = {WeightsOfFrame<Frame, Pixel>(standard)};
  constexpr u32 kCodes = 1u << Frame.bits;
  constexpr i64 kBlack = Frame.range == Range::lowered ? 0 : 16 << (Frame.bits - 8);
  for (u32 y = from; y < to; ++y) {
    for (u32 cb = 0; cb < kCodes; ++cb) {
      for (u32 cr = 0; cr < kCodes; ++cr) {
        if (cube.Holds(i64{y} - kBlack, i64{cb} - kCodes / 2, i64{cr} - kCodes / 2)) trip.Send(y, cb, cr);
      }
    }
  }
  trip.Flush();
  return trip.result;
}

constexpr i64 kRed219[] = {65, 46, 46};
constexpr i64 kBlue219[] = {24, 15, 19};
constexpr i64 kRed876[] = {261, 186, 185};
constexpr i64 kBlue876[] = {99, 63, 76};

}  // namespace

Result Colours8Through876(u32 standard, u32 from, u32 to) {
  return SendColours<SamplesRGB8bf, Pxv410>(standard, from, to);
}
Result Colours8Through219(u32 standard, u32 from, u32 to) {
  return SendColours<SamplesRGB8bf, Px_v408>(standard, from, to);
}
Result Colours10Through3504(u32 standard, u32 from, u32 to) {
  return SendColours<SamplesRGB10bf, Px_V416>(standard, from, to);
}
Result Ycc8Through511(u32 standard, u32 from, u32 to) {
  const Cube cube = {219, 112, kRed219[standard], kBlue219[standard], 511, 7, 168, 336};
  return SendYcc<SamplesYCbCr8bu444, PxF10k>(standard, cube, from, to);
}
Result Ycc10Through4095(u32 standard, u32 from, u32 to) {
  const Cube cube = {876, 448, kRed876[standard], kBlue876[standard], 4095, 1365, 65408, 130816};
  return SendYcc<SamplesYCbCr10bv444, Pxb64_>(standard, cube, from, to);
}

}  // namespace vorel::prove
