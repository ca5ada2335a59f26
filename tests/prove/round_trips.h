// Colours that go through the matrix and come back: all of a kind, through the very conversions of the frame
// routines.
#pragma once
#include <cstdint>

namespace vorel::prove {

struct Result {
  std::uint64_t colours;  // that were sent
  std::uint64_t changed;  // that came back as another colour
  std::uint32_t largest;  // change of a sample
};

// R'G'B' of an RGB frame to a picture of Y'CbCr and back. `from` and `to` are bounds of R; G and B take all
// values.
Result Colours8Through876(std::uint32_t standard, std::uint32_t from = 0, std::uint32_t to = 256);
Result Colours8Through219(std::uint32_t standard, std::uint32_t from = 0, std::uint32_t to = 256);
Result Colours10Through3504(std::uint32_t standard, std::uint32_t from = 0, std::uint32_t to = 1024);

// Y'CbCr of a frame to a picture of deep R'G'B' and back. Only colours inside the cube are sent: those whose
// R', G' and B' need no limit. `from` and `to` are bounds of the sample of Y'.
Result Ycc8Through511(std::uint32_t standard, std::uint32_t from = 0, std::uint32_t to = 256);
Result Ycc10Through4095(std::uint32_t standard, std::uint32_t from = 0, std::uint32_t to = 1024);

}  // namespace vorel::prove
