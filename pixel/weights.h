// Luma weights of the colour standards on the three scales of Y', and division by values known once a frame.
#pragma once
#include <array>
#include <bit>

#include "base/integers.h"

namespace vorel {

// n / divisor is (n * multiplier >> 32) >> shift for every n below 2^31.
//
// With 2^shift < divisor <= 2^(shift + 1) the multiplier, 2^(32 + shift) / divisor rounded up, fits 32 bits
// and is too large by less than divisor / 2^(32 + shift) of itself, which n * that is too small to show.
struct Reciprocal {
  u32 multiplier;
  u32 shift;
};

constexpr Reciprocal MakeReciprocal(u32 divisor) {
  const u32 shift = static_cast<u32>(std::bit_width(divisor - 1)) - 1;
  return {static_cast<u32>(((u64{1} << (32 + shift)) + divisor - 1) / divisor), shift};
}

constexpr u32 Divide(u32 dividend, Reciprocal by) {
  return static_cast<u32>(u64{dividend} * by.multiplier >> 32) >> by.shift;
}

// The least float that is not below 1 / divisor. A product of it and n, cut toward zero, is n / divisor of
// every n up to 5.5 million in magnitude: what is a multiple of the divisor does not come out too small. The
// number before a multiple is 1 / n of itself away from it; the reciprocal and the rounding of the product to
// the nearest float of 24 bits add no more than 3 * 2^-24 of it, which is less.
constexpr float ReciprocalAbove(u32 divisor) {
  const float nearest = 1 / static_cast<float>(divisor);
  const bool isBelow = static_cast<double>(nearest) * divisor < 1;
  return isBelow ? std::bit_cast<float>(std::bit_cast<u32>(nearest) + 1) : nearest;
}

// Weights of R', G' and B' in Y', which sum to the span of Y', and what divides chroma.
struct ColourWeights {
  i16 red, green, blue;
  i16 redSpan, blueSpan;  // span of Y' less the weight of the colour
  Reciprocal byGreen, byRedSpan, byBlueSpan;
  // The span of chroma by those of red and blue, times 2^15, and 2^(15 + bits) by the weight of green.
  i16 redRatio, blueRatio;
  u16 greenReciprocal;
  float overGreen, overRedSpan, overBlueSpan;  // see ReciprocalAbove
};

struct RedAndBlue {
  i16 red;
  i16 blue;
};

// ITU-R BT.601, BT.709 and SMPTE 240M on the spans 219, 876 and 3504 of Y' with 8, 10 and 12 bits. The
// numbers are chosen, together with the roundings of the matrix, so that R'G'B' survives the way through
// Y'CbCr of two more bits: they are not to be had by rounding on another scale.
inline constexpr std::array<std::array<RedAndBlue, 3>, 3> kRedAndBlue = {{
    {{{65, 24}, {46, 15}, {46, 19}}},
    {{{261, 99}, {186, 63}, {185, 76}}},
    {{{1047, 399}, {744, 252}, {742, 304}}},
}};

// The span of Y' at a depth of 8, 10 or 12 bits.
constexpr i32 LumaSpan(int bits) {
  return 219 << (bits - 8);
}

// Standard 1 is BT.709, 2 is 240M, any other BT.601.
constexpr ColourWeights MakeWeights(int bits, u32 colourStandard) {
  const std::size_t row = colourStandard == 1 || colourStandard == 2 ? colourStandard : 0;
  const RedAndBlue weights = kRedAndBlue[static_cast<std::size_t>(bits - 8) / 2][row];
  const i32 span = LumaSpan(bits);
  const i32 green = span - weights.red - weights.blue;
  const i32 redSpan = span - weights.red;
  const i32 blueSpan = span - weights.blue;
  const auto chromaRatio = [bits](i32 colourSpan) {
    return static_cast<i16>(((112 << (bits - 8 + 15)) + colourSpan / 2) / colourSpan);
  };
  return {weights.red,
          static_cast<i16>(green),
          weights.blue,
          static_cast<i16>(redSpan),
          static_cast<i16>(blueSpan),
          MakeReciprocal(static_cast<u32>(green)),
          MakeReciprocal(static_cast<u32>(redSpan)),
          MakeReciprocal(static_cast<u32>(blueSpan)),
          chromaRatio(redSpan),
          chromaRatio(blueSpan),
          static_cast<u16>(((1 << (15 + bits)) + green - 1) / green),
          ReciprocalAbove(static_cast<u32>(green)),
          ReciprocalAbove(static_cast<u32>(redSpan)),
          ReciprocalAbove(static_cast<u32>(blueSpan))};
}

}  // namespace vorel
