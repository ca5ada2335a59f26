// Writer and reader of the bit string, for windows of 64 and of 32 bits.
#include <gtest/gtest.h>

#include <random>

#include "entropy/bit_reader.h"
#include "entropy/bit_writer.h"
#include "tests/core/guarded.h"

namespace vorel {
namespace {

// A code as it stands in a table: `word` is right-aligned.
u32 Entry(u32 length, u32 word) {
  return length << 24 | word << (16 - length);
}

template <typename Window>
class Writer : public testing::Test {
 public:
  BitWriter<Window> Open(StreamCursor cursor) {
    return OpenWriter<Window>(bytes.data(), cursor, bytes.size());
  }
  u32 WordAt(std::size_t index) { return LoadBig32(bytes.data() + 4 * index); }
  std::vector<u8> bytes = std::vector<u8>(64, 0xDD);
};
using Windows = testing::Types<u64, u32>;
TYPED_TEST_SUITE(Writer, Windows);

TYPED_TEST(Writer, CodeAcrossAWordBoundaryLeavesItsRestAtTheTopOfTheNextWord) {
  auto writer = this->Open({0, 0});
  for (int i = 0; i < 17; ++i) PutBits(writer, TypeParam{0}, 1);
  PutCode(writer, Entry(16, 0x8001));
  EXPECT_EQ(WrittenBits(writer), 33u);
  EXPECT_EQ(CloseWriter(writer), 33u);
  EXPECT_EQ(this->WordAt(0), 0x4000u);  // bit 17 is the first of the code, its last one has gone on
  EXPECT_EQ(this->WordAt(1), 0x80000000u);
  EXPECT_EQ(this->WordAt(2), 0xDDDDDDDDu);
}

TYPED_TEST(Writer, CodeEndingAtAWordBoundaryLeavesNothingAndTheNextOneDoesNotReadTheBuffer) {
  auto writer = this->Open({0, 0});
  PutCode(writer, Entry(16, 0x1234));
  PutCode(writer, Entry(16, 0xABCD));
  EXPECT_EQ(WrittenBits(writer), 32u);
  EXPECT_EQ(writer.fill, 0u);
  EXPECT_EQ(this->WordAt(0), 0x1234ABCDu);
  PutCode(writer, Entry(1, 0));
  CloseWriter(writer);
  EXPECT_EQ(this->WordAt(1), 0u);
}

TYPED_TEST(Writer, OpenedAtBit0ItDoesNotReadTheBuffer) {
  auto writer = this->Open({1, 0});
  EXPECT_EQ(writer.fill, 0u);
  PutBits(writer, TypeParam{1}, 1);
  CloseWriter(writer);
  EXPECT_EQ(this->WordAt(0), 0xDDDDDDDDu);
  EXPECT_EQ(this->WordAt(1), 0x80000000u);
}

TYPED_TEST(Writer, OpenedElsewhereItKeepsExactlyTheBitsBefore) {
  for (u32 bit = 1; bit < 32; ++bit) {
    std::fill(this->bytes.begin(), this->bytes.end(), u8{0xFF});
    auto writer = this->Open({2, bit});
    CloseWriter(writer);
    EXPECT_EQ(this->WordAt(1), 0xFFFFFFFFu);
    EXPECT_EQ(this->WordAt(2), 0xFFFFFFFFu << (32 - bit)) << bit;
    EXPECT_EQ(this->WordAt(3), 0xFFFFFFFFu);
  }
}

TYPED_TEST(Writer, RowHeaderAtBit31FillsTheWord) {
  auto writer = this->Open({0, 31});
  PutBits(writer, TypeParam{1}, 1);
  EXPECT_EQ(WrittenBits(writer), 32u);
  PutBits(writer, TypeParam{1}, 1);
  CloseWriter(writer);
  EXPECT_EQ(this->WordAt(0), 0xDDDDDDDDu | 1u);
  EXPECT_EQ(this->WordAt(1), 0x80000000u);
}

TYPED_TEST(Writer, WordAtBit0LeavesNothing) {
  auto writer = this->Open({0, 0});
  PutWord(writer, 0xCAFEBABE);
  EXPECT_EQ(writer.fill, 0u);
  EXPECT_EQ(this->WordAt(0), 0xCAFEBABEu);
}

TYPED_TEST(Writer, CloseAtAWordBoundaryStoresAZeroWord) {
  auto writer = this->Open({0, 0});
  PutWord(writer, 0xFFFFFFFF);
  EXPECT_EQ(CloseWriter(writer), 32u);
  EXPECT_EQ(this->WordAt(1), 0u);
  EXPECT_EQ(this->WordAt(2), 0xDDDDDDDDu);
}

TYPED_TEST(Writer, NothingIsStoredAtOrBehindTheLimit) {
  for (const u64 limit : {0u, 1u, 4u, 7u, 8u}) {
    Guarded frame(static_cast<std::size_t>(limit), 0x11);
    auto writer = OpenWriter<TypeParam>(frame.data(), {0, 0}, limit);
    for (int i = 0; i < 9; ++i) PutWord(writer, 0xFFFFFFFF);
    EXPECT_FALSE(HasRoom(writer, 1));
    EXPECT_EQ(CloseWriter(writer), 288u);
    EXPECT_TRUE(frame.MarksIntact()) << limit;
  }
}

TYPED_TEST(Writer, FastAndCarefulPutsAgree) {
  std::mt19937 random(7);
  std::vector<u8> other(4096, 0xDD);
  std::vector<u8> bytes(4096, 0xDD);
  auto fast = OpenWriter<TypeParam>(bytes.data(), {3, 5}, bytes.size());
  auto careful = OpenWriter<TypeParam>(other.data(), {3, 5}, other.size());
  for (int i = 0; i < 500; ++i) {
    const u32 count = 1 + static_cast<u32>(random() % kMostBitsPerPut<TypeParam>);
    const TypeParam bits = static_cast<TypeParam>((u64{random()} << 32 | random()) & ((u64{1} << count) - 1));
    PutBitsFast(fast, bits, count);
    PutBits(careful, bits, count);
    ASSERT_EQ(WrittenBits(fast), WrittenBits(careful));
  }
  CloseWriter(fast);
  const u64 end = CloseWriter(careful);
  const std::size_t words = static_cast<std::size_t>(end / 32 + 1) * 4;
  EXPECT_EQ(std::vector<u8>(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(words)),
            std::vector<u8>(other.begin(), other.begin() + static_cast<std::ptrdiff_t>(words)));
}

TEST(Cursors, EntryIsFoldedAndCountedTwice) {
  EXPECT_EQ(Fold({5, 37}).word, 6u);
  EXPECT_EQ(Fold({5, 37}).bit, 5u);
  EXPECT_EQ(Fold({0, 0xFFFFFFFFu}).word, 0x07FFFFFFu);
  EXPECT_EQ(ReturnedCursor(0, 7 * 32).word, 7u);
  EXPECT_EQ(ReturnedCursor(5, 7 * 32 + 3).word, 12u);
  EXPECT_EQ(ReturnedCursor(5, 7 * 32 + 3).bit, 3u);
}

TEST(Cursors, RecordedSizeCountsWholeBytes) {
  EXPECT_EQ(RecordedFrameBytes({5, 0}), 20u);
  EXPECT_EQ(RecordedFrameBytes({5, 1}), 21u);
  EXPECT_EQ(RecordedFrameBytes({10, 14}), 42u);
  EXPECT_EQ(RecordedFrameBytes({10, 18}), 43u);
}

TEST(Reader, RowHeaderInTheLastBitOfAWord) {
  const std::vector<u8> bytes = {0, 0, 0, 1, 0x80, 0, 0, 0};
  BitReader reader = OpenReader(bytes.data(), {0, 31}, 0, bytes.size());
  EXPECT_EQ(GetBit(reader), 1u);
  EXPECT_EQ(reader.position, 32u);
  EXPECT_EQ(GetBit(reader), 1u);
  EXPECT_EQ(GetBit(reader), 0u);
}

TEST(Reader, WordsAtEveryShift) {
  const std::vector<u8> bytes = {0x01, 0x23, 0x45, 0x67, 0x89, 0xAB, 0xCD, 0xEF, 0, 0, 0, 0};
  for (u32 shift = 0; shift <= 32; ++shift) {
    BitReader reader = OpenReader(bytes.data(), Fold({0, shift}), 0, bytes.size());
    EXPECT_EQ(GetWord(reader), static_cast<u32>(0x0123456789ABCDEFu << shift >> 32)) << shift;
    EXPECT_EQ(reader.position, shift + 32);
  }
}

TEST(Reader, BitsBehindTheEndAreZeroAndNotLoaded) {
  Fenced bytes({0xFF, 0xFF, 0xFF});
  BitReader reader = OpenReader(bytes.data(), {0, 4}, 0, bytes.size());
  EXPECT_EQ(GetWord(reader), 0xFFFFF000u);
  EXPECT_EQ(GetWord(reader), 0u);
  reader.position = ~u64{0} - 100;
  EXPECT_EQ(GetWord(reader), 0u);
}

TEST(Reader, BytesBeforeTheReadableOnesAreZeroAndNotLoaded) {
  const std::vector<u8> bytes = {0xFF, 0xFF, 0xFF, 0xFF, 0xAA, 0xBB};
  BitReader reader = OpenReader(bytes.data(), {0, 0}, 3, bytes.size());
  EXPECT_EQ(GetWord(reader), 0x000000FFu);
  EXPECT_EQ(GetWord(reader), 0xAABB0000u);
}

TEST(Reader, TheWordThatHoldsTheNextBitMustEndBeforeTheLimit) {
  const u8 byte = 0;
  BitReader reader = OpenReader(&byte, {0, 0}, 0, 1);
  reader.position = 31;
  EXPECT_FALSE(IsPastLimit(reader, 4));
  EXPECT_TRUE(IsPastLimit(reader, 3));
  reader.position = 32;  // the word behind is the current one now
  EXPECT_TRUE(IsPastLimit(reader, 7));
  EXPECT_FALSE(IsPastLimit(reader, 8));
}

}  // namespace
}  // namespace vorel
