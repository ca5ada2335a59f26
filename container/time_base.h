// Time in movies: frame rates as fractions, the timescale (units per second) and frame duration that express
// a rate without rounding, and the conversion of times between timescales.
#pragma once
#include "base/integers.h"

namespace vorel::container {

/// Frames per second as a fraction: 24000/1001, 25/1. 0/1 stands for a track without frames or duration.
struct FrameRate {
  u32 numerator;
  u32 denominator;
};

constexpr bool operator==(FrameRate a, FrameRate b) {
  return a.numerator == b.numerator && a.denominator == b.denominator;
}

/// Units per second, and units per frame.
struct TimeBase {
  u32 timescale;
  u32 frameDuration;
};

constexpr bool operator==(TimeBase a, TimeBase b) {
  return a.timescale == b.timescale && a.frameDuration == b.frameDuration;
}

/// The same fraction in lowest terms. Terms beyond 32 bits lose low bits; 0/1 for a zero numerator or
/// denominator.
FrameRate ReducedRate(u64 numerator, u64 denominator);

/// The time base of a rate, exact. Timescales below 600 are multiplied by 100, as editors expect: 25/1 gives
/// 2500 and 100, 24000/1001 gives 24000 and 1001. Throws Problem when a term of the rate is zero.
TimeBase TimeBaseOfRate(FrameRate rate);

/// `time` units of 1/from seconds in units of 1/to seconds, rounded to nearest and limited to 2^64 - 1.
/// `from` is not 0.
u64 RescaleTime(u64 time, u32 from, u32 to);

/// Least common multiple of two timescales when it is at most `limit`, else `scale`. Neither is 0.
u32 CommonTimescale(u32 scale, u32 other, u32 limit);

}  // namespace vorel::container
