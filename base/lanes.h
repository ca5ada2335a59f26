// Vectors of 16-bit numbers, as many as a register of the instruction set holds, and squares of them whose rows become
// columns. The vectors are those of the compiler, so there is one source for all sets.
#pragma once
#include <array>
#include <utility>

#include "base/bytes.h"
#include "base/instructions.h"

#ifdef __AVX2__
#include <immintrin.h>
#endif

namespace vorel::inline VOREL_INSTRUCTIONS {

#ifdef __AVX2__
inline constexpr u32 kLanes = 16;
#else
inline constexpr u32 kLanes = 8;
#endif

// Squares are made in parts of 16 bytes: what a shuffle does within a part costs one instruction in every set.
inline constexpr u32 kPartLanes = 8;

using Lanes = i16 __attribute__((vector_size(2 * kLanes)));
using PartLanes = i16 __attribute__((vector_size(2 * kPartLanes)));

// For sums that may wrap, which lanes with a sign may not.
using WrappingLanes = u16 __attribute__((vector_size(2 * kLanes)));
using WrappingPartLanes = u16 __attribute__((vector_size(2 * kPartLanes)));

// Where lane `to` of an interleaving of two vectors comes from, in units of Size lanes: the low or the high halves of
// each part.
constexpr int InterleavedFrom(bool high, int size, int to) {
  const int perPart = static_cast<int>(kPartLanes) / size;
  const int part = to / perPart;
  const int within = to % perPart;
  const int vector = within % 2 == 0 ? 0 : static_cast<int>(kLanes) / size;
  return vector + part * perPart + (high ? perPart / 2 : 0) + within / 2;
}

// A declaration of its own: attributes on dependent types are lost elsewhere.
template <typename Unit, u32 Bytes>
struct VectorOf {
  typedef Unit Type __attribute__((vector_size(Bytes)));
};

template <bool High, typename Unit, int... To>
inline Lanes InterleaveUnits(Lanes a, Lanes b, std::integer_sequence<int, To...> /*lanes*/) {
  using Units = typename VectorOf<Unit, 2 * kLanes>::Type;
  constexpr int kSize = sizeof(Unit) / 2;
  return (Lanes)__builtin_shufflevector((Units)a, (Units)b, InterleavedFrom(High, kSize, To)...);
}
template <bool High, typename Unit>
inline Lanes Interleave(Lanes a, Lanes b) {
  return InterleaveUnits<High, Unit>(a, b, std::make_integer_sequence<int, 2 * kLanes / sizeof(Unit)>());
}

// kPartLanes columns of kLanes rows, or the other way round.
struct Square {
  std::array<Lanes, kPartLanes> line;
};

// Rows to columns and back. Line k holds, as rows, those of number k and, in the second part, k + 8.
inline void Transpose(Square& square) {
  std::array<Lanes, kPartLanes>& s = square.line;
  std::array<Lanes, kPartLanes> a;
  for (u32 k = 0; k < kPartLanes; k += 2) {
    a[k] = Interleave<false, u16>(s[k], s[k + 1]);
    a[k + 1] = Interleave<true, u16>(s[k], s[k + 1]);
  }
  std::array<Lanes, kPartLanes> b;
  for (u32 k = 0; k < kPartLanes; k += 4) {
    for (u32 half = 0; half < 2; ++half) {
      b[k + 2 * half] = Interleave<false, u32>(a[k + half], a[k + half + 2]);
      b[k + 2 * half + 1] = Interleave<true, u32>(a[k + half], a[k + half + 2]);
    }
  }
  for (u32 k = 0; k < kPartLanes / 2; ++k) {
    s[2 * k] = Interleave<false, u64>(b[k], b[k + 4]);
    s[2 * k + 1] = Interleave<true, u64>(b[k], b[k + 4]);
  }
}

#ifdef __AVX2__

// Two parts of 16 bytes from places of their own. Not by a shuffle of two vectors, which the compiler makes one of all
// parts: the second part comes from memory into its place.
inline Lanes LoadParts(const void* first, const void* second) {
  const __m128i low = _mm_loadu_si128(static_cast<const __m128i*>(first));
  const __m128i high = _mm_loadu_si128(static_cast<const __m128i*>(second));
  return (Lanes)_mm256_inserti128_si256(_mm256_castsi128_si256(low), high, 1);
}

inline PartLanes LowPart(Lanes lanes) {
  return (PartLanes)_mm256_castsi256_si128((__m256i)lanes);
}
inline PartLanes HighPart(Lanes lanes) {
  return (PartLanes)_mm256_extracti128_si256((__m256i)lanes, 1);
}

// Bytes of each part in another order: byte i becomes the one at from[i] of its part, or zero if that is negative.
using OrderOfParts = std::array<i8, 32>;
inline Lanes ReorderBytes(Lanes bytes, const OrderOfParts& from) {
  return (Lanes)_mm256_shuffle_epi8((__m256i)bytes, LoadNative<__m256i>(from.data()));
}

// The same order for both parts: from(i) is the byte that becomes byte i.
template <typename From>
constexpr OrderOfParts OrderOfBytes(From from) {
  OrderOfParts order = {};
  for (int i = 0; i < 32; ++i) order[static_cast<std::size_t>(i)] = static_cast<i8>(from(i % 16));
  return order;
}

// A vector whose second part is the first one of `lanes`, with zeros in the first.
inline Lanes FirstPartAsSecond(Lanes lanes) {
  return (Lanes)_mm256_permute2x128_si256((__m256i)lanes, (__m256i)lanes, 0x08);
}
inline Lanes SecondPartInBoth(Lanes lanes) {
  return (Lanes)_mm256_permute4x64_epi64((__m256i)lanes, 0xEE);
}

#endif

// The rows of a square: row(r) is the address of kPartLanes numbers of row r.
template <typename Row>
inline void LoadRows(Square& square, Row row) {
  for (u32 r = 0; r < kPartLanes; ++r) {
#ifdef __AVX2__
    square.line[r] = LoadParts(row(r), row(r + kPartLanes));
#else
    square.line[r] = LoadNative<Lanes>(row(r));
#endif
  }
}
template <typename Row>
inline void StoreRows(const Square& square, Row row) {
  for (u32 r = 0; r < kPartLanes; ++r) {
#ifdef __AVX2__
    const Lanes line = square.line[r];
    StoreNative(row(r), __builtin_shufflevector(line, line, 0, 1, 2, 3, 4, 5, 6, 7));
    StoreNative(row(r + kPartLanes), __builtin_shufflevector(line, line, 8, 9, 10, 11, 12, 13, 14, 15));
#else
    StoreNative(row(r), square.line[r]);
#endif
  }
}

template <int... To>
inline Lanes MoveUp(Lanes value, Lanes below, std::integer_sequence<int, To...> /*lanes*/) {
  constexpr int kLast = static_cast<int>(kLanes) - 1;
#ifdef __AVX2__
  // Said as one shuffle: two instructions, of which one alone waits for `value`.
  return __builtin_shufflevector(below, value, (kLast + To)...);
#else
  const Lanes zero = {};
  return __builtin_shufflevector(zero, value, (kLast + To)...) |
         __builtin_shufflevector(below, zero, (kLast + To)...);
#endif
}

// Moves every lane one up; the first comes from the last lane of `below`.
inline Lanes MoveUp(Lanes value, Lanes below) {
  return MoveUp(value, below, std::make_integer_sequence<int, static_cast<int>(kLanes)>());
}

// A vector whose last lane is the one at `last`.
inline Lanes LoadLanesUpTo(const i16* last) {
  return LoadNative<Lanes>(last - (kLanes - 1));
}

inline Lanes Select(Lanes mask, Lanes yes, Lanes no) {
  return (mask & yes) | (~mask & no);
}

// The number of each lane.
template <int... Lane>
inline Lanes NumberLanes(std::integer_sequence<int, Lane...> /*lanes*/) {
  return Lanes{static_cast<i16>(Lane)...};
}
inline Lanes LaneNumbers() {
  return NumberLanes(std::make_integer_sequence<int, static_cast<int>(kLanes)>());
}

// -1 in lane k if bit k of a number is not set, otherwise 0.
inline Lanes LanesWithoutBits(u32 bits) {
  Lanes lanes;
  for (u32 k = 0; k < kLanes; ++k) lanes[k] = (bits >> k & 1) != 0 ? i16{0} : i16{-1};
  return lanes;
}

inline bool IsZero(Lanes lanes) {
  const auto words = (typename VectorOf<u64, 2 * kLanes>::Type) lanes;
  u64 any = 0;
  for (u32 i = 0; i < kLanes / 4; ++i) any |= words[i];
  return any == 0;
}

// Whether `count` bytes are zero, and those behind them up to a whole number of vectors.
inline bool AreZero(const u8* bytes, std::size_t count) {
  Lanes any = {};
  for (std::size_t i = 0; i < count; i += sizeof any) any |= LoadNative<Lanes>(bytes + i);
  return IsZero(any);
}

}  // namespace vorel::inline VOREL_INSTRUCTIONS
