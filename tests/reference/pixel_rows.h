// Short rows for tests of pixel formats: bytes from words, and rows fetched and stored by the model in one
// call.
#pragma once
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <string_view>
#include <vector>

#include "tests/reference/pixel_model.h"

namespace reference {

using Bytes = std::vector<std::uint8_t>;
using Samples = std::vector<int>;
using Name = std::string_view;

inline RowSamples Fetch(Name layout, Name pixel, const Bytes& row, std::size_t width, int standard = 0) {
  EXPECT_EQ(row.size(), RowBytes(pixel, width));
  return FetchRow(layout, pixel, standard, row.data(), width);
}

inline Bytes Store(Name layout, Name pixel, const RowSamples& samples, std::size_t width, int standard = 0) {
  Bytes row(RowBytes(pixel, width));
  StoreRow(layout, pixel, standard, samples, width, row.data());
  return row;
}

// Big-endian 32-bit pixels.
inline Bytes Big32(std::initializer_list<std::uint32_t> words) {
  Bytes row;
  for (const std::uint32_t word : words)
    for (int shift = 24; shift >= 0; shift -= 8) row.push_back(static_cast<std::uint8_t>(word >> shift));
  return row;
}

inline Bytes Little32(std::initializer_list<std::uint32_t> words) {
  Bytes row;
  for (const std::uint32_t word : words)
    for (int shift = 0; shift < 32; shift += 8) row.push_back(static_cast<std::uint8_t>(word >> shift));
  return row;
}

inline Bytes Little16(std::initializer_list<int> words) {
  Bytes row;
  for (const int word : words) {
    row.push_back(static_cast<std::uint8_t>(word));
    row.push_back(static_cast<std::uint8_t>(word >> 8));
  }
  return row;
}

inline std::uint32_t Field30(std::uint32_t high, std::uint32_t middle, std::uint32_t low) {
  return high << 20 | middle << 10 | low;
}

// The three colour samples of the first pixel.
inline Samples First(const RowSamples& row) {
  return {row.first[0], row.second[0], row.third[0]};
}

inline std::uint32_t Next(std::uint32_t& state) {
  state = state * 1664525 + 1013904223;
  return state >> 16;
}

}  // namespace reference
