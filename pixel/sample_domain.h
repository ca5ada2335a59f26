// What the samples of a frame, or of a picture, mean: colour model, range, depth, chroma sampling, alpha.
#pragma once
#include "base/integers.h"

namespace vorel {

enum class ColourModel : u8 { rgb, ycbcr };

// A pair is two neighbouring pixels that share Cb and Cr.
enum class Unit : u8 { pixel, pair };

// Codes of 8 bits; deeper ones scale by shifts.
//   full     0 to 255
//   video    Y' and colours 16 to 235, chroma 112 to either side of 128. Alpha of Y'CbCr 16 to 235 as well
//   lowered  Y'CbCr whose Y' has lost its offset: black at 0, white at 219. Alpha 0 to 255
//   wide     Y'CbCr of any codes, chroma as two's complement around 0
enum class Range : u8 { full, video, lowered, wide };

struct SampleDomain {
  ColourModel model;
  Range range;
  u8 bits;  // of a sample in a frame: 8 or 10
  Unit unit;
  bool alpha;
};

// Pictures of video-range colours have alpha of full range: it is straight, and no video signal carries it.
constexpr bool AlphaIsVideoRange(ColourModel model, Range range) {
  return model == ColourModel::ycbcr && range == Range::video;
}

// One for each frame layout, under its name.
// clang-format off
inline constexpr SampleDomain SamplesRGB10bf =         {ColourModel::rgb, Range::full, 10, Unit::pixel, false};
inline constexpr SampleDomain SamplesRGBA10bf =        {ColourModel::rgb, Range::full, 10, Unit::pixel, true};
inline constexpr SampleDomain SamplesRGB8bf =          {ColourModel::rgb, Range::full, 8, Unit::pixel, false};
inline constexpr SampleDomain SamplesRGBA8bf =         {ColourModel::rgb, Range::full, 8, Unit::pixel, true};
inline constexpr SampleDomain SamplesYCbCr10bv444 =    {ColourModel::ycbcr, Range::video, 10, Unit::pixel, false};
inline constexpr SampleDomain SamplesYCbCrA10bv4444 =  {ColourModel::ycbcr, Range::video, 10, Unit::pixel, true};
inline constexpr SampleDomain SamplesYCbCr8bv444 =     {ColourModel::ycbcr, Range::video, 8, Unit::pixel, false};
inline constexpr SampleDomain SamplesYCbCrA8bv4444 =   {ColourModel::ycbcr, Range::video, 8, Unit::pixel, true};
inline constexpr SampleDomain SamplesYCbCr8bu444 =     {ColourModel::ycbcr, Range::lowered, 8, Unit::pixel, false};
inline constexpr SampleDomain SamplesYCbCrA8bu4444 =   {ColourModel::ycbcr, Range::lowered, 8, Unit::pixel, true};
inline constexpr SampleDomain SamplesYCbCr10bv422 =    {ColourModel::ycbcr, Range::video, 10, Unit::pair, false};
inline constexpr SampleDomain SamplesYCbCrA10bv4224 =  {ColourModel::ycbcr, Range::video, 10, Unit::pair, true};
inline constexpr SampleDomain SamplesYCbCr8bv422 =     {ColourModel::ycbcr, Range::video, 8, Unit::pair, false};
inline constexpr SampleDomain SamplesYCbCrA8bv4224 =   {ColourModel::ycbcr, Range::video, 8, Unit::pair, true};
inline constexpr SampleDomain SamplesYCbCr8bw422 =     {ColourModel::ycbcr, Range::wide, 8, Unit::pair, false};
// clang-format on

}  // namespace vorel
