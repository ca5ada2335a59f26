// Raw pictures: rows one after the other as RowGeometry has them, one picture after the other, and nothing
// else. What they are is said beside the file.
#pragma once
#include "picture_io/byte_input.h"
#include "picture_io/picture_stream.h"

namespace vorel::picture_io {

// Pictures of `format`, which is taken as it stands, of any pixel format of the core. They come and go bit
// for bit, the unused half of an odd width's last pair included; what fills the rows of 'v210' up is not
// looked at.
PictureSource OpenRawSource(ByteInput input, const ClipFormat& format);

// Rows of 'v210' are filled up with zeros.
PictureSink OpenRawSink(WriteBytes write);

}  // namespace vorel::picture_io
