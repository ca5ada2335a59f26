// The planes of a strip to bytes of a picture: one loop for each kind of container. The mirror of load.h.
#pragma once
#include <array>
#include <cstring>

#include "base/instructions.h"
#include "pixel/load.h"

namespace vorel::inline VOREL_INSTRUCTIONS {

template <ByteOrder Order>
constexpr u32 PlaceField(i16 sample, int place) {
  const u32 value = static_cast<u16>(sample);
  if (Order == ByteOrder::little) return value << place;
  const SplitField split = SplitBigField(place);
  return (value & ((1u << split.lowBits) - 1)) << split.low | value >> split.lowBits << split.high;
}

static_assert(PlaceField<ByteOrder::big>(0x2A5, 12) == SwapBytes(0x2A5u << 12) &&
              PlaceField<ByteOrder::big>(0x2A5, 22) == SwapBytes(0x2A5u << 22) &&
              PlaceField<ByteOrder::big>(0x2A5, 0) == SwapBytes(0x2A5u));

template <ByteOrder Order>
inline void StoreWord(u8* bytes, u16 word) {
  StoreNative(bytes, Order == ByteOrder::big ? static_cast<u16>(word << 8 | word >> 8) : word);
}

// A sample that is a byte or a word by itself, from a value on the scale of the format.
template <const PixelLayout& Pixel>
inline void StoreSample(u8* unit, int place, u32 value) {
  if constexpr (Pixel.container == Container::bytes) {
    unit[place] = static_cast<u8>(value);
  } else {
    StoreWord<Pixel.order>(unit + std::ptrdiff_t{2} * place, static_cast<u16>(value));
  }
}

// On the scale of the format, in 16 bits without a sign: samples of deep formats fill them.
template <const PixelLayout& Pixel, int Bits>
constexpr u16 ToFormatScale(i16 sample) {
  return static_cast<u16>(ChangeDepth(sample, Bits, Pixel.sampleBits));
}

// In its place of a little-endian word that holds the pixel.
template <const PixelLayout& Pixel, int Bits>
constexpr u32 ToByte(i16 sample, int place) {
  return u32{ToFormatScale<Pixel, Bits>(sample)} << 8 * place;
}

// The lower three bytes of each word, one pixel after another. What a store has too much is overwritten by the next one.
inline void StoreThreeOfFour(const std::array<u32, kStripPixels>& words, u8* __restrict bytes) {
#ifdef __SSSE3__
  using Bytes = u8 __attribute__((vector_size(16)));
  for (u32 i = 0; i < kStripPixels; i += 4) {
    const Bytes four = LoadNative<Bytes>(&words[i]);
    const Bytes packed =
        __builtin_shufflevector(four, four, 0, 1, 2, 4, 5, 6, 8, 9, 10, 12, 13, 14, 3, 7, 11, 15);
    u8* const target = bytes + std::size_t{3} * i;
    if (i + 4 < kStripPixels)
      StoreNative(target, packed);
    else
      std::memcpy(target, &packed, 12);
  }
#else
  // Without a shuffle of bytes: two pixels at a time.
  alignas(32) std::array<u64, kStripPixels / 2> two;
  for (u32 i = 0; i < kStripPixels / 2; ++i) {
    const u64 both = LoadNative<u64>(&words[std::size_t{2} * i]);
    two[i] = (both & 0xFFFFFF) | (both >> 8 & 0xFFFFFF000000);
  }
  for (u32 i = 0; i + 1 < kStripPixels / 2; ++i) StoreNative(bytes + std::size_t{6} * i, two[i]);
  std::memcpy(bytes + std::size_t{3} * kStripPixels - 6, &two[kStripPixels / 2 - 1], 6);
#endif
}

// A strip of pixels. AlphaBits is 0 where all pixels are opaque; `Opaque` then is what stands in their place
// of alpha, on the scale of the format.
template <const PixelLayout& Pixel, int Bits, int AlphaBits, u16 Opaque>
void StorePixels(ConstPlanes planes, u8* __restrict bytes) {
  const i16* __restrict first = planes.first;
  const i16* __restrict second = planes.second;
  const i16* __restrict third = planes.third;
  const i16* __restrict alpha = planes.alpha;
  if constexpr (Pixel.container == Container::fields) {
    for (u32 i = 0; i < kStripPixels; ++i) {
      const u32 word = PlaceField<Pixel.order>(ChangeDepth(first[i], Bits, 10), Pixel.place[0]) |
                       PlaceField<Pixel.order>(ChangeDepth(second[i], Bits, 10), Pixel.place[1]) |
                       PlaceField<Pixel.order>(ChangeDepth(third[i], Bits, 10), Pixel.place[2]);
      StoreNative(bytes + std::size_t{4} * i, word);
    }
  } else if constexpr (Pixel.container == Container::shortFields) {
    // Red has the bits between the second field and the top, 5:5:5 leaves the top one zero.
    constexpr int kGreenBits = Pixel.place[0] - Pixel.place[1];
    for (u32 i = 0; i < kStripPixels; ++i) {
      const i32 word = ChangeDepth(first[i], Bits, 5) << Pixel.place[0] |
                       ChangeDepth(second[i], Bits, kGreenBits) << Pixel.place[1] |
                       ChangeDepth(third[i], Bits, 5) << Pixel.place[2];
      StoreNative(bytes + std::size_t{2} * i, static_cast<u16>(word));
    }
  } else if constexpr (Pixel.container == Container::bytes && Pixel.unitBytes == 4) {
    for (u32 i = 0; i < kStripPixels; ++i) {
      u32 word = ToByte<Pixel, Bits>(first[i], Pixel.place[0]) |
                 ToByte<Pixel, Bits>(second[i], Pixel.place[1]) |
                 ToByte<Pixel, Bits>(third[i], Pixel.place[2]);
      if constexpr (AlphaBits > 0) {
        word |= ToByte<Pixel, AlphaBits>(alpha[i], Pixel.place[3]);
      } else {
        word |= u32{Opaque} << 8 * Pixel.place[3];
      }
      StoreNative(bytes + std::size_t{4} * i, word);
    }
  } else if constexpr (Pixel.unitBytes == 3) {
    alignas(32) std::array<u32, kStripPixels> words;
    for (u32 i = 0; i < kStripPixels; ++i) {
      words[i] = ToByte<Pixel, Bits>(first[i], Pixel.place[0]) |
                 ToByte<Pixel, Bits>(second[i], Pixel.place[1]) |
                 ToByte<Pixel, Bits>(third[i], Pixel.place[2]);
    }
    StoreThreeOfFour(words, bytes);
  } else {
    for (u32 i = 0; i < kStripPixels; ++i) {
      u8* pixel = bytes + std::size_t{Pixel.unitBytes} * i;
      StoreSample<Pixel>(pixel, Pixel.place[0], ToFormatScale<Pixel, Bits>(first[i]));
      StoreSample<Pixel>(pixel, Pixel.place[1], ToFormatScale<Pixel, Bits>(second[i]));
      StoreSample<Pixel>(pixel, Pixel.place[2], ToFormatScale<Pixel, Bits>(third[i]));
      if constexpr (AlphaBits > 0) {
        StoreSample<Pixel>(pixel, Pixel.place[3], ToFormatScale<Pixel, AlphaBits>(alpha[i]));
      } else if constexpr (HasAlphaPlace(Pixel)) {
        StoreSample<Pixel>(pixel, Pixel.place[3], Opaque);
      }
    }
  }
}

// A strip of pairs. Of 'v210' all words of the last group are stored, so `bytes` has room for whole groups.
template <const PixelLayout& Pixel, int Bits>
void StorePairs(ConstPlanes planes, u8* __restrict bytes) {
  const i16* __restrict luma = planes.first;
  const i16* __restrict cb = planes.second;
  const i16* __restrict cr = planes.third;
  if constexpr (Pixel.container == Container::groups) {
    const auto at = [](i16 sample, int place) {
      return static_cast<u32>(ChangeDepth(sample, Bits, 10)) << place;
    };
    for (u32 group = 0; group < kStripPairs / 3; ++group) {
      u8* target = bytes + std::size_t{16} * group;
      const i16* y = luma + std::size_t{6} * group;
      const i16* b = cb + std::size_t{3} * group;
      const i16* r = cr + std::size_t{3} * group;
      StoreNative(target, at(b[0], 0) | at(y[0], 10) | at(r[0], 20));
      StoreNative(target + 4, at(y[1], 0) | at(b[1], 10) | at(y[2], 20));
      StoreNative(target + 8, at(r[1], 0) | at(y[3], 10) | at(b[2], 20));
      StoreNative(target + 12, at(y[4], 0) | at(r[2], 10) | at(y[5], 20));
    }
  } else {
    for (u32 i = 0; i < kStripPairs; ++i) {
      u8* pair = bytes + std::size_t{Pixel.unitBytes} * i;
      StoreSample<Pixel>(pair, Pixel.place[0], ToFormatScale<Pixel, Bits>(luma[2 * i]));
      StoreSample<Pixel>(pair, Pixel.place[1], ToFormatScale<Pixel, Bits>(cb[i]));
      StoreSample<Pixel>(pair, Pixel.place[2], ToFormatScale<Pixel, Bits>(luma[2 * i + 1]));
      StoreSample<Pixel>(pair, Pixel.place[3], ToFormatScale<Pixel, Bits>(cr[i]));
    }
  }
}

}  // namespace vorel::inline VOREL_INSTRUCTIONS
