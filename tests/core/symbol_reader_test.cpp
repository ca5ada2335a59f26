// Decoding of runs of symbols, step by step and as a whole, against one symbol after another.
#include "entropy/symbol_reader.h"

#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <limits>
#include <random>

#include "entropy/row_codes.h"
#include "tests/core/guarded.h"

namespace vorel {
namespace {

// Calls `check` with the codes of every frame format.
template <const FrameLayout& Layout, typename Check>
void CallForScans(Check check) {
  check(RowCodesOfLayout<Layout, Scan::p>());
  check(RowCodesOfLayout<Layout, Scan::i>());
}
template <const FrameLayout&... Layouts, typename Check>
void CallForLayouts(Check check) {
  (CallForScans<Layouts>(check), ...);
}
template <typename Check>
void CallForAll(Check check) {
  CallForLayouts<YCbCr8bw422, YCbCr8bv422, YCbCrA8bv4224, YCbCr10bv422, YCbCrA10bv4224, YCbCr8bv444,
                 YCbCrA8bv4444, YCbCr8bu444, YCbCrA8bu4444, YCbCr10bv444, YCbCrA10bv4444, RGB8bf, RGBA8bf,
                 RGB10bf, RGBA10bf>(check);
}

template <int Symbols>
u32 SymbolAt(u64 group, u32 i) {
  constexpr u32 kBits = 8 * sizeof(SampleOf<Symbols>);
  return static_cast<u32>(group >> (kBits * i) & ((u64{1} << kBits) - 1));
}

// What the step over the first 12 bits of a window of 16 does, from the place of a pattern.
template <int Symbols>
void CheckStep(const RowCodes<Symbols>& rows, u32 place, u32 window) {
  const u32 length = rows.pattern.length;
  const std::size_t at = place * 4096 + (window >> 4);
  const u32 step = rows.steps[at];
  const u64 group = rows.groups[at];
  constexpr u32 kMost = Symbols == 256 ? 8 : 4;
  u32 bits = 0;
  u32 count = 0;
  u32 next = place;
  while (count < kMost) {
    const auto decoded = DecodeSymbol(*rows.codes, ClassAt(rows.pattern, next), window << 16 << bits);
    if (bits + decoded.length > 12) break;
    ASSERT_EQ(SymbolAt<Symbols>(group, count), decoded.symbol);
    bits += decoded.length;
    next = (next + 1) % length;
    ++count;
  }
  ASSERT_EQ(SymbolsOfStep(step), count);
  if (count > 0) {
    ASSERT_EQ(BitsOfStep(step), bits);
    ASSERT_EQ(StateOfStep(step), next);
    return;
  }
  // A long code: four bits, and then the rest of it from the state that knows of them.
  ASSERT_EQ(BitsOfStep(step), 4u);
  ASSERT_EQ(StateOfStep(step), length + place);
  const std::size_t rest = (length + place) * 4096 + (window & 4095);
  const auto decoded = DecodeSymbol(*rows.codes, ClassAt(rows.pattern, place), window << 16);
  ASSERT_EQ(SymbolsOfStep(rows.steps[rest]), 1u);
  ASSERT_EQ(SymbolAt<Symbols>(rows.groups[rest], 0), decoded.symbol);
  ASSERT_EQ(BitsOfStep(rows.steps[rest]) + 4, decoded.length);
  ASSERT_EQ(StateOfStep(rows.steps[rest]), (place + 1) % length);
}

TEST(SymbolGroups, StepsFromEveryPlaceOverEveryWindowTakeTheSymbolsThatEndWithin12Bits) {
  CallForAll([](const auto& rows) {
    for (u32 place = 0; place < rows.pattern.length; ++place) {
      for (u32 window = 0; window < 65536; ++window) {
        CheckStep(rows, place, window);
        if (testing::Test::HasFatalFailure()) FAIL() << "place " << place << ", window " << window;
      }
    }
  });
}

// No step stands still, also from where none should ever start.
TEST(SymbolGroups, EveryStepTakesBits) {
  CallForAll([](const auto& rows) {
    for (u32 i = 0; i < rows.pattern.length * 2u * 4096; ++i) {
      ASSERT_GE(BitsOfStep(rows.steps[i]), 1u);
      ASSERT_LE(BitsOfStep(rows.steps[i]), 12u);
      ASSERT_LT(StateOfStep(rows.steps[i]), rows.pattern.length * 2u);
    }
  });
}

// ---- Runs

enum class Stream { noise, shortCodes, longCodes, zeros, mixed };

// Bytes that decode to symbols of a kind. The rarest, which have the longest codes, are in the middle.
template <int Symbols>
std::vector<u8> MakeStream(const RowCodes<Symbols>& rows, Stream kind, std::size_t size,
                           std::mt19937& random) {
  reference::Bits bits;
  for (u32 place = 0; bits.size() < size * 8; place = (place + 1) % rows.pattern.length) {
    const Stream now = kind == Stream::mixed ? static_cast<Stream>(random() % 4) : kind;
    const u32 symbol = static_cast<u32>(now == Stream::noise        ? random() % Symbols
                                        : now == Stream::shortCodes ? random() % 2
                                        : now == Stream::longCodes  ? Symbols / 2 - 40 + random() % 80
                                                                    : 0);
    const u32 entry =
        rows.codes->encode[symbol][static_cast<std::size_t>(Index(ClassAt(rows.pattern, place)))];
    for (u32 i = 0; i < entry >> 24; ++i) bits.push_back((entry >> (15 - i) & 1) != 0);
  }
  std::vector<u8> bytes(size);
  for (std::size_t i = 0; i < size * 8; ++i) {
    if (bits[i]) bytes[i / 8] = static_cast<u8>(bytes[i / 8] | 0x80u >> (i % 8));
  }
  return bytes;
}

// One symbol after another, bit by bit, with zeros behind the bytes.
template <int Symbols>
u64 DecodeOneByOne(const RowCodes<Symbols>& rows, const std::vector<u8>& bytes, u64 position,
                   std::vector<SampleOf<Symbols>>& symbols) {
  u32 place = 0;
  for (SampleOf<Symbols>& symbol : symbols) {
    u32 window = 0;
    for (u64 bit = position; bit < position + 32; ++bit) {
      window = window << 1 | (bit / 8 < bytes.size() ? bytes[bit / 8] >> (7 - bit % 8) & 1u : 0u);
    }
    const auto decoded = DecodeSymbol(*rows.codes, ClassAt(rows.pattern, place), window);
    symbol = static_cast<SampleOf<Symbols>>(decoded.symbol);
    position += decoded.length;
    place = (place + 1) % rows.pattern.length;
  }
  return position;
}

template <typename Window>
class SymbolRuns : public testing::Test {};
using Windows = testing::Types<u64, u32>;
TYPED_TEST_SUITE(SymbolRuns, Windows);

template <typename Window, int Symbols>
void ExpectRun(const RowCodes<Symbols>& rows, BitReader reader, std::size_t count, u64 behind,
               const std::vector<SampleOf<Symbols>>& symbols, u64 position) {
  Guarded out(count * sizeof symbols[0], 0xEE);
  GetSymbols<Window, Symbols>(reader, rows, reinterpret_cast<SampleOf<Symbols>*>(out.data()), count, behind);
  ASSERT_EQ(std::memcmp(out.data(), symbols.data(), out.size()), 0);
  ASSERT_EQ(reader.position, position);
  ASSERT_TRUE(out.MarksIntact());
}

// A run from any bit of frames that go on behind it, end in it, or ended before.
TYPED_TEST(SymbolRuns, GiveWhatOneSymbolAfterAnotherGivesInFramesCutAnywhere) {
  CallForAll([](const auto& rows) {
    using Sample = std::remove_cvref_t<decltype(rows.codes->encode)>;
    constexpr int kSymbols = static_cast<int>(std::tuple_size_v<Sample>);
    std::mt19937 random(kSymbols + rows.pattern.length);
    for (u32 round = 0; round < 300; ++round) {
      const std::size_t size = random() % 400;
      const std::vector<u8> bytes = MakeStream(rows, static_cast<Stream>(round % 5), size, random);
      const std::size_t count = rows.pattern.length * (1 + random() % (round % 3 == 0 ? 20 : 200));
      const u64 start = random() % (round % 7 == 0 ? size * 8 + 50 : 70);
      std::vector<SampleOf<kSymbols>> symbols(count);
      const u64 position = DecodeOneByOne<kSymbols>(rows, bytes, start, symbols);
      Fenced frame(bytes);
      const BitReader reader = {frame.data(), start, 0, frame.size()};
      for (const u64 behind : {u64{0}, u64{63}, u64{64}, u64{100000}}) {
        ExpectRun<TypeParam, kSymbols>(rows, reader, count, behind, symbols, position);
        if (testing::Test::HasFatalFailure()) FAIL() << "round " << round << ", behind " << behind;
      }
    }
  });
}

// Without a known end, nothing is looked at behind the two words that follow the word of the last coded bit.
TYPED_TEST(SymbolRuns, StayWithinTwoWordsBehindTheLastCodedBit) {
  CallForAll([](const auto& rows) {
    using Sample = std::remove_cvref_t<decltype(rows.codes->encode)>;
    constexpr int kSymbols = static_cast<int>(std::tuple_size_v<Sample>);
    std::mt19937 random(kSymbols + rows.pattern.length);
    for (u32 round = 0; round < 150; ++round) {
      const std::vector<u8> stream = MakeStream(rows, static_cast<Stream>(round % 5), 1400, random);
      const std::size_t count = rows.pattern.length * (1 + random() % 150);
      const u64 start = random() % 70;
      const u64 behind = std::array<u64, 5>{0, 1, 63, 64, 90}[random() % 5];
      std::vector<SampleOf<kSymbols>> symbols(count);
      const u64 position = DecodeOneByOne<kSymbols>(rows, stream, start, symbols);
      const std::size_t size = (position + behind + 31) / 32 * 4 + 8;
      ASSERT_LE(size, stream.size());
      Fenced frame({stream.begin(), stream.begin() + static_cast<std::ptrdiff_t>(size)});
      const BitReader reader = {frame.data(), start, 0, std::numeric_limits<std::size_t>::max()};
      ExpectRun<TypeParam, kSymbols>(rows, reader, count, behind, symbols, position);
      if (testing::Test::HasFatalFailure()) FAIL() << "round " << round;
    }
  });
}

}  // namespace
}  // namespace vorel
