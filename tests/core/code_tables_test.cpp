#include "entropy/code_set.h"

#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <string>
#include <vector>

#include "entropy/row_codes.h"
#include "tests/reference/code_lengths.h"
#include "tests/reference/wide_422.h"

namespace vorel {
namespace {

struct Set8 {
  const char* name;
  const CodeSet<256>* codes;
};
const Set8 kSets8[] = {{"8bw p", &kWide8Progressive},           {"8bw i", &kWide8Interlaced},
                       {"8bv 4:2:2 p", &kVideo8Progressive422}, {"8bv 4:2:2 i", &kVideo8Interlaced422},
                       {"8b 4:4:4 p", &kProgressive8b444},      {"8b 4:4:4 i", &kInterlaced8b444},
                       {"RGB 8bf p", &kRgb8Progressive},        {"RGB 8bf i", &kRgb8Interlaced}};
struct Set10 {
  const char* name;
  const CodeSet<1024>* codes;
};
const Set10 kSets10[] = {{"10bv 4:2:2 p", &kVideo10Progressive422}, {"10bv 4:2:2 i", &kVideo10Interlaced422},
                         {"10bv 4:4:4 p", &kVideo10Progressive444}, {"10bv 4:4:4 i", &kVideo10Interlaced444},
                         {"RGB 10bf p", &kRgb10Progressive},        {"RGB 10bf i", &kRgb10Interlaced}};

// The code word of a symbol as text.
template <int Symbols>
std::string Word(const CodeSet<Symbols>& codes, CodeClass codeClass, std::size_t symbol) {
  const u32 entry = codes.encode[symbol][static_cast<std::size_t>(Index(codeClass))];
  std::string text;
  for (u32 i = 0; i < entry >> 24; ++i) text += (entry >> (15 - i) & 1) != 0 ? '1' : '0';
  return text;
}

template <int Symbols>
void CheckSet(const char* name, const CodeSet<Symbols>& codes) {
  for (const CodeClass codeClass : {CodeClass::a, CodeClass::b}) {
    SCOPED_TRACE(std::string(name) + (codeClass == CodeClass::a ? " A" : " B"));
    u32 start = 0;  // code words ascend and leave no gap
    for (u32 s = 0; s < Symbols; ++s) {
      const u32 entry = codes.encode[s][static_cast<std::size_t>(Index(codeClass))];
      const u32 length = entry >> 24;
      const u32 word = entry & 0xFFFF;
      ASSERT_GE(length, 1u);
      ASSERT_LE(length, 16u);
      ASSERT_EQ(word, start) << s;
      start += 65536u >> length;
      // Whatever follows the code word, it decodes to its symbol.
      for (const u32 tail : {0u, 0xFFFFFFFFu, 0x5A5A5A5Au}) {
        const DecodedSymbol decoded =
            DecodeSymbol(codes, codeClass, word << 16 | (tail & (0xFFFFFFFFu >> length)));
        ASSERT_EQ(decoded.symbol, s);
        ASSERT_EQ(decoded.length, length);
      }
    }
    EXPECT_EQ(start, 65536u);
    EXPECT_EQ(DecodeSymbol(codes, codeClass, 0xFFFFFFFFu).symbol, static_cast<u32>(Symbols - 1));
    EXPECT_EQ(DecodeSymbol(codes, codeClass, 0).symbol, 0u);
    // Every window of 16 bits decodes to 1 to 16 bits.
    for (u32 window = 0; window < 65536; ++window) {
      const DecodedSymbol decoded = DecodeSymbol(codes, codeClass, window << 16);
      ASSERT_TRUE(decoded.length >= 1 && decoded.length <= 16 && decoded.symbol < Symbols) << window;
    }
  }
  EXPECT_LE(codes.secondLevel.rowCount, 24);
}

TEST(CodeTables, EverySetIsCompleteAndDecodesItsOwnWords) {
  for (const Set8& set : kSets8) CheckSet(set.name, *set.codes);
  for (const Set10& set : kSets10) CheckSet(set.name, *set.codes);
}

TEST(CodeTables, WorkedWordsOf8bwP) {
  const CodeSet<256>& codes = kWide8Progressive;
  const char* const first[] = {"000", "001", "0100", "0101", "01100"};
  for (std::size_t s = 0; s < 5; ++s) EXPECT_EQ(Word(codes, CodeClass::a, s), first[s]);
  EXPECT_EQ(Word(codes, CodeClass::a, 253), "1101");
  EXPECT_EQ(Word(codes, CodeClass::a, 254), "1110");
  EXPECT_EQ(Word(codes, CodeClass::a, 255), "1111");
  const char* const firstB[] = {"0", "10", "1100", "110100"};
  for (std::size_t s = 0; s < 4; ++s) EXPECT_EQ(Word(codes, CodeClass::b, s), firstB[s]);
  EXPECT_EQ(Word(codes, CodeClass::b, 255), "111");
}

TEST(CodeTables, ResidualsOfHalfTheAlphabetAreOneSymbolOf16Bits) {
  EXPECT_EQ(Word(kWide8Progressive, CodeClass::a, 128).size(), 16u);
}

TEST(CodeTables, SomeCodesStopAt15Bits) {
  for (std::size_t s = 0; s < 256; ++s) {
    EXPECT_LE(Word(kWide8Interlaced, CodeClass::a, s).size(), 15u);
    EXPECT_LE(Word(kRgb8Interlaced, CodeClass::b, s).size(), 15u);
  }
}

TEST(CodeTables, WideCodesEqualTheReferenceCoders) {
  const struct {
    const CodeSet<256>* codes;
    CodeClass codeClass;
    const char* lengths;
  } rows[] = {{&kWide8Progressive, CodeClass::a, reference::kWideProgressiveA},
              {&kWide8Progressive, CodeClass::b, reference::kWideProgressiveB},
              {&kWide8Interlaced, CodeClass::a, reference::kWideInterlacedA},
              {&kWide8Interlaced, CodeClass::b, reference::kWideInterlacedB}};
  for (const auto& row : rows) {
    const reference::Code expected = reference::MakeCode(row.lengths);
    for (std::size_t s = 0; s < 256; ++s)
      ASSERT_EQ(Word(*row.codes, row.codeClass, s), expected.words[s]) << s;
  }
}

TEST(CodeTables, AShortFirstCodeTakesHalfOfTheFirstLevel) {
  for (u32 prefix = 0; prefix < 128; ++prefix) {
    EXPECT_EQ(kWide8Progressive.firstLevel[prefix][1].selector, 1);
    EXPECT_EQ(kWide8Progressive.firstLevel[prefix][1].baseSymbol, 0);
  }
  EXPECT_NE(kWide8Progressive.firstLevel[128][1].selector, 1);
}

TEST(CodeTables, APrefixOf256LongCodesReachesEveryOffset) {
  const CodeSet<1024>& codes = kVideo10Progressive444;
  bool found = false;
  for (u32 prefix = 0; prefix < 256 && !found; ++prefix) {
    const FirstLevelHalf& half = codes.firstLevel[prefix][0];
    if (half.selector < kFirstRow) continue;
    const auto& row = codes.secondLevel.rows[half.selector - std::size_t{kFirstRow}];
    found = row[255] == (16 << 8 | 255);
    for (u32 q = 0; found && q < 256; ++q) EXPECT_EQ(row[q], 16 << 8 | q);
  }
  EXPECT_TRUE(found);
}

// ---- The faster tables, symbol by symbol through the words above

// The words of every two symbols that may follow each other, and those of one. An alphabet of 1,024 has entries only
// for pairs of residuals from -127 to 126.
template <int Symbols>
void CompareCodes(const CodeSet<Symbols>& set, const SymbolCodes<Symbols>& codes,
                  const std::vector<const char*>& pairs) {
  std::array<std::vector<std::string>, 2> words;
  for (u32 symbol = 0; symbol < Symbols; ++symbol) {
    words[0].push_back(Word(set, CodeClass::a, symbol));
    words[1].push_back(Word(set, CodeClass::b, symbol));
  }
  for (std::size_t half = 0; half < 2; ++half) {
    for (std::size_t symbol = 0; symbol < Symbols; ++symbol) {
      const std::string& word = words[half][symbol];
      ASSERT_EQ((*codes.single)[half][symbol], std::stoul(word, nullptr, 2) << 8 | word.size());
    }
  }
  const auto isFar = [](u32 symbol) { return Symbols == 1024 && symbol >= 127 && symbol < 1024 - 127; };
  const std::size_t entries = Symbols == 256 ? 65536 : 255 * 255;
  for (std::size_t pair = 0; pair < pairs.size(); ++pair) {
    for (u32 first = 0; first < Symbols; ++first) {
      for (u32 second = 0; second < Symbols; ++second) {
        const std::string both =
            words[pairs[pair][0] == 'A' ? 0 : 1][first] + words[pairs[pair][1] == 'A' ? 0 : 1][second];
        // Whatever stands above the bits of the alphabet.
        const u16 a = static_cast<u16>(first + Symbols * (second % 5));
        const u16 b = static_cast<u16>(second - Symbols * (first % 3));
        const u32 index = JointIndex<Symbols>(JointPlace<Symbols>(a), JointPlace<Symbols>(b));
        ASSERT_LT(index, entries);
        const u32 entry = codes.pairs[entries * pair + index];
        if (isFar(first) || isFar(second) || both.size() > 24) {
          ASSERT_EQ(entry & 255, 60u) << first << ' ' << second;
          continue;
        }
        ASSERT_EQ(entry & 255, both.size()) << first << ' ' << second;
        ASSERT_EQ(entry >> 8, std::stoul(both, nullptr, 2)) << first << ' ' << second;
      }
    }
  }
}

TEST(SymbolCodes, EntriesOfTwoSymbolsAreTheirWordsInOrder) {
  CompareCodes(kWide8Progressive, SymbolCodesOfLayout<YCbCr8bw422, Scan::p>(), {"AB"});
  CompareCodes(kVideo8Interlaced422, SymbolCodesOfLayout<YCbCr8bv422, Scan::i>(), {"AB"});
  CompareCodes(kVideo8Progressive422, SymbolCodesOfLayout<YCbCrA8bv4224, Scan::p>(), {"BA", "BB", "AB"});
  CompareCodes(kProgressive8b444, SymbolCodesOfLayout<YCbCr8bu444, Scan::p>(), {"BA", "AB", "AA"});
  CompareCodes(kRgb8Interlaced, SymbolCodesOfLayout<RGBA8bf, Scan::i>(), {"AB", "AA"});
}

TEST(SymbolCodes, EntriesOf10BitsAreForResidualsNearZero) {
  CompareCodes(kVideo10Progressive422, SymbolCodesOfLayout<YCbCr10bv422, Scan::p>(), {"AB"});
  CompareCodes(kVideo10Interlaced422, SymbolCodesOfLayout<YCbCrA10bv4224, Scan::i>(), {"BA", "BB", "AB"});
  CompareCodes(kRgb10Progressive, SymbolCodesOfLayout<RGB10bf, Scan::p>(), {"BA", "AB", "AA"});
  CompareCodes(kVideo10Progressive444, SymbolCodesOfLayout<YCbCrA10bv4444, Scan::p>(), {"AB", "AA"});
}

}  // namespace
}  // namespace vorel
