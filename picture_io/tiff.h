// TIFF files, read and written by libtiff: RGB with and without alpha, 8 and 16 bits a sample, in strips or
// tiles, samples of a pixel side by side or in planes, plain or in any of the lossless compressions. Grey
// becomes RGB. Of several pictures in a file the first is taken.
//
//   8 bits   24 and 'RGBA'        16 bits  'b48r' and 'b64a'
//
// Pictures here hold straight alpha. Alpha that colours are already multiplied by is refused: dividing would
// not give the same samples back.
#pragma once
#include "picture_io/picture_file.h"

namespace vorel::picture_io {

PictureFileHeader DescribeTiff(const StoredPicture& file, const std::string& name);
void ReadTiff(const StoredPicture& file, const std::string& name, Picture& picture);
void WriteTiff(const Picture& picture, StoredPicture& file);

extern const PictureFileKind kTiffFiles;

}  // namespace vorel::picture_io
