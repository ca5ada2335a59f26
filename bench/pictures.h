// The pictures that benchmarks run on.
#pragma once
#include <string>
#include <vector>

#include "base/integers.h"

namespace vorel::bench {

// Pictures of one kind and size, as 'yuvu' rows without padding.
struct Sequence {
  std::string name;
  u32 width;
  u32 height;
  std::vector<std::vector<u8>> pictures;
};

// Every folder of `folder` that holds PNG files is a sequence. R'G'B' is turned into video-range Y'CbCr with
// the weights of ITU-R BT.709 and chroma filtered 1-2-1; this serves measurement alone. Throws
// std::runtime_error.
std::vector<Sequence> LoadFolder(const std::string& folder);

// The clip of the samples: a YUV4MPEG2 file of 4:2:2 pictures with 8 bits.
Sequence LoadSampleClip(const std::string& path);

}  // namespace vorel::bench
