// Faster tables beside a code set of 256 symbols, derived from it: the encoder's code of two symbols at once,
// and the decoder's table that yields up to four symbols to a look-up. Stream and cursors are the same with
// and without them. Both serve sample orders in which the classes alternate, A first.
#pragma once
#include "entropy/code_set.h"

namespace vorel {

// Code of a class A symbol followed by a class B symbol, by (B << 8 | A): the few A symbols that are frequent
// then share cache lines.
//   31..8 both codes, right-aligned | 7..0 their length
// Where the codes have more than 24 bits together the length is kNoPairCode. Sums of four lengths stay below
// 256, and one such mark among four makes the sum larger than what four real entries may have at most if they
// are to be merged.
inline constexpr u32 kLongestPairCode = 24;
inline constexpr u32 kNoPairCode = 60;
using PairCodeTable = std::array<u32, 65536>;

template <int Symbols>
constexpr PairCodeTable MakePairCodes(const CodeSet<Symbols>& codes) {
  static_assert(Symbols == 256);
  PairCodeTable table{};
  for (u32 b = 0; b < 256; ++b) {
    const u32 entryB = codes.encode[b][1];
    const u32 lengthB = entryB >> 24;
    const u32 wordB = (entryB & 0xFFFF) >> (16 - lengthB);
    for (u32 a = 0; a < 256; ++a) {
      const u32 entryA = codes.encode[a][0];
      const u32 length = (entryA >> 24) + lengthB;
      const u32 wordA = (entryA & 0xFFFF) >> (16 - (entryA >> 24));
      table[b << 8 | a] = length > kLongestPairCode ? kNoPairCode : (wordA << lengthB | wordB) << 8 | length;
    }
  }
  return table;
}

// Up to four symbols by the next 11 bits of the stream, for each class that may come first:
//   63..32 symbols, the first in the lowest byte | 31..16 offset in bytes of the table for the next class
//   15..8 how many symbols | 7..0 how many bits they take
// A first symbol of more than 11 bits gives an entry without symbols and bits that leads to its own table: a
// step over it changes nothing, so it is enough to look for one after several steps.
inline constexpr u32 kGroupBits = 11;
inline constexpr u32 kGroupEntries = 1u << kGroupBits;
inline constexpr u32 kGroupTableBytes = kGroupEntries * sizeof(u64);
inline constexpr u32 kMostGroupSymbols = 4;
using SymbolGroupTable = std::array<u64, 2 * kGroupEntries>;

template <int Symbols>
constexpr SymbolGroupTable MakeSymbolGroups(const CodeSet<Symbols>& codes) {
  static_assert(Symbols == 256);
  SymbolGroupTable table{};
  for (u32 first = 0; first < 2; ++first) {
    for (u32 index = 0; index < kGroupEntries; ++index) {
      u32 count = 0;
      u32 bits = 0;
      u32 next = first;
      u64 symbols = 0;
      while (count < kMostGroupSymbols) {
        const u32 window = index << (32 - kGroupBits) << bits;
        const DecodedSymbol decoded = DecodeSymbol(codes, next == 0 ? CodeClass::a : CodeClass::b, window);
        if (bits + decoded.length > kGroupBits) break;
        symbols |= u64{decoded.symbol} << (8 * count);
        bits += decoded.length;
        next ^= 1;
        ++count;
      }
      table[first * kGroupEntries + index] =
          symbols << 32 | u64{next * kGroupTableBytes} << 16 | u64{count} << 8 | bits;
    }
  }
  return table;
}

// Everything that a row coder of 8-bit samples needs of a code set.
struct RowCodes8 {
  const CodeSet<256>* codes;
  const PairCodeTable* pairs;
  const SymbolGroupTable* groups;
};

extern const RowCodes8 kWide8ProgressiveRows;
extern const RowCodes8 kWide8InterlacedRows;

}  // namespace vorel
