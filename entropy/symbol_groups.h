// The decoder's tables beside a code set, derived from it, which yield several symbols to a look-up. They are made
// where a frame format is first used, in a millisecond: no program uses all of them, and kept as constants they would
// be most of the library.
#pragma once
#include <algorithm>
#include <type_traits>

#include "base/instructions.h"
#include "entropy/class_pattern.h"

namespace vorel::inline VOREL_INSTRUCTIONS {

template <int Symbols>
using SampleOf = std::conditional_t<Symbols == 256, u8, u16>;

// Decoding goes in steps. A step looks at the next 12 bits and takes all symbols that end within them. What it finds
// depends on a state:
//   0 to L - 1    the place in the pattern, of L symbols, that the next symbol has
//   L to 2L - 1   the same places, four bits into the code of that symbol, which has more than 12
// Such a long code takes two steps, one without a symbol to the state that is L higher and one back. The first four
// bits need not be remembered: a class has few windows of 16 bits with long codes, one behind the other, and the
// last 12 bits tell them apart.
//
// Each state has a table of steps, which is all that the next step waits for: 8 kB, and stays in the first-level
// cache. The symbols come out of tables four times that size, whose delays are hidden behind later steps.
inline constexpr u32 kGroupBits = 12;
inline constexpr u32 kGroupEntries = 1u << kGroupBits;
inline constexpr u32 kFirstBitsOfLong = kLongestCode - kGroupBits;

// Step:   14..12 state that comes next | 9..6 how many symbols | 5..0 how many bits they take
// The bits of the state are the offset of its entries as they stand.
inline constexpr u32 kStateMask = 7 * kGroupEntries;
static_assert(kGroupEntries == 1u << 12 && kStateMask < 65536);

// Symbols of a step, the first lowest.
template <int Symbols>
inline constexpr u32 kMostGroupSymbols = 8 / sizeof(SampleOf<Symbols>);

constexpr u16 MakeStep(u32 state, u32 symbols, u32 bits) {
  return static_cast<u16>(state << 12 | symbols << 6 | bits);
}
constexpr u32 StateOfStep(u32 step) {
  return step >> 12;
}
constexpr u32 SymbolsOfStep(u32 step) {
  return step >> 6 & 15;
}
constexpr u32 BitsOfStep(u32 step) {
  return step & 63;
}

// What the decoder needs of a code set and a pattern.
template <int Symbols>
struct RowCodes {
  const CodeSet<Symbols>* codes;
  ClassPattern pattern;
  u32 zeroBits;       // of a pattern of symbols 0
  const u16* steps;   // kGroupEntries for each state: two states for each place of the pattern
  const u64* groups;  // the symbols that each of the steps takes
};

// The tables of one state in which a symbol begins.
template <int Symbols>
void MakeGroups(const CodeSet<Symbols>& codes, ClassPattern pattern, u32 state, u16* steps, u64* groups) {
  constexpr u32 kSampleBits = 8 * sizeof(SampleOf<Symbols>);
  for (u32 index = 0; index < kGroupEntries; ++index) {
    u32 count = 0;
    u32 bits = 0;
    u32 next = state;
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
    groups[index] = symbols;
    steps[index] =
        count > 0 ? MakeStep(next, count, bits) : MakeStep(pattern.length + state, 0, kFirstBitsOfLong);
  }
}

// The tables of the state four bits into a long code at `place`.
template <int Symbols>
void MakeLongGroups(const CodeSet<Symbols>& codes, ClassPattern pattern, u32 place, u16* steps, u64* groups) {
  const std::size_t half = static_cast<std::size_t>(Index(ClassAt(pattern, place)));
  const u32 next = (place + 1) % pattern.length;
  // What belongs to no long code never comes up.
  std::fill_n(steps, kGroupEntries, MakeStep(next, 1, kGroupBits));
  std::fill_n(groups, kGroupEntries, u64{0});
  for (u32 symbol = 0; symbol < Symbols; ++symbol) {
    const u32 length = codes.encode[symbol][half] >> 24;
    if (length <= kGroupBits) continue;
    const u32 first = codes.encode[symbol][half] & (kGroupEntries - 1);
    for (u32 i = 0; i < 1u << (kLongestCode - length); ++i) {
      const u32 index = (first + i) % kGroupEntries;
      steps[index] = MakeStep(next, 1, length - kFirstBitsOfLong);
      groups[index] = symbol;
    }
  }
}

template <int Symbols>
u32 ZeroBitsOf(const CodeSet<Symbols>& codes, ClassPattern pattern) {
  u32 bits = 0;
  for (u32 place = 0; place < pattern.length; ++place)
    bits += DecodeSymbol(codes, ClassAt(pattern, place), 0).length;
  return bits;
}

// The tables of a code set and pattern. Safe on several threads, like any static variable.
template <int Symbols, const CodeSet<Symbols>& Set, ClassPattern Pattern>
const RowCodes<Symbols>& RowCodesOfSet() {
  struct Tables {
    std::array<u16, std::size_t{Pattern.length} * 2 * kGroupEntries> steps;
    std::array<u64, std::size_t{Pattern.length} * 2 * kGroupEntries> groups;
  };
  static Tables tables;
  static const RowCodes<Symbols> codes = [] {
    for (u32 place = 0; place < Pattern.length; ++place) {
      const std::size_t begins = std::size_t{place} * kGroupEntries;
      const std::size_t goesOn = std::size_t{Pattern.length + place} * kGroupEntries;
      MakeGroups(Set, Pattern, place, &tables.steps[begins], &tables.groups[begins]);
      MakeLongGroups(Set, Pattern, place, &tables.steps[goesOn], &tables.groups[goesOn]);
    }
    return RowCodes<Symbols>{&Set, Pattern, ZeroBitsOf(Set, Pattern), tables.steps.data(),
                             tables.groups.data()};
  }();
  return codes;
}

}  // namespace vorel::inline VOREL_INSTRUCTIONS
