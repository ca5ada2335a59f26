// What a TIFF file holds, as its directory says it.
#pragma once
#include "picture_io/tiff_memory.h"

namespace vorel::picture_io {

// Of a file that is handled.
struct TiffLayout {
  u32 width;
  u32 height;
  u32 samples;  // of a pixel in the file
  bool isDeep;
  bool isGrey;
  bool hasAlpha;  // as the last sample
  bool isWhite0;  // colours count from white to black
  bool isPlanar;
};

// Throws Problem that says what is not handled in the current directory of a file.
TiffLayout ReadTiffLayout(TIFF* tiff, const std::string& name);

}  // namespace vorel::picture_io
