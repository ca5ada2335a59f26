// DPX files of 10 bits: one R'G'B' element, three samples in the upper bits of a word of 32.
//
//   bits 31..22 R | 21..12 G | 11..2 B | 1..0 zero
//
// Pictures are 'F10k', whose words are the big-endian ones; those of a little-endian file are turned round.
// Where DPX files carry something that is not said, all bits of the field are set.
#pragma once
#include "picture_io/picture_file.h"

namespace vorel::picture_io {

enum class DpxOrder : u8 { bigEndian, littleEndian };

PictureFileHeader DescribeDpx(const StoredPicture& file, const std::string& name);
void ReadDpx(const StoredPicture& file, const std::string& name, Picture& picture);
void WriteDpx(const Picture& picture, const ClipFormat& format, DpxOrder order, StoredPicture& file);

// The two differ in what they write.
extern const PictureFileKind kDpxFiles;
extern const PictureFileKind kLittleEndianDpxFiles;

}  // namespace vorel::picture_io
