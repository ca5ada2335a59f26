// Every conversion between pictures and samples of frames, against a plain model of the same rules: random
// pictures, extreme ones, codes outside the legal ones, all widths from 1 to 67 and some that end in a second or
// third strip. Around each row lie bytes that must neither be read nor written.
#include "pixel/conversion_table.h"

#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "tests/core/guarded.h"
#include "tests/reference/pixel_model.h"

namespace vorel {
namespace {

enum class Content { noise, lowest, highest, extremes, ramp };
constexpr Content kContents[] = {Content::noise, Content::lowest, Content::highest, Content::extremes,
                                 Content::ramp};

constexpr u32 kWidths[] = {1,  2,  3,  4,  5,  6,  7,  8,  9,  10,  11,  12,  13,  14,  15, 16,
                           17, 18, 19, 20, 21, 22, 23, 24, 25, 26,  27,  28,  29,  30,  31, 32,
                           33, 34, 35, 36, 37, 38, 39, 40, 41, 42,  43,  44,  45,  46,  47, 48,
                           49, 50, 51, 52, 53, 54, 55, 56, 57, 58,  59,  60,  61,  62,  63, 64,
                           65, 66, 67, 94, 95, 96, 97, 98, 99, 191, 192, 193, 194, 288, 301};

// A value of `bits` bits.
int ValueOf(Content content, std::mt19937& random, u32 place, int bits) {
  const u32 mask = (1u << bits) - 1;
  switch (content) {
    case Content::noise:
      return static_cast<int>(random() & mask);
    case Content::lowest:
      return 0;
    case Content::highest:
      return static_cast<int>(mask);
    case Content::extremes:
      return static_cast<int>(random() % 2 == 0 ? 0 : mask);
    case Content::ramp:
      return static_cast<int>(place * 5 & mask);
  }
  return 0;
}

std::vector<u8> MakeRow(Content content, std::mt19937& random, std::size_t bytes) {
  std::vector<u8> row(bytes);
  for (std::size_t i = 0; i < bytes; ++i)
    row[i] = static_cast<u8>(ValueOf(content, random, static_cast<u32>(i), 8));
  return row;
}

std::string Describe(const char* layout, const char* pixel, u32 width, u32 standard, Content content) {
  return std::string(layout) + ' ' + pixel + ", width " + std::to_string(width) + ", standard " +
         std::to_string(standard) + ", content " + std::to_string(static_cast<int>(content));
}

// The row's samples, strip after strip. Nothing is known of what the planes hold beforehand.
reference::RowSamples Fill(const Conversion<FillFunction>& conversion, u32 standard, const u8* row,
                           u32 width) {
  reference::RowSamples samples;
  const ColourWeights weights = conversion.weights(standard);
  ChromaCarry carry = {-5, 77};
  SampleStrip strip;
  std::memset(&strip, 0x5A, sizeof strip);
  const bool pairs = conversion.frame->unit == Unit::pair;
  for (u32 first = 0; first < width; first += kStripPixels) {
    conversion.run(row, {first, width}, weights, carry, strip);
    const u32 count = std::min(kStripPixels, width - first);
    const u32 wide = pairs ? (count + 1) / 2 * 2 : count;
    const u32 chroma = pairs ? wide / 2 : wide;
    const auto append = [](std::vector<int>& to, const SamplePlane& plane, u32 cells) {
      to.insert(to.end(), Cells(plane), Cells(plane) + cells);
      EXPECT_EQ(Cells(plane)[-1], 0x5A5A) << "the cell before the strip is another's";
    };
    append(samples.first, strip.first, wide);
    append(samples.second, strip.second, chroma);
    append(samples.third, strip.third, chroma);
    if (conversion.frame->alpha) append(samples.alpha, strip.alpha, wide);
  }
  return samples;
}

TEST(Conversion, FilledStripsHoldWhatTheModelSays) {
  std::mt19937 random(11);
  for (const Conversion<FillFunction>& conversion : kFills) {
    for (const u32 width : kWidths) {
      for (const Content content : kContents) {
        const u32 standard = conversion.hasMatrix ? static_cast<u32>(random()) % 3 : 0;
        const std::size_t bytes = reference::RowBytes(conversion.pixelName, width);
        ASSERT_EQ(bytes, BytesOfPixels(*conversion.pixel, width));
        Fenced row(MakeRow(content, random, bytes));
        const reference::RowSamples expected = reference::FetchRow(
            conversion.layout, conversion.pixelName, static_cast<int>(standard), row.data(), width);
        const reference::RowSamples samples = Fill(conversion, standard, row.data(), width);
        const std::string what = Describe(conversion.layout, conversion.pixelName, width, standard, content);
        ASSERT_EQ(samples.first, expected.first) << what;
        ASSERT_EQ(samples.second, expected.second) << what;
        ASSERT_EQ(samples.third, expected.third) << what;
        ASSERT_EQ(samples.alpha, expected.alpha) << what;
      }
    }
  }
}

reference::RowSamples MakeSamples(const SampleDomain& frame, Content content, std::mt19937& random,
                                  u32 width) {
  const bool pairs = frame.unit == Unit::pair;
  const u32 wide = pairs ? (width + 1) / 2 * 2 : width;
  const auto make = [&](u32 count) {
    std::vector<int> plane(count);
    for (u32 i = 0; i < count; ++i) plane[i] = ValueOf(content, random, i, frame.bits);
    return plane;
  };
  reference::RowSamples samples;
  samples.first = make(wide);
  samples.second = make(pairs ? wide / 2 : wide);
  samples.third = make(pairs ? wide / 2 : wide);
  if (frame.alpha) samples.alpha = make(wide);
  return samples;
}

// Cells of a strip from `samples[from]` on, as many as there are, and some that are none of the row's behind.
void PutCells(SamplePlane& plane, const std::vector<int>& samples, std::size_t from, std::size_t count) {
  for (std::size_t i = 0; i < count + 1 && from + i < samples.size(); ++i)
    Cells(plane)[i] = static_cast<i16>(samples[from + i]);
}

void Drain(const Conversion<DrainFunction>& conversion, u32 standard, const reference::RowSamples& samples,
           u32 width, u8* row) {
  const ColourWeights weights = conversion.weights(standard);
  ChromaCarry carry = {-5, 77};
  const u32 perChroma = conversion.frame->unit == Unit::pair ? 2 : 1;
  for (u32 first = 0; first < width; first += kStripPixels) {
    SampleStrip strip;
    std::memset(&strip, 0x11, sizeof strip);
    PutCells(strip.first, samples.first, first, kStripPixels);
    PutCells(strip.second, samples.second, first / perChroma, kStripPixels / perChroma);
    PutCells(strip.third, samples.third, first / perChroma, kStripPixels / perChroma);
    if (conversion.frame->alpha) PutCells(strip.alpha, samples.alpha, first, kStripPixels);
    conversion.run(strip, {first, width}, weights, carry, row);
  }
}

TEST(Conversion, DrainedStripsStoreWhatTheModelSaysAndNothingElse) {
  std::mt19937 random(12);
  for (const Conversion<DrainFunction>& conversion : kDrains) {
    for (const u32 width : kWidths) {
      for (const Content content : kContents) {
        const u32 standard = conversion.hasMatrix ? static_cast<u32>(random()) % 3 : 0;
        const reference::RowSamples samples = MakeSamples(*conversion.frame, content, random, width);
        const std::size_t bytes = reference::RowBytes(conversion.pixelName, width);
        Guarded row(bytes, 0x77);
        Drain(conversion, standard, samples, width, row.data());
        std::vector<u8> expected(bytes, 0x77);
        reference::StoreRow(conversion.layout, conversion.pixelName, static_cast<int>(standard), samples,
                            width, expected.data());
        const std::string what = Describe(conversion.layout, conversion.pixelName, width, standard, content);
        ASSERT_EQ(std::vector<u8>(row.data(), row.data() + bytes), expected) << what;
        ASSERT_TRUE(row.MarksIntact()) << what;
      }
    }
  }
}

TEST(Conversion, ColourStandardsOutsideTheListAreThatOf601) {
  std::mt19937 random(13);
  for (const Conversion<FillFunction>& conversion : kFills) {
    if (!conversion.hasMatrix) continue;
    const u32 width = 40;
    const std::vector<u8> row =
        MakeRow(Content::noise, random, reference::RowBytes(conversion.pixelName, width));
    const reference::RowSamples first = Fill(conversion, 0, row.data(), width);
    for (const u32 standard : {3u, 4u, 5u, 0xFFFFFFFFu}) {
      const reference::RowSamples other = Fill(conversion, standard, row.data(), width);
      ASSERT_EQ(first.first, other.first) << conversion.layout << conversion.pixelName << standard;
      ASSERT_EQ(first.second, other.second);
      ASSERT_EQ(first.third, other.third);
    }
    const reference::RowSamples hd = Fill(conversion, 1, row.data(), width);
    const reference::RowSamples hd1035 = Fill(conversion, 2, row.data(), width);
    EXPECT_NE(first.first, hd.first) << conversion.layout << conversion.pixelName;
    EXPECT_NE(hd.second, hd1035.second) << conversion.layout << conversion.pixelName;
  }
}

// The catalogue and the layouts agree on which routines take a colour standard.
TEST(Conversion, AMatrixStandsBetweenUnlikeColourModelsOnly) {
  for (const auto& conversion : kFills)
    EXPECT_EQ(conversion.hasMatrix, conversion.frame->model != conversion.pixel->model)
        << conversion.layout << conversion.pixelName;
  for (const auto& conversion : kDrains)
    EXPECT_EQ(conversion.hasMatrix, conversion.frame->model != conversion.pixel->model)
        << conversion.layout << conversion.pixelName;
}

}  // namespace
}  // namespace vorel
