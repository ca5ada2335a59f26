// Depth and range of single samples: what a code of a pixel format is worth in a frame, alpha apart, as long
// as no matrix is needed. One function for each table of rules, one line for each row of it.
#pragma once
#include <string_view>

#include "tests/reference/pixel_matrix.h"

namespace reference {

enum class Range { f8, f10, v8, v10, u8, w8 };  // of a frame: 8bf 10bf 8bv 10bv 8bu 8bw

// Pixel formats that have the same worth of a code.
enum class Kind { rgb8, vrgb, deep, full10, video10, l555, l565, ycc8, r408, ycc10, v216, Y216, yuvu };

enum class Component { first, second, third };

Kind KindOf(std::string_view pixel);
bool IsRgb(Kind kind);
bool IsRgb(Range range);
int DepthOf(Range range);

Wide RgbIntoRgbFrame(Kind source, Range frame, Wide code);
Wide RgbFromRgbFrame(Kind target, Range frame, Component component, Wide sample);

// White of the RGB that a Y'CbCr frame exchanges with a full-range format, and how far its codes are shifted.
struct RgbDepth {
  Wide white;
  int shift;
};

RgbDepth FullRgbDepth(Kind kind, Range yccFrame);

// Scale on which an RGB frame exchanges Y'CbCr with a format; codes on it from and to memory.
Wide SpanWithRgbFrame(Kind kind, Range rgbFrame);
Wide CodeToScale(Kind source, Wide span, Wide code);
Wide ScaleToCode(Kind target, Wide span, Wide sample);

Wide YccIntoYccFrame(Kind source, Range frame, Component component, Wide code);

// In two steps: the sample in the depth of the target, in which chroma is filtered, and its place in the
// code.
Wide YccToTargetDepth(Kind target, Range frame, Component component, Wide sample);
Wide TargetDepthToCode(Kind target, Range frame, Wide sample);

}  // namespace reference
