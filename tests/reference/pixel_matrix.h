// R'G'B' to Y'CbCr and back, one pixel at a time, as the formulas are written on paper. All arithmetic is 64
// bits wide, so that nothing can overflow but where it is told to.
#pragma once
#include <cstdint>

namespace reference {

using Wide = std::int64_t;

struct Triple {
  Wide first, second, third;  // R G B or Y' Cb Cr
};

// One of the three scales of Y'CbCr: 219 for 8 bits, 876 for 10, 3504 for 12.
struct Scale {
  Wide span;        // of Y'
  Wide offset;      // of Y'
  Wide chromaZero;  // code of neutral chroma
  Wide chromaSpan;  // to either side
};

Scale ScaleOf(Wide span);

struct Weights {
  Wide kr, kb, kg;  // sum: the span of the scale
};

Weights WeightsOf(int colourStandard, Wide span);

Wide Limit(Wide value, Wide low, Wide high);

// From full-range RGB whose white is `white`: 255, 511, 1023 or 4095. `offset` is that of Y' in the result.
// Nothing is limited or wrapped.
Triple FullRgbToYcc(Triple rgb, Wide white, Weights weights, Scale scale, Wide offset);

// From video-range RGB codes of 8 or 10 bits, the offset still in them.
Triple VideoRgbToYcc(Triple rgb, int bits, Weights weights, Scale scale, Wide offset);

enum class Products { exact, wrapAt32Bits };

// To full-range RGB, each sample limited to 0..white.
Triple YccToFullRgb(Triple ycc, Wide white, Weights weights, Scale scale, Wide offset, Products products);

// To video-range RGB codes of 8 or 10 bits, limited to 1..254 or 4..1019.
Triple YccToVideoRgb(Triple ycc, int bits, Weights weights, Scale scale, Wide offset);

}  // namespace reference
