// The pictures that benchmarks run on.
#pragma once
#include <string>
#include <vector>

#include "base/integers.h"

namespace vorel::bench {

// Pictures of one kind and size.
struct Sequence {
  std::string name;
  u32 width;
  u32 height;
  bool isDeep;                            // samples have more than 8 bits
  std::vector<std::vector<u8>> pictures;  // 'b64a', rows without gaps
};

// The clip of the samples: a YUV4MPEG2 file of 4:2:2 pictures with 8 bits. Throws
// std::runtime_error.
Sequence LoadSampleClip(const std::string& path);

// The pictures in another pixel format, by its name in the routines ("2vuy", "_RGB", "ARGB"): through 8 bits where
// it has no more, else through 10. Rows are aligned to 4.
std::vector<std::vector<u8>> InPixelFormat(const Sequence& sequence, const std::string& pixelName);

}  // namespace vorel::bench
