// The planes of a strip to bytes of a picture: one loop for each kind of container. The mirror of load.h.
#pragma once
#include <array>
#include <cstring>

#include "base/instructions.h"
#include "base/lanes.h"
#include "pixel/load.h"

namespace vorel::inline VOREL_INSTRUCTIONS {

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

#ifdef __AVX2__

// Where bytes of a part of three-byte pixels come from, if `has` says so: those from `begin` on. `at` gives where in their
// vector.
template <typename Has, typename At>
constexpr std::array<i8, 32> OrderOfThreeBytes(int begin, Has has, At at) {
  std::array<i8, 32> order = {};
  for (int i = 0; i < 32; ++i) {
    const int byte = begin + i % 16;
    order[static_cast<std::size_t>(i)] =
        static_cast<i8>(has(byte % 3) && byte < 24 ? at(byte / 3, byte % 3) : -1);
  }
  return order;
}

// Three-byte pixels out of planes in the order of their bytes. What a store has too much is overwritten by the next one.
template <int Bits>
void StoreThreeBytes(const std::array<const i16*, 3>& inOrder, u8* __restrict bytes) {
  constexpr auto kTwo = [](int begin) {
    return OrderOfThreeBytes(
        begin, [](int byte) { return byte < 2; }, [](int pixel, int byte) { return 2 * pixel + byte; });
  };
  constexpr auto kThird = [](int begin) {
    return OrderOfThreeBytes(
        begin, [](int byte) { return byte == 2; }, [](int pixel, int /*byte*/) { return 2 * pixel; });
  };
  static constexpr std::array kOrders = {kTwo(0), kThird(0), kTwo(16), kThird(16)};
  for (u32 i = 0; i < kStripPixels; i += kLanes, bytes += 3 * kLanes) {
    const auto load = [&](std::size_t k) {
      return ChangeDepthOf<Bits, 8>(LoadNative<Lanes>(inOrder[k] + i));
    };
    const Lanes two = load(0) | load(1) << 8;
    const Lanes third = load(2);
    // The first 16 bytes and the last 8 of each part.
    const Lanes begin = ReorderBytes(two, kOrders[0]) | ReorderBytes(third, kOrders[1]);
    const Lanes end = ReorderBytes(two, kOrders[2]) | ReorderBytes(third, kOrders[3]);
    StoreNative(bytes, LowPart(begin));
    StoreNative(bytes + 16, LowPart(end));
    StoreNative(bytes + 24, HighPart(begin));
    const PartLanes last = HighPart(end);
    if (i + kLanes < kStripPixels)
      StoreNative(bytes + 40, last);
    else
      std::memcpy(bytes + 40, &last, 8);
  }
}

// Groups of 'v210', two at once, each a part of a vector.
template <int Bits>
void StoreGroups(const i16* luma, const i16* cb, const i16* cr, u8* __restrict bytes) {
  // Where the three fields of the four words come from, numbers of luma or of the chroma of a group: Cb in 0 to 2, Cr in
  // 4 to 6.
  constexpr int kNone = -1;
  constexpr auto kNumbers = [](int n0, int n1, int n2, int n3) {
    const std::array<int, 4> numbers = {n0, n1, n2, n3};
    std::array<i8, 32> order = {};
    for (std::size_t i = 0; i < 32; ++i) {
      const int number = numbers[i % 16 / 4];
      order[i] = static_cast<i8>(number == kNone || i % 4 > 1 ? -1 : 2 * number + static_cast<int>(i % 4));
    }
    return order;
  };
  static constexpr std::array kOfLuma = {kNumbers(kNone, 1, kNone, 4), kNumbers(0, kNone, 3, kNone),
                                         kNumbers(kNone, 2, kNone, 5)};
  static constexpr std::array kOfChroma = {kNumbers(0, kNone, 5, kNone), kNumbers(kNone, 1, kNone, 6),
                                           kNumbers(4, kNone, 2, kNone)};
  using Words = VectorOf<u32, 32>::Type;
  for (u32 group = 0; group < kStripPairs / 3; group += 2) {
    const auto load = [&](const i16* plane, u32 each) {
      return ChangeDepthOf<Bits, 10>(LoadParts(plane + each * group, plane + each * (group + 1)));
    };
    const Lanes y = load(luma, 6);
    const Lanes chroma = Interleave<false, u64>(load(cb, 3), load(cr, 3));
    const auto field = [&](std::size_t k) {
      return (Words)(ReorderBytes(y, kOfLuma[k]) | ReorderBytes(chroma, kOfChroma[k]));
    };
    StoreNative(bytes + std::size_t{16} * group, field(0) | field(1) << 10 | field(2) << 20);
  }
}

#else

using Words = VectorOf<u32, 16>::Type;
using TwoWords = VectorOf<u64, 16>::Type;

// Three-byte pixels out of planes in the order of their bytes. What a store has too much is overwritten by the next one.
template <int Bits>
void StoreThreeBytes(const std::array<const i16*, 3>& inOrder, u8* __restrict bytes) {
  // Closes the gaps in two pixels, each in a word of its own.
  const auto close = [](Lanes pixels) {
    const TwoWords two = (TwoWords)pixels;
    return (two & 0xFFFFFF) | (two >> 8 & 0xFFFFFF000000);
  };
  for (u32 i = 0; i < kStripPixels; i += kLanes, bytes += 3 * kLanes) {
    const auto load = [&](std::size_t k) {
      return ChangeDepthOf<Bits, 8>(LoadNative<Lanes>(inOrder[k] + i));
    };
    const Lanes two = load(0) | load(1) << 8;
    const Lanes third = load(2);
    const TwoWords begin = close(Interleave<false, u16>(two, third));
    const TwoWords end = close(Interleave<true, u16>(two, third));
    StoreNative(bytes, begin[0]);
    StoreNative(bytes + 6, begin[1]);
    StoreNative(bytes + 12, end[0]);
    const u64 last = end[1];
    if (i + kLanes < kStripPixels)
      StoreNative(bytes + 18, last);
    else
      std::memcpy(bytes + 18, &last, 6);
  }
}

// Groups of 'v210', two at once: words 0 and 1 of the one, of the other, then words 2 and 3. A chroma sample behind the
// strip is read.
template <int Bits>
void StoreGroups(const i16* luma, const i16* cb, const i16* cr, u8* __restrict bytes) {
  constexpr Words kEven = {0xFFFF, 0xFFFF, 0xFFFF, 0xFFFF};
  const auto twoOf = [](const i16* samples) { return LoadNative<u32>(samples); };
  const auto firstAndLast = [](const i16* a, const i16* b) {
    return __builtin_shufflevector(LoadNative<Words>(a), LoadNative<Words>(b), 0, 3, 4, 7);
  };
  for (u32 group = 0; group < kStripPairs / 3; group += 2, bytes += 32) {
    const i16* y = luma + std::size_t{6} * group;
    const i16* b = cb + std::size_t{3} * group;
    const i16* r = cr + std::size_t{3} * group;
    // Both lower fields of words, but every other word has the two the wrong way round.
    const Words chroma = {twoOf(b), twoOf(b + 3), twoOf(r + 1), twoOf(r + 4)};
    const Words white = firstAndLast(y, y + 3);
    const Words wrong = (chroma ^ white) & ~kEven;
    const Lanes lower = ChangeDepthOf<Bits, 10>((Lanes)(chroma ^ wrong));
    const Lanes middle = ChangeDepthOf<Bits, 10>((Lanes)(white ^ wrong));
    const Words even = {twoOf(r), twoOf(r + 3), twoOf(b + 2), twoOf(b + 5)};
    const Words odd = firstAndLast(y + 1, y + 4);
    const Lanes upper = ChangeDepthOf<Bits, 10>((Lanes)((even & kEven) | (odd & ~kEven)));
    const Lanes lowHalves = lower | middle << 10;
    const Lanes highHalves = middle >> 6 | upper << 4;
    const TwoWords begins = (TwoWords)Interleave<false, u16>(lowHalves, highHalves);
    const TwoWords ends = (TwoWords)Interleave<true, u16>(lowHalves, highHalves);
    StoreNative(bytes, begins[0]);
    StoreNative(bytes + 8, ends[0]);
    StoreNative(bytes + 16, begins[1]);
    StoreNative(bytes + 24, ends[1]);
  }
}

#endif

// A strip of pixels. AlphaBits is 0 where all pixels are opaque; `Opaque` then is what stands in their place
// of alpha, on the scale of the format.
template <const PixelLayout& Pixel, int Bits, int AlphaBits, u16 Opaque>
[[gnu::always_inline]] inline void StorePixels(ConstPlanes planes, u8* __restrict bytes) {
  const i16* __restrict first = planes.first;
  const i16* __restrict second = planes.second;
  const i16* __restrict third = planes.third;
  const i16* __restrict alpha = planes.alpha;
  if constexpr (Pixel.container == Container::fields) {
    for (u32 i = 0; i < kStripPixels; i += kLanes) {
      WordHalves words =
          WordsOfField(ChangeDepthOf<Bits, 10>(LoadNative<Lanes>(first + i)), Pixel.place[0]) |
          WordsOfField(ChangeDepthOf<Bits, 10>(LoadNative<Lanes>(second + i)), Pixel.place[1]) |
          WordsOfField(ChangeDepthOf<Bits, 10>(LoadNative<Lanes>(third + i)), Pixel.place[2]);
      if constexpr (Pixel.order == ByteOrder::big) words = SwapBytesOf(words);
      StoreWords(words, bytes + std::size_t{4} * i);
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
    for (u32 i = 0; i < kStripPixels; i += kLanes) {
      WordHalves words = WordsOfByte(ChangeDepthOf<Bits, 8>(LoadNative<Lanes>(first + i)), Pixel.place[0]) |
                         WordsOfByte(ChangeDepthOf<Bits, 8>(LoadNative<Lanes>(second + i)), Pixel.place[1]) |
                         WordsOfByte(ChangeDepthOf<Bits, 8>(LoadNative<Lanes>(third + i)), Pixel.place[2]);
      if constexpr (AlphaBits > 0) {
        const Lanes sample = ChangeDepthOf<AlphaBits, 8>(LoadNative<Lanes>(alpha + i));
        words = words | WordsOfByte(sample, Pixel.place[3]);
      } else {
        words = words | WordsOfByte(All(Opaque), Pixel.place[3]);
      }
      StoreWords(words, bytes + std::size_t{4} * i);
    }
  } else if constexpr (Pixel.unitBytes == 3) {
    std::array<const i16*, 3> inOrder = {};
    inOrder[Pixel.place[0]] = first;
    inOrder[Pixel.place[1]] = second;
    inOrder[Pixel.place[2]] = third;
    StoreThreeBytes<Bits>(inOrder, bytes);
  } else if constexpr (Pixel.unitBytes == 8) {
    for (u32 i = 0; i < kStripPixels; i += kLanes) {
      std::array<Lanes, 4> words;
      words[Pixel.place[0]] = ChangeDepthOf<Bits, 16>(LoadNative<Lanes>(first + i));
      words[Pixel.place[1]] = ChangeDepthOf<Bits, 16>(LoadNative<Lanes>(second + i));
      words[Pixel.place[2]] = ChangeDepthOf<Bits, 16>(LoadNative<Lanes>(third + i));
      if constexpr (AlphaBits > 0) {
        words[Pixel.place[3]] = ChangeDepthOf<AlphaBits, 16>(LoadNative<Lanes>(alpha + i));
      } else {
        words[Pixel.place[3]] = All(Opaque);
      }
      StoreFourWords<Pixel.order == ByteOrder::big>(words, bytes + std::size_t{8} * i);
    }
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
    StoreGroups<Bits>(luma, cb, cr, bytes);
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
