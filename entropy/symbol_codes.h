// The encoder's tables beside a code set, derived from it: the codes of one symbol and of two neighbours at once. They
// are made where a frame format is first used, in a millisecond.
#pragma once
#include <algorithm>
#include <tuple>

#include "base/instructions.h"
#include "entropy/class_pattern.h"

namespace vorel::inline VOREL_INSTRUCTIONS {

// Code of one symbol or of two neighbours:   31..8 codes, right-aligned | 7..0 their length
// Where two codes have more than 24 bits together the length is kNoJointCode. Sums of four lengths stay below 256,
// and such a mark is alone more than one put may add.
inline constexpr u32 kLongestJointCode = 24;
inline constexpr u32 kNoJointCode = 60;

constexpr u32 RightAligned(u32 entry) {
  const u32 length = entry >> 24;
  return (entry & 0xFFFF) >> (16 - length) << 8 | length;
}

constexpr u32 JointCode(u32 first, u32 second) {
  const u32 length = (first & 255) + (second & 255);
  return length > kLongestJointCode ? kNoJointCode
                                    : (first >> 8 << (second & 255) | second >> 8) << 8 | length;
}

// By class and symbol.
template <int Symbols>
using SymbolCodeTable = std::array<std::array<u32, Symbols>, 2>;

// Two neighbours' index is made of a place for each. An alphabet of 256 has a place for every symbol, so an index is
// no more than two bytes; one of 1,024 has places for residuals from -127 to 126, and one for all others, whose
// entries have no code.
template <int Symbols>
inline constexpr u16 kJointReach = Symbols == 256 ? 0 : 127;
template <int Symbols>
inline constexpr u16 kJointPlaces = Symbols == 256 ? 256 : 2 * kJointReach<Symbols> + 1;
template <int Symbols>
inline constexpr u32 kJointEntries = u32{kJointPlaces<Symbols>} * kJointPlaces<Symbols>;

// Residuals may have anything above the bits of their alphabet. Both functions are for vectors of 16 bits.
template <int Symbols>
constexpr u16 JointPlace(u16 residual) {
  if (Symbols == 256) return residual & 255;
  const i16 place = static_cast<i16>((residual + kJointReach<Symbols>)&(Symbols - 1));
  const i16 others = kJointPlaces<Symbols> - 1;
  return static_cast<u16>(place < others ? place : others);
}
template <int Symbols>
constexpr u16 JointIndex(u16 firstPlace, u16 secondPlace) {
  return static_cast<u16>(firstPlace + secondPlace * kJointPlaces<Symbols>);
}

template <int Symbols>
SymbolCodeTable<Symbols> MakeSymbolCodes(const CodeSet<Symbols>& codes) {
  SymbolCodeTable<Symbols> table{};
  for (std::size_t symbol = 0; symbol < Symbols; ++symbol) {
    for (std::size_t half = 0; half < 2; ++half)
      table[half][symbol] = RightAligned(codes.encode[symbol][half]);
  }
  return table;
}

template <typename Codes>
void MakeJointCodes(const Codes& first, const Codes& second, u32* table) {
  constexpr int kSymbols = static_cast<int>(std::tuple_size_v<Codes>);
  constexpr u16 kPlaces = kJointPlaces<kSymbols>;
  std::fill_n(table, kJointEntries<kSymbols>, kNoJointCode);
  const auto symbolAt = [](u16 place) { return (place - kJointReach<kSymbols>)&(kSymbols - 1); };
  const u16 inUse = kSymbols == 256 ? kPlaces : kPlaces - 1;
  for (u16 b = 0; b < inUse; ++b) {
    const u32 codeB = second[static_cast<std::size_t>(symbolAt(b))];
    for (u16 a = 0; a < inUse; ++a)
      table[JointIndex<kSymbols>(a, b)] = JointCode(first[static_cast<std::size_t>(symbolAt(a))], codeB);
  }
}

// Symbols are coded two by two. Where a step has three, two steps make three pairs:   0 1 | 2 0' | 1' 2'
constexpr u32 PairsUntilRepeat(u32 stepLength) {
  return stepLength == 3 ? 3 : stepLength / 2;
}
constexpr u32 FirstOfPair(u32 stepLength, u32 pair) {
  return 2 * pair % stepLength;
}

// What the encoder needs of a code set and a pattern.
template <int Symbols>
struct SymbolCodes {
  ClassPattern pattern;
  const SymbolCodeTable<Symbols>* single;
  const u32* pairs;  // kJointEntries for each pair until the pattern repeats, by joint index
};

// The codes of the class at a place of the pattern.
template <typename Table>
const auto& CodesAt(const Table& single, ClassPattern pattern, u32 place) {
  return single[static_cast<std::size_t>(Index(ClassAt(pattern, place)))];
}

// The tables of a code set and pattern. Safe on several threads, like any static variable.
template <int Symbols, const CodeSet<Symbols>& Set, ClassPattern Pattern>
const SymbolCodes<Symbols>& SymbolCodesOfSet() {
  constexpr u32 kPairs = PairsUntilRepeat(Pattern.length);
  struct Tables {
    SymbolCodeTable<Symbols> single;
    std::array<u32, std::size_t{kPairs} * kJointEntries<Symbols>> pairs;
  };
  static Tables tables;
  static const SymbolCodes<Symbols> codes = [] {
    tables.single = MakeSymbolCodes(Set);
    for (u32 pair = 0; pair < kPairs; ++pair) {
      const u32 first = FirstOfPair(Pattern.length, pair);
      MakeJointCodes(CodesAt(tables.single, Pattern, first),
                     CodesAt(tables.single, Pattern, (first + 1) % Pattern.length),
                     &tables.pairs[std::size_t{pair} * kJointEntries<Symbols>]);
    }
    return SymbolCodes<Symbols>{Pattern, &tables.single, tables.pairs.data()};
  }();
  return codes;
}

}  // namespace vorel::inline VOREL_INSTRUCTIONS
