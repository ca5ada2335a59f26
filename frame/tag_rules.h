// How a compressor chooses the format tag for a picture: by its pixel format, by whether alpha is to be kept,
// and by scan. There is a rule for the generic compressor and one for each family.
#pragma once
#include "frame/frame_layout.h"
#include "vorel/frame_codec.h"

namespace vorel {

// family         one of VOREL_GENERIC to VOREL_YCBCR_8BW_422
// formatChoice   VOREL_KEEP_ALPHA and VOREL_INTERLACED; alpha counts where the pixel format has a channel
// Returns the canonical tag, or 0 if the rule does not know the pixel format.
u32 ChooseTag(VorelFamily family, u32 pixelFormat, u32 formatChoice);

}  // namespace vorel
