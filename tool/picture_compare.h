// Two pictures of 'yuvu', sample by sample.
#pragma once
#include <optional>

#include "picture_io/picture_stream.h"

namespace vorel::tool {

// The first sample, row by row and left to right, that two pictures don't agree on. Values are from 0 to 255,
// with 128 for neutral chroma.
struct Difference {
  u32 row;
  u32 pixel;
  const char* component;  // "Y'", "Cb" or "Cr"
  u32 first;
  u32 second;
};

// Pictures of the same size. With `comparesPadding` the sample behind the end of an odd row counts as well.
std::optional<Difference> FindDifference(const picture_io::Picture& first, const picture_io::Picture& second,
                                         bool comparesPadding);

}  // namespace vorel::tool
