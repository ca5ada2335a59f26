// What distinguishes the frames of one layout from those of another, in the words of the reference coder.
#pragma once
#include <stdexcept>
#include <string>
#include <string_view>

namespace reference {

enum class Start { constants, above };                    // of a later row in an interlaced frame
enum class Chroma { asLuma, halfGradient, signedBytes };  // in later rows of a progressive frame
enum class Budget { perPixel, perPair };

// Channels: 1 is Y' or R, 2 Cb or G, 3 Cr or B, A alpha.
struct FrameFacts {
  std::string_view name;
  std::string_view order;  // channels of a unit as they come, in coded and in raw rows
  int pixels;              // of a unit
  int depth;               // bits of a sample
  std::string_view codes;  // family of code lengths
  char classes[4];         // of channels 1, 2, 3, A
  int start[3];            // left of the first sample: channel 1, channels 2 and 3, A of a progressive frame
  int alphaInterlaced;     // the same for A of an interlaced frame
  Start laterStart;
  Chroma chroma;
  bool chained;     // symbols of channels 2 and 3 are differences of prediction errors
  int budget;       // bits that a predicted row may come to, in whole words
  Budget budgetOf;  // of each pixel or pair
  int rawBits;      // of a unit, in the frame bound
  int longestBits;  // of a unit in the longest codes, in the frame bound
};

// clang-format off
inline constexpr FrameFacts kFrameFacts[] = {
    {"RGB8bf",         "123",    1,  8, "RGB 8bf",    {'B', 'A', 'A', 'A'}, {128, 128, 128}, 128,
     Start::above,     Chroma::asLuma,       true,  24, Budget::perPixel, 24, 48},
    {"RGBA8bf",        "A123",   1,  8, "RGB 8bf",    {'B', 'A', 'A', 'A'}, {128, 128, 128}, 128,
     Start::above,     Chroma::asLuma,       true,  32, Budget::perPixel, 32, 64},
    {"RGB10bf",        "123",    1, 10, "RGB 10bf",   {'B', 'A', 'A', 'A'}, {512, 512, 512}, 512,
     Start::constants, Chroma::asLuma,       true,  30, Budget::perPixel, 30, 48},
    {"RGBA10bf",       "A123",   1, 10, "RGB 10bf",   {'B', 'A', 'A', 'A'}, {512, 512, 512}, 512,
     Start::constants, Chroma::asLuma,       true,  40, Budget::perPixel, 40, 64},
    {"YCbCr8bv444",    "123",    1,  8, "8b 4:4:4",   {'B', 'A', 'A', 'A'}, {125, 128, 0},   0,
     Start::above,     Chroma::asLuma,       false, 24, Budget::perPixel, 24, 48},
    {"YCbCrA8bv4444",  "A123",   1,  8, "8b 4:4:4",   {'B', 'A', 'A', 'A'}, {125, 128, 125}, 125,
     Start::above,     Chroma::asLuma,       false, 32, Budget::perPixel, 32, 64},
    {"YCbCr8bu444",    "123",    1,  8, "8b 4:4:4",   {'B', 'A', 'A', 'A'}, {110, 128, 0},   0,
     Start::above,     Chroma::asLuma,       false, 24, Budget::perPixel, 24, 48},
    {"YCbCrA8bu4444",  "A123",   1,  8, "8b 4:4:4",   {'B', 'A', 'A', 'A'}, {110, 128, 128}, 110,
     Start::above,     Chroma::asLuma,       false, 32, Budget::perPixel, 32, 64},
    {"YCbCr10bv444",   "123",    1, 10, "10bv 4:4:4", {'B', 'A', 'A', 'A'}, {502, 512, 0},   0,
     Start::constants, Chroma::asLuma,       false, 30, Budget::perPixel, 30, 48},
    {"YCbCrA10bv4444", "A123",   1, 10, "10bv 4:4:4", {'B', 'A', 'A', 'A'}, {502, 512, 502}, 502,
     Start::constants, Chroma::asLuma,       false, 40, Budget::perPixel, 40, 64},
    {"YCbCr8bv422",    "1213",   2,  8, "8bv 4:2:2",  {'A', 'B', 'B', 'B'}, {125, 128, 0},   0,
     Start::above,     Chroma::halfGradient, false, 32, Budget::perPair,  32, 64},
    {"YCbCrA8bv4224",  "A12A13", 2,  8, "8bv 4:2:2",  {'A', 'B', 'B', 'B'}, {125, 128, 125}, 125,
     Start::constants, Chroma::halfGradient, false, 24, Budget::perPixel, 48, 96},
    {"YCbCr10bv422",   "1213",   2, 10, "10bv 4:2:2", {'A', 'B', 'B', 'B'}, {502, 512, 0},   0,
     Start::constants, Chroma::halfGradient, false, 20, Budget::perPixel, 40, 64},
    {"YCbCrA10bv4224", "A12A13", 2, 10, "10bv 4:2:2", {'A', 'B', 'B', 'B'}, {502, 512, 502}, 502,
     Start::constants, Chroma::halfGradient, false, 30, Budget::perPixel, 60, 96},
    {"YCbCr8bw422",    "1213",   2,  8, "8bw",        {'A', 'B', 'B', 'B'}, {128, 0, 0},     0,
     Start::above,     Chroma::signedBytes,  false, 32, Budget::perPair,  32, 64},
};
// clang-format on

inline const FrameFacts& FindFacts(std::string_view layout) {
  for (const FrameFacts& facts : kFrameFacts)
    if (facts.name == layout) return facts;
  throw std::invalid_argument("no such layout: " + std::string(layout));
}

}  // namespace reference
