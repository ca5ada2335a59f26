// How FillStrip and DrainStrip are put together from stages: load, range, matrix, chroma, alpha, store. The
// only place where frame and pixel format meet; which stages a pair needs is chosen while compiling.
//
//   picture to frame                           frame to picture
//   same colours and sampling                  load, range                               range, store
//   pixels to pairs                            load, range or matrix, filter             filter, store (after the matrix)
//   pairs to pixels                            load, interpolate, range or matrix        interpolate, range or matrix, store
#pragma once
#include <algorithm>
#include <array>
#include <cstring>

#include "base/instructions.h"
#include "pixel/conversion.h"
#include "pixel/conversion_depths.h"
#include "pixel/load.h"
#include "pixel/matrix10.h"
#include "pixel/matrix12.h"
#include "pixel/matrix8.h"
#include "pixel/range_map.h"
#include "pixel/store.h"

namespace vorel::inline VOREL_INSTRUCTIONS {

// One more cell behind the last one: the missing pixel of an odd width, or the missing pair behind a row.
inline void RepeatLast(i16* cells, u32 count) {
  cells[count] = cells[count - 1];
}

template <i32 Mask>
void MaskPlane(i16* values) {
  for (u32 i = 0; i < kStripPixels; ++i) values[i] = static_cast<i16>(values[i] & Mask);
}

// The room of a strip in any format: eight bytes a pixel.
struct StripBytes {
  alignas(32) std::array<u8, std::size_t{kStripPixels} * 8> bytes;
};

// Planes between load and frame, or frame and store.
struct Workspace {
  SampleStrip strip;
  SamplePlane cb;  // of each pixel, where the planes of the strip hold those of pairs, or the reverse
  SamplePlane cr;
};

template <SampleDomain Frame, const PixelLayout& Pixel>
inline constexpr bool kAlphaPasses = Frame.alpha&& HasAlphaPlace(Pixel);

// ---- Stages: one body each for all frames that need it with the same constants.

template <const PixelLayout& Pixel, int Bits, int AlphaBits>
[[gnu::noinline]] void Load(const u8* bytes, Planes planes) {
  if constexpr (Pixel.unit == Unit::pixel) {
    LoadPixels<Pixel, Bits, AlphaBits>(bytes, planes);
  } else {
    LoadPairs<Pixel, Bits>(bytes, planes);
  }
}

template <const PixelLayout& Pixel, int Bits, int AlphaBits, u16 Opaque>
[[gnu::noinline]] void Store(ConstPlanes planes, u8* bytes) {
  if constexpr (Pixel.unit == Unit::pixel) {
    StorePixels<Pixel, Bits, AlphaBits, Opaque>(planes, bytes);
  } else {
    StorePairs<Pixel, Bits>(planes, bytes);
  }
}

// Cb and Cr of each pixel to each pair, with the pixel left of the strip carried from the strip before.
template <int ExtraBits>
[[gnu::noinline]] void FilterStrip(i16* cb, i16* cr, bool firstInRow, ChromaCarry& carry, Planes pairs) {
  cb[-1] = firstInRow ? cb[0] : carry.cb;
  cr[-1] = firstInRow ? cr[0] : carry.cr;
  carry = {cb[kStripPixels - 1], cr[kStripPixels - 1]};
  FilterChroma<ExtraBits>(cb, pairs.second);
  FilterChroma<ExtraBits>(cr, pairs.third);
}

// The cells behind the last pair of a strip: chroma of the next pair of the row, or the last one's again.
template <const PixelLayout& Pixel, int Bits>
void LoadNextChroma(const u8* next, bool isThere, u32 pairs, Planes planes) {
  for (const u32 count : {kStripPairs, pairs}) {
    RepeatLast(planes.second, count);
    RepeatLast(planes.third, count);
  }
  if (isThere) {
    const PairChroma chroma = LoadPairChroma<Pixel, Bits>(next);
    planes.second[pairs] = chroma.cb;
    planes.third[pairs] = chroma.cr;
  }
}

// ---- Whole ways

template <SampleDomain Frame, const PixelLayout& Pixel>
void FillStrip(const u8* row, StripPlace place, const ColourWeights& weights, ChromaCarry& carry,
               SampleStrip& strip) {
  constexpr int kBits = LoadBits(Frame, Pixel);
  constexpr bool kMatrix = Frame.model != Pixel.model;
  constexpr bool kFilters = Frame.unit == Unit::pair && Pixel.unit == Unit::pixel;
  constexpr bool kInterpolates = Frame.unit == Unit::pixel && Pixel.unit == Unit::pair;
  constexpr bool kMaps = !kMatrix && Pixel.range != Frame.range;
  constexpr AlphaRule kAlpha = AlphaIntoFrame(Pixel, Frame);
  constexpr int kAlphaBits = kAlphaPasses<Frame, Pixel> ? kAlpha.bits : 0;
  // What nothing else is done to is loaded into the frame's planes at once.
  constexpr bool kDirect = !kMatrix && !kMaps && !kFilters && !kInterpolates;
  constexpr bool kMapsAlpha = kAlphaBits > 0 && !ChangesNothing(kAlpha.map);
  static_assert(!(kDirect && kMapsAlpha));

  const u32 count = std::min(kStripPixels, place.width - place.first);
  const u8* source = row + BytesOfPixels(Pixel, place.first);
  const std::size_t bytes = BytesOfPixels(Pixel, count);
  const Planes frame = PlanesOf(strip);
  Workspace work;
  Planes loaded = kDirect ? frame : PlanesOf(work.strip);
  if (!kMapsAlpha) loaded.alpha = frame.alpha;
  if (count == kStripPixels) {
    Load<Pixel, kBits, kAlphaBits>(source, loaded);
  } else {
    StripBytes part = {};
    std::memcpy(part.bytes.data(), source, bytes);
    Load<Pixel, kBits, kAlphaBits>(part.bytes.data(), loaded);
  }
  if constexpr (kFilters) {
    if (count % 2 != 0) {
      for (i16* cells : {loaded.first, loaded.second, loaded.third}) RepeatLast(cells, count);
      if constexpr (kAlphaBits > 0) RepeatLast(loaded.alpha, count);
    }
  }
  if constexpr (kMapsAlpha) MapPlane<kAlpha.map>(loaded.alpha, frame.alpha);

  // Chroma where it is neither the picture's nor the frame's.
  const Planes between = {nullptr, Cells(work.cb), Cells(work.cr), nullptr};
  if constexpr (kInterpolates) {
    const bool isLast = count == place.width - place.first;
    LoadNextChroma<Pixel, kBits>(source + bytes, !isLast, (count + 1) / 2, loaded);
    const Planes pixels = kMatrix ? between : frame;
    InterpolateChroma(loaded.second, pixels.second);
    InterpolateChroma(loaded.third, pixels.third);
    loaded.second = pixels.second;
    loaded.third = pixels.third;
  }

  if constexpr (kMatrix && Frame.model == ColourModel::rgb) {
    constexpr Overflow kExcess = Pixel.unit == Unit::pair ? Overflow::isWide : Overflow::wraps;
    YccToFullColour<kBits, Frame.bits, BlackOf(Pixel.range, kBits), kExcess>(Reading(loaded), weights, frame);
  } else if constexpr (kMatrix) {
    constexpr i32 kBlack = BlackOf(Frame.range, Frame.bits);
    const Planes ycc = kFilters ? Planes{frame.first, between.second, between.third, nullptr} : frame;
    if constexpr (Pixel.range == Range::video) {
      VideoColourToYcc<kBits, Frame.bits, kBlack>(Reading(loaded), weights, ycc);
    } else {
      FullColourToYcc<kBits, Frame.bits, kBlack>(Reading(loaded), weights, ycc);
    }
    if constexpr (kFilters) FilterStrip<0>(ycc.second, ycc.third, place.first == 0, carry, frame);
    if constexpr (Pixel.range == Range::video) {
      // Codes outside the video range may have led outside the frame's.
      for (i16* cells : {frame.first, frame.second, frame.third}) MaskPlane<(1 << Frame.bits) - 1>(cells);
    }
  } else if constexpr (Frame.model == ColourModel::rgb) {
    if constexpr (kMaps) {
      constexpr RangeMap kMap = VideoToFullColour(Pixel.sampleBits, Frame.bits);
      MapPlane<kMap>(loaded.first, frame.first);
      MapPlane<kMap>(loaded.second, frame.second);
      MapPlane<kMap>(loaded.third, frame.third);
    }
  } else if constexpr (!kDirect) {
    ChangePlane<kBits, kMaps ? AddLumaOffset(kBits) : kNoMap, Frame.bits>(loaded.first, frame.first);
    if constexpr (kFilters) {
      FilterStrip<kBits - Frame.bits>(loaded.second, loaded.third, place.first == 0, carry, frame);
      if constexpr (kBits > Frame.bits) {
        // Cut with rounding, the highest codes come out one too large: they wrap.
        for (i16* cells : {frame.second, frame.third}) MaskPlane<(1 << Frame.bits) - 1>(cells);
      }
    } else {
      static_assert(kInterpolates);
    }
  }
}

template <SampleDomain Frame, const PixelLayout& Pixel>
void DrainStrip(SampleStrip& strip, StripPlace place, const ColourWeights& weights, ChromaCarry& carry,
                u8* row) {
  constexpr int kBits = StoreBits(Frame, Pixel);
  constexpr bool kMatrix = Frame.model != Pixel.model;
  constexpr bool kFilters = Frame.unit == Unit::pixel && Pixel.unit == Unit::pair;
  constexpr bool kInterpolates = Frame.unit == Unit::pair && Pixel.unit == Unit::pixel;
  constexpr bool kMaps = !kMatrix && Pixel.range != Frame.range;
  constexpr AlphaRule kAlpha = AlphaIntoPicture(Frame, Pixel);
  constexpr int kAlphaBits = kAlphaPasses<Frame, Pixel> ? kAlpha.bits : 0;
  const u32 count = std::min(kStripPixels, place.width - place.first);
  Workspace work;
  const Planes made = PlanesOf(work.strip);
  const Planes between = {nullptr, Cells(work.cb), Cells(work.cr), nullptr};
  Planes frame = PlanesOf(strip);

  if constexpr (kInterpolates) {
    const u32 pairs = (count + 1) / 2;
    if (count == place.width - place.first) {
      RepeatLast(frame.second, pairs);
      RepeatLast(frame.third, pairs);
    }
    InterpolateChroma(frame.second, between.second);
    InterpolateChroma(frame.third, between.third);
    frame.second = between.second;
    frame.third = between.third;
  }
  if constexpr (kFilters) {
    if (count % 2 != 0) {
      for (i16* cells : {frame.first, frame.second, frame.third}) RepeatLast(cells, count);
    }
  }

  Planes stored = frame;
  if constexpr (kMatrix && Frame.model == ColourModel::ycbcr) {
    constexpr i32 kBlack = BlackOf(Frame.range, Frame.bits);
    stored = made;
    if constexpr (Pixel.range == Range::video) {
      YccToVideoColour<Frame.bits, kBits, kBlack>(Reading(frame), weights, stored);
    } else {
      YccToFullColour<Frame.bits, kBits, kBlack, Overflow::wraps>(Reading(frame), weights, stored);
    }
  } else if constexpr (kMatrix) {
    stored = made;
    const Planes ycc = kFilters ? Planes{made.first, between.second, between.third, nullptr} : made;
    FullColourToYcc<Frame.bits, kBits, BlackOf(Pixel.range, kBits)>(Reading(frame), weights, ycc);
    if constexpr (kFilters) FilterStrip<0>(ycc.second, ycc.third, place.first == 0, carry, made);
  } else if constexpr (Frame.model == ColourModel::rgb) {
    if constexpr (kMaps) {
      constexpr RangeMap kMap = FullToVideoColour(Frame.bits, Pixel.sampleBits);
      stored = made;
      MapPlane<kMap>(frame.first, stored.first);
      MapPlane<kMap>(frame.second, stored.second);
      MapPlane<kMap>(frame.third, stored.third);
    }
  } else {
    constexpr RangeMap kMap = !kMaps                          ? kNoMap
                              : Pixel.range == Range::lowered ? kRemoveLumaOffset
                                                              : AddLumaOffset(8);
    if constexpr (kMaps || kBits != Frame.bits) {
      stored.first = made.first;
      ChangePlane<Frame.bits, kMap, kBits>(frame.first, stored.first);
    }
    if constexpr (kBits != Frame.bits) {
      const Planes chroma = kFilters ? between : made;
      ChangePlane<Frame.bits, kNoMap, kBits>(frame.second, chroma.second);
      ChangePlane<Frame.bits, kNoMap, kBits>(frame.third, chroma.third);
      stored.second = chroma.second;
      stored.third = chroma.third;
    }
    if constexpr (kFilters) {
      FilterStrip<0>(stored.second, stored.third, place.first == 0, carry, made);
      stored.second = made.second;
      stored.third = made.third;
    }
  }
  stored.alpha = frame.alpha;
  if constexpr (kAlphaBits > 0 && !ChangesNothing(kAlpha.map)) {
    stored.alpha = made.alpha;
    MapPlane<kAlpha.map>(frame.alpha, stored.alpha);
  }

  constexpr u16 kOpaque = OpaqueAlpha(Frame, Pixel);
  u8* target = row + BytesOfPixels(Pixel, place.first);
  if (count == kStripPixels) {
    Store<Pixel, kBits, kAlphaBits, kOpaque>(Reading(stored), target);
    return;
  }
  if constexpr (Pixel.container == Container::groups) {
    // Fields of the last word that hold no sample are zero.
    const u32 pairs = (count + 1) / 2;
    std::fill(stored.first + std::size_t{2} * pairs, stored.first + kStripPixels, i16{0});
    std::fill(stored.second + pairs, stored.second + kStripPairs, i16{0});
    std::fill(stored.third + pairs, stored.third + kStripPairs, i16{0});
  }
  StripBytes part;
  Store<Pixel, kBits, kAlphaBits, kOpaque>(Reading(stored), part.bytes.data());
  std::memcpy(target, part.bytes.data(), BytesOfPixels(Pixel, count));
}

}  // namespace vorel::inline VOREL_INSTRUCTIONS
