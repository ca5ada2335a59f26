// Samples from symbols, plane by plane, as vectors do it, against one sample after another.
#include <gtest/gtest.h>

#include <memory>
#include <random>

#include "codec/band_rebuild.h"
#include "codec/plane_bands.h"
#include "codec/strip_rebuild.h"

namespace vorel {
namespace {

int FloorShift(int value, int by) {
  return value >= 0 ? value >> by : -((-value + (1 << by) - 1) >> by);
}

int Predict(Rule rule, int left, int top, int topLeft) {
  if (rule == Rule::leftOnly) return left;
  if (rule == Rule::halfGradient) return top + FloorShift(left - topLeft, 1);
  return FloorShift(3 * (left + top) - 2 * topLeft, 2);
}

// Residuals as they are: small as a rule, and anything.
i16 RandomResidual(std::mt19937& random, int mask) {
  return static_cast<i16>(static_cast<int>(random() % 4 == 0 ? random() : random() % 5 - 2) & mask);
}

using Plane = SamplePlane SampleStrip::*;

// Fills the strips of a band with residuals, and raw rows with samples, and gives what they must become.
template <Rule UsedRule, i16 Mask>
void FillBand(std::mt19937& random, Plane plane, u32 count, u32 rawRows, bool startsRows, BandStrips& band,
              SampleStrip& above, std::vector<std::vector<int>>& expected) {
  const auto sample = [&] { return static_cast<i16>(random() & static_cast<u32>(Mask)); };
  for (i32 i = -1; i < static_cast<i32>(count); ++i) Cells(above.*plane)[i] = sample();
  std::vector<int> rowAbove(count);
  for (u32 i = 0; i < count; ++i) rowAbove[i] = Cells(above.*plane)[i];
  int topLeft = Cells(above.*plane)[-1];
  for (u32 r = 0; r < kBandLanes; ++r) {
    i16* const cells = Cells(band.rows[r].*plane);
    cells[-1] = sample();
    std::vector<int> row(count);
    const bool raw = (rawRows >> r & 1) != 0;
    for (u32 i = 0; i < count; ++i) {
      cells[i] = raw ? sample() : RandomResidual(random, Mask);
      const int top = rowAbove[i];
      int left = i == 0 ? cells[-1] : row[i - 1];
      int before = i == 0 ? topLeft : rowAbove[i - 1];
      if (i == 0 && startsRows) left = before = top;
      row[i] = raw ? cells[i] : (Predict(UsedRule, left, top, before) + cells[i]) & Mask;
    }
    topLeft = cells[-1];
    expected.push_back(row);
    rowAbove = row;
  }
}

template <Rule UsedRule, i16 Mask, bool AnyRaw, Plane... Planes>
void CompareBands() {
  std::mt19937 random(29);
  for (u32 count = 1; count <= kStripPixels; ++count) {
    for (const bool startsRows : {false, true}) {
      const u32 rawRows = AnyRaw ? static_cast<u32>(random()) & ((1u << kBandLanes) - 1) : 0;
      BandStrips band = {};
      SampleStrip above = {};
      std::vector<std::vector<std::vector<int>>> expected(sizeof...(Planes));
      std::size_t number = 0;
      (FillBand<UsedRule, Mask>(random, Planes, count, rawRows, startsRows, band, above, expected[number++]),
       ...);
      Lanes predicted;
      for (u32 r = 0; r < kLanes; ++r) predicted[r] = (rawRows >> r & 1) != 0 ? i16{0} : i16{-1};
      RebuildPlanes<UsedRule, Mask, AnyRaw, Planes...>(band, above, count, {startsRows, predicted});
      number = 0;
      const auto compare = [&](Plane plane) {
        for (u32 r = 0; r < kBandLanes; ++r) {
          const i16* const cells = Cells(band.rows[r].*plane);
          ASSERT_EQ(std::vector<int>(cells, cells + count), expected[number][r])
              << "plane " << number << ", row " << r << ", count " << count;
        }
        ++number;
      };
      (compare(Planes), ...);
    }
  }
}

template <i16 Mask, bool AnyRaw>
void CompareAllBands() {
  using Strip = SampleStrip;
  CompareBands<Rule::planarBlend, Mask, AnyRaw, &Strip::first>();
  CompareBands<Rule::planarBlend, Mask, AnyRaw, &Strip::first, &Strip::second>();
  CompareBands<Rule::planarBlend, Mask, AnyRaw, &Strip::third>();
  CompareBands<Rule::planarBlend, Mask, AnyRaw, &Strip::third, &Strip::alpha>();
  CompareBands<Rule::planarBlend, Mask, AnyRaw, &Strip::first, &Strip::alpha>();
  CompareBands<Rule::halfGradient, Mask, AnyRaw, &Strip::second, &Strip::third>();
}

TEST(BandRebuild, EightBits) {
  CompareAllBands<255, false>();
}
TEST(BandRebuild, EightBitsWithRawRows) {
  CompareAllBands<255, true>();
}
TEST(BandRebuild, TenBits) {
  CompareAllBands<1023, false>();
}
TEST(BandRebuild, TenBitsWithRawRows) {
  CompareAllBands<1023, true>();
}

template <Rule UsedRule, i16 Mask>
void CompareRows() {
  std::mt19937 random(31);
  for (u32 count = 1; count <= kStripPixels; ++count) {
    SampleStrip strip = {};
    SampleStrip above = {};
    for (i32 i = -1; i < static_cast<i32>(count); ++i) {
      Cells(above.first)[i] = static_cast<i16>(random() & static_cast<u32>(Mask));
      Cells(strip.first)[i] = RandomResidual(random, Mask);
    }
    std::vector<int> expected;
    int left = Cells(strip.first)[-1];
    for (i32 i = 0; i < static_cast<i32>(count); ++i) {
      left = (Predict(UsedRule, left, Cells(above.first)[i], Cells(above.first)[i - 1]) +
              Cells(strip.first)[i]) &
             Mask;
      expected.push_back(left);
    }
    i16* const cells = Cells(strip.first);
    if constexpr (UsedRule == Rule::leftOnly)
      SumFromLeft<Mask>(cells, count);
    else
      RebuildFromAbove<UsedRule, Mask>(cells, Cells(above.first), count);
    ASSERT_EQ(std::vector<int>(cells, cells + count), expected) << count;
  }
}

TEST(RowRebuild, EveryRule) {
  CompareRows<Rule::leftOnly, 255>();
  CompareRows<Rule::leftOnly, 1023>();
  CompareRows<Rule::planarBlend, 255>();
  CompareRows<Rule::planarBlend, 1023>();
  CompareRows<Rule::halfGradient, 255>();
  CompareRows<Rule::halfGradient, 1023>();
}

template <std::size_t Count, typename Sample>
void CompareStreams() {
  std::mt19937 random(37);
  for (u32 count = 0; count <= kStripPixels; ++count) {
    std::vector<Sample> interleaved((count + 16) * Count);
    for (Sample& sample : interleaved)
      sample = static_cast<Sample>(random() & (sizeof(Sample) == 1 ? 255 : 1023));
    std::array<std::vector<i16>, Count> planes;
    std::array<i16*, Count> cells;
    for (std::size_t k = 0; k < Count; ++k) {
      planes[k].assign(count + 16, -1);
      cells[k] = planes[k].data();
    }
    SplitStreams(interleaved.data(), count, cells);
    for (std::size_t i = 0; i < count; ++i) {
      for (std::size_t k = 0; k < Count; ++k)
        ASSERT_EQ(planes[k][i], interleaved[i * Count + k]) << i << ' ' << k;
    }
  }
}

TEST(SplitStreams, TwoToFourOfEitherSize) {
  CompareStreams<2, u8>();
  CompareStreams<3, u8>();
  CompareStreams<4, u8>();
  CompareStreams<2, u16>();
  CompareStreams<3, u16>();
  CompareStreams<4, u16>();
}

template <typename Sample>
void ComparePairs() {
  std::mt19937 random(41);
  for (u32 count = 0; count <= kStripPixels; count += 2) {
    std::vector<Sample> pairs(2 * count + 64);
    for (Sample& sample : pairs) sample = static_cast<Sample>(random() & (sizeof(Sample) == 1 ? 255 : 1023));
    std::vector<i16> luma(count + 32, -1);
    std::vector<i16> cb(luma);
    std::vector<i16> cr(luma);
    SplitPairs(pairs.data(), count, luma.data(), cb.data(), cr.data());
    for (std::size_t i = 0; i < count / 2; ++i) {
      ASSERT_EQ(luma[2 * i], pairs[4 * i]) << i;
      ASSERT_EQ(cb[i], pairs[4 * i + 1]) << i;
      ASSERT_EQ(luma[2 * i + 1], pairs[4 * i + 2]) << i;
      ASSERT_EQ(cr[i], pairs[4 * i + 3]) << i;
    }
  }
}

TEST(SplitStreams, PairsOfEitherSize) {
  ComparePairs<u8>();
  ComparePairs<u16>();
}

// ---- Strips of one colour

// A strip of a band that is flat, and everything that it depends on.
template <const FrameLayout& Layout>
struct FlatStrip {
  std::unique_ptr<BandSymbols<Layout>> symbols = std::make_unique<BandSymbols<Layout>>();
  u32 step = 96;
  u32 count = 96;
  SampleStrip above = {};
  UnitSamples leftAbove = {10, 20, 30, 40};
  std::array<UnitSamples, kBandLanes> left;

  FlatStrip() {
    symbols->rowBytes = SymbolRowBytes<Layout>(500);
    symbols->rows = kBandLanes;
    symbols->rawRows = 0;
    for (u32 r = 0; r < kBandLanes; ++r) {
      std::fill_n(symbols->Row(r), 500 * kStepLength<Layout>, SampleOf<kSymbolsOf<Layout>>{1});
      std::fill_n(symbols->Row(r) + step * kStepLength<Layout>, count * kStepLength<Layout>,
                  SampleOf<kSymbolsOf<Layout>>{0});
    }
    std::fill_n(above.first.cells, std::size(above.first.cells), i16{10});
    std::fill_n(above.second.cells, std::size(above.second.cells), i16{20});
    std::fill_n(above.third.cells, std::size(above.third.cells), i16{30});
    std::fill_n(above.alpha.cells, std::size(above.alpha.cells), i16{40});
    left.fill(leftAbove);
  }

  template <bool KeepAlpha>
  bool IsSo() {
    return IsFlat<Layout, KeepAlpha>(*symbols, step, count, above, leftAbove, left);
  }
};

// Whatever is other than the colour is seen.
template <const FrameLayout& Layout, bool KeepAlpha>
void ChangeEverything() {
  FlatStrip<Layout> strip;
  const auto isFlat = [&] { return strip.template IsSo<KeepAlpha>(); };
  ASSERT_TRUE(isFlat());
  const auto expectSeen = [&](auto& place, bool matters, const char* what, std::size_t at) {
    const auto before = place;
    place = static_cast<std::remove_reference_t<decltype(place)>>(before + 1);
    EXPECT_EQ(isFlat(), !matters) << what << ' ' << at;
    place = before;
  };
  for (u32 r = 0; r < kBandLanes; ++r) {
    auto* const row = strip.symbols->Row(r) + strip.step * kStepLength<Layout>;
    for (std::size_t i = 0; i < strip.count * kStepLength<Layout>; ++i) expectSeen(row[i], true, "symbol", i);
    strip.symbols->rawRows = 1u << r;
    EXPECT_FALSE(isFlat());
    strip.symbols->rawRows = 0;
    UnitSamples& left = strip.left[r];
    for (i16* sample : {&left.first, &left.second, &left.third}) expectSeen(*sample, true, "left", r);
    expectSeen(left.alpha, KeepAlpha, "left alpha", r);
  }
  UnitSamples& leftAbove = strip.leftAbove;
  for (i16* sample : {&leftAbove.first, &leftAbove.second, &leftAbove.third})
    expectSeen(*sample, true, "left above", 0);
  expectSeen(leftAbove.alpha, KeepAlpha, "left above alpha", 0);
  const u32 others = kInPairs<Layout> ? strip.count / 2 : strip.count;
  for (u32 i = 0; i < strip.count; ++i) {
    expectSeen(Cells(strip.above.first)[i], true, "above", i);
    expectSeen(Cells(strip.above.second)[i], i < others, "second above", i);
    expectSeen(Cells(strip.above.third)[i], i < others, "third above", i);
    expectSeen(Cells(strip.above.alpha)[i], KeepAlpha, "alpha above", i);
  }
  // Nothing is left of the first strip.
  strip.step = 0;
  for (u32 r = 0; r < kBandLanes; ++r)
    std::fill_n(strip.symbols->Row(r), 96 * kStepLength<Layout>, SampleOf<kSymbolsOf<Layout>>{0});
  expectSeen(leftAbove.first, false, "left above the first strip", 0);
  expectSeen(strip.left[0].first, false, "left of the first strip", 0);
  ASSERT_TRUE(isFlat());
}

TEST(FlatStrips, AreThoseWhereNothingDiffers) {
  ChangeEverything<RGB8bf, false>();
  ChangeEverything<RGBA10bf, true>();
  ChangeEverything<RGBA10bf, false>();
  ChangeEverything<YCbCr10bv422, false>();
  ChangeEverything<YCbCrA8bv4224, true>();
}

}  // namespace
}  // namespace vorel
