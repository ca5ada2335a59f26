// The row above, in the row buffer that the caller lends to a decoder of progressive frames. The buffer of a
// layout is no larger than it must be, so samples lie in it packed: bytes, words, or three of ten bits to a word
// of 32; strip after strip, and in a strip plane after plane.
#pragma once
#include "base/instructions.h"
#include "codec/strip_symbols.h"

namespace vorel::inline VOREL_INSTRUCTIONS {

// Whether three planes of ten bits share words.
template <const FrameLayout& Layout, bool KeepAlpha>
inline constexpr bool kPacksThree = Layout.samples.bits == 10 && !kInPairs<Layout> && !KeepAlpha;

template <const FrameLayout& Layout, bool KeepAlpha>
constexpr std::size_t RowBufferBytes(u32 steps) {
  if (kPacksThree<Layout, KeepAlpha>) return std::size_t{steps} * 4;
  const std::size_t samples = (kInPairs<Layout> ? 2 : 3) + (KeepAlpha ? 1 : 0);
  return steps * samples * (Layout.samples.bits == 8 ? 1 : 2);
}

// One plane and its bytes, in whichever direction: Move is called with a cell and the address of its bytes.
template <typename Cell, typename Byte, typename Move>
Byte* MovePlane(Cell* cells, u32 count, Byte* bytes, std::size_t size, Move move) {
  for (u32 i = 0; i < count; ++i) move(cells[i], bytes + size * i);
  return bytes + size * count;
}

template <const FrameLayout& Layout, bool KeepAlpha, typename Strip, typename Byte, typename Move>
void MovePlanes(Strip& strip, u32 steps, Byte* bytes, Move move) {
  constexpr std::size_t kSize = Layout.samples.bits == 8 ? 1 : 2;
  const u32 chroma = kInPairs<Layout> ? steps / 2 : steps;
  bytes = MovePlane(Cells(strip.first), steps, bytes, kSize, move);
  bytes = MovePlane(Cells(strip.second), chroma, bytes, kSize, move);
  bytes = MovePlane(Cells(strip.third), chroma, bytes, kSize, move);
  if constexpr (KeepAlpha) MovePlane(Cells(strip.alpha), steps, bytes, kSize, move);
}

template <const FrameLayout& Layout, bool KeepAlpha>
[[gnu::noinline]] void KeepStrip(const SampleStrip& strip, u32 steps, u8* __restrict bytes) {
  if constexpr (kPacksThree<Layout, KeepAlpha>) {
    for (u32 i = 0; i < steps; ++i) {
      StoreNative(bytes + std::size_t{4} * i, static_cast<u32>(Cells(strip.first)[i]) |
                                                  static_cast<u32>(Cells(strip.second)[i]) << 10 |
                                                  static_cast<u32>(Cells(strip.third)[i]) << 20);
    }
  } else {
    MovePlanes<Layout, KeepAlpha>(strip, steps, bytes, [](i16 cell, u8* at) {
      if constexpr (Layout.samples.bits == 8) {
        *at = static_cast<u8>(cell);
      } else {
        StoreNative(at, cell);
      }
    });
  }
}

template <const FrameLayout& Layout, bool KeepAlpha>
[[gnu::noinline]] void FetchStrip(const u8* __restrict bytes, u32 steps, SampleStrip& strip) {
  if constexpr (kPacksThree<Layout, KeepAlpha>) {
    for (u32 i = 0; i < steps; ++i) {
      const u32 word = LoadNative<u32>(bytes + std::size_t{4} * i);
      Cells(strip.first)[i] = static_cast<i16>(word & 1023);
      Cells(strip.second)[i] = static_cast<i16>(word >> 10 & 1023);
      Cells(strip.third)[i] = static_cast<i16>(word >> 20);
    }
  } else {
    MovePlanes<Layout, KeepAlpha>(strip, steps, bytes, [](i16& cell, const u8* at) {
      if constexpr (Layout.samples.bits == 8) {
        cell = *at;
      } else {
        cell = LoadNative<i16>(at);
      }
    });
  }
}

}  // namespace vorel::inline VOREL_INSTRUCTIONS
