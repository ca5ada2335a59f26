// The 8bw 4:2:2 frame format written as plainly as possible: one bit and one sample at a time, codes found by
// linear search. It is the judge of the fast coder and shares no code with it.
#pragma once
#include <cstdint>
#include <string>
#include <vector>

namespace reference {

using Bits = std::vector<bool>;  // of a frame, from the first bit of its first word

struct Code {
  std::vector<std::string> words;  // by symbol, as '0' and '1'
};

// From a list such as "3x2 4x2 ...".
Code MakeCode(const std::string& lengths);

// Rows from the top, each of pairs * 4 bytes: Y'0, Cb, Y'1, Cr.
using Picture = std::vector<std::vector<std::uint8_t>>;

struct EncodeResult {
  std::uint32_t status;
  Bits bits;           // the whole frame up to the position at which the coder stopped
  bool attemptFailed;  // whether a status of 1 came from a row that was about to be given up
};

// bits       what stands in the frame before the first coded bit
// firstWord  word in which coding begins; the bound counts from there
// boundBytes frame bound
EncodeResult EncodeWide(const Picture& picture, bool interlaced, std::uint32_t width, Bits bits,
                        std::uint64_t firstWord, std::uint64_t boundBytes);

struct DecodeResult {
  std::uint32_t status;
  Picture picture;         // the rows that were decoded
  std::uint64_t position;  // bit behind the last one taken
};

// Bits behind the end of `bits` are zero.
DecodeResult DecodeWide(const Bits& bits, std::uint64_t position, bool interlaced, std::uint32_t width,
                        std::uint32_t height, std::uint64_t firstWord, std::uint64_t boundBytes);

}  // namespace reference
