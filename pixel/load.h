// Bytes of a picture to the planes of a strip: one loop for each kind of container. Samples arrive at a
// chosen depth: deeper ones are cut, shallower ones shifted up.
#pragma once
#include <algorithm>
#include <array>
#include <cstring>

#include "base/instructions.h"
#include "pixel/pixel_layout.h"
#include "pixel/pixel_words.h"
#include "pixel/sample_strip.h"
#include "pixel/split_streams.h"

namespace vorel::inline VOREL_INSTRUCTIONS {

constexpr i16 ChangeDepth(i32 sample, int from, int to) {
  return static_cast<i16>(to < from ? sample >> (from - to) : sample << (to - from));
}

// A vector of samples at another depth.
template <int From, int To>
inline Lanes ChangeDepthOf(Lanes samples) {
  if constexpr (From <= To) return samples << (To - From);
  return samples >> (From - To);
}

// Video signals keep the codes 0 and 255 for themselves, or those that have them in their top 8 bits.
constexpr i16 LimitToVideoCodes(i16 sample, int bits) {
  const i16 least = static_cast<i16>(1 << (bits - 8));
  return std::clamp<i16>(sample, least, static_cast<i16>((1 << bits) - 1 - least));
}

template <ByteOrder Order>
inline u16 LoadWord(const u8* bytes) {
  const u16 word = LoadNative<u16>(bytes);
  return Order == ByteOrder::big ? static_cast<u16>(word << 8 | word >> 8) : word;
}

// A sample that is a byte or a word by itself.
template <const PixelLayout& Pixel, int Bits>
inline i16 LoadSample(const u8* unit, int place) {
  i16 sample = 0;
  if constexpr (Pixel.container == Container::bytes) {
    sample = ChangeDepth(unit[place], 8, Bits);
  } else {
    // What stands above the scale of the format is of no account in a legal picture, and limited in others.
    sample = ChangeDepth(LoadWord<Pixel.order>(unit + std::ptrdiff_t{2} * place), Pixel.sampleBits, Bits);
  }
  return Pixel.limitedOnRead ? LimitToVideoCodes(sample, Bits) : sample;
}

template <ByteOrder Order, int Bits>
inline WrappingLanes SamplesOfWords(const i16* plane) {
  const auto words = LoadNative<WrappingLanes>(plane);
  if constexpr (Order == ByteOrder::big) return (words << 8 | words >> 8) >> (16 - Bits);
  return words >> (16 - Bits);
}

// A strip of pixels. AlphaBits is 0 where alpha is not wanted.
template <const PixelLayout& Pixel, int Bits, int AlphaBits>
[[gnu::always_inline]] inline void LoadPixels(const u8* __restrict bytes, Planes planes) {
  i16* __restrict first = planes.first;
  i16* __restrict second = planes.second;
  i16* __restrict third = planes.third;
  i16* __restrict alpha = planes.alpha;
  if constexpr (Pixel.container == Container::fields) {
    for (u32 i = 0; i < kStripPixels; i += kLanes) {
      WordHalves words = LoadWords(bytes + std::size_t{4} * i);
      if constexpr (Pixel.order == ByteOrder::big) words = SwapBytesOf(words);
      StoreNative(first + i, ChangeDepthOf<10, Bits>(FieldOf(words, Pixel.place[0])));
      StoreNative(second + i, ChangeDepthOf<10, Bits>(FieldOf(words, Pixel.place[1])));
      StoreNative(third + i, ChangeDepthOf<10, Bits>(FieldOf(words, Pixel.place[2])));
    }
  } else if constexpr (Pixel.container == Container::bytes && Pixel.unitBytes == 4) {
    for (u32 i = 0; i < kStripPixels; i += kLanes) {
      const WordHalves words = LoadWords(bytes + std::size_t{4} * i);
      StoreNative(first + i, ChangeDepthOf<8, Bits>(ByteOf(words, Pixel.place[0])));
      StoreNative(second + i, ChangeDepthOf<8, Bits>(ByteOf(words, Pixel.place[1])));
      StoreNative(third + i, ChangeDepthOf<8, Bits>(ByteOf(words, Pixel.place[2])));
      if constexpr (AlphaBits > 0)
        StoreNative(alpha + i, ChangeDepthOf<8, AlphaBits>(ByteOf(words, Pixel.place[3])));
    }
  } else if constexpr (Pixel.unitBytes == 3) {
    std::array<i16*, 3> inOrder = {first, second, third};
    inOrder[Pixel.place[0]] = first;
    inOrder[Pixel.place[1]] = second;
    inOrder[Pixel.place[2]] = third;
    SplitStreams(bytes, kStripPixels, inOrder);
    if constexpr (Bits != 8) {
      for (u32 i = 0; i < kStripPixels; ++i) {
        first[i] = ChangeDepth(first[i], 8, Bits);
        second[i] = ChangeDepth(second[i], 8, Bits);
        third[i] = ChangeDepth(third[i], 8, Bits);
      }
    }
  } else if constexpr (Pixel.unitBytes == 8) {
    // Words as they stand in memory, then samples.
    static_assert(Pixel.sampleBits == 16 && !Pixel.limitedOnRead);
    SamplePlane other;
    std::array<i16*, 4> inOrder;
    inOrder.fill(Cells(other));
    inOrder[Pixel.place[0]] = first;
    inOrder[Pixel.place[1]] = second;
    inOrder[Pixel.place[2]] = third;
    if constexpr (AlphaBits > 0) inOrder[Pixel.place[3]] = alpha;
    SplitStreams(reinterpret_cast<const u16*>(bytes), kStripPixels, inOrder);
    for (u32 i = 0; i < kStripPixels; i += kLanes) {
      StoreNative(first + i, SamplesOfWords<Pixel.order, Bits>(first + i));
      StoreNative(second + i, SamplesOfWords<Pixel.order, Bits>(second + i));
      StoreNative(third + i, SamplesOfWords<Pixel.order, Bits>(third + i));
      if constexpr (AlphaBits > 0) StoreNative(alpha + i, SamplesOfWords<Pixel.order, AlphaBits>(alpha + i));
    }
  } else {
    for (u32 i = 0; i < kStripPixels; ++i) {
      const u8* pixel = bytes + std::size_t{Pixel.unitBytes} * i;
      first[i] = LoadSample<Pixel, Bits>(pixel, Pixel.place[0]);
      second[i] = LoadSample<Pixel, Bits>(pixel, Pixel.place[1]);
      third[i] = LoadSample<Pixel, Bits>(pixel, Pixel.place[2]);
      if constexpr (AlphaBits > 0) alpha[i] = LoadSample<Pixel, AlphaBits>(pixel, Pixel.place[3]);
    }
  }
}

// The lanes of `others` whose number leaves `Rest` when divided by four, the rest of `lanes`.
template <int Rest>
inline Lanes TakeEveryFourth(Lanes lanes, Lanes others) {
  using FourLanes = typename VectorOf<u64, 2 * kLanes>::Type;
  return Select((Lanes)(FourLanes{} + (u64{0xFFFF} << 16 * Rest)), others, lanes);
}

#ifdef __AVX2__
// Lanes of each part in another order.
constexpr OrderOfParts OrderOfLanes(const std::array<int, kPartLanes>& from) {
  return OrderOfBytes([&](int i) { return 2 * from[static_cast<std::size_t>(i / 2)] + i % 2; });
}
#endif

// A strip of 'v210' groups, each three pairs in four words.
//   word 0   Cb 0 | Y' 0 | Cr 0      word 1   Y' 1 | Cb 1 | Y' 2
//   word 2   Cr 1 | Y' 3 | Cb 2      word 3   Y' 4 | Cr 2 | Y' 5        from bits 9..0 up
// Cells behind the strip, two of luma and one of either chroma, are overwritten.
template <int Bits>
inline void LoadGroups(const u8* __restrict bytes, i16* luma, i16* cb, i16* cr) {
  using Words = typename VectorOf<u32, 2 * kLanes>::Type;
  using TwoWords = VectorOf<u64, 16>::Type;
  constexpr u32 kEach = kLanes / kPartLanes;
  for (u32 group = 0; group < kStripPairs / 3; group += kEach, bytes += sizeof(Words)) {
    const Words words = LoadNative<Words>(bytes);
    // Of a group: Cb 0, Y' 0, Y' 1, Cb 1, Cr 1, Y' 3, Y' 4, Cr 2, and in odd lanes Cr 0, Y' 2, Cb 2, Y' 5.
    const auto lower = ChangeDepthOf<10, Bits>((Lanes)((words & 0x3FF) | (words & 0xFFC00) << 6));
    const auto upper = ChangeDepthOf<10, Bits>((Lanes)(words >> 4 & 0x3FF0000));
    // Y' in order, but for every fourth lane; Cb 0, Cr 0, -, Cb 1, Cr 1, Cb 2, -, Cr 2.
    const Lanes white = TakeEveryFourth<3>(lower, upper);
    const Lanes chroma = TakeEveryFourth<1>(lower, upper);
#ifdef __AVX2__
    static constexpr OrderOfParts kWhite = OrderOfLanes({1, 2, 3, 5, 6, 7, 7, 7});
    static constexpr OrderOfParts kChroma = OrderOfLanes({0, 3, 5, 5, 1, 4, 7, 7});
    const Lanes whiteInOrder = ReorderBytes(white, kWhite);
    const Lanes chromaInOrder = ReorderBytes(chroma, kChroma);
    StoreNative(luma, LowPart(whiteInOrder));
    StoreNative(luma + 6, HighPart(whiteInOrder));
    const auto first = (TwoWords)LowPart(chromaInOrder);
    const auto second = (TwoWords)HighPart(chromaInOrder);
    StoreNative(cb, first[0]);
    StoreNative(cb + 3, second[0]);
    StoreNative(cr, first[1]);
    StoreNative(cr + 3, second[1]);
#else
    const auto whiteInOrder = (TwoWords)white >> 16;
    StoreNative(luma, whiteInOrder[0]);
    StoreNative(luma + 3, whiteInOrder[1]);
    const auto pairs = (TwoWords)chroma;
    const auto store = [](i16* to, u64 number) { StoreNative(to, static_cast<u16>(number)); };
    store(cb, pairs[0]);
    store(cb + 1, pairs[0] >> 48);
    store(cb + 2, pairs[1] >> 16);
    store(cr, pairs[0] >> 16);
    store(cr + 1, pairs[1]);
    store(cr + 2, pairs[1] >> 48);
#endif
    luma += std::size_t{6} * kEach;
    cb += std::size_t{3} * kEach;
    cr += std::size_t{3} * kEach;
  }
}

// A strip of pairs: Y' of every pixel, Cb and Cr of every pair.
template <const PixelLayout& Pixel, int Bits>
void LoadPairs(const u8* __restrict bytes, Planes planes) {
  i16* __restrict luma = planes.first;
  i16* __restrict cb = planes.second;
  i16* __restrict cr = planes.third;
  if constexpr (Pixel.container == Container::groups) {
    LoadGroups<Bits>(bytes, luma, cb, cr);
  } else {
    for (u32 i = 0; i < kStripPairs; ++i) {
      const u8* pair = bytes + std::size_t{Pixel.unitBytes} * i;
      luma[2 * i] = LoadSample<Pixel, Bits>(pair, Pixel.place[0]);
      luma[2 * i + 1] = LoadSample<Pixel, Bits>(pair, Pixel.place[2]);
      cb[i] = LoadSample<Pixel, Bits>(pair, Pixel.place[1]);
      cr[i] = LoadSample<Pixel, Bits>(pair, Pixel.place[3]);
    }
  }
}

// Cb and Cr of the pair at `bytes`, which is the first of a group.
struct PairChroma {
  i16 cb;
  i16 cr;
};

template <const PixelLayout& Pixel, int Bits>
PairChroma LoadPairChroma(const u8* bytes) {
  if constexpr (Pixel.container == Container::groups) {
    const u32 word = LoadNative<u32>(bytes);
    return {ChangeDepth(static_cast<i32>(word & 1023), 10, Bits),
            ChangeDepth(static_cast<i32>(word >> 20 & 1023), 10, Bits)};
  } else {
    return {LoadSample<Pixel, Bits>(bytes, Pixel.place[1]), LoadSample<Pixel, Bits>(bytes, Pixel.place[3])};
  }
}

}  // namespace vorel::inline VOREL_INSTRUCTIONS
