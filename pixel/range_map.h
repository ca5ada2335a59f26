// Changes of range between samples of one kind: video-range and full-range colours, Y' with and without its
// offset, alpha. Depth alone is changed by shifts where samples are loaded and stored.
#pragma once
#include <algorithm>

#include "base/instructions.h"
#include "pixel/load.h"
#include "pixel/pixel_layout.h"
#include "pixel/sample_strip.h"

namespace vorel::inline VOREL_INSTRUCTIONS {

// ((x - subtract) * multiply + half) / divide + add, limited to low..high. What is negative before the
// division becomes 0 there: every map that can meet it has its limit at that point.
struct RangeMap {
  i32 subtract;
  i32 multiply;
  i32 half;
  i32 divide;
  i32 add;
  i32 low;
  i32 high;
};

inline constexpr i32 kNoLimit = 32767;
inline constexpr RangeMap kNoMap = {0, 1, 0, 1, 0, 0, kNoLimit};

constexpr bool ChangesNothing(const RangeMap& map) {
  return map.divide == 1 && map.subtract == 0 && map.add == 0;
}

template <RangeMap Map>
constexpr i16 MapSample(i16 sample) {
  if constexpr (ChangesNothing(Map)) return sample;
  const i32 numerator = std::max((sample - Map.subtract) * Map.multiply + Map.half, 0);
  const i32 mapped = static_cast<i32>(static_cast<u32>(numerator) / static_cast<u32>(Map.divide)) + Map.add;
  return static_cast<i16>(std::clamp(mapped, Map.low, Map.high));
}

template <RangeMap Map>
[[gnu::noinline]] void MapPlane(const i16* __restrict from, i16* __restrict to) {
  for (u32 i = 0; i < kStripPixels; ++i) to[i] = MapSample<Map>(from[i]);
}

// A change of depth as well: the map applies at the smaller of the two.
template <int From, RangeMap Map, int To>
[[gnu::noinline]] void ChangePlane(const i16* __restrict from, i16* __restrict to) {
  constexpr int kMapBits = std::min(From, To);
  for (u32 i = 0; i < kStripPixels; ++i)
    to[i] = ChangeDepth(MapSample<Map>(ChangeDepth(from[i], From, kMapBits)), kMapBits, To);
}

// ---- Colours of R'G'B'. Video codes of `bits` bits span 219 or 876 from 16 or 64 on. Ten-bit frames take
// the ratio of the spans as a fraction of 2^18.

constexpr RangeMap VideoToFullColour(int videoBits, int fullBits) {
  if (fullBits == 10) return {64, 306133, 131072, 1 << 18, 0, 0, 1023};
  return videoBits == 8 ? RangeMap{16, 255, 109, 219, 0, 0, 255} : RangeMap{64, 255, 438, 876, 0, 0, 255};
}

constexpr RangeMap FullToVideoColour(int fullBits, int videoBits) {
  if (fullBits == 10) {
    return videoBits == 8 ? RangeMap{0, 56118, 131072, 1 << 18, 16, 0, 255}
                          : RangeMap{0, 224475, 131072, 1 << 18, 64, 0, 1023};
  }
  return videoBits == 8 ? RangeMap{0, 219, 127, 255, 16, 0, 255} : RangeMap{0, 876, 127, 255, 64, 0, 1023};
}

// ---- Y' with its offset and without. The offset is not scaled back by a limit: code 255, or its top 8 bits,
// is out of reach.

constexpr RangeMap AddLumaOffset(int bits) {
  return {0, 1, 0, 1, 16 << (bits - 8), 0, bits == 8 ? 254 : 1019};
}
inline constexpr RangeMap kRemoveLumaOffset = {16, 1, 0, 1, 0, 0, kNoLimit};

// ---- Alpha. Each rule names the depth at which alpha is loaded, or stored, and the map on the other side of
// which it has the depth of the frame.

struct AlphaRule {
  int bits;
  RangeMap map;
};

// From a picture into a frame, and from a frame into a picture.
constexpr AlphaRule AlphaIntoFrame(const PixelLayout& pixel, const SampleDomain& frame) {
  const bool fromVideo = AlphaIsVideoRange(pixel.model, pixel.range);
  const bool toVideo = AlphaIsVideoRange(frame.model, frame.range);
  if (fromVideo == toVideo) return {frame.bits, kNoMap};
  if (toVideo) {
    // Deep alpha goes at the depth of deep colour in the same routine: 9 bits into 8, 12 into 10. The half
    // of 8 bits into 8 falls one short of the others.
    if (pixel.sampleBits == 16) {
      return frame.bits == 8 ? AlphaRule{9, {0, 219, 255, 511, 16, 0, 255}}
                             : AlphaRule{12, {0, 876, 2047, 4095, 64, 0, 1023}};
    }
    return frame.bits == 8 ? AlphaRule{8, {0, 219, 126, 255, 16, 0, 255}}
                           : AlphaRule{8, {0, 876, 127, 255, 64, 0, 1023}};
  }
  if (pixel.sampleBits == 16) {
    return frame.bits == 8 ? AlphaRule{10, {64, 255, 438, 876, 0, 0, 255}}
                           : AlphaRule{12, {256, 1023, 1752, 3504, 0, 0, 1023}};
  }
  return frame.bits == 8 ? AlphaRule{8, {16, 255, 109, 219, 0, 0, 255}}
                         : AlphaRule{8, {16, 1023, 109, 219, 0, 0, 1023}};
}

constexpr AlphaRule AlphaIntoPicture(const SampleDomain& frame, const PixelLayout& pixel) {
  const bool fromVideo = AlphaIsVideoRange(frame.model, frame.range);
  const bool toVideo = AlphaIsVideoRange(pixel.model, pixel.range);
  if (fromVideo == toVideo) return {frame.bits, kNoMap};
  if (fromVideo) {
    if (pixel.sampleBits == 16) {
      return frame.bits == 8 ? AlphaRule{9, {16, 511, 109, 219, 0, 0, 511}}
                             : AlphaRule{12, {64, 4095, 438, 876, 0, 0, 4095}};
    }
    return frame.bits == 8 ? AlphaRule{8, {16, 255, 109, 219, 0, 0, 255}}
                           : AlphaRule{8, {64, 255, 438, 876, 0, 0, 255}};
  }
  if (frame.bits == 10) {
    return pixel.sampleBits == 16 ? AlphaRule{12, {0, 3504, 510, 1023, 256, 0, 4095}}
                                  : AlphaRule{8, {0, 219, 510, 1023, 16, 0, 255}};
  }
  // V416 takes 10 bits from RGB frames, and 8 from Y'CbCr ones, whose colour has no more either.
  if (pixel.sampleBits == 16 && frame.model == ColourModel::rgb) return {10, {0, 876, 126, 255, 64, 0, 1023}};
  return {8, {0, 219, 126, 255, 16, 0, 255}};
}

// What stands in the place of alpha where a frame has none, on the scale of the format. Deep words hold the
// maximum of the depth at which the frame's colour reaches them.
constexpr u16 OpaqueAlpha(const SampleDomain& frame, const PixelLayout& pixel) {
  if (AlphaIsVideoRange(pixel.model, pixel.range)) return pixel.sampleBits == 8 ? 0xEB : 0xEB00;
  if (pixel.sampleBits == 8) return 0xFF;
  if (frame.model == ColourModel::rgb) return frame.bits == 8 ? 0xFF00 : 0xFFC0;
  return frame.bits == 8 ? 0xFF80 : 0xFFF0;
}

}  // namespace vorel::inline VOREL_INSTRUCTIONS
