// What goes into what: pixel formats against frame formats, as the core answers for every pair.
#pragma once
#include <string>
#include <vector>

#include "base/integers.h"
#include "vorel/pixel_formats.h"

namespace vorel::tool {

// The 30 frame formats by their tags, progressive before interlaced.
std::vector<u32> AllFrameTags();

struct FormatPair {
  const VorelPixelFormatInfo* pixels;
  u32 tag;
  std::vector<std::string> codecs;  // that make such frames of such pictures; none where there is no way
  bool isDecoded;                   // frames come out as such pictures
};

// Every pair with a way in one direction at least: row by row of the table.
std::vector<FormatPair> AllPairs();

// A table with a row for each pixel format and a column for each frame format, and what its marks mean.
void PrintMatrix();

}  // namespace vorel::tool
