// Builds code sets from the lists of lengths, at compile time. Code words, read as binary fractions, ascend
// with the symbol: the order of the symbols alone decides, not their lengths.
#pragma once
#include <cstddef>

#include "entropy/code_set.h"

namespace vorel {

struct LengthRun {
  u8 length;
  u16 count;
};

#include "entropy/code_lengths.inc"

template <std::size_t Runs>
constexpr u32 CountSymbols(const LengthRun (&runs)[Runs]) {
  u32 count = 0;
  for (const LengthRun& run : runs) count += run.count;
  return count;
}

// 65536 if and only if every bit pattern decodes and none decodes twice.
template <std::size_t Runs>
constexpr u32 KraftSum(const LengthRun (&runs)[Runs]) {
  u32 sum = 0;
  for (const LengthRun& run : runs) sum += run.count * (65536u >> run.length);
  return sum;
}

// Code of a class, symbol by symbol. The first bit of a code word is bit 15.
template <int Symbols>
struct PrefixCode {
  std::array<u8, Symbols> length;
  std::array<u16, Symbols> word;
};

template <int Symbols, std::size_t Runs>
constexpr PrefixCode<Symbols> MakePrefixCode(const LengthRun (&runs)[Runs]) {
  PrefixCode<Symbols> code{};
  u32 word = 0;
  std::size_t symbol = 0;
  for (const LengthRun& run : runs) {
    for (u32 i = 0; i < run.count; ++i, ++symbol) {
      code.length[symbol] = run.length;
      code.word[symbol] = static_cast<u16>(word);
      word += 65536u >> run.length;
    }
  }
  return code;
}

// The number of the row in the second level that equals `row`; a new one if there is none.
constexpr int FindOrAddRow(SecondLevelTable& table, const std::array<u16, 256>& row) {
  for (int i = 0; i < table.rowCount; ++i) {
    if (table.rows[static_cast<std::size_t>(i)] == row) return i + kFirstRow;
  }
  table.rows[static_cast<std::size_t>(table.rowCount)] = row;
  return table.rowCount++ + kFirstRow;
}

template <int Symbols>
constexpr void AddClass(CodeSet<Symbols>& set, CodeClass codeClass, const PrefixCode<Symbols>& code) {
  const std::size_t half = static_cast<std::size_t>(Index(codeClass));
  for (std::size_t s = 0; s < Symbols; ++s) {
    set.encode[s][half] = u32{code.length[s]} << 24 | code.word[s];
  }
  // First and last 16-bit window of a symbol's code word.
  const auto last = [&](std::size_t s) { return code.word[s] + (65536u >> code.length[s]) - 1; };
  std::size_t first = 0;  // the symbol whose code covers prefix * 256
  for (u32 prefix = 0; prefix < 256; ++prefix) {
    while (last(first) < prefix << 8) ++first;
    if (code.length[first] <= 8) {
      set.firstLevel[prefix][half] = {code.length[first], 0, static_cast<u16>(first)};
      continue;
    }
    std::array<u16, 256> row{};
    std::size_t symbol = first;
    for (u32 q = 0; q < 256; ++q) {
      while (last(symbol) < (prefix << 8) + q) ++symbol;
      row[q] = static_cast<u16>(code.length[symbol] * 256u + (symbol - first));
    }
    const int number = FindOrAddRow(set.secondLevel, row);
    set.firstLevel[prefix][half] = {static_cast<u8>(number), 0, static_cast<u16>(first)};
  }
}

template <int Symbols, std::size_t RunsA, std::size_t RunsB>
constexpr CodeSet<Symbols> MakeCodeSet(const LengthRun (&a)[RunsA], const LengthRun (&b)[RunsB]) {
  CodeSet<Symbols> set{};
  AddClass(set, CodeClass::a, MakePrefixCode<Symbols>(a));
  AddClass(set, CodeClass::b, MakePrefixCode<Symbols>(b));
  return set;
}

// Defines one code set and checks it where it stands. A set with more rows than kMostRows does not compile,
// because the builder would store outside its array.
#define VOREL_DEFINE_CODE_SET(NAME, SYMBOLS)                                           \
  static_assert(CountSymbols(NAME##A) == SYMBOLS && CountSymbols(NAME##B) == SYMBOLS); \
  static_assert(KraftSum(NAME##A) == 65536 && KraftSum(NAME##B) == 65536);             \
  constexpr CodeSet<SYMBOLS> NAME##Checked = MakeCodeSet<SYMBOLS>(NAME##A, NAME##B);   \
  static_assert(NAME##Checked.secondLevel.rowCount <= kMostRows);                      \
  constinit const CodeSet<SYMBOLS> NAME = NAME##Checked;

}  // namespace vorel
