// Products and packing of vectors of 16-bit numbers, which the compiler does not make of loops over plain
// numbers: a matrix needs sums of products of 32 bits and high halves of products of 16.
#pragma once
#include "base/lanes.h"

#if defined(__SSE2__) && !defined(__AVX2__)
#include <emmintrin.h>
#endif

namespace vorel::inline VOREL_INSTRUCTIONS {

// Half as many numbers of 32 bits.
using WideLanes = i32 __attribute__((vector_size(2 * kLanes)));
using FloatLanes = float __attribute__((vector_size(2 * kLanes)));

inline Lanes All(i32 value) {
  return Lanes{} + static_cast<i16>(value);
}
inline Lanes AllPairs(i32 first, i32 second) {
  const u32 pair = static_cast<u16>(first) | static_cast<u32>(second) << 16;
  return (Lanes)(WideLanes{} + static_cast<i32>(pair));
}

#ifdef __SSE2__

#ifdef __AVX2__
using NativeLanes = __m256i;
#define VOREL_LANES(OPERATION) _mm256_##OPERATION
#else
using NativeLanes = __m128i;
#define VOREL_LANES(OPERATION) _mm_##OPERATION
#endif

// a[2k] * b[2k] + a[2k + 1] * b[2k + 1].
inline WideLanes SumProducts(Lanes a, Lanes b) {
  return (WideLanes)VOREL_LANES(madd_epi16)((NativeLanes)a, (NativeLanes)b);
}

// Upper halves of products without a sign.
inline WrappingLanes MultiplyHigh(WrappingLanes a, WrappingLanes b) {
  return (WrappingLanes)VOREL_LANES(mulhi_epu16)((NativeLanes)a, (NativeLanes)b);
}

// Both to one vector, within each part: what two vectors were interleaved to comes back in order. Numbers
// outside 16 bits become the nearest.
inline Lanes Pack(WideLanes low, WideLanes high) {
  return (Lanes)VOREL_LANES(packs_epi32)((NativeLanes)low, (NativeLanes)high);
}

inline Lanes Limit(Lanes value, Lanes least, Lanes most) {
  return (Lanes)VOREL_LANES(min_epi16)(VOREL_LANES(max_epi16)((NativeLanes)value, (NativeLanes)least),
                                       (NativeLanes)most);
}

// (a + b + 1) / 2 of numbers without a sign.
inline Lanes MeanOf(Lanes a, Lanes b) {
  return (Lanes)VOREL_LANES(avg_epu16)((NativeLanes)a, (NativeLanes)b);
}

#undef VOREL_LANES

#else

inline WideLanes SumProducts(Lanes a, Lanes b) {
  WideLanes sums;
  for (u32 k = 0; k < kLanes / 2; ++k) sums[k] = i32{a[2 * k]} * b[2 * k] + i32{a[2 * k + 1]} * b[2 * k + 1];
  return sums;
}
inline WrappingLanes MultiplyHigh(WrappingLanes a, WrappingLanes b) {
  WrappingLanes high;
  for (u32 k = 0; k < kLanes; ++k) high[k] = static_cast<u16>(u32{a[k]} * b[k] >> 16);
  return high;
}
inline Lanes Pack(WideLanes low, WideLanes high) {
  Lanes packed;
  for (u32 k = 0; k < kLanes; ++k) {
    const i32 value = k < kLanes / 2 ? low[k] : high[k - kLanes / 2];
    packed[k] = static_cast<i16>(value < -32768 ? -32768 : value > 32767 ? 32767 : value);
  }
  return packed;
}
inline Lanes Limit(Lanes value, Lanes least, Lanes most) {
  value = Select(value < least, least, value);
  return Select(value > most, most, value);
}
inline Lanes MeanOf(Lanes a, Lanes b) {
  return (Lanes)(((WrappingLanes)a | (WrappingLanes)b) - (((WrappingLanes)a ^ (WrappingLanes)b) >> 1));
}

#endif

// Pack for numbers from 0 to 65535.
inline WrappingLanes PackUnsigned(WideLanes low, WideLanes high) {
#ifdef __AVX2__
  return (WrappingLanes)_mm256_packus_epi32((__m256i)low, (__m256i)high);
#else
  return (WrappingLanes)Pack(low - 32768, high - 32768) ^ 0x8000;
#endif
}

// (value * ratio + half) / 2^15, rounded down, of values from -511 to 511.
inline Lanes ScaleRounded(Lanes value, Lanes ratio) {
#ifdef __AVX2__
  return (Lanes)_mm256_mulhrs_epi16((__m256i)value, (__m256i)ratio);
#elif defined(__SSE2__)
  return ((Lanes)_mm_mulhi_epi16((__m128i)(value << 6), (__m128i)ratio) + 16) >> 5;
#else
  Lanes scaled;
  for (u32 k = 0; k < kLanes; ++k) scaled[k] = static_cast<i16>((value[k] * ratio[k] + (1 << 14)) >> 15);
  return scaled;
#endif
}

// Pack, with all numbers in the order of their places in memory.
inline Lanes PackInOrder(WideLanes first, WideLanes second) {
  const Lanes packed = Pack(first, second);
#ifdef __AVX2__
  return (Lanes)_mm256_permute4x64_epi64((__m256i)packed, 0xD8);
#else
  return packed;
#endif
}

// Low and high halves of two vectors interleaved, so that SumProducts takes the two numbers of a place
// together.
struct LanePairs {
  Lanes low;
  Lanes high;
};
inline LanePairs PairUp(Lanes a, Lanes b) {
  return {Interleave<false, u16>(a, b), Interleave<true, u16>(a, b)};
}

// The numbers of both by turns. In whole vectors: who loads one soon would wait for two halves to come to
// memory.
inline void StoreInterleaved(Lanes a, Lanes b, void* to) {
  const LanePairs pairs = PairUp(a, b);
  u8* const bytes = static_cast<u8*>(to);
#ifdef __AVX2__
  const auto low = (__m256i)pairs.low;
  const auto high = (__m256i)pairs.high;
  StoreNative(bytes, _mm256_permute2x128_si256(low, high, 0x20));
  StoreNative(bytes + 32, _mm256_permute2x128_si256(low, high, 0x31));
#else
  StoreNative(bytes, pairs.low);
  StoreNative(bytes + 16, pairs.high);
#endif
}

struct WidePairs {
  WideLanes low;
  WideLanes high;
};
inline WidePairs SumProducts(LanePairs pairs, Lanes factors) {
  return {SumProducts(pairs.low, factors), SumProducts(pairs.high, factors)};
}
inline WidePairs operator+(WidePairs a, WidePairs b) {
  return {a.low + b.low, a.high + b.high};
}
inline WidePairs operator+(WidePairs a, i32 b) {
  return {a.low + b, a.high + b};
}
inline WidePairs operator-(WidePairs a, WidePairs b) {
  return {a.low - b.low, a.high - b.high};
}
inline WidePairs operator&(WidePairs a, i32 b) {
  return {a.low & b, a.high & b};
}
inline WidePairs operator>>(WidePairs a, int bits) {
  return {a.low >> bits, a.high >> bits};
}
// a * factor + add of 32 bits, which may wrap where cells hold no samples.
inline WideLanes MultiplyAdd(WideLanes a, i32 factor, i32 add) {
  using Words = VectorOf<u32, sizeof(WideLanes)>::Type;
  return (WideLanes)((Words)a * static_cast<u32>(factor) + static_cast<u32>(add));
}
inline WidePairs MultiplyAdd(WidePairs a, i32 factor, i32 add) {
  return {MultiplyAdd(a.low, factor, add), MultiplyAdd(a.high, factor, add)};
}
// -1 where it is so.
inline WidePairs operator>(WidePairs a, i32 b) {
  return {a.low > b, a.high > b};
}
inline WidePairs MagnitudeOf(WidePairs a) {
#ifdef __AVX2__
  return {(WideLanes)_mm256_abs_epi32((__m256i)a.low), (WideLanes)_mm256_abs_epi32((__m256i)a.high)};
#else
  const WidePairs signs = a >> 31;
  return {(a.low ^ signs.low) - signs.low, (a.high ^ signs.high) - signs.high};
#endif
}
// Quotients cut toward zero, of numbers up to 5.5 million in magnitude; see ReciprocalAbove.
inline WideLanes QuotientOf(WideLanes n, float reciprocal) {
  return __builtin_convertvector(__builtin_convertvector(n, FloatLanes) * reciprocal, WideLanes);
}
inline WidePairs QuotientOf(WidePairs n, float reciprocal) {
  return {QuotientOf(n.low, reciprocal), QuotientOf(n.high, reciprocal)};
}
inline Lanes Pack(WidePairs a) {
  return Pack(a.low, a.high);
}
inline WrappingLanes PackUnsigned(WidePairs a) {
  return PackUnsigned(a.low, a.high);
}

// `magnitude`, negative where `sign` is. Where that is zero, the magnitude must be.
inline Lanes WithSignOf(Lanes magnitude, Lanes sign) {
#ifdef __AVX2__
  return (Lanes)_mm256_sign_epi16((__m256i)magnitude, (__m256i)sign);
#else
  const Lanes mask = sign >> 15;
  return (magnitude ^ mask) - mask;
#endif
}

}  // namespace vorel::inline VOREL_INSTRUCTIONS
