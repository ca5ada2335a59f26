// What distinguishes one pixel format from another.
#pragma once
#include "base/bytes.h"

namespace vorel {

struct PixelLayout {
  u32 code;            // four-character code, or 32 or 24
  u8 significantBits;  // of a pixel, as the argument check counts them: not the stored size
};

// Four bytes a pair: Y'0, Cb, Y'1, Cr. Chroma is two's complement, neutral at 0.
inline constexpr PixelLayout Px_yuvu = {FourCharacterCode("yuvu"), 16};

}  // namespace vorel
