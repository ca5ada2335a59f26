// What compressors and transcoders share in making frames a host's own.
#pragma once
#include <optional>

#include "component/image_extensions.h"

namespace vorel::component {

// Puts a string of the component's lists into a description. `index` counts from 1.
OSErr WriteName(ComponentInstance self, ImageDescriptionHandle description, i16 list, i16 index);

// Reads the first byte of an extension; nothing if there is none. That one is missing is no failure, but any
// other error is given back: an extension that could not be read must not pass for one that isn't there.
OSErr ReadFirstByte(ImageDescriptionHandle description, OSType type, std::optional<u8>& found);

// Bytes that may be read from a frame's start on when it is decoded for its proof: the decoder relies on the
// bound, which it tests once a row, and looks two words ahead.
std::size_t ReadableFrameBytes(u32 frameBound, u32 width);

// The size that a frame is recorded with counts its header twice: zeros stand behind the last word written.
// `wordCursor` is where the encoder has stopped.
void ClearFrameTail(u8* frame, u32 wordCursor, u32 recordedBytes);

}  // namespace vorel::component
