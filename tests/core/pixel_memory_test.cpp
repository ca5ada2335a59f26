// Shapes of the reference model: bytes of each pixel format, and that every listed pair has its rules.
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <string>

#include "tests/reference/pixel_lists.h"
#include "tests/reference/pixel_model.h"
#include "tests/reference/pixel_rows.h"

namespace {

using namespace reference;

// Bytes of a picture: noise, and every fourth row of them extremes only.
Bytes NoiseRow(std::size_t size, std::uint32_t& state, bool extremes) {
  Bytes row(size);
  for (std::uint8_t& byte : row) {
    const std::uint32_t value = Next(state);
    byte = static_cast<std::uint8_t>(extremes ? (value & 1 ? 255 : 0) : value);
  }
  return row;
}

bool IsPaired(Name layout) {
  return layout.find("422") != Name::npos;
}

bool HasAlpha(Name layout) {
  return layout.find("RGBA") != Name::npos || layout.find("CbCrA") != Name::npos;
}

int Largest(Name layout) {
  return layout.find("10b") != Name::npos ? 1023 : 255;
}

void ExpectShape(const Samples& line, std::size_t count, int largest) {
  EXPECT_EQ(line.size(), count);
  for (const int sample : line) EXPECT_TRUE(sample >= 0 && sample <= largest) << sample;
}

TEST(PixelModel, EveryListedPairFetchesSamplesOfTheFramesShapeAndDepth) {
  std::uint32_t state = 1;
  for (const auto& list : reference::kLayoutPixels)
    for (const Name pixel : list.from)
      for (std::size_t width = 1; width <= 14; ++width) {
        SCOPED_TRACE(std::string(list.layout) + " from " + std::string(pixel));
        const Bytes bytes = NoiseRow(RowBytes(pixel, width), state, width % 4 == 0);
        const RowSamples row = Fetch(list.layout, pixel, bytes, width, static_cast<int>(width % 3));
        const std::size_t pairs = (width + 1) / 2;
        const std::size_t full = IsPaired(list.layout) ? 2 * pairs : width;
        const std::size_t chroma = IsPaired(list.layout) ? pairs : width;
        ExpectShape(row.first, full, Largest(list.layout));
        ExpectShape(row.second, chroma, Largest(list.layout));
        ExpectShape(row.third, chroma, Largest(list.layout));
        ExpectShape(row.alpha, HasAlpha(list.layout) ? full : 0, Largest(list.layout));
      }
}

TEST(PixelModel, EveryListedPairStoresAnySamplesAndNothingBehindTheRow) {
  std::uint32_t state = 2;
  for (const auto& list : reference::kLayoutPixels)
    for (const Name pixel : list.to)
      for (std::size_t width = 1; width <= 14; ++width) {
        SCOPED_TRACE(std::string(list.layout) + " to " + std::string(pixel));
        const auto line = [&](std::size_t count) {
          Samples samples(count);
          for (int& sample : samples) {
            const int noise = static_cast<int>(Next(state)) & Largest(list.layout);
            sample = width % 4 == 0 ? (noise & 1) * Largest(list.layout) : noise;
          }
          return samples;
        };
        const std::size_t pairs = (width + 1) / 2;
        const std::size_t full = IsPaired(list.layout) ? 2 * pairs : width;
        const std::size_t chroma = IsPaired(list.layout) ? pairs : width;
        const RowSamples row = {line(full), line(chroma), line(chroma),
                                line(HasAlpha(list.layout) ? full : 0)};
        const std::size_t size = RowBytes(pixel, width);
        Bytes one(size + 16, 0x5A), other(size + 16, 0xA5);
        StoreRow(list.layout, pixel, static_cast<int>(width % 3), row, width, one.data());
        StoreRow(list.layout, pixel, static_cast<int>(width % 3), row, width, other.data());
        for (std::size_t i = 0; i < size; ++i) EXPECT_EQ(one[i], other[i]);  // each byte is written
        for (std::size_t i = size; i < size + 16; ++i) EXPECT_EQ(one[i], 0x5A);
      }
}

TEST(PixelMemory, PixelsLieInMemoryAsTheirNamesSay) {
  const struct {
    Name pixel;
    Bytes bytes;
    Samples codes;  // with alpha, where there is a position for it
  } cases[] = {
      {"ARGB", {1, 2, 3, 4}, {2, 3, 4, 1}},
      {"_BGR", {1, 2, 3, 4}, {4, 3, 2, 1}},
      {"RGB_", {1, 2, 3, 4}, {1, 2, 3, 4}},
      {"BGRA", {1, 2, 3, 4}, {3, 2, 1, 4}},
      {"AVRGB", {1, 2, 3, 4}, {2, 3, 4, 1}},
      {"RGB", {1, 2, 3}, {1, 2, 3}},
      {"BGR", {1, 2, 3}, {3, 2, 1}},
      {"L555", Little16({3 << 10 | 5 << 5 | 7}), {3, 5, 7}},
      {"L565", Little16({3 << 11 | 50 << 5 | 7}), {3, 50, 7}},
      {"b64a", {1, 2, 3, 4, 5, 6, 7, 8}, {0x304, 0x506, 0x708, 0x102}},
      {"L64A", {1, 2, 3, 4, 5, 6, 7, 8}, {0x403, 0x605, 0x807, 0x201}},
      {"A46L", {1, 2, 3, 4, 5, 6, 7, 8}, {0x605, 0x403, 0x201, 0x807}},
      {"b48r", {1, 2, 3, 4, 5, 6}, {0x102, 0x304, 0x506}},
      {"F10k", Big32({Field30(1, 2, 3) << 2}), {1, 2, 3}},
      {"S10k", Big32({Field30(1, 2, 3) << 2}), {1, 2, 3}},
      {"F210", Big32({Field30(1, 2, 3)}), {1, 2, 3}},
      {"S210", Big32({Field30(1, 2, 3)}), {1, 2, 3}},
      {"Ar408", {1, 2, 3, 4}, {2, 3, 4, 1}},
      {"Av408", {1, 2, 3, 4}, {2, 1, 3, 4}},
      {"VUYA", {1, 2, 3, 4}, {3, 2, 1, 4}},
      {"v410", Little32({Field30(3, 1, 2) << 2}), {1, 2, 3}},
      {"AV416", {1, 2, 3, 4, 5, 6, 7, 8}, {0x605, 0x403, 0x201, 0x807}},
  };
  for (const auto& test : cases) {
    SCOPED_TRACE(test.pixel);
    ASSERT_EQ(RowBytes(test.pixel, 1), test.bytes.size());
    const RowSamples row = reference::ReadCodes(test.pixel, test.bytes.data(), 1);
    Samples codes = First(row);
    codes.insert(codes.end(), row.alpha.begin(), row.alpha.end());
    EXPECT_EQ(codes, test.codes);
    Bytes written(test.bytes.size());
    reference::WriteCodes(test.pixel, row, 1, written.data());
    EXPECT_EQ(written, test.bytes);
  }
}

TEST(PixelMemory, PairsLieInMemoryAsTheirNamesSay) {
  const struct {
    Name pixel;
    Bytes bytes;
    Samples codes;  // Y'0 Y'1 Cb Cr
  } cases[] = {
      {"2vuy", {1, 2, 3, 4}, {2, 4, 1, 3}},
      {"yuvs", {1, 2, 3, 4}, {1, 3, 2, 4}},
      {"yuvu", {1, 2, 3, 0xFF}, {1, 3, 2, 0xFF}},
      {"v216", Little16({1, 2, 3, 0x405}), {2, 0x405, 1, 3}},
      {"Y216", Little16({1, 2, 3, 0x405}), {2, 0x405, 1, 3}},
  };
  for (const auto& test : cases) {
    SCOPED_TRACE(test.pixel);
    ASSERT_EQ(RowBytes(test.pixel, 1), test.bytes.size());
    ASSERT_EQ(RowBytes(test.pixel, 3), 2 * test.bytes.size());
    const RowSamples row = reference::ReadCodes(test.pixel, test.bytes.data(), 2);
    EXPECT_EQ((Samples{row.first[0], row.first[1], row.second[0], row.third[0]}), test.codes);
    Bytes written(test.bytes.size());
    reference::WriteCodes(test.pixel, row, 2, written.data());
    EXPECT_EQ(written, test.bytes);
  }
}

TEST(PixelMemory, A210RowEndsBehindTheLastWordItNeeds) {
  const RowSamples row = {{10, 11, 12, 13, 14, 15, 16, 17}, {20, 21, 22, 23}, {30, 31, 32, 33}, {}};
  const std::uint32_t words[] = {Field30(30, 10, 20), Field30(12, 21, 11), Field30(22, 13, 31),
                                 Field30(15, 32, 14), Field30(33, 16, 23)};
  EXPECT_EQ(Store("YCbCr10bv422", "v210", row, 1), Little32({words[0], 11}));
  EXPECT_EQ(Store("YCbCr10bv422", "v210", row, 2), Little32({words[0], 11}));
  EXPECT_EQ(Store("YCbCr10bv422", "v210", row, 3), Little32({words[0], words[1], Field30(0, 13, 31)}));
  EXPECT_EQ(Store("YCbCr10bv422", "v210", row, 6), Little32({words[0], words[1], words[2], words[3]}));
  EXPECT_EQ(Store("YCbCr10bv422", "v210", row, 8),
            Little32({words[0], words[1], words[2], words[3], words[4], 17}));
  EXPECT_EQ(Fetch("YCbCr10bv422", "v210", Little32({words[0], words[1], words[2]}), 4).first,
            (Samples{10, 11, 12, 13}));
}

}  // namespace
