// Pixels of 32 bits between memory and vectors of 16-bit numbers: a pixel is the two halves of a little-endian word.
#pragma once
#include <array>

#include "base/instructions.h"
#include "pixel/lane_arithmetic.h"

namespace vorel::inline VOREL_INSTRUCTIONS {

// Of kLanes pixels.
struct WordHalves {
  WrappingLanes low;
  WrappingLanes high;
};

inline WordHalves LoadWords(const u8* bytes) {
#ifdef __AVX2__
  const auto begin = (WideLanes)LoadParts(bytes, bytes + 32);
  const auto end = (WideLanes)LoadParts(bytes + 16, bytes + 48);
#else
  const auto begin = LoadNative<WideLanes>(bytes);
  const auto end = LoadNative<WideLanes>(bytes + 16);
#endif
  return {(WrappingLanes)Pack((begin << 16) >> 16, (end << 16) >> 16),
          (WrappingLanes)Pack(begin >> 16, end >> 16)};
}

inline void StoreWords(WordHalves words, u8* bytes) {
  StoreInterleaved((Lanes)words.low, (Lanes)words.high, bytes);
}

// Between a big-endian word and a little-endian one.
inline WordHalves SwapBytesOf(WordHalves words) {
  return {words.high << 8 | words.high >> 8, words.low << 8 | words.low >> 8};
}

// A byte of each pixel.
inline Lanes ByteOf(WordHalves words, int place) {
  const WrappingLanes half = place < 2 ? words.low : words.high;
  return (Lanes)(place % 2 == 0 ? half & 255 : half >> 8);
}

inline WordHalves WordsOfByte(Lanes sample, int place) {
  const auto value = (WrappingLanes)sample;
  const WrappingLanes half = place % 2 == 0 ? value : value << 8;
  if (place < 2) return {half, WrappingLanes{}};
  return {WrappingLanes{}, half};
}

// Ten bits from `place` on, which may lie in both halves.
inline Lanes FieldOf(WordHalves words, int place) {
  const WrappingLanes field = place >= 16  ? words.high >> (place - 16)
                              : place <= 6 ? words.low >> place
                                           : words.high << (16 - place) | words.low >> place;
  return (Lanes)(field & 1023);
}
inline WordHalves WordsOfField(Lanes sample, int place) {
  const auto value = (WrappingLanes)sample;
  if (place >= 16) return {WrappingLanes{}, value << (place - 16)};
  return {value << place, place <= 6 ? WrappingLanes{} : value >> (16 - place)};
}

inline WordHalves operator|(WordHalves a, WordHalves b) {
  return {a.low | b.low, a.high | b.high};
}

// Pixels of four words each.
template <bool Swaps>
inline void StoreFourWords(const std::array<Lanes, 4>& words, u8* bytes) {
  const auto inOrder = [&](std::size_t k) {
    const auto word = (WrappingLanes)words[k];
    if constexpr (Swaps) return (Lanes)(word << 8 | word >> 8);
    return (Lanes)word;
  };
  const LanePairs begin = PairUp(inOrder(0), inOrder(1));
  const LanePairs end = PairUp(inOrder(2), inOrder(3));
  const std::array<Lanes, 4> pixels = {
      Interleave<false, u32>(begin.low, end.low), Interleave<true, u32>(begin.low, end.low),
      Interleave<false, u32>(begin.high, end.high), Interleave<true, u32>(begin.high, end.high)};
  for (std::size_t k = 0; k < 4; ++k) {
#ifdef __AVX2__
    StoreNative(bytes + 16 * k, LowPart(pixels[k]));
    StoreNative(bytes + 64 + 16 * k, HighPart(pixels[k]));
#else
    StoreNative(bytes + 16 * k, pixels[k]);
#endif
  }
}

}  // namespace vorel::inline VOREL_INSTRUCTIONS
