// From a frame, or a picture and a choice of format, to the frame routine that serves it. The functions below
// are the common part of the 24 exported ones, which differ only in the family that they name.
#pragma once
#include "frame/catalogue.h"
#include "frame/frame_call.h"
#include "frame/status.h"
#include "vorel/frame_codec.h"

namespace vorel {

// `call.frame` may have any address; `readableBytes` counts from it. See VorelDecodeBounded.
Status DecodeLenient(VorelFamily family, u32 pixelFormat, FrameCall call, std::size_t readableBytes,
                     u32 flags);

// As DecodeLenient, but only a frame that Encode with the same arguments would have made; the generic family
// knows RGB sources alone.
Status DecodeStrict(VorelFamily family, u32 pixelFormat, u32 formatChoice, const FrameCall& call, u32 flags);

// Whether these bytes begin with a signature that the family's decoder accepts.
bool HasSignature(VorelFamily family, const u8* frame, std::size_t readableBytes);

void WriteHeader(u32 tag, u8* frame);

// The routine that Encode comes to with these arguments and no flags, or null.
const FrameRoutine* FindEncoder(VorelFamily family, u32 pixelFormat, u32 formatChoice);

Status Encode(VorelFamily family, u32 pixelFormat, u32 formatChoice, const FrameCall& call, u32 flags);

}  // namespace vorel
