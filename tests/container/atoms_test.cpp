// Sizes and names of atoms, the messages about damaged ones, and the fields of payloads.
#include "container/atoms.h"

#include <gtest/gtest.h>

#include "tests/container/hand_movie.h"

namespace vorel::container {
namespace {

AtomView ViewOf(const Blob& payload) {
  return {0x6D6F6F76, 8, reinterpret_cast<const u8*>(payload.data()), payload.size(), 100, "moov", "a.mov"};
}

Problem ProblemOfChildren(const Blob& payload) {
  try {
    ChildAtoms(ViewOf(payload));
  } catch (const Problem& problem) {
    return problem;
  }
  return {"no problem", "", ""};
}

TEST(Atoms, CodesReadAsText) {
  EXPECT_EQ(CodeText(0x6D6F6F76), "moov");
  EXPECT_EQ(CodeText(0x71742020), "qt  ");
  EXPECT_EQ(CodeText(1), "0x00000001");
  EXPECT_EQ(CodeText(0x6D6F6F0A), "0x6D6F6F0A");
  EXPECT_EQ(CodeText(0xA96E616D), "\xC2\xA9nam");
}

TEST(Atoms, ChildrenOfAllThreeSizes) {
  const Blob payload = Atom("abcd", "12") + WideAtom("efgh", "345") + OpenAtomToEnd("ijkl", "6789");
  const std::vector<AtomView> children = ChildAtoms(ViewOf(payload));
  ASSERT_EQ(children.size(), 3u);
  EXPECT_EQ(children[0].type, 0x61626364u);
  EXPECT_EQ(children[0].payloadBytes, 2u);
  EXPECT_EQ(children[0].offset, 108u);
  EXPECT_EQ(children[0].path, "moov/abcd");
  EXPECT_EQ(children[1].headerBytes, 16u);
  EXPECT_EQ(children[1].payloadBytes, 3u);
  EXPECT_EQ(children[1].offset, 118u);
  EXPECT_EQ(children[1].payload[0], '3');
  EXPECT_EQ(children[2].payloadBytes, 4u);
  EXPECT_EQ(children[2].offset, 137u);
}

TEST(Atoms, ZeroWordsEndAList) {
  EXPECT_EQ(ChildAtoms(ViewOf(Atom("abcd", "") + Be32(0))).size(), 1u);
  EXPECT_EQ(ChildAtoms(ViewOf(Atom("abcd", "") + Zeros(20))).size(), 1u);
}

TEST(Atoms, SizeBeyondTheEnclosingAtom) {
  const Problem problem = ProblemOfChildren(Atom("abcd", "12") + Be32(9) + "efgh");
  EXPECT_EQ(problem.what, "the atom says 9 bytes, but only 8 are left in what holds it");
  EXPECT_EQ(problem.where, "a.mov: moov/efgh at 118");
}

TEST(Atoms, SizeBelowTheHeader) {
  EXPECT_EQ(ProblemOfChildren(Be32(7) + "abcd").what, "the atom says 7 bytes, less than its own header");
  EXPECT_EQ(ProblemOfChildren(Be32(1) + "abcd" + Be64(15)).what,
            "the atom says 15 bytes, less than its own header");
}

TEST(Atoms, SixtyFourBitSizeThatIsCutOffOrHuge) {
  EXPECT_EQ(ProblemOfChildren(Be32(1) + "abcd" + Be32(0)).what,
            "the atom's 64-bit size reaches beyond the end of what holds it");
  EXPECT_EQ(ProblemOfChildren(Be32(1) + "abcd" + Be64(~u64{0})).what,
            "the atom says 18446744073709551615 bytes, but only 16 are left in what holds it");
}

TEST(Atoms, RestTooShortForAnAtom) {
  const Problem problem = ProblemOfChildren("abc");
  EXPECT_EQ(problem.what, "an atom needs 8 bytes, but only 3 are left");
  EXPECT_EQ(problem.where, "a.mov: moov/? at 108");
}

TEST(Atoms, MoreAtomsThanAnyListHas) {
  Blob payload;
  for (int i = 0; i < 65537; ++i) payload += Atom("free", "");
  EXPECT_EQ(ProblemOfChildren(payload).what, "the atom holds too many atoms");
}

TEST(Atoms, FieldsAreBigEndianAndEndWithThePayload) {
  const Blob payload("\x01\x02\x03\x04\x05\x06\x07\x08\x09\x0A\x0B\x0C\x0D\x0E\x0F\x10\x11", 17);
  const AtomView atom = ViewOf(payload);
  FieldReader fields = ReadFields(atom);
  EXPECT_EQ(Read8(fields), 0x01u);
  EXPECT_EQ(Read16(fields), 0x0203u);
  EXPECT_EQ(Read32(fields), 0x04050607u);
  EXPECT_EQ(Read64(fields), 0x08090A0B0C0D0E0Fu);
  EXPECT_EQ(BytesLeft(fields), 2u);
  try {
    Read32(fields);
    FAIL();
  } catch (const Problem& problem) {
    EXPECT_EQ(problem.where, "a.mov: moov at 100");
    EXPECT_EQ(problem.what,
              "the atom is too short: 4 bytes are expected behind its first 15, but it has only 2 more");
  }
}

TEST(Atoms, UnknownVersionIsRefused) {
  const Blob payload = Be32(0x02000000);
  const AtomView atom = ViewOf(payload);
  FieldReader fields = ReadFields(atom);
  EXPECT_THROW(ReadVersion(fields, 1), Problem);
}

}  // namespace
}  // namespace vorel::container
