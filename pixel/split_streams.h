// Streams of samples that take turns, into planes of their own.
#pragma once
#include <algorithm>
#include <array>
#include <type_traits>
#include <utility>

#include "base/lanes.h"
#include "pixel/pixel_words.h"

namespace vorel::inline VOREL_INSTRUCTIONS {

#ifdef __AVX2__

// How shuffles of bytes take kPartLanes samples of Count streams apart, which are kBytes bytes: from pieces of 16 bytes,
// of which the last may begin within the one before it.
template <std::size_t Count, typename Sample>
struct PartOfStreams {
  static constexpr std::size_t kBytes = kPartLanes * Count * sizeof(Sample);
  static constexpr std::size_t kPieces = (kBytes + 15) / 16;
  static constexpr std::size_t Begin(std::size_t piece) { return std::min(16 * piece, kBytes - 16); }

  // What each stream takes from each piece, for both parts of a vector.
  static constexpr auto kOrders = [] {
    std::array<std::array<std::array<i8, 32>, kPieces>, Count> orders = {};
    for (std::size_t stream = 0; stream < Count; ++stream) {
      for (std::size_t piece = 0; piece < kPieces; ++piece) {
        for (std::size_t i = 0; i < 32; ++i) {
          const std::size_t byte = i % 2;
          const std::size_t at = (i % 16 / 2 * Count + stream) * sizeof(Sample) + byte;
          const bool taken = byte < sizeof(Sample) && at / 16 == piece;
          orders[stream][piece][i] = taken ? static_cast<i8>(at - Begin(piece)) : i8{-1};
        }
      }
    }
    return orders;
  }();
};

#else

// Samples of a vector of 16 bytes.
template <typename Sample>
inline constexpr u32 kSamplesOfVector = 16 / sizeof(Sample);

template <typename Sample>
using SampleVector = typename VectorOf<Sample, 16>::Type;

// The half `HighA` of a and the half `HighB` of b, interleaved.
template <bool HighA, bool HighB, typename Vector, int... To>
inline Vector InterleaveHalves(Vector a, Vector b, std::integer_sequence<int, To...> /*lanes*/) {
  constexpr int kCount = sizeof...(To);
  return __builtin_shufflevector(
      a, b,
      (To % 2 == 0 ? To / 2 + (HighA ? kCount / 2 : 0) : kCount + To / 2 + (HighB ? kCount / 2 : 0))...);
}
template <bool HighA, bool HighB, typename Sample>
inline SampleVector<Sample> InterleaveHalves(SampleVector<Sample> a, SampleVector<Sample> b) {
  return InterleaveHalves<HighA, HighB>(
      a, b, std::make_integer_sequence<int, static_cast<int>(kSamplesOfVector<Sample>)>());
}

// Interleaves the first half of Count vectors in a row with their second half. A sample at i goes to 2i modulo one less
// than their number n = Count * w; so sample p of stream c, at Count * p + c, is at p + c * w after log2(w) times, as
// w * Count * p = (n - 1) * p + p.
template <typename Sample, std::size_t Count>
inline void InterleaveWithSecondHalf(std::array<SampleVector<Sample>, Count>& v) {
  static_assert(Count >= 2 && Count <= 4);
  if constexpr (Count == 2) {
    v = {InterleaveHalves<false, false, Sample>(v[0], v[1]),
         InterleaveHalves<true, true, Sample>(v[0], v[1])};
  } else if constexpr (Count == 3) {
    v = {InterleaveHalves<false, true, Sample>(v[0], v[1]), InterleaveHalves<true, false, Sample>(v[0], v[2]),
         InterleaveHalves<false, true, Sample>(v[1], v[2])};
  } else {
    v = {InterleaveHalves<false, false, Sample>(v[0], v[2]), InterleaveHalves<true, true, Sample>(v[0], v[2]),
         InterleaveHalves<false, false, Sample>(v[1], v[3]),
         InterleaveHalves<true, true, Sample>(v[1], v[3])};
  }
}

// The next kSamplesOfVector samples of each of Count streams.
template <std::size_t Count, typename Sample>
inline std::array<SampleVector<Sample>, Count> LoadStreams(const Sample* interleaved) {
  std::array<SampleVector<Sample>, Count> v;
  for (std::size_t k = 0; k < Count; ++k)
    v[k] = LoadNative<SampleVector<Sample>>(reinterpret_cast<const u8*>(interleaved) + 16 * k);
  for (u32 n = kSamplesOfVector<Sample>; n > 1; n /= 2) InterleaveWithSecondHalf<Sample, Count>(v);
  return v;
}

template <int... Low>
inline void StoreWidened(SampleVector<u8> v, i16* to, std::integer_sequence<int, Low...> /*lanes*/) {
  const SampleVector<u8> zero = {};
  StoreNative(reinterpret_cast<u8*>(to),
              __builtin_shufflevector(v, zero, (Low % 2 == 0 ? Low / 2 : 16 + Low / 2)...));
  StoreNative(reinterpret_cast<u8*>(to + 8),
              __builtin_shufflevector(v, zero, (Low % 2 == 0 ? 8 + Low / 2 : 16 + Low / 2)...));
}

inline void StoreSamples(SampleVector<u8> v, i16* to) {
  StoreWidened(v, to, std::make_integer_sequence<int, 16>());
}
inline void StoreSamples(SampleVector<u16> v, i16* to) {
  StoreNative(reinterpret_cast<u8*>(to), v);
}

#endif

// Reads and stores whole vectors: up to 15 samples of each stream more than `count`.
template <std::size_t Count, typename Sample>
inline void SplitStreams(const Sample* interleaved, u32 count, const std::array<i16*, Count>& planes) {
#ifdef __AVX2__
  using Part = PartOfStreams<Count, Sample>;
  const u8* bytes = reinterpret_cast<const u8*>(interleaved);
  for (u32 i = 0; i < count; i += kLanes, bytes += 2 * Part::kBytes) {
    std::array<Lanes, Part::kPieces> pieces;
    for (std::size_t k = 0; k < pieces.size(); ++k)
      pieces[k] = LoadParts(bytes + Part::Begin(k), bytes + Part::kBytes + Part::Begin(k));
    for (std::size_t stream = 0; stream < Count; ++stream) {
      Lanes samples = {};
      for (std::size_t k = 0; k < pieces.size(); ++k)
        samples |= ReorderBytes(pieces[k], Part::kOrders[stream][k]);
      StoreNative(planes[stream] + i, samples);
    }
  }
#else
  for (u32 i = 0; i < count; i += kSamplesOfVector<Sample>) {
    const auto streams = LoadStreams<Count>(interleaved + std::size_t{i} * Count);
    for (std::size_t k = 0; k < Count; ++k) StoreSamples(streams[k], planes[k] + i);
  }
#endif
}

// The samples that take turns from `samples` on, kLanes of either.
inline WordHalves LoadTurns(const u8* samples) {
  const auto words = LoadNative<WrappingLanes>(samples);
  return {words & 255, words >> 8};
}
inline WordHalves LoadTurns(const u16* samples) {
  return LoadWords(reinterpret_cast<const u8*>(samples));
}

// Samples of pairs, Y'0 Cb Y'1 Cr, of `count` pixels. Reads and stores whole vectors: up to 2 * kLanes - 1 pixels
// more than `count`.
template <typename Sample>
inline void SplitPairs(const Sample* pairs, u32 count, i16* luma, i16* cb, i16* cr) {
  for (u32 i = 0; i < count; i += 2 * kLanes) {
    const WordHalves first = LoadTurns(pairs + std::size_t{2} * i);
    const WordHalves second = LoadTurns(pairs + std::size_t{2} * i + 2 * kLanes);
    StoreNative(luma + i, first.low);
    StoreNative(luma + i + kLanes, second.low);
    const auto begin = (WideLanes)first.high;
    const auto end = (WideLanes)second.high;
    StoreNative(cb + i / 2, PackInOrder(begin & 0xFFFF, end & 0xFFFF));
    StoreNative(cr + i / 2, PackInOrder(begin >> 16, end >> 16));
  }
}

}  // namespace vorel::inline VOREL_INSTRUCTIONS
