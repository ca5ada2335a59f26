#include "bench/samples.h"

#include <algorithm>
#include <cstring>
#include <stdexcept>

#include "pixel/conversion_table.h"

namespace vorel::bench {
namespace {

const Conversion<FillFunction>& FillOf(const SampleClass& kind) {
  for (const Conversion<FillFunction>& row : kFills) {
    if (std::strcmp(row.layout, kind.layout) == 0 && std::strcmp(row.pixelName, kind.pixelName) == 0)
      return row;
  }
  throw std::runtime_error(std::string(kind.layout) + ": no frames of " + kind.pixelName);
}

// Where sample `column` of a row of a component goes, in samples.
std::size_t PositionOf(const SampleShape& shape, Arrangement arrangement, u32 component, u32 row,
                       u32 column) {
  if (arrangement != Arrangement::planes)
    return (std::size_t{row} * shape.width + column) * shape.components + component;
  const SamplePlace place = PlaceOf(shape, component);
  return place.first + std::size_t{row} * place.width + column;
}

void StoreSample(u8* bytes, std::size_t position, u32 sample, const SampleShape& shape,
                 Arrangement arrangement) {
  if (shape.bits == 8) {
    bytes[position] = static_cast<u8>(sample);
    return;
  }
  const u16 word =
      static_cast<u16>(arrangement == Arrangement::topWords ? sample << (16 - shape.bits) : sample);
  if (arrangement == Arrangement::topWords) {
    bytes[2 * position] = static_cast<u8>(word >> 8);
    bytes[2 * position + 1] = static_cast<u8>(word);
  } else {
    std::memcpy(bytes + 2 * position, &word, 2);
  }
}

}  // namespace

SamplePlace PlaceOf(const SampleShape& shape, u32 component) {
  const u32 chromaWidth = shape.hasHalfChroma ? (shape.width + 1) / 2 : shape.width;
  const std::size_t area = std::size_t{shape.width} * shape.height;
  const std::size_t chromaArea = std::size_t{chromaWidth} * shape.height;
  const bool isChroma = component == 1 || component == 2;
  const std::size_t first = component == 0 ? 0 : area + (component - 1) * chromaArea;
  return {first, isChroma ? chromaWidth : shape.width};
}

std::size_t CountOf(const SampleShape& shape) {
  const SamplePlace last = PlaceOf(shape, shape.components - 1);
  return last.first + std::size_t{last.width} * shape.height;
}

SampleShape ShapeOf(const SampleClass& kind, const Sequence& sequence) {
  const SampleDomain& frame = *FillOf(kind).frame;
  return {sequence.width, sequence.height, frame.alpha ? 4u : 3u,
          frame.bits,     frame.model,     frame.unit == Unit::pair};
}

Samples ArrangeSamples(const SampleClass& kind, const Sequence& sequence, const Bytes& picture,
                       std::size_t rowBytes, Arrangement arrangement) {
  const Conversion<FillFunction>& fill = FillOf(kind);
  Samples samples = {ShapeOf(kind, sequence), {}};
  const SampleShape& shape = samples.shape;
  samples.bytes.resize(CountOf(shape) * BytesOfSample(shape));
  SampleStrip strip;
  for (u32 row = 0; row < shape.height; ++row) {
    ChromaCarry carry = {};
    for (u32 first = 0; first < shape.width; first += kStripPixels) {
      fill.run(&picture[row * rowBytes], {first, shape.width}, fill.weights(1), carry, strip);
      const SamplePlane* const planes[] = {&strip.first, &strip.second, &strip.third, &strip.alpha};
      for (u32 component = 0; component < shape.components; ++component) {
        const u32 rowWidth = PlaceOf(shape, component).width;
        const bool isHalf = rowWidth != shape.width;
        const u32 begin = isHalf ? first / 2 : first;
        const u32 end = std::min(rowWidth, begin + (isHalf ? kStripPairs : kStripPixels));
        for (u32 column = begin; column < end; ++column) {
          const i16 sample = Cells(*planes[component])[column - begin];
          StoreSample(samples.bytes.data(), PositionOf(shape, arrangement, component, row, column),
                      static_cast<u16>(sample), shape, arrangement);
        }
      }
    }
  }
  return samples;
}

}  // namespace vorel::bench
