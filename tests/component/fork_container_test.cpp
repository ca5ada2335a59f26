// Forks behind a library: the bytes of the whole, and directories that are damaged or made by others.
#include <gtest/gtest.h>

#include "base/problem.h"
#include "component/resources/resource_fork.h"
#include "tests/component/hand_bytes.h"

namespace vorel::component {
namespace {

Bytes Signature() {
  return Hex("6D6B517569636B54696D65AA");
}

std::string ProblemOf(const Bytes& file) {
  try {
    FindFork(file.data(), file.size(), "a.dll");
  } catch (const Problem& problem) {
    EXPECT_EQ(problem.where, "a.dll");
    EXPECT_FALSE(problem.advice.empty());
    return problem.what;
  }
  return "no problem";
}

TEST(ForkContainer, IsWrittenByteForByte) {
  const Bytes image = Hex("4D5A900003");
  const Bytes fork = Hex("0A0B0C");
  const Bytes expected = Join({image, fork, Bytes(456), Bytes(12), Hex("64617461 00000000 00000005"),
                               Hex("72737263 00000005 00000003"), Signature()});
  ASSERT_EQ(expected.size(), 512u);
  EXPECT_EQ(AppendFork(image, fork, "a.dll"), expected);
}

TEST(ForkContainer, FillsAWholeBlockWhenNothingIsMissing) {
  // 460 + 4 + 48 is 512.
  EXPECT_EQ(AppendFork(Bytes(460), Bytes(4), "a.dll").size(), 1024u);
  EXPECT_EQ(AppendFork(Bytes(459), Bytes(4), "a.dll").size(), 512u);
  EXPECT_EQ(AppendFork(Bytes(461), Bytes(4), "a.dll").size(), 1024u);
}

TEST(ForkContainer, FindsWhatWasAppended) {
  for (std::size_t bytes = 0; bytes < 1100; ++bytes) {
    const Bytes file = AppendFork(Bytes(bytes, 0x90), Bytes(7, 0x11), "a.dll");
    const ForkPlace place = FindFork(file.data(), file.size(), "a.dll");
    EXPECT_EQ(place.offset, bytes);
    EXPECT_EQ(place.bytes, 7u);
  }
}

TEST(ForkContainer, RefusesASecondFork) {
  const Bytes file = AppendFork(Bytes(10), Bytes(3), "a.dll");
  EXPECT_THROW(AppendFork(file, Bytes(3), "a.dll"), Problem);
}

TEST(ForkContainer, OrderOfEntriesAndOthersBetweenThemDoNotMatter) {
  const Bytes file =
      Join({Hex("0102030405060708090A0B0C0D0E"), Hex("72737263 00000002 00000004"),
            Hex("78787878 FFFFFFFF FFFFFFFF"), Hex("64617461 00000000 00000002"), Signature()});
  const ForkPlace place = FindFork(file.data(), file.size(), "a.dll");
  EXPECT_EQ(place.offset, 2u);
  EXPECT_EQ(place.bytes, 4u);
}

TEST(ForkContainer, FilesWithoutSignatureAreRefused) {
  const char* const what = "the file carries no resource fork: its last 12 bytes are not the signature";
  EXPECT_EQ(ProblemOf({}), what);
  EXPECT_EQ(ProblemOf(Bytes(11)), what);
  EXPECT_EQ(ProblemOf(Join({AppendFork(Bytes(10), Bytes(3), "a"), Bytes(1)})), what);
}

TEST(ForkContainer, DirectoriesWithoutAForkAreRefused) {
  const char* const what = "the directory of the file names no resource fork";
  EXPECT_EQ(ProblemOf(Signature()), what);
  EXPECT_EQ(ProblemOf(Join({Bytes(100, 0x61), Signature()})), what);
  // A zero entry ends the directory.
  EXPECT_EQ(ProblemOf(Join({Hex("72737263 00000000 00000000"), Bytes(12), Signature()})), what);
}

TEST(ForkContainer, AForkBeyondTheDirectoryIsRefused) {
  const Bytes front = Bytes(4);
  EXPECT_EQ(ProblemOf(Join({front, Hex("72737263 00000000 00000005"), Signature()})),
            "the resource fork, 5 bytes at 0, reaches beyond the directory of the file");
  EXPECT_EQ(ProblemOf(Join({front, Hex("72737263 FFFFFFFF FFFFFFFF"), Signature()})),
            "the resource fork, 4294967295 bytes at 4294967295, reaches beyond the directory of the file");
  EXPECT_EQ(ProblemOf(Join({front, Hex("72737263 00000000 00000004"), Signature()})), "no problem");
}

}  // namespace
}  // namespace vorel::component
