// Code lengths of all 14 pairs of codes, kept apart from the library: "3x2" is two symbols of three bits.
#pragma once
#include <iterator>
#include <string_view>

namespace reference {

struct CodeLengths {
  std::string_view set;  // family and scan
  std::string_view a;    // class A, from symbol 0 upward
  std::string_view b;
};

// clang-format off
inline constexpr CodeLengths kAllCodeLengths[] = {
    {"8bw p",
     "3x2 4x2 5x3 6x3 7x5 8x5 9x8 10x8 11x10 12x10 13x13 14x15 15x19 16x54 15x18 14x15 13x12 12x10 "
     "11x10 10x8 9x7 8x6 7x5 6x3 5x2 4x3",
     "1x1 2x1 4x1 6x1 8x1 9x1 10x2 11x2 12x3 13x2 14x5 15x5 16x208 15x5 14x4 13x3 12x2 11x2 10x2 9x1 "
     "8x1 7x1 6x1 3x1"},
    {"8bw i",
     "3x2 4x2 5x2 6x3 7x6 8x6 9x8 10x10 11x13 12x16 13x19 14x18 15x44 14x22 13x20 12x15 11x12 10x11 9x7 "
     "8x6 7x6 6x3 5x2 4x3",
     "1x1 3x1 4x1 6x2 7x1 8x2 9x2 10x3 11x3 12x3 13x5 14x7 15x7 16x182 15x6 14x7 13x4 12x4 11x3 10x3 "
     "9x2 8x2 7x2 5x1 4x1 3x1"},
    {"8bv 4:2:2 p",
     "3x2 4x2 5x2 6x3 7x5 8x5 9x7 10x7 11x8 12x11 13x10 14x14 15x19 16x70 15x14 14x16 13x12 12x10 11x8 "
     "10x7 9x6 8x6 7x4 6x4 5x1 4x2 3x1",
     "1x1 2x1 4x1 6x1 8x1 9x2 10x1 11x2 12x2 13x3 14x4 15x6 16x208 15x6 14x4 13x2 12x3 11x2 10x1 9x1 "
     "8x1 7x1 6x1 3x1"},
    {"8bv 4:2:2 i",
     "3x2 4x2 5x2 6x2 7x6 8x5 9x8 10x8 11x12 12x12 13x16 14x14 15x24 16x32 15x20 14x16 13x18 12x12 "
     "11x12 10x8 9x7 8x5 7x6 6x3 5x1 4x2 3x1",
     "1x1 3x1 4x1 6x2 7x1 8x2 9x2 10x3 11x3 12x4 13x5 14x4 15x6 16x186 15x7 14x5 13x4 12x4 11x3 10x3 "
     "9x2 8x2 7x2 5x1 4x1 3x1"},
    {"10bv 4:2:2 p",
     "4x1 5x6 6x6 7x8 8x12 9x18 10x21 11x27 12x29 13x36 14x47 15x71 16x462 15x72 14x46 13x36 12x29 "
     "11x27 10x21 9x17 8x13 7x7 6x7 5x5",
     "2x1 3x2 4x1 5x1 6x1 7x2 8x3 9x2 10x4 11x5 12x5 13x8 14x14 15x16 16x896 15x18 14x11 13x7 12x7 11x4 "
     "10x4 9x3 8x2 7x2 6x1 5x1 4x2 3x1"},
    {"10bv 4:2:2 i",
     "3x1 5x3 6x8 7x9 8x12 9x19 10x27 11x27 12x40 13x48 14x64 15x93 16x328 15x89 14x65 13x49 12x38 "
     "11x26 10x26 9x20 8x12 7x9 6x8 5x3",
     "2x1 4x3 5x1 6x3 7x3 8x3 9x6 10x7 11x7 12x12 13x11 14x19 15x23 16x830 15x20 14x18 13x12 12x12 11x8 "
     "10x6 9x5 8x4 7x3 6x2 5x2 4x2 3x1"},
    {"8b 4:4:4 p",
     "1x1 2x1 4x1 6x1 9x1 10x1 11x2 12x2 13x3 14x5 15x5 16x212 15x5 14x5 13x3 12x2 11x2 10x1 8x1 5x1 "
     "3x1",
     "3x2 4x2 5x2 6x3 7x5 8x5 9x7 10x7 11x8 12x9 13x13 14x13 15x19 16x70 15x16 14x14 13x12 12x9 11x9 "
     "10x7 9x6 8x6 7x4 6x4 5x1 4x2 3x1"},
    {"8b 4:4:4 i",
     "1x1 3x1 5x1 6x1 8x2 9x1 10x2 11x2 12x2 13x3 14x6 15x6 16x202 15x5 14x6 13x3 12x2 11x2 10x2 9x1 "
     "8x2 6x1 5x1 2x1",
     "3x2 4x2 5x2 6x3 7x5 8x5 9x7 10x10 11x11 12x13 13x15 14x13 15x26 16x32 15x20 14x16 13x17 12x12 "
     "11x11 10x9 9x7 8x5 7x5 6x3 5x3 4x1 3x1"},
    {"10bv 4:4:4 p",
     "2x1 3x2 4x1 5x2 6x1 7x1 8x1 9x2 10x3 11x2 12x5 13x6 14x10 15x20 16x912 15x20 14x10 13x6 12x4 11x3 "
     "10x2 9x2 8x2 7x1 6x1 5x1 4x2 3x1",
     "4x1 5x6 6x6 7x8 8x12 9x18 10x21 11x27 12x29 13x36 14x47 15x71 16x462 15x72 14x46 13x36 12x29 "
     "11x27 10x21 9x17 8x13 7x7 6x7 5x5"},
    {"10bv 4:4:4 i",
     "2x1 3x1 4x2 5x2 6x1 7x2 8x2 9x4 10x4 11x6 12x7 13x9 14x13 15x28 16x860 15x28 14x12 13x11 12x6 "
     "11x7 10x5 9x3 8x3 7x1 6x1 5x2 4x2 3x1",
     "3x1 5x3 6x8 7x9 8x12 9x19 10x27 11x27 12x39 13x50 14x63 15x93 16x328 15x89 14x64 13x50 12x38 "
     "11x26 10x26 9x20 8x12 7x9 6x8 5x3"},
    {"RGB 8bf p",
     "2x2 4x2 6x1 7x1 9x2 10x1 11x3 12x3 13x4 14x7 15x13 16x180 15x11 14x8 13x4 12x3 11x3 10x1 9x2 8x1 "
     "6x1 4x1 3x2",
     "3x2 4x2 5x3 6x3 7x5 8x5 9x8 10x8 11x10 12x9 13x14 14x15 15x18 16x54 15x17 14x16 13x13 12x10 11x10 "
     "10x8 9x7 8x6 7x5 6x3 5x2 4x3"},
    {"RGB 8bf i",
     "1x1 3x1 4x1 5x1 6x1 7x2 8x1 9x2 10x4 11x3 12x5 13x5 14x6 15x12 16x164 15x14 14x6 13x6 12x5 11x3 "
     "10x3 9x3 8x2 7x1 6x1 5x2 3x1",
     "3x1 4x3 5x3 6x3 7x6 8x8 9x8 10x11 11x12 12x15 13x18 14x21 15x38 14x22 13x19 12x15 11x12 10x11 9x7 "
     "8x8 7x6 6x4 5x2 4x3"},
    {"RGB 10bf p",
     "3x1 4x2 5x6 6x4 7x3 8x2 9x3 10x4 11x6 12x8 13x10 14x18 15x39 16x812 15x39 14x18 13x11 12x8 11x6 "
     "10x4 9x4 8x1 7x3 6x5 5x4 4x3",
     "4x1 5x3 6x9 7x10 8x13 9x19 10x26 11x28 12x35 13x40 14x53 15x77 16x400 15x77 14x50 13x42 12x34 "
     "11x28 10x25 9x19 8x13 7x10 6x8 5x4"},
    {"RGB 10bf i",
     "2x1 3x1 4x2 6x2 7x6 8x4 9x3 10x9 11x7 12x12 13x13 14x16 15x29 16x810 15x32 14x17 13x14 12x12 11x7 "
     "10x8 9x4 8x4 7x6 6x2 4x2 3x1",
     "3x1 4x3 5x2 6x3 7x4 8x6 9x16 10x23 11x27 12x29 13x24 14x29 15x76 16x540 15x78 14x29 13x21 12x29 "
     "11x27 10x23 9x15 8x7 7x4 6x3 5x2 4x3"},
};
// clang-format on

static_assert(std::size(kAllCodeLengths) == 14);

}  // namespace reference
