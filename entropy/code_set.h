// The static prefix codes. A code set is a pair of codes, class A and class B, over one alphabet of
// residuals; there are 14, one for each group of frame formats and scan. A residual is reduced modulo the
// alphabet: 0 is symbol 0, +1 symbol 1, -1 the last symbol. Codes have 1 to 16 bits, every bit pattern
// decodes, and nothing is ever adapted.
#pragma once
#include <array>

#include "base/integers.h"

namespace vorel {

enum class CodeClass : u8 { a, b };

constexpr int Index(CodeClass codeClass) {
  return static_cast<int>(codeClass);
}

inline constexpr u32 kLongestCode = 16;

// One symbol, both classes:   31..24 length | 23..16 unused | 15..0 code, its first bit at bit 15
using EncodeEntry = std::array<u32, 2>;
template <int Symbols>
using EncodeTable = std::array<EncodeEntry, Symbols>;

// What the top 8 bits of a window say, for one class. A selector of 8 or less is the length of the code and
// the base is the symbol; a selector from 9 on is a row of the second level.
struct FirstLevelHalf {
  u8 selector;
  u8 unused;
  u16 baseSymbol;
};
using FirstLevelTable = std::array<std::array<FirstLevelHalf, 2>, 256>;

// Rows of 256 entries, by the 8 bits behind the first 8.
//   15..8 length of the code | 7..0 what is added to the base symbol
// Both classes share the rows. Numbers begin at 9, behind the lengths that a selector may hold.
inline constexpr int kFirstRow = 9;
inline constexpr int kMostRows = 24;
struct SecondLevelTable {
  int rowCount;
  std::array<std::array<u16, 256>, kMostRows> rows;
};

template <int Symbols>
struct CodeSet {
  EncodeTable<Symbols> encode;
  FirstLevelTable firstLevel;
  SecondLevelTable secondLevel;
};

struct DecodedSymbol {
  u32 symbol;
  u32 length;
};

// The symbol at the top of a window of 32 stream bits.
template <int Symbols>
constexpr DecodedSymbol DecodeSymbol(const CodeSet<Symbols>& codes, CodeClass codeClass, u32 window) {
  const FirstLevelHalf& half = codes.firstLevel[window >> 24][static_cast<u32>(Index(codeClass))];
  if (half.selector < kFirstRow) return {half.baseSymbol, half.selector};
  const u32 entry = codes.secondLevel.rows[half.selector - u32{kFirstRow}][window >> 16 & 255];
  return {half.baseSymbol + (entry & 255), entry >> 8};
}

extern const CodeSet<256> kWide8Progressive;
extern const CodeSet<256> kWide8Interlaced;
extern const CodeSet<256> kVideo8Progressive422;
extern const CodeSet<256> kVideo8Interlaced422;
extern const CodeSet<256> kProgressive8b444;
extern const CodeSet<256> kInterlaced8b444;
extern const CodeSet<256> kRgb8Progressive;
extern const CodeSet<256> kRgb8Interlaced;
extern const CodeSet<1024> kVideo10Progressive422;
extern const CodeSet<1024> kVideo10Interlaced422;
extern const CodeSet<1024> kVideo10Progressive444;
extern const CodeSet<1024> kVideo10Interlaced444;
extern const CodeSet<1024> kRgb10Progressive;
extern const CodeSet<1024> kRgb10Interlaced;

}  // namespace vorel
