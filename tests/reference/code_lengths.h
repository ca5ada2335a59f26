// Code lengths of the reference coder, kept apart from the library's own: "3x2" is two symbols of three bits.
#pragma once

namespace reference {

inline constexpr char kWideProgressiveA[] =
    "3x2 4x2 5x3 6x3 7x5 8x5 9x8 10x8 11x10 12x10 13x13 14x15 15x19 16x54 15x18 14x15 13x12 12x10 "
    "11x10 10x8 9x7 8x6 7x5 6x3 5x2 4x3 ";
inline constexpr char kWideProgressiveB[] =
    "1x1 2x1 4x1 6x1 8x1 9x1 10x2 11x2 12x3 13x2 14x5 15x5 16x208 15x5 14x4 13x3 12x2 11x2 10x2 9x1 "
    "8x1 7x1 6x1 3x1 ";
inline constexpr char kWideInterlacedA[] =
    "3x2 4x2 5x2 6x3 7x6 8x6 9x8 10x10 11x13 12x16 13x19 14x18 15x44 14x22 13x20 12x15 11x12 10x11 "
    "9x7 8x6 7x6 6x3 5x2 4x3 ";
inline constexpr char kWideInterlacedB[] =
    "1x1 3x1 4x1 6x2 7x1 8x2 9x2 10x3 11x3 12x3 13x5 14x7 15x7 16x182 15x6 14x7 13x4 12x4 11x3 10x3 "
    "9x2 8x2 7x2 5x1 4x1 3x1 ";

}  // namespace reference
