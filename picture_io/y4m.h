// YUV4MPEG2 streams, 4:2:2 with 8 or 10 bits: a header line, then for each picture a line "FRAME" and the
// planes Y', Cb, Cr. Pictures are handed on as rows of pairs: 10 bits as 'v216', 8 bits as '2vuy' or 'yuvu'.
#pragma once
#include "picture_io/byte_input.h"
#include "picture_io/picture_stream.h"

namespace vorel::picture_io {

// Reads the header; the pictures follow as they are fetched. Those of 8 bits become `eightBits`, '2vuy' or
// 'yuvu'. Throws Problem.
PictureSource OpenY4mSource(ByteInput input, u32 eightBits = k2vuy);

// Writes the header of a clip of 'yuvu', '2vuy' or 'v216' pictures.
PictureSink OpenY4mSink(const ClipFormat& format, WriteBytes write);

}  // namespace vorel::picture_io
