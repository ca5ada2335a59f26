// Faster tables beside a code set, derived from it: the encoder's codes of one symbol and of two at once, and the
// decoder's table that yields several symbols to a look-up. Stream and cursors are the same with and without
// them.
//
// They are made where a frame format is first used, in a millisecond: no program uses all of them, and kept as
// constants they would be most of the library.
#pragma once
#include <type_traits>

#include "base/instructions.h"
#include "entropy/class_pattern.h"

namespace vorel::inline VOREL_INSTRUCTIONS {

template <int Symbols>
using SampleOf = std::conditional_t<Symbols == 256, u8, u16>;

// Code of a symbol:   31..8 code, right-aligned | 7..0 its length
constexpr u32 RightAligned(u32 entry) {
  const u32 length = entry >> 24;
  return (entry & 0xFFFF) >> (16 - length) << 8 | length;
}

// By class and symbol.
template <int Symbols>
using SymbolCodeTable = std::array<std::array<u32, Symbols>, 2>;

// Code of a class A symbol followed by a class B symbol, by (B << 8 | A): the few A symbols that are frequent
// then share cache lines.
//   31..8 both codes, right-aligned | 7..0 their length
// Where the codes have more than 24 bits together the length is kNoPairCode. Sums of four lengths stay below
// 256, and one such mark among four makes the sum larger than what four real entries may have at most if they
// are to be merged.
inline constexpr u32 kLongestPairCode = 24;
inline constexpr u32 kNoPairCode = 60;
using PairCodeTable = std::array<u32, 65536>;

// Symbols by the next 11 bits of the stream, for each place in the pattern that may come first:
//   63..16 symbols, the first lowest: up to six bytes, or up to three words | 15..14 place in the pattern that
//   comes next | 10..8 how many symbols | 5..0 how many bits they take
// Tables of the places follow each other, 16 kB each, so bits 15..14 are the offset of the next one as they
// stand. A first symbol of more than 11 bits gives an entry without symbols and bits that leads to its own table:
// a step over it changes nothing, so it is enough to look for one after several steps.
inline constexpr u32 kGroupBits = 11;
inline constexpr u32 kGroupEntries = 1u << kGroupBits;
inline constexpr u32 kGroupTableBytes = kGroupEntries * sizeof(u64);
inline constexpr u32 kNextTableMask = 0xC000;
static_assert(kGroupTableBytes == 1u << 14);
template <int Symbols>
inline constexpr u32 kMostGroupSymbols = 6 / sizeof(SampleOf<Symbols>);

constexpr u32 BitsOfGroup(u64 entry) {
  return static_cast<u32>(entry & 63);
}
constexpr u32 SymbolsOfGroup(u64 entry) {
  return static_cast<u32>(entry >> 8 & 7);
}

// Everything that a row coder needs of a code set.
template <int Symbols>
struct RowCodes {
  const CodeSet<Symbols>* codes;
  ClassPattern pattern;
  const SymbolCodeTable<Symbols>* single;
  const u32* pairs;   // a PairCodeTable; null but where 8-bit symbols of class A and B follow each other
  const u64* groups;  // kGroupEntries for each place of the pattern
};

template <int Symbols>
SymbolCodeTable<Symbols> MakeSymbolCodes(const CodeSet<Symbols>& codes) {
  SymbolCodeTable<Symbols> table{};
  for (std::size_t symbol = 0; symbol < Symbols; ++symbol) {
    for (std::size_t half = 0; half < 2; ++half)
      table[half][symbol] = RightAligned(codes.encode[symbol][half]);
  }
  return table;
}

inline void MakePairCodes(const SymbolCodeTable<256>& single, u32* table) {
  for (u32 b = 0; b < 256; ++b) {
    const u32 codeB = single[1][b];
    for (u32 a = 0; a < 256; ++a) {
      const u32 codeA = single[0][a];
      const u32 length = (codeA & 255) + (codeB & 255);
      table[b << 8 | a] =
          length > kLongestPairCode ? kNoPairCode : (codeA >> 8 << (codeB & 255) | codeB >> 8) << 8 | length;
    }
  }
}

template <int Symbols>
void MakeSymbolGroups(const CodeSet<Symbols>& codes, ClassPattern pattern, u64* table) {
  constexpr u32 kSampleBits = 8 * sizeof(SampleOf<Symbols>);
  for (u32 first = 0; first < pattern.length; ++first) {
    for (u32 index = 0; index < kGroupEntries; ++index) {
      u32 count = 0;
      u32 bits = 0;
      u32 next = first;
      u64 symbols = 0;
      while (count < kMostGroupSymbols<Symbols>) {
        const u32 window = index << (32 - kGroupBits) << bits;
        const DecodedSymbol decoded = DecodeSymbol(codes, ClassAt(pattern, next), window);
        if (bits + decoded.length > kGroupBits) break;
        symbols |= u64{decoded.symbol} << (kSampleBits * count);
        bits += decoded.length;
        next = (next + 1) % pattern.length;
        ++count;
      }
      table[first * kGroupEntries + index] = symbols << 16 | u64{next} << 14 | u64{count} << 8 | bits;
    }
  }
}

constexpr bool HasPairs(ClassPattern pattern) {
  return pattern.length == 2 || pattern.classB == kPatternBAB.classB;
}

// The tables of a code set and pattern. Safe on several threads, like any static variable.
template <int Symbols, const CodeSet<Symbols>& Set, ClassPattern Pattern>
const RowCodes<Symbols>& RowCodesOfSet() {
  constexpr bool kHasPairs = Symbols == 256 && HasPairs(Pattern);
  struct Tables {
    SymbolCodeTable<Symbols> single;
    std::array<u32, kHasPairs ? 65536 : 1> pairs;
    std::array<u64, std::size_t{Pattern.length} * kGroupEntries> groups;
  };
  static Tables tables;
  static const RowCodes<Symbols> codes = [] {
    tables.single = MakeSymbolCodes(Set);
    if constexpr (kHasPairs) MakePairCodes(tables.single, tables.pairs.data());
    MakeSymbolGroups(Set, Pattern, tables.groups.data());
    return RowCodes<Symbols>{&Set, Pattern, &tables.single, kHasPairs ? tables.pairs.data() : nullptr,
                             tables.groups.data()};
  }();
  return codes;
}

}  // namespace vorel::inline VOREL_INSTRUCTIONS
