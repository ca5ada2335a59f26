// The form of interlaced 8bv 4:2:2 in which every row tells how many low bits it has lost, written plainly.
#pragma once
#include <cstdint>
#include <vector>

#include "tests/reference/prefix_code.h"

namespace reference {

struct ReducedPicture {
  std::uint32_t status;                         // 0, or 4: past the frame bound of the plain form
  std::vector<std::vector<std::uint8_t>> rows;  // of '2vuy', with the one that passed the bound
  std::uint64_t position;                       // bit behind the last one taken
};

ReducedPicture DecodeReducedRows(const Bits& bits, std::uint64_t position, std::uint32_t width,
                                 std::uint32_t height, std::uint64_t bound);

}  // namespace reference
