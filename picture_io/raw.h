// Raw pictures: rows without gaps, one picture after the other, and nothing else. What they are is said
// beside the file.
#pragma once
#include "picture_io/byte_input.h"
#include "picture_io/picture_stream.h"

namespace vorel::picture_io {

// Pictures of `format`, which is taken as it stands. 'yuvu' comes and goes bit for bit, the unused half of an
// odd width's last pair included.
PictureSource OpenRawSource(ByteInput input, const ClipFormat& format);

PictureSink OpenRawSink(WriteBytes write);

}  // namespace vorel::picture_io
