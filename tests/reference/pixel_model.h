// What a row of pixels is worth in the samples of a frame, and the reverse, for every layout and pixel
// format: tables of depth and range, the matrices, and chroma that changes its sampling. It is the judge of
// the fast conversions and shares no code with them.
#pragma once
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "tests/reference/pixel_memory.h"

namespace reference {

// layout          frame family without its scan: "YCbCrA8bv4224", "RGB8bf"
// pixel           as in the name of a routine: "_RGB", "ARGB", "b64_", "2vuy"
// colourStandard  1 for 709, 2 for 240M, all others 601
// Samples of the result are in the range of the frame's 8 or 10 bits. Chroma of 8bw is its byte, 0..255.
RowSamples FetchRow(std::string_view layout, std::string_view pixel, int colourStandard,
                    const std::uint8_t* row, std::size_t width);

// Writes RowBytes(pixel, width) bytes and nothing else.
void StoreRow(std::string_view layout, std::string_view pixel, int colourStandard, const RowSamples& samples,
              std::size_t width, std::uint8_t* row);

}  // namespace reference
