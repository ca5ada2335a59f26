// Bytes of one row and the codes that stand in them, for all pixel formats, without any arithmetic on a code:
// a code is the field as it lies in memory, whatever it is worth. Every pixel, pair or v210 word is one
// integer of some bytes, and a code is a run of its bits.
#pragma once
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace reference {

// Samples of one row: R G B A or Y' Cb Cr A. Rows of 4:2:2 have (width + 1) / 2 samples of Cb and of Cr, and
// twice as many of Y' and alpha; all others have width of each. `alpha` is empty where there is none.
struct RowSamples {
  std::vector<int> first, second, third, alpha;
};

enum class Sampling { pixel, pair, group };  // one pixel, two pixels, or six pixels in four words

Sampling SamplingOf(std::string_view pixel);
bool HasAlphaPosition(std::string_view pixel);  // the name without alpha too: its filler is a position

// Bytes that a row touches. A row of v210 ends behind the last word that it needs.
std::size_t RowBytes(std::string_view pixel, std::size_t width);

RowSamples ReadCodes(std::string_view pixel, const std::uint8_t* row, std::size_t width);
void WriteCodes(std::string_view pixel, const RowSamples& codes, std::size_t width, std::uint8_t* row);

}  // namespace reference
