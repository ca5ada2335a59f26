// Every conversion as a row of a table, for tests and measurements that walk through all. Frame routines do not
// use it: they link the functions themselves.
#pragma once
#include <array>

#include "pixel/conversion.h"
#include "vorel/frame_members.inc"

namespace vorel {

using FillFunction = void(const u8* row, StripPlace place, const ColourWeights& weights, ChromaCarry& carry,
                          SampleStrip& strip);
using DrainFunction = void(SampleStrip& strip, StripPlace place, const ColourWeights& weights,
                           ChromaCarry& carry, u8* row);

template <typename Function>
struct Conversion {
  const char* layout;     // "YCbCrA8bv4224"
  const char* pixelName;  // "ARGB", or "_RGB" where the fourth sample is of no account
  const SampleDomain* frame;
  const PixelLayout* pixel;
  bool hasMatrix;  // as the catalogue has it
  ColourWeights (*weights)(u32 colourStandard);
  Function* run;
};

inline constexpr bool kTakesColourS = false;
inline constexpr bool kTakesColourM = true;

#define VOREL_CONVERSION(FUNCTION, K, LAYOUT, PIXEL) \
  {#LAYOUT,                                          \
   #PIXEL,                                           \
   &Samples##LAYOUT,                                 \
   &Px##PIXEL,                                       \
   kTakesColour##K,                                  \
   WeightsOfFrame<Samples##LAYOUT, Px##PIXEL>,       \
   FUNCTION<Samples##LAYOUT, Px##PIXEL>},
#define VOREL_FILL(K, LAYOUT, SCAN, PIXEL) VOREL_CONVERSION(FillStrip, K, LAYOUT, PIXEL)
#define VOREL_DRAIN(K, LAYOUT, SCAN, PIXEL) VOREL_CONVERSION(DrainStrip, K, LAYOUT, PIXEL)
#define VOREL_OF_ALL_LAYOUTS(LIST, X)                                                        \
  LIST##_RGB10bf(X, p) LIST##_RGBA10bf(X, p) LIST##_RGB8bf(X, p) LIST##_RGBA8bf(X, p)        \
      LIST##_YCbCr10bv444(X, p) LIST##_YCbCrA10bv4444(X, p) LIST##_YCbCr8bv444(X, p)         \
          LIST##_YCbCrA8bv4444(X, p) LIST##_YCbCr8bu444(X, p) LIST##_YCbCrA8bu4444(X, p)     \
              LIST##_YCbCr10bv422(X, p) LIST##_YCbCrA10bv4224(X, p) LIST##_YCbCr8bv422(X, p) \
                  LIST##_YCbCrA8bv4224(X, p) LIST##_YCbCr8bw422(X, p)

inline constexpr auto kFills =
    std::to_array<Conversion<FillFunction>>({VOREL_OF_ALL_LAYOUTS(VOREL_ENCODERS, VOREL_FILL)});
inline constexpr auto kDrains =
    std::to_array<Conversion<DrainFunction>>({VOREL_OF_ALL_LAYOUTS(VOREL_DECODERS, VOREL_DRAIN)});

#undef VOREL_CONVERSION
#undef VOREL_FILL
#undef VOREL_DRAIN
#undef VOREL_OF_ALL_LAYOUTS

// In each scan: 384 encoders and 698 decoders in all.
static_assert(kFills.size() == 192 && kDrains.size() == 349);

}  // namespace vorel
