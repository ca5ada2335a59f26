// Alpha of single pixels: straight, full range in some formats and frames, video range in the others, and
// never touched by colour.
#pragma once
#include <string_view>

#include "tests/reference/pixel_ranges.h"

namespace reference {

enum class AlphaKind { full8, deep, video8, V416 };  // full8: 8-bit RGB, VRGB, r408; video8: v408, VUYA

AlphaKind AlphaKindOf(std::string_view pixel);  // of formats with an alpha position

Wide AlphaIntoFrame(AlphaKind source, Range frame, Wide code);
Wide AlphaFromFrame(AlphaKind target, Range frame, Wide sample);

// What a frame without alpha writes at the alpha position.
Wide OpaqueCode(AlphaKind target, Range frame);

}  // namespace reference
