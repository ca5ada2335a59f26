// The dispatch functions of the core, chosen by family. The generic ones take no colour standard.
#pragma once
#include "base/integers.h"
#include "vorel/frame_codec.h"

namespace vorel::component {

VorelStatus EncodePicture(VorelFamily family, u32 pixelFormat, u32 formatChoice, u32 width, u32 height,
                          i32 rowBytes, const void* base, u32 colourStandard, u32* wordCursor, u32* bitCursor,
                          u32* frame, u32 flags);

VorelStatus DecodeStrictly(VorelFamily family, u32 pixelFormat, u32 formatChoice, u32 width, u32 height,
                           i32 rowBytes, void* base, u32 colourStandard, u32* wordCursor, u32* bitCursor,
                           const u32* frame, u32 flags, void* scratch);

}  // namespace vorel::component
