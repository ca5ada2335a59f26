// The test of arguments with which every frame routine opens.
#pragma once
#include "frame/frame_call.h"
#include "frame/status.h"

namespace vorel {

// bitsPerPixel   significant bits of the pixel format, which is not its stored size
// routineName    of the routine that asks; it has no effect on the result
// Tests in a fixed order, touches nothing.
Status CheckArguments(const FrameCall& call, u32 bitsPerPixel, const char* routineName);

}  // namespace vorel
