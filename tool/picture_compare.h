// Two pictures, sample by sample.
#pragma once
#include <optional>

#include "picture_io/picture_stream.h"

namespace vorel::tool {

// Beyond the samples of every pixel, which always count.
struct Compared {
  bool padding;  // the second half of an odd width's last pair counts
  bool alpha;    // alpha counts
  u32 shift;     // lower bits that samples don't have; values are told without them
};

// The first sample, row by row and in the order of memory, that two pictures don't agree on. Values are as
// the pixel format has them, but for the chroma of 'yuvu', which is told from 0 to 255 with 128 for neutral.
struct Difference {
  u32 row;
  u32 pixel;
  const char* component;  // "Y'", "Cb", "Cr", "R", "G", "B" or "A"
  u32 first;
  u32 second;
};

// Pictures of the same size and pixel format. Bits that belong to no sample never count.
std::optional<Difference> FindDifference(const picture_io::Picture& first, const picture_io::Picture& second,
                                         const Compared& compared);

}  // namespace vorel::tool
