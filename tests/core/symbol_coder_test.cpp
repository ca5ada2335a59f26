// The hot loops, for windows of 64 and of 32 bits, against code words put one after another.
#include "entropy/symbol_reader.h"
#include "entropy/symbol_writer.h"

#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <random>

#include "entropy/row_codes.h"
#include "tests/core/guarded.h"
#include "tests/reference/code_lengths.h"

namespace vorel {
namespace {

const RowCodes<256>& WideRows() {
  return RowCodesOfLayout<YCbCr8bw422, Scan::p>();
}

const SymbolCodes<256>& WideCodes() {
  return SymbolCodesOfLayout<YCbCr8bw422, Scan::p>();
}

// Symbols such as a row has: short codes mostly, and some of every length.
std::vector<u8> MakeSymbols(std::size_t count, u32 seed) {
  std::mt19937 random(seed);
  std::vector<u8> symbols(count);
  const u32 spread = 1 + seed % 7;
  for (u8& symbol : symbols) {
    const int wide = random() % 19 == 0 ? 1 : 0;
    const int value =
        static_cast<int>(random() % (wide != 0 ? 256u : 2 * spread + 1)) - static_cast<int>(spread);
    symbol = static_cast<u8>(value);
  }
  return symbols;
}

reference::Bits CodeOneByOne(const std::vector<u8>& symbols, u32 leadingZeros) {
  static const reference::Code a = reference::MakeCode(reference::kWideProgressiveA);
  static const reference::Code b = reference::MakeCode(reference::kWideProgressiveB);
  reference::Bits bits(leadingZeros, false);
  for (std::size_t i = 0; i < symbols.size(); ++i) {
    for (const char bit : (i % 2 == 0 ? a : b).words[symbols[i]]) bits.push_back(bit == '1');
  }
  return bits;
}

template <typename Window>
class SymbolCoder : public testing::Test {};
using Windows = testing::Types<u64, u32>;
TYPED_TEST_SUITE(SymbolCoder, Windows);

TYPED_TEST(SymbolCoder, EncodesAsCodeByCode) {
  for (u32 seed = 0; seed < 300; ++seed) {
    const std::size_t pairs = 1 + seed % 64;
    const std::vector<u8> symbols = MakeSymbols(2 * pairs, seed);
    const u32 start = seed % 41;
    const reference::Bits expected = CodeOneByOne(symbols, start);
    std::vector<u16> joined;
    for (std::size_t i = 0; i < pairs; ++i)
      joined.push_back(static_cast<u16>(symbols[2 * i] | symbols[2 * i + 1] << 8));
    // A frame with room for the fast form, and one that just holds the words.
    const std::vector<u8> words = BitsToWords(expected);
    for (const std::size_t size : {words.size() + 1000, words.size()}) {
      Guarded frame(size, 0);
      auto writer = OpenWriter<TypeParam>(frame.data(), Fold({0, start}), size);
      PutSteps<2>(writer, WideCodes(), {joined.data(), {}}, static_cast<u32>(pairs));
      ASSERT_EQ(CloseWriter(writer), expected.size());
      ASSERT_EQ(std::vector<u8>(frame.data(), frame.data() + words.size()), words) << seed;
      ASSERT_TRUE(frame.MarksIntact());
    }
  }
}

TYPED_TEST(SymbolCoder, DecodesFromAFrameOfAnyLengthBehind) {
  for (u32 seed = 0; seed < 300; ++seed) {
    const std::size_t count = 2 * (1 + seed % 200);
    const std::vector<u8> symbols = MakeSymbols(count, seed);
    const u32 start = seed % 41;
    const reference::Bits bits = CodeOneByOne(symbols, start);
    std::vector<u8> bytes = BitsToWords(bits);
    bytes.resize((bits.size() + 7) / 8 + seed % 23);
    Fenced frame(bytes);
    for (const u64 behind : {u64{0}, u64{40}, u64{1000}}) {
      BitReader reader = OpenReader(frame.data(), Fold({0, start}), 0, frame.size());
      Guarded out(count, 0);
      RunGuess guess;
      GetSymbols<TypeParam, 256>(reader, WideRows(), out.data(), count, behind, guess);
      ASSERT_EQ(std::vector<u8>(out.data(), out.data() + count), symbols) << seed;
      ASSERT_EQ(reader.position, bits.size()) << seed;
      ASSERT_TRUE(out.MarksIntact());
    }
  }
}

// A frame without a known end: the last run of it is followed by no coded bits, and two words are the most
// that is looked at.
TYPED_TEST(SymbolCoder, LooksAtMostTwoWordsBehindTheLastCodedBit) {
  for (u32 seed = 0; seed < 300; ++seed) {
    const std::size_t count = 2 * (1 + seed % 150);
    const std::vector<u8> symbols = seed % 3 == 0 ? std::vector<u8>(count, 0) : MakeSymbols(count, seed);
    const u32 start = seed % 41;
    const reference::Bits bits = CodeOneByOne(symbols, start);
    std::vector<u8> bytes((bits.size() + 31) / 32 * 4 + 8);
    const std::vector<u8> words = BitsToWords(bits);
    std::copy(words.begin(), words.end(), bytes.begin());
    Fenced frame(bytes);
    BitReader reader = OpenReader(frame.data(), Fold({0, start}), 0, std::numeric_limits<std::size_t>::max());
    std::vector<u8> out(count);
    RunGuess guess;
    GetSymbols<TypeParam, 256>(reader, WideRows(), out.data(), count, 0, guess);
    ASSERT_EQ(out, symbols) << seed;
    ASSERT_EQ(reader.position, bits.size());
  }
}

TYPED_TEST(SymbolCoder, BitsBehindTheEndAreZeros) {
  // Symbol 0 of class A has three bits, of class B one.
  Fenced frame({0x00});
  BitReader reader = OpenReader(frame.data(), {0, 0}, 0, frame.size());
  std::vector<u8> out(200, 7);
  RunGuess guess;
  GetSymbols<TypeParam, 256>(reader, WideRows(), out.data(), out.size(), 0, guess);
  EXPECT_EQ(out, std::vector<u8>(200, 0));
  EXPECT_EQ(reader.position, 400u);
}

TYPED_TEST(SymbolCoder, RawBytesAreWrittenAsTheyStandWithAndWithoutRoom) {
  std::vector<u8> bytes(64);
  for (std::size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<u8>(7 * i + 1);
  for (u32 start = 0; start < 40; ++start) {
    reference::Bits expected(start, false);
    const reference::Bits body = BytesToBits(bytes);
    expected.insert(expected.end(), body.begin(), body.end());
    const std::vector<u8> words = BitsToWords(expected);
    for (const std::size_t size : {words.size() + 100, words.size()}) {
      Guarded frame(size, 0);
      auto writer = OpenWriter<TypeParam>(frame.data(), Fold({0, start}), size);
      PutRawBytes(writer, bytes.data(), bytes.size());
      ASSERT_EQ(CloseWriter(writer), expected.size());
      ASSERT_EQ(std::vector<u8>(frame.data(), frame.data() + words.size()), words) << start;
      ASSERT_TRUE(frame.MarksIntact());
    }
  }
}

// The words of a code set, whose own test compares them with the lists.
template <int Symbols>
void AppendWord(const RowCodes<Symbols>& codes, u32 place, u32 symbol, reference::Bits& bits) {
  const u32 entry =
      codes.codes->encode[symbol][static_cast<std::size_t>(Index(ClassAt(codes.pattern, place)))];
  for (u32 i = 0; i < entry >> 24; ++i) bits.push_back((entry >> (15 - i) & 1) != 0);
}

// Where a residual stands in the joint tables.
template <int Symbols>
int PlainPlace(int symbol) {
  if (Symbols == 256) return symbol;
  const int residual = symbol < Symbols / 2 ? symbol : symbol - Symbols;
  return residual >= -127 && residual <= 126 ? residual + 127 : 254;
}

// Steps with their joint indexes, made one by one.
template <int Symbols, u32 Length>
struct PlainSteps {
  std::array<std::array<u16, kIndexPitch>, Length> planes;
  std::array<std::array<u16, kIndexPitch>, PairsUntilRepeat(Length)> indexes;

  void MakeIndexes() {
    constexpr int kPlaces = Symbols == 256 ? 256 : 255;
    for (u32 pair = 0; pair < indexes.size(); ++pair) {
      for (u32 step = 0; step + 1 < kIndexPitch; ++step) {
        // The first symbols of the pairs are 0; 0, 2, 1; or 0, 2 of their step.
        const u32 first = Length == 3 && pair == 2 ? 1 : 2 * pair;
        const bool goesOn = first + 1 == Length;
        const int a = planes[first][step];
        const int b = goesOn ? planes[0][step + 1] : planes[first + 1][step];
        indexes[pair][step] = static_cast<u16>(PlainPlace<Symbols>(a) + kPlaces * PlainPlace<Symbols>(b));
      }
    }
  }
};

template <int Symbols, u32 Length>
StepCells<Length> CellsOf(const PlainSteps<Symbols, Length>& steps) {
  StepCells<Length> cells = {steps.indexes[0].data(), {}};
  for (u32 k = 0; k < Length; ++k) cells.symbols[k] = steps.planes[k].data();
  return cells;
}

// What a run of the test consists of: symbols near zero, with more or fewer of the rarest ones, whose codes do not
// fit one put.
template <int Symbols>
u16 RandomSymbol(std::mt19937& random, u32 seed, u32 step) {
  if ((seed % 3 == 0 && step % 7 < 3) || random() % 23 == 0)
    return static_cast<u16>(Symbols / 2 + random() % 3);
  const u32 spread = 1u << seed % 8;  // up to where the joint tables of 1,024 symbols end, and beyond
  const u32 edge = seed % 5 == 0 ? 120 : 0;
  return static_cast<u16>((edge + random() % spread - spread / 2) & (Symbols - 1));
}

// Steps of Length symbols go in and come out again, in a frame with room and in one that just holds them.
template <typename Window, u32 Length, int Symbols>
void GoThroughSteps(const RowCodes<Symbols>& codes, const SymbolCodes<Symbols>& symbolCodes) {
  ASSERT_EQ(codes.pattern.length, Length);
  std::mt19937 random(Symbols + Length);
  for (u32 seed = 0; seed < 400; ++seed) {
    const u32 steps = 1 + seed % 96;
    PlainSteps<Symbols, Length> planes = {};
    reference::Bits expected(seed % 41, false);
    std::vector<SampleOf<Symbols>> symbols;
    for (u32 i = 0; i < steps; ++i) {
      for (u32 k = 0; k < Length; ++k) {
        const u16 symbol = RandomSymbol<Symbols>(random, seed, i);
        planes.planes[k][i] = symbol;
        symbols.push_back(static_cast<SampleOf<Symbols>>(symbol));
        AppendWord(codes, k, symbol, expected);
      }
    }
    planes.MakeIndexes();
    const std::vector<u8> words = BitsToWords(expected);
    for (const std::size_t size : {words.size() + 2000, words.size()}) {
      Guarded frame(size, 0);
      auto writer = OpenWriter<Window>(frame.data(), Fold({0, seed % 41}), size);
      PutSteps<Length>(writer, symbolCodes, CellsOf(planes), steps);
      ASSERT_EQ(CloseWriter(writer), expected.size());
      ASSERT_EQ(std::vector<u8>(frame.data(), frame.data() + words.size()), words) << seed;
      ASSERT_TRUE(frame.MarksIntact());
    }
    Fenced frame(words);
    BitReader reader = OpenReader(frame.data(), Fold({0, seed % 41}), 0, frame.size());
    Guarded out(symbols.size() * sizeof symbols[0], 0);
    RunGuess guess;
    GetSymbols<Window, Symbols>(reader, codes, reinterpret_cast<SampleOf<Symbols>*>(out.data()),
                                symbols.size(), 0, guess);
    ASSERT_EQ(std::memcmp(out.data(), symbols.data(), out.size()), 0) << seed;
    ASSERT_EQ(reader.position, expected.size());
    ASSERT_TRUE(out.MarksIntact());
  }
}

TYPED_TEST(SymbolCoder, StepsOfEveryPatternGoBothWays) {
  GoThroughSteps<TypeParam, 2>(RowCodesOfLayout<YCbCr8bv422, Scan::p>(),
                               SymbolCodesOfLayout<YCbCr8bv422, Scan::p>());
  GoThroughSteps<TypeParam, 3>(RowCodesOfLayout<YCbCrA8bv4224, Scan::i>(),
                               SymbolCodesOfLayout<YCbCrA8bv4224, Scan::i>());
  GoThroughSteps<TypeParam, 3>(RowCodesOfLayout<YCbCr8bu444, Scan::p>(),
                               SymbolCodesOfLayout<YCbCr8bu444, Scan::p>());
  GoThroughSteps<TypeParam, 4>(RowCodesOfLayout<RGBA8bf, Scan::i>(), SymbolCodesOfLayout<RGBA8bf, Scan::i>());
  GoThroughSteps<TypeParam, 2>(RowCodesOfLayout<YCbCr10bv422, Scan::p>(),
                               SymbolCodesOfLayout<YCbCr10bv422, Scan::p>());
  GoThroughSteps<TypeParam, 3>(RowCodesOfLayout<YCbCrA10bv4224, Scan::i>(),
                               SymbolCodesOfLayout<YCbCrA10bv4224, Scan::i>());
  GoThroughSteps<TypeParam, 3>(RowCodesOfLayout<RGB10bf, Scan::p>(), SymbolCodesOfLayout<RGB10bf, Scan::p>());
  GoThroughSteps<TypeParam, 4>(RowCodesOfLayout<YCbCrA10bv4444, Scan::i>(),
                               SymbolCodesOfLayout<YCbCrA10bv4444, Scan::i>());
}

template <typename Window, u32 Length, u32 SampleBits>
void GoThroughRawSteps() {
  std::mt19937 random(Length * SampleBits);
  for (u32 start = 0; start < 40; ++start) {
    const u32 steps = 1 + start % 31;
    std::array<std::array<u16, 32>, Length> planes{};
    reference::Bits expected(start, false);
    std::vector<u16> samples;
    for (u32 i = 0; i < steps; ++i) {
      for (u32 k = 0; k < Length; ++k) {
        const u32 sample = static_cast<u32>(random()) & ((1u << SampleBits) - 1);
        planes[k][i] = static_cast<u16>(sample);
        samples.push_back(static_cast<u16>(sample));
        for (u32 bit = SampleBits; bit-- > 0;) expected.push_back((sample >> bit & 1) != 0);
      }
    }
    std::array<const u16*, Length> cells;
    for (u32 k = 0; k < Length; ++k) cells[k] = planes[k].data();
    const std::vector<u8> words = BitsToWords(expected);
    for (const std::size_t size : {words.size() + 500, words.size()}) {
      Guarded frame(size, 0);
      auto writer = OpenWriter<Window>(frame.data(), Fold({0, start}), size);
      PutRawSteps<Length, SampleBits>(writer, cells, steps);
      ASSERT_EQ(CloseWriter(writer), expected.size());
      ASSERT_EQ(std::vector<u8>(frame.data(), frame.data() + words.size()), words) << start;
      ASSERT_TRUE(frame.MarksIntact());
    }
    Fenced frame(words);
    BitReader reader = OpenReader(frame.data(), Fold({0, start}), 0, frame.size());
    std::vector<u16> out(samples.size());
    GetRawSamples<SampleBits>(reader, out.data(), out.size());
    ASSERT_EQ(out, samples) << start;
    ASSERT_EQ(reader.position, expected.size());
  }
}

TYPED_TEST(SymbolCoder, RawStepsAreFieldsInTheOrderOfThePlanes) {
  GoThroughRawSteps<TypeParam, 2, 8>();
  GoThroughRawSteps<TypeParam, 3, 8>();
  GoThroughRawSteps<TypeParam, 4, 8>();
  GoThroughRawSteps<TypeParam, 2, 10>();
  GoThroughRawSteps<TypeParam, 3, 10>();
  GoThroughRawSteps<TypeParam, 4, 10>();
}

TEST(RawBytes, StandInTheStreamAtAnyBit) {
  const std::vector<u8> bytes = {0x12, 0x34, 0x56, 0x78, 0x9A, 0xBC, 0xDE, 0xF0, 0x11};
  Fenced frame(bytes);
  BitReader reader = OpenReader(frame.data(), {0, 4}, 0, frame.size());
  Guarded out(8, 0);
  GetRawBytes(reader, out.data(), 8);
  EXPECT_EQ(std::vector<u8>(out.data(), out.data() + 8),
            (std::vector<u8>{0x23, 0x45, 0x67, 0x89, 0xAB, 0xCD, 0xEF, 0x01}));
  EXPECT_TRUE(out.MarksIntact());
}

}  // namespace
}  // namespace vorel
