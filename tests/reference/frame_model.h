// Frames of all layouts and both scans written as plainly as possible: one bit and one sample at a time. It
// is the judge of the fast coders and shares no code with them.
//
// layout  frame family without its scan: "YCbCrA8bv4224", "RGB8bf"
// scan    'p' or 'i'
// Samples of a row are those of the frame, unsigned; chroma of 8bw is its byte.
#pragma once
#include <cstdint>
#include <string_view>
#include <vector>

#include "tests/reference/pixel_memory.h"
#include "tests/reference/prefix_code.h"

namespace reference {

using Rows = std::vector<RowSamples>;

// The most bytes that the bit stream of a frame may take.
std::uint64_t FrameBound(std::string_view layout, std::uint32_t width, std::uint32_t height);

// Whether a coder that stands at a bit has left the frame bound, which counts from the word in which the
// stream begins.
bool IsPastBound(std::uint64_t position, std::uint64_t firstWord, std::uint64_t bound);

// Appends one row in the form that is told, whatever its length. `above` is null in the first row.
void AppendRow(std::string_view layout, char scan, const RowSamples* above, const RowSamples& row, bool raw,
               Bits& bits);

// Whether a predicted row stays: what counts are the whole words that were finished from its first bit on.
bool PredictedRowStays(std::string_view layout, std::uint32_t width, std::uint64_t rowStart,
                       std::uint64_t rowEnd);

struct EncodedFrame {
  std::uint32_t status;   // 0, or 1: past the frame bound
  Bits bits;              // the whole frame up to the position at which the coder stopped
  std::vector<bool> raw;  // of every finished row, which form it has
};

// bits   what stands in the frame before the first coded bit
// bound  bytes
EncodedFrame EncodeFrame(std::string_view layout, char scan, const Rows& rows, std::uint32_t width, Bits bits,
                         std::uint64_t bound);

struct DecodedFrame {
  std::uint32_t status;    // 0, or 4: past the frame bound
  Rows rows;               // the decoded ones, with the one that passed the bound
  std::uint64_t position;  // bit behind the last one taken
};

DecodedFrame DecodeFrame(std::string_view layout, char scan, const Bits& bits, std::uint64_t position,
                         std::uint32_t width, std::uint32_t height, std::uint64_t bound);

}  // namespace reference
