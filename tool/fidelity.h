// What is lost between pictures and frames: said to people, and judged where nothing may be.
#pragma once
#include <string>

#include "tool/frame_format.h"

namespace vorel::tool {

// What frames with this tag cannot hold of a clip's pictures that have `sampleBits` bits in a sample; usually
// empty.
std::string UnkeptOfPictures(const picture_io::ClipFormat& format, u32 sampleBits, u32 tag);

// Whether all pictures of such a clip come back from frames with this tag bit for bit, whatever is in them.
bool HoldsPictures(const picture_io::ClipFormat& format, u32 sampleBits, u32 tag);

// Advice where they don't.
std::string WayToHoldPictures(const picture_io::ClipFormat& format, u32 sampleBits,
                              const FrameCoding& coding);

// What pictures of this pixel format cannot hold of frames with this tag; usually empty.
std::string UnkeptOfFrames(u32 tag, u32 pixelFormat);

}  // namespace vorel::tool
