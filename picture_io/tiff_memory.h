// libtiff on files in memory. What it has to say goes into a record and nowhere else; it says it by return
// values, so nothing is jumped over.
#pragma once
#include <memory>
#include <string>

#include <tiffio.h>

#include "picture_io/picture_stream.h"

namespace vorel::picture_io {

// A file that is read, or one that is written and read back where libtiff wants to.
struct TiffMemory {
  const StoredPicture* file;
  StoredPicture* written = nullptr;  // the same one, or null when it is only read
  std::size_t position = 0;
  char error[200] = {};    // the first one
  char warning[200] = {};  // the first one
};

struct TiffCloser {
  void operator()(TIFF* tiff) const { TIFFClose(tiff); }
};
using TiffHandle = std::unique_ptr<TIFF, TiffCloser>;

// `memory` and the file in it outlive the handle. Null if libtiff refuses, with the reason in `memory`.
// `mode` is that of TIFFOpen.
TiffHandle OpenTiff(TiffMemory& memory, const char* mode);

// What libtiff said first, errors before warnings.
std::string TiffMessage(const TiffMemory& memory);

// No block that a file asks for takes more; tiles are of this size at most.
inline constexpr std::size_t kLargestTiffBlock = std::size_t{1} << 28;

}  // namespace vorel::picture_io
