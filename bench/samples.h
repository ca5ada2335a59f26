// Pictures as the samples that our frames hold of them, for coders that know no pixel formats.
#pragma once
#include "bench/pictures.h"
#include "pixel/sample_domain.h"

namespace vorel::bench {

using Bytes = std::vector<u8>;

// A frame layout and a pixel format that hold the same samples: what is compared in one table.
struct SampleClass {
  const char* layout;
  const char* pixelName;
};

inline constexpr SampleClass kSampleClasses[] = {
    {"RGB8bf", "RGB"},        {"RGBA8bf", "RGBA"}, {"YCbCr8bv422", "2vuy"}, {"YCbCr8bv444", "_v408"},
    {"YCbCr10bv422", "v210"}, {"RGB10bf", "F10k"}, {"RGBA10bf", "b64a"},
};

// How samples stand in memory: a byte each, or a word of the machine where they have more than 8 bits.
//   none         not at all: a coder that can't hold them
//   interleaved  those of a pixel, then those of the next
//   planes       all of a component, then all of the next
//   topWords     interleaved, deep ones in the top bits of big-endian words, as PNG has them
enum class Arrangement : u8 { none, interleaved, planes, topWords };

struct SampleShape {
  u32 width;
  u32 height;
  u32 components;  // R, G, B or Y', Cb, Cr, and alpha
  u32 bits;
  ColourModel model;
  bool hasHalfChroma;  // Cb and Cr have a sample for each pair of pixels
};

struct Samples {
  SampleShape shape;
  Bytes bytes;
};

// Place of a component in the arrangement of planes, in samples.
struct SamplePlace {
  std::size_t first;
  u32 width;
};

inline u32 BytesOfSample(const SampleShape& shape) {
  return shape.bits > 8 ? 2 : 1;
}

SamplePlace PlaceOf(const SampleShape& shape, u32 component);
std::size_t CountOf(const SampleShape& shape);

SampleShape ShapeOf(const SampleClass& kind, const Sequence& sequence);

// The samples of a picture of the class's pixel format, whose rows are `rowBytes` apart.
Samples ArrangeSamples(const SampleClass& kind, const Sequence& sequence, const Bytes& picture,
                       std::size_t rowBytes, Arrangement arrangement);

}  // namespace vorel::bench
