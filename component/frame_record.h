// What compressors and transcoders share in making frames a host's own.
#pragma once
#include "component/host.h"

namespace vorel::component {

// Puts a string of the component's lists into a description. `index` counts from 1.
OSErr WriteName(ComponentInstance self, ImageDescription& description, i16 list, i16 index);

// The size that a frame is recorded with counts its header twice: zeros stand behind the last word written.
// `wordCursor` is where the encoder has stopped.
void ClearFrameTail(u8* frame, u32 wordCursor, u32 recordedBytes);

}  // namespace vorel::component
