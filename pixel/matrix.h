// R'G'B' to Y'CbCr and back, a strip at a time, in integers: every quotient is rounded toward zero, and the
// additive halves make it a rounding to nearest. Any R'G'B' of 8 or 10 bits comes back from Y'CbCr on the
// span of two more bits; roundings and weights belong together.
//
// pixel/matrix8.h, pixel/matrix10.h and pixel/matrix12.h have it for different bits of either side. This is
// what they share, and what all of them give:
//
//   FullColourToYcc    R'G'B' of full range to Y'CbCr. Chroma is taken from colours on the scale of Y'
//   VideoColourToYcc   the same of video range, where colours have the span of Y' already or a shift up takes
//                      them there. Codes outside the video range reach chroma outside its codes: what
//                      doesn't fit is cut after the chroma filter
//   YccToFullColour    back. Green takes what red and blue leave of Y', from colours not yet limited
//   YccToVideoColour   the same, limited to the codes that video interfaces leave to pictures. Roundings are
//                      symmetric but from 8 bits to 10
//
// `Offset` is the code of black in Y'.
#pragma once
#include <numeric>

#include "base/instructions.h"
#include "pixel/sample_strip.h"
#include "pixel/weights.h"

namespace vorel::inline VOREL_INSTRUCTIONS {

// Y'CbCr of 8, 10 or 12 bits: where neutral chroma stands, and how far chroma goes to either side of it.
constexpr i32 ChromaZero(int bits) {
  return 128 << (bits - 8);
}
constexpr i16 ChromaSpan(int bits) {
  return static_cast<i16>(112 << (bits - 8));
}

// A colour on the scale of Y' is (x * span + half) / maximum, where the half is that of the fraction in
// lowest terms.
constexpr i32 HalfOfColour(i32 maximum, i32 span) {
  const i32 divisor = std::gcd(maximum, span);
  return maximum / divisor / 2 * divisor;
}

// (n * P + Q) / W of red or blue, with n = span of the colour * chroma + chroma span * Y'.
struct ColourQuotient {
  i32 multiply;
  i32 add;
  u32 divide;
};

// 12 bits leave 31 bits where a pixel is far outside the cube of colours. Then the product wraps, or it does
// not: frames of record depend on either.
enum class Overflow : u8 { wraps, isWide };

constexpr ColourQuotient FullColourQuotient(int yccBits, int bits) {
  if (bits == 9) return {7, 168, 336};
  const i32 multiply = ((1 << bits) - 1) / 3;
  if (yccBits == 8) return {multiply, 4088, 8176};
  return yccBits == 10 ? ColourQuotient{multiply, 65408, 130816} : ColourQuotient{multiply, 1046528, 2093056};
}

}  // namespace vorel::inline VOREL_INSTRUCTIONS
