// Groups of 'v210' taken apart in vectors, against the fields of their words one by one.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

#include "pixel/load.h"

namespace vorel {
namespace {

constexpr u32 kGroups = kStripPixels / 6;

// The three fields of each word of a strip, lowest bits first, as samples of `bits`.
std::vector<i16> FieldsOf(const std::vector<u8>& bytes, int bits) {
  std::vector<i16> fields;
  for (std::size_t i = 0; i < bytes.size(); i += 4) {
    const u32 word = bytes[i] | u32{bytes[i + 1]} << 8 | u32{bytes[i + 2]} << 16 | u32{bytes[i + 3]} << 24;
    for (const int shift : {0, 10, 20})
      fields.push_back(static_cast<i16>((word >> shift & 1023) >> (10 - bits)));
  }
  return fields;
}

template <int Bits>
void CompareWithFields(const std::vector<u8>& bytes) {
  SampleStrip strip;
  LoadPairs<Pxv210, Bits>(bytes.data(), PlanesOf(strip));
  const std::vector<i16> fields = FieldsOf(bytes, Bits);
  // Cb Y' Cr Y' by turns.
  for (u32 i = 0; i < kStripPairs; ++i) {
    ASSERT_EQ(Cells(strip.second)[i], fields[4 * i]) << i;
    ASSERT_EQ(Cells(strip.first)[2 * i], fields[4 * i + 1]) << i;
    ASSERT_EQ(Cells(strip.third)[i], fields[4 * i + 2]) << i;
    ASSERT_EQ(Cells(strip.first)[2 * i + 1], fields[4 * i + 3]) << i;
  }
}

TEST(LoadGroups, GiveTheFieldsOfTheirWords) {
  std::vector<u8> bytes(std::size_t{kGroups} * 16);
  std::mt19937 random(5);
  for (int round = 0; round < 500; ++round) {
    for (u8& byte : bytes) byte = static_cast<u8>(round < 20 ? 255 * (random() & 1) : random());
    CompareWithFields<10>(bytes);
    CompareWithFields<8>(bytes);
  }
  // Each bit by itself.
  for (std::size_t bit = 0; bit < 8 * bytes.size(); ++bit) {
    std::fill(bytes.begin(), bytes.end(), u8{0});
    bytes[bit / 8] = static_cast<u8>(1 << bit % 8);
    CompareWithFields<10>(bytes);
    CompareWithFields<8>(bytes);
  }
}

}  // namespace
}  // namespace vorel
