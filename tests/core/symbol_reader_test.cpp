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

enum class Stream { noise, shortCodes, longCodes, zeros, mixed, flatParts };
constexpr u32 kStreams = 6;

// Bytes that decode to symbols of a kind. The rarest, which have the longest codes, are in the middle.
template <int Symbols>
std::vector<u8> MakeStream(const RowCodes<Symbols>& rows, Stream kind, std::size_t size,
                           std::mt19937& random) {
  reference::Bits bits;
  u32 zerosLeft = 0;
  for (u32 place = 0; bits.size() < size * 8; place = (place + 1) % rows.pattern.length) {
    Stream now = kind == Stream::mixed ? static_cast<Stream>(random() % 4) : kind;
    if (kind == Stream::flatParts) {
      if (zerosLeft == 0 && random() % 16 == 0) zerosLeft = 1u << random() % 12;
      now = zerosLeft > 0 ? Stream::zeros : static_cast<Stream>(random() % 4);
      zerosLeft -= zerosLeft > 0;
    }
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
    u64 window = 0;
    for (u64 byte = position / 8; byte < position / 8 + 5; ++byte)
      window = window << 8 | (byte < bytes.size() ? bytes[byte] : 0u);
    window >>= 8 - position % 8;
    const auto decoded = DecodeSymbol(*rows.codes, ClassAt(rows.pattern, place), static_cast<u32>(window));
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
               const std::vector<SampleOf<Symbols>>& symbols, u64 position, RunGuess guess = {}) {
  Guarded out(count * sizeof symbols[0], 0xEE);
  GetSymbols<Window, Symbols>(reader, rows, reinterpret_cast<SampleOf<Symbols>*>(out.data()), count, behind,
                              guess);
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
      const std::vector<u8> bytes = MakeStream(rows, static_cast<Stream>(round % kStreams), size, random);
      const std::size_t count = rows.pattern.length * (1 + random() % (round % 3 == 0 ? 20 : 200));
      const u64 start = random() % (round % 7 == 0 ? size * 8 + 50 : 70);
      std::vector<SampleOf<kSymbols>> symbols(count);
      const u64 position = DecodeOneByOne<kSymbols>(rows, bytes, start, symbols);
      Fenced frame(bytes);
      const BitReader reader = {frame.data(), start, 0, frame.size()};
      for (const u64 behind : {u64{0}, u64{63}, u64{64}, u64{447}, u64{448}, u64{100000}}) {
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
      const std::vector<u8> stream = MakeStream(rows, static_cast<Stream>(round % kStreams), 1400, random);
      const std::size_t count = rows.pattern.length * (1 + random() % 150);
      const u64 start = random() % 70;
      const u64 behind = std::array<u64, 8>{0, 1, 63, 64, 90, 447, 448, 600}[random() % 8];
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

// ---- Zeros

TEST(Zeros, AreCountedFromAnyBitWithoutALoadBehindTheLastOfThem) {
  for (u64 start = 0; start < 24; ++start) {
    for (u64 zeros = 0; zeros < 300; ++zeros) {
      std::vector<u8> bytes((start + zeros) / 8 + 9, 0xFF);
      for (u64 bit = start; bit < start + zeros; ++bit)
        bytes[bit / 8] = static_cast<u8>(bytes[bit / 8] & ~(0x80u >> bit % 8));
      Fenced frame(bytes);
      for (const u64 most : {u64{1}, zeros / 2, zeros, zeros + 1, zeros + 1000}) {
        const u64 counted = CountZeroBits(frame.data(), start, most);
        ASSERT_EQ(std::min(counted, most), std::min(zeros, most)) << start << " " << zeros << " " << most;
      }
    }
  }
}

// As many patterns as there are, up to both limits; none within a long code.
TEST(Zeros, AreTakenInWholePatterns) {
  CallForAll([](const auto& rows) {
    using Sample = std::remove_cvref_t<decltype(rows.codes->encode)>;
    constexpr int kSymbols = static_cast<int>(std::tuple_size_v<Sample>);
    const u32 length = rows.pattern.length;
    u32 zeroBits = 0;
    for (u32 place = 0; place < length; ++place)
      zeroBits += rows.codes->encode[0][static_cast<std::size_t>(Index(ClassAt(rows.pattern, place)))] >> 24;
    for (u64 zeros = 0; zeros < 200; ++zeros) {
      std::vector<u8> bytes(zeros / 8 + 16, 0xFF);
      for (u64 bit = 0; bit < zeros + 3; ++bit)
        bytes[bit / 8] = static_cast<u8>(bytes[bit / 8] & ~(0x80u >> bit % 8));
      for (u32 state = 0; state < 2 * length; ++state) {
        for (const ZeroLimits limits :
             {ZeroLimits{1000, 2000}, {1000, 3 + zeros / 2}, {zeros / 4, 2000}, {1000, 0}}) {
          std::vector<SampleOf<kSymbols>> out(1000, 7);
          Cursor<kSymbols> cursor = {{out.data(), MakeStep(state, 1, 4)}, OpenWindow(bytes.data(), 3)};
          const u64 bits = std::min(zeros, limits.end > 3 ? limits.end - 3 : 0);
          const u64 expected = state < length ? std::min(bits / zeroBits, limits.symbols / length) : 0;
          ASSERT_EQ(TakeZeros(cursor, rows, bytes.data(), limits), expected);
          ASSERT_EQ(PositionOf(cursor.window), 3 + expected * zeroBits);
          ASSERT_EQ(StateOfStep(cursor.run.step), state);
          const auto end = out.begin() + static_cast<std::ptrdiff_t>(expected * length);
          ASSERT_EQ(cursor.run.out, std::to_address(end));
          ASSERT_EQ(std::count(out.begin(), end, 0), end - out.begin());
          ASSERT_EQ(std::count(end, out.end(), 7), out.end() - end);
        }
      }
    }
  });
}

// ---- Long runs, from two places

// Runs that are as long as guessed, or not at all, in frames that go on or end behind them.
TYPED_TEST(SymbolRuns, GiveTheSameWhateverIsGuessed) {
  CallForAll([](const auto& rows) {
    using Sample = std::remove_cvref_t<decltype(rows.codes->encode)>;
    constexpr int kSymbols = static_cast<int>(std::tuple_size_v<Sample>);
    std::mt19937 random(kSymbols + rows.pattern.length);
    for (u32 round = 0; round < 30; ++round) {
      const std::vector<u8> stream = MakeStream(rows, static_cast<Stream>(round % kStreams), 24000, random);
      const std::size_t count = rows.pattern.length * (400 + random() % (round % 4 == 0 ? 3000 : 1200));
      const u64 start = random() % 70;
      std::vector<SampleOf<kSymbols>> symbols(count);
      const u64 position = DecodeOneByOne<kSymbols>(rows, stream, start, symbols);
      const u64 bits = position - start;
      const u64 behind = std::array<u64, 4>{0, 1000, bits / 2, 4 * bits}[random() % 4];
      // What the promise of coded bits asks for, and two words.
      const std::size_t size = std::min<std::size_t>((position + behind + 31) / 32 * 4 + 8, stream.size());
      Fenced frame({stream.begin(), stream.begin() + static_cast<std::ptrdiff_t>(size)});
      const bool endless = size < stream.size() && round % 2 == 0;
      const BitReader reader = {frame.data(), start, 0,
                                endless ? std::numeric_limits<std::size_t>::max() : frame.size()};
      for (const u32 percent : {100u, 3u, 60u, 95u, 105u, 150u, 400u}) {
        ExpectRun<TypeParam, kSymbols>(rows, reader, count, behind, symbols, position,
                                       {bits * percent / 100, 0, count, 0, 0});
        if (testing::Test::HasFatalFailure()) FAIL() << "round " << round << ", " << percent << " percent";
      }
    }
  });
}

// The two cursors by themselves; what they leave is finished step by step.
TEST(TwoCursors, MeetInMostRunsAndGiveWhatOneGives) {
  CallForAll([](const auto& rows) {
    using Sample = std::remove_cvref_t<decltype(rows.codes->encode)>;
    constexpr int kSymbols = static_cast<int>(std::tuple_size_v<Sample>);
    std::mt19937 random(kSymbols + rows.pattern.length);
    u32 met = 0;
    u32 halfway = 0;
    constexpr u32 kRounds = 30;
    for (u32 round = 0; round < kRounds; ++round) {
      const std::vector<u8> stream = MakeStream(rows, Stream::noise, 16000, random);
      const std::size_t count = rows.pattern.length * std::size_t{1000};
      std::vector<SampleOf<kSymbols>> symbols(count);
      const u64 start = random() % 70;
      const u64 position = DecodeOneByOne<kSymbols>(rows, stream, start, symbols);
      Fenced frame(stream);
      BitReader reader = {frame.data(), start, 0, frame.size()};
      Guarded out(count * sizeof symbols[0], 0xEE);
      auto* const begin = reinterpret_cast<SampleOf<kSymbols>*>(out.data());
      SymbolRun<kSymbols> run = {begin, kStepBeforeRun};
      const u64 middle = start + (position - start) * (30 + round % 50) / 100;
      if (GetFromTwo(reader, rows, run, begin + count, middle, stream.size()).meets) ++met;
      if (run.out - begin > static_cast<std::ptrdiff_t>(count) * 3 / 5) ++halfway;
      ASSERT_LE(run.out, begin + count);
      GetLastSymbols(reader, rows, run, begin + count);
      ASSERT_EQ(std::memcmp(out.data(), symbols.data(), out.size()), 0) << round;
      ASSERT_EQ(reader.position, position);
      ASSERT_TRUE(out.MarksIntact());
    }
    EXPECT_GT(met, kRounds * 4 / 5);
    EXPECT_GT(halfway, kRounds / 2);
  });
}

// Frames that end soon behind the second cursor.
TEST(TwoCursors, LoadNothingThatIsNotReadable) {
  CallForAll([](const auto& rows) {
    using Sample = std::remove_cvref_t<decltype(rows.codes->encode)>;
    constexpr int kSymbols = static_cast<int>(std::tuple_size_v<Sample>);
    std::mt19937 random(kSymbols + rows.pattern.length);
    for (u32 round = 0; round < 100; ++round) {
      const u64 middle = 1000 + random() % 200;
      const std::vector<u8> bytes = MakeStream(rows, static_cast<Stream>(round % kStreams),
                                               middle / 8 + 1 + kReadableBehind + random() % 60, random);
      std::vector<SampleOf<kSymbols>> out(3000, 7);
      Fenced frame(bytes);
      const u64 start = random() % 70;
      BitReader reader = {frame.data(), start, 0, frame.size()};
      SymbolRun<kSymbols> run = {out.data(), kStepBeforeRun};
      GetFromTwo(reader, rows, run, out.data() + out.size(), middle, frame.size());
      std::vector<SampleOf<kSymbols>> symbols(static_cast<std::size_t>(run.out - out.data()));
      const u64 position = DecodeOneByOne<kSymbols>(rows, bytes, start, symbols);
      ASSERT_TRUE(std::equal(symbols.begin(), symbols.end(), out.begin())) << round;
      const bool inLongCode = StateOfStep(run.step) >= rows.pattern.length;
      ASSERT_EQ(reader.position, position + (inLongCode ? kFirstBitsOfLong : 0)) << round;
      ASSERT_EQ(StateOfStep(run.step) % rows.pattern.length, symbols.size() % rows.pattern.length);
    }
  });
}

// Pairs of symbols 1, which have five bits, 00110. From another bit of one the second cursor never comes upon a place
// that the first one has.
std::vector<u8> StreamOfOnes() {
  std::vector<u8> stream;
  while (stream.size() < 4000) stream.insert(stream.end(), {0x31, 0x8C, 0x63, 0x18, 0xC6});
  return stream;
}

TEST(TwoCursors, ThatDoNotMeetLeaveTheRunToTheFirst) {
  const RowCodes<256>& rows = RowCodesOfLayout<YCbCr8bw422, Scan::p>();
  std::vector<u8> symbols(8000);
  const std::vector<u8> stream = StreamOfOnes();
  const u64 position = DecodeOneByOne<256>(rows, stream, 0, symbols);
  ASSERT_EQ(symbols, std::vector<u8>(8000, 1));
  ASSERT_EQ(position, 20000u);
  Fenced frame(stream);
  for (u64 middle = 10000; middle < 10005; ++middle) {
    BitReader reader = {frame.data(), 0, 0, frame.size()};
    Guarded out(symbols.size(), 0xEE);
    SymbolRun<256> run = {out.data(), kStepBeforeRun};
    const Meeting meeting = GetFromTwo(reader, rows, run, out.data() + out.size(), middle, stream.size());
    EXPECT_EQ(meeting.meets, middle == 10000) << middle;
    GetLastSymbols(reader, rows, run, out.data() + out.size());
    ASSERT_EQ(std::memcmp(out.data(), symbols.data(), out.size()), 0) << middle;
    ASSERT_EQ(reader.position, position);
  }
}

// Runs that are not met are left to one cursor for a while, each time a longer one.
TEST(TwoCursors, PauseWhereTheyDoNotMeet) {
  const RowCodes<256>& rows = RowCodesOfLayout<YCbCr8bw422, Scan::p>();
  const std::vector<u8> stream = StreamOfOnes();
  std::vector<u8> symbols(8000);
  const u64 position = DecodeOneByOne<256>(rows, stream, 0, symbols);
  // The middle is at a whole pair, or one bit behind it.
  RunGuess guess = {position + 2, 0, symbols.size(), 0, 3};
  BitReader reader = {stream.data(), 0, 0, stream.size()};
  SymbolRun<256> run = {symbols.data(), kStepBeforeRun};
  TryFromTwo(reader, rows, run, symbols.data() + symbols.size(), 30000, guess);
  EXPECT_EQ(guess.pause, 7u);
  for (u32 left = 6; left < 7; --left) {
    reader.position = 0;
    run = {symbols.data(), kStepBeforeRun};
    TryFromTwo(reader, rows, run, symbols.data() + symbols.size(), 30000, guess);
    EXPECT_EQ(guess.pause, left);
    EXPECT_EQ(run.out, symbols.data());
  }
  guess.bits = position;
  TryFromTwo(reader, rows, run, symbols.data() + symbols.size(), 30000, guess);
  EXPECT_EQ(guess.pause, 0u);
  EXPECT_GT(run.out, symbols.data() + 4000);
}

// In flat rows the first cursor soon is where it has to go, wherever the second began.
TEST(TwoCursors, DoNotPauseBecauseOfZeros) {
  const RowCodes<256>& rows = RowCodesOfLayout<YCbCr8bw422, Scan::p>();
  const std::vector<u8> stream(4000, 0);
  for (u64 bits = 16000; bits < 16008; ++bits) {
    std::vector<u8> symbols(8000, 7);
    RunGuess guess = {bits, 0, symbols.size(), 0, 3};
    BitReader reader = {stream.data(), 0, 0, stream.size()};
    SymbolRun<256> run = {symbols.data(), kStepBeforeRun};
    TryFromTwo(reader, rows, run, symbols.data() + symbols.size(), 30000, guess);
    EXPECT_EQ(guess.pause, 0u) << bits;
    EXPECT_GT(run.out, symbols.data() + 7900) << bits;
    EXPECT_EQ(reader.position, static_cast<u64>(run.out - symbols.data()) * 2) << bits;
    EXPECT_TRUE(std::all_of(symbols.data(), run.out, [](u8 symbol) { return symbol == 0; })) << bits;
  }
}

// Of a row with little besides zeros one cursor is enough.
TEST(TwoCursors, AreNotForZeros) {
  const RowCodes<256>& rows = RowCodesOfLayout<YCbCr8bw422, Scan::p>();
  const std::vector<u8> stream(4000, 0);
  std::vector<u8> symbols(8000);
  BitReader reader = {stream.data(), 0, 0, stream.size()};
  RunGuess guess;
  GetSymbols<NativeWindow, 256>(reader, rows, symbols.data(), symbols.size(), 30000, guess);
  EXPECT_EQ(guess.bits, 16000u);
  EXPECT_GT(guess.zeroBits, 15000u);
  EXPECT_LE(guess.zeroBits, guess.bits);
  reader.position = 0;
  SymbolRun<256> run = {symbols.data(), kStepBeforeRun};
  TryFromTwo(reader, rows, run, symbols.data() + symbols.size(), 30000, guess);
  EXPECT_EQ(run.out, symbols.data());
}

TEST(TwoCursors, GuessThatTheNextRunIsLikeTheLast) {
  const RowCodes<256>& rows = RowCodesOfLayout<RGB8bf, Scan::i>();
  std::mt19937 random(3);
  const std::vector<u8> stream = MakeStream(rows, Stream::noise, 4000, random);
  std::vector<u8> symbols(900);
  const u64 position = DecodeOneByOne<256>(rows, stream, 17, symbols);
  BitReader reader = {stream.data(), 17, 0, stream.size()};
  RunGuess guess;
  GetSymbols<NativeWindow, 256>(reader, rows, symbols.data(), symbols.size(), 0, guess);
  EXPECT_EQ(guess.bits, position - 17);
  EXPECT_EQ(guess.symbols, symbols.size());
}

}  // namespace
}  // namespace vorel
