// YUV4MPEG2 streams, 4:2:2 with 8 bits: a header line, then for each picture a line "FRAME" and the planes
// Y', Cb, Cr. Pictures are handed on as 'yuvu'.
#pragma once
#include "picture_io/byte_input.h"
#include "picture_io/picture_stream.h"

namespace vorel::picture_io {

// Reads the header; the pictures follow as they are fetched. Throws Problem.
PictureSource OpenY4mSource(ByteInput input);

// Writes the header of a clip of 'yuvu' pictures.
PictureSink OpenY4mSink(const ClipFormat& format, WriteBytes write);

}  // namespace vorel::picture_io
