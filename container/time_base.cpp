// Arithmetic on rates and timescales in 64 bits.
#include "container/time_base.h"

#include <limits>
#include <numeric>

#include "base/problem.h"

namespace vorel::container {

namespace {

constexpr u32 kSmallTimescale = 600;  // below it, a frame is made of 100 units
constexpr u32 kUnitsPerFrame = 100;
constexpr u64 kLargest = std::numeric_limits<u64>::max();

}  // namespace

FrameRate ReducedRate(u64 numerator, u64 denominator) {
  if (numerator == 0 || denominator == 0) return {0, 1};
  const u64 divisor = std::gcd(numerator, denominator);
  numerator /= divisor;
  denominator /= divisor;
  while (numerator >> 32 != 0 || denominator >> 32 != 0) {
    numerator >>= 1;
    denominator >>= 1;
  }
  if (numerator == 0) return {1, std::numeric_limits<u32>::max()};
  if (denominator == 0) return {std::numeric_limits<u32>::max(), 1};
  return {static_cast<u32>(numerator), static_cast<u32>(denominator)};
}

TimeBase TimeBaseOfRate(FrameRate rate) {
  if (rate.numerator == 0 || rate.denominator == 0) {
    throw Problem{"a movie needs a frame rate above zero", "",
                  "give the rate as a fraction, such as 24000/1001"};
  }
  const u32 divisor = std::gcd(rate.numerator, rate.denominator);
  TimeBase time = {rate.numerator / divisor, rate.denominator / divisor};
  if (time.timescale < kSmallTimescale &&
      time.frameDuration <= std::numeric_limits<u32>::max() / kUnitsPerFrame) {
    time.timescale *= kUnitsPerFrame;
    time.frameDuration *= kUnitsPerFrame;
  }
  return time;
}

u64 RescaleTime(u64 time, u32 from, u32 to) {
  const u64 seconds = time / from;
  if (seconds > kLargest / to) return kLargest;
  // Less than `from`, at most 32 bits, times 32 bits: half a unit more still fits.
  const u64 rest = (time % from * to + from / 2) / from;
  const u64 whole = seconds * to;
  return rest > kLargest - whole ? kLargest : whole + rest;
}

u32 CommonTimescale(u32 scale, u32 other, u32 limit) {
  const u64 common = u64{scale} / std::gcd(scale, other) * other;
  return common <= limit ? static_cast<u32>(common) : scale;
}

}  // namespace vorel::container
