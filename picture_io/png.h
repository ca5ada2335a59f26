// PNG files, read and written by libpng. Samples come and go bit for bit: what a file says of gamma and of
// colour spaces is not applied.
//
//   8 bits   24 and 'RGBA'        grey of 1 to 8 bits and palettes become RGB; a transparent colour and the
//   16 bits  'b48r' and 'b64a'    transparency of a palette become alpha
#pragma once
#include "picture_io/picture_file.h"

namespace vorel::picture_io {

PictureFileHeader DescribePng(const StoredPicture& file, const std::string& name);
void ReadPng(const StoredPicture& file, const std::string& name, Picture& picture);
void WritePng(const Picture& picture, StoredPicture& file);

extern const PictureFileKind kPngFiles;

}  // namespace vorel::picture_io
