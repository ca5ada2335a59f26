// Lines and blocks of bytes from memory and files.
#include "picture_io/byte_input.h"

#include <gtest/gtest.h>

#include "tests/picture_io/problem_text.h"

namespace vorel::picture_io {

namespace {

// Gives a single byte at each call, as a slow pipe may.
ByteInput Trickle(const std::string& text) {
  ByteInput input;
  input.name = "trickle";
  input.read = [text, taken = std::size_t{0}](u8* bytes, std::size_t size) mutable -> std::size_t {
    if (taken == text.size() || size == 0) return 0;
    bytes[0] = static_cast<u8>(text[taken++]);
    return 1;
  };
  return input;
}

std::string Taken(ByteInput& input, std::size_t size) {
  std::vector<u8> bytes;
  ReadBytes(input, size, bytes);
  return {bytes.begin(), bytes.end()};
}

}  // namespace

TEST(ByteInput, LinesAndBlocksFollowEachOtherWithoutLoss) {
  ByteInput input = Trickle("head\nabcdefgh\n\nrest");
  EXPECT_EQ(ReadLine(input, 100)->text, "head");
  EXPECT_EQ(Taken(input, 3), "abc");
  EXPECT_EQ(input.position, 8u);
  EXPECT_EQ(ReadLine(input, 100)->text, "defgh");
  const std::optional<Line> empty = ReadLine(input, 100);
  ASSERT_TRUE(empty);
  EXPECT_TRUE(empty->complete);
  EXPECT_EQ(empty->text, "");
  EXPECT_EQ(Taken(input, 100), "rest");
  EXPECT_EQ(input.position, 19u);
}

TEST(ByteInput, EndOfInputIsNoLine) {
  ByteInput input = Trickle("a\n");
  EXPECT_TRUE(ReadLine(input, 100));
  EXPECT_FALSE(ReadLine(input, 100));
}

TEST(ByteInput, LineThatTheEndCutsOffIsIncomplete) {
  ByteInput input = Trickle("abc");
  const std::optional<Line> line = ReadLine(input, 100);
  ASSERT_TRUE(line);
  EXPECT_EQ(line->text, "abc");
  EXPECT_FALSE(line->complete);
}

TEST(ByteInput, LineBeyondTheLimitIsCutThere) {
  ByteInput input = Trickle("abcdefgh\n");
  const std::optional<Line> line = ReadLine(input, 4);
  ASSERT_TRUE(line);
  EXPECT_EQ(line->text, "abcd");
  EXPECT_FALSE(line->complete);
  EXPECT_EQ(input.position, 4u);
}

TEST(ByteInput, ClaimOfManyBytesTakesNoMemoryBeforeTheyArrive) {
  ByteInput input = Trickle("abc");
  std::vector<u8> bytes;
  ReadBytes(input, std::size_t{1} << 40, bytes);
  EXPECT_EQ(bytes.size(), 3u);
  EXPECT_LT(bytes.capacity(), std::size_t{1} << 24);
}

TEST(ByteInput, LargeBlockArrivesWhole) {
  std::vector<u8> all(std::size_t{20} << 20);
  for (std::size_t i = 0; i < all.size(); ++i) all[i] = static_cast<u8>(i * 2654435761u >> 24);
  ByteInput input = ByteInputOf(all, "memory");
  std::vector<u8> bytes;
  ReadBytes(input, all.size(), bytes);
  EXPECT_EQ(bytes, all);
}

TEST(ByteInput, SmallerBlockLeavesNothingOfALargerOneBefore) {
  ByteInput input = Trickle("abcdefgh");
  std::vector<u8> bytes;
  ReadBytes(input, 5, bytes);
  ReadBytes(input, 2, bytes);
  EXPECT_EQ(bytes, (std::vector<u8>{'f', 'g'}));
}

TEST(ByteInput, MissingFileAndFolderAreNamed) {
  EXPECT_EQ(ProblemText([] { OpenByteInput("/nowhere/a.y4m"); }),
            "/nowhere/a.y4m: cannot open: No such file or directory ()");
  EXPECT_EQ(ProblemText([] { OpenByteInput("/tmp"); }),
            "/tmp: cannot read: it is a folder (name the files in it)");
}

}  // namespace vorel::picture_io
