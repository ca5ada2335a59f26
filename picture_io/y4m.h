// YUV4MPEG2 streams, 4:2:2 and 4:4:4 with 8 or 10 bits: a header line, then for each picture a line "FRAME"
// and the planes Y', Cb, Cr and, in one kind of stream, alpha. Pictures are handed on as rows:
//
//   C422       '2vuy' or 'yuvu'    C444       'v408', opaque
//   C422p10    'v216'              C444p10    'v410'
//                                  C444alpha  'v408', alpha in video range like Y'
#pragma once
#include "picture_io/byte_input.h"
#include "picture_io/picture_stream.h"

namespace vorel::picture_io {

// Reads the header; the pictures follow as they are fetched. Those of 4:2:2 with 8 bits become `eightBits`,
// '2vuy' or 'yuvu'. Throws Problem.
PictureSource OpenY4mSource(ByteInput input, u32 eightBits = k2vuy);

// Writes the header of a clip of pictures in one of these pixel formats.
PictureSink OpenY4mSink(const ClipFormat& format, WriteBytes write);

}  // namespace vorel::picture_io
