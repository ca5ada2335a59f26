// Rows rebuilt as lanes of a vector, against one sample after another.
#include "codec422/pair_rebuild.h"

#include <gtest/gtest.h>

#include <random>

#include "tests/core/guarded.h"

namespace vorel {
namespace {

int FloorShift(int value, int by) {
  return value >= 0 ? value >> by : -((-value + (1 << by) - 1) >> by);
}

int Read(u8 byte, bool isSigned) {
  return isSigned && byte >= 128 ? byte - 256 : byte;
}

// A later row of a progressive frame from its symbols, sample by sample.
std::vector<u8> RebuildPlainly(const std::vector<u8>& above, const std::vector<u8>& symbols, bool isSigned) {
  std::vector<u8> row(symbols.size());
  for (std::size_t i = 0; i < row.size(); ++i) {
    const bool luma = i % 2 == 0;
    const std::size_t distance = luma ? 2 : 4;
    const bool sign = isSigned && !luma;
    const int top = Read(above[i], sign);
    const int left = i < distance ? top : Read(row[i - distance], sign);
    const int topLeft = i < distance ? top : Read(above[i - distance], sign);
    const int prediction =
        luma ? FloorShift(3 * (left + top) - 2 * topLeft, 2) : top + FloorShift(left - topLeft, 1);
    row[i] = static_cast<u8>(prediction + symbols[i]);
  }
  return row;
}

std::vector<u8> Random(std::size_t count, std::mt19937& random) {
  std::vector<u8> bytes(count);
  for (u8& byte : bytes) byte = static_cast<u8>(random() % 4 == 0 ? random() : random() % 5 - 2);
  return bytes;
}

// All pieces of a band. What a piece tells to be rebuilt must not change any more.
template <ChromaSign Sign>
void RebuildAll(PairBand band) {
  std::array<std::vector<u8>, kBandRows> taken;
  for (std::size_t done = 0; done < band.pairs;) {
    const std::size_t rebuilt = RebuildPiece<Sign>(band);
    ASSERT_GT(rebuilt, done);
    ASSERT_LE(rebuilt, band.pairs);
    for (u32 r = 0; r < kBandRows; ++r)
      taken[r].insert(taken[r].end(), band.rows[r] + 4 * done, band.rows[r] + 4 * rebuilt);
    done = rebuilt;
  }
  for (u32 r = 0; r < kBandRows; ++r)
    ASSERT_TRUE(std::equal(taken[r].begin(), taken[r].end(), band.rows[r])) << band.pairs << ' ' << r;
}

template <ChromaSign Sign>
void CompareBands() {
  std::mt19937 random(11);
  std::vector<std::size_t> widths = {255, 256, 257, 270, 271, 272, 273, 300, 529, 1000};
  for (std::size_t pairs = 1; pairs <= 70; ++pairs) widths.push_back(pairs);
  for (const std::size_t pairs : widths) {
    for (const bool anyRaw : {false, true}) {
      const u32 rawRows = anyRaw ? static_cast<u32>(random() & ((1u << kBandRows) - 1)) : 0;
      const std::vector<u8> above = Random(4 * pairs, random);
      std::vector<std::vector<u8>> expected;
      const std::size_t pitch = kBandFrontPadding + 4 * pairs + kBandBackPadding;
      Guarded block(pitch * (kBandRows + 1), 0xE7);
      std::array<u8*, kBandRows> rows;
      std::copy(above.begin(), above.end(), block.data() + kBandFrontPadding);
      for (u32 r = 0; r < kBandRows; ++r) {
        const std::vector<u8> symbols = Random(4 * pairs, random);
        rows[r] = block.data() + (r + 1) * pitch + kBandFrontPadding;
        std::copy(symbols.begin(), symbols.end(), rows[r]);
        const bool raw = (rawRows >> r & 1) != 0;
        const bool isSigned = Sign == ChromaSign::isSigned;
        expected.push_back(raw ? symbols
                               : RebuildPlainly(r == 0 ? above : expected[r - 1], symbols, isSigned));
      }
      RebuildAll<Sign>({block.data() + kBandFrontPadding, rows.data(), pairs, rawRows});
      for (u32 r = 0; r < kBandRows; ++r) {
        ASSERT_EQ(std::vector<u8>(rows[r], rows[r] + 4 * pairs), expected[r]) << pairs << " pairs, row " << r;
      }
      ASSERT_TRUE(block.MarksIntact());
    }
  }
}

// Rows of one colour, but for a few symbols and a few pairs above.
template <ChromaSign Sign>
void CompareFlatBands() {
  std::mt19937 random(17);
  u32 flat = 0;
  for (u32 round = 0; round < 4000; ++round) {
    const std::size_t pairs = 200 + random() % 200;
    std::vector<u8> above(4 * pairs);
    for (std::size_t i = 0; i < above.size(); ++i)
      above[i] = static_cast<u8>(std::array{200, 130, round % 7 == 6 ? 201 : 200, 5}[i % 4]);
    if (round % 8 == 0) above[random() % above.size()] ^= 1;
    // Another chroma above the pair before a place where groups that are looked at together begin, which the
    // first row has not.
    const std::size_t chromaBefore = 4 * (kBandRows + 64) - (round % 8 == 3 ? 1 : 3);
    if (round % 4 == 3) ++above[chromaBefore];
    // A step in one component there.
    if (round % 7 == 5) {
      for (std::size_t i = 4 * (kBandRows + 64) + round % 4; i < above.size(); i += 4) above[i] ^= 1;
    }
    const std::size_t pitch = kBandFrontPadding + 4 * pairs + kBandBackPadding;
    Guarded block(pitch * (kBandRows + 1), 0xE7);
    std::copy(above.begin(), above.end(), block.data() + kBandFrontPadding);
    std::array<u8*, kBandRows> rows;
    std::vector<std::vector<u8>> expected;
    std::vector<u8> rowAbove = above;
    const u32 rowBefore = static_cast<u32>(random() % kBandRows);
    for (u32 r = 0; r < kBandRows; ++r) {
      std::vector<u8> symbols(4 * pairs, 0);
      if (round % 4 == 3 && r == 0) symbols[chromaBefore] = 255;
      // Little things just before such a place, in one row.
      if (round % 4 == 2 && r == rowBefore) {
        for (u32 i = 0; i < 1 + round % 3; ++i)
          symbols[4 * (kBandRows + 64 - r) - 1 - random() % 12] = static_cast<u8>(random() % 7 - 3);
      }
      if (round % 4 == 1 && random() % kBandRows == 0) symbols[random() % symbols.size()] = 3;
      rows[r] = block.data() + (r + 1) * pitch + kBandFrontPadding;
      std::copy(symbols.begin(), symbols.end(), rows[r]);
      rowAbove = RebuildPlainly(rowAbove, symbols, Sign == ChromaSign::isSigned);
      expected.push_back(rowAbove);
    }
    if (std::equal(above.begin() + 4, above.end(), above.begin())) ++flat;
    RebuildAll<Sign>({block.data() + kBandFrontPadding, rows.data(), pairs, 0});
    for (u32 r = 0; r < kBandRows; ++r) {
      ASSERT_EQ(std::vector<u8>(rows[r], rows[r] + 4 * pairs), expected[r])
          << pairs << " pairs, row " << r << ", round " << round;
    }
    ASSERT_TRUE(block.MarksIntact());
  }
  EXPECT_GT(flat, 100u);
}

TEST(RebuildBand, FlatPartsEqualSampleBySample) {
  CompareFlatBands<ChromaSign::isSigned>();
  CompareFlatBands<ChromaSign::isUnsigned>();
}

TEST(RebuildBand, SignedChromaEqualsSampleBySample) {
  CompareBands<ChromaSign::isSigned>();
}
TEST(RebuildBand, UnsignedChromaEqualsSampleBySample) {
  CompareBands<ChromaSign::isUnsigned>();
}

template <ChromaSign Sign>
void CompareRowsInPieces() {
  std::mt19937 random(12);
  for (std::size_t pairs = 1; pairs <= 40; ++pairs) {
    const std::vector<u8> above = Random(4 * pairs, random);
    const std::vector<u8> symbols = Random(4 * pairs, random);
    const std::vector<u8> expected = RebuildPlainly(above, symbols, Sign == ChromaSign::isSigned);
    for (std::size_t piece = 1; piece <= 7; piece += 3) {
      std::vector<u8> store = above;
      std::vector<u8> row = symbols;
      PairNeighbours neighbours{};
      for (std::size_t pair = 0; pair < pairs; pair += piece) {
        const std::size_t count = std::min(piece, pairs - pair);
        RebuildRow<Sign>(store.data() + 4 * pair, row.data() + 4 * pair, count, pair == 0, neighbours);
      }
      ASSERT_EQ(row, expected) << pairs;
      ASSERT_EQ(store, expected) << pairs;
    }
  }
}

TEST(RebuildRow, InPiecesOfAnyLength) {
  CompareRowsInPieces<ChromaSign::isSigned>();
  CompareRowsInPieces<ChromaSign::isUnsigned>();
}

TEST(RebuildLeftOnly, SumsEachComponentFromItsStart) {
  std::mt19937 random(13);
  for (std::size_t pairs = 1; pairs <= 40; ++pairs) {
    const std::vector<u8> symbols = Random(4 * pairs, random);
    const PairStart start = {static_cast<u8>(random()), static_cast<u8>(random()), static_cast<u8>(random())};
    std::vector<u8> expected(symbols.size());
    for (std::size_t i = 0; i < symbols.size(); ++i) {
      const std::size_t distance = i % 2 == 0 ? 2 : 4;
      const u8 first = i % 4 == 1 ? start.cb : i % 4 == 3 ? start.cr : start.luma;
      expected[i] = static_cast<u8>(symbols[i] + (i < distance ? first : expected[i - distance]));
    }
    std::vector<u8> row = symbols;
    const PairStart next = RebuildLeftOnly(row.data(), pairs, start);
    EXPECT_EQ(row, expected) << pairs;
    EXPECT_EQ(next.luma, expected[4 * pairs - 2]);
    EXPECT_EQ(next.cb, expected[4 * pairs - 3]);
    EXPECT_EQ(next.cr, expected[4 * pairs - 1]);
  }
}

}  // namespace
}  // namespace vorel
