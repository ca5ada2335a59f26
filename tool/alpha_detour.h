// 16-bit R'G'B' without alpha, 'b48r', from frames that come as 'b64a' but not as it: those of Y'CbCr. They are
// decoded with alpha, which is left out afterwards.
#pragma once
#include "picture_io/picture_stream.h"

namespace vorel::tool {

// The pixel format that frames with this tag are decoded to where pictures are to be `pixelFormat`.
u32 DecodedFormatFor(u32 tag, u32 pixelFormat);

// Whether frames with this tag come as such pictures, by the detour or without.
bool ComesAs(u32 tag, u32 pixelFormat);

// Makes a 'b64a' picture a 'b48r' picture.
void LeaveOutAlpha(picture_io::Picture& picture);

}  // namespace vorel::tool
