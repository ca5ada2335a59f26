// Forks against bytes written down by hand, and forks that are damaged in every way.
#include "component/resources/resource_fork.h"

#include <gtest/gtest.h>

#include "base/problem.h"
#include "tests/component/hand_bytes.h"

namespace vorel::component {
namespace {

constexpr u32 kString = 0x53545220;  // 'STR '
constexpr u32 kIcon = 0x69636C38;    // 'icl8'

std::vector<Resource> Three() {
  return {
      {kString, 128, 0, "", Hex("03616263")}, {kIcon, -1, 0, "", {}}, {kString, 129, 0x20, "n", Hex("00")}};
}

const char* const kHeader = "00000100 00000111 00000011 00000054";
const char* const kData =
    "00000004 03616263"
    "00000000"
    "00000001 00";
const char* const kMap =
    "00000000000000000000000000000000 00000000 0000 0000 001C 0052"
    "0001"
    "53545220 0001 0012"
    "69636C38 0000 002A"
    "0080 FFFF 00 000000 00000000"
    "0081 0000 20 00000C 00000000"
    "FFFF FFFF 00 000008 00000000"
    "016E";

Bytes GoldenFork() {
  return Join({Hex(kHeader), Bytes(240), Hex(kData), Hex(kMap)});
}

std::vector<Resource> Read(const Bytes& fork) {
  return ReadFork(fork.data(), fork.size(), "a.rsrc");
}

std::string ProblemOf(const Bytes& fork) {
  try {
    Read(fork);
  } catch (const Problem& problem) {
    EXPECT_EQ(problem.where, "a.rsrc");
    EXPECT_FALSE(problem.advice.empty());
    return problem.what;
  }
  return "no problem";
}

// The golden fork with bytes of its map replaced.
Bytes WithMap(std::size_t at, const char* digits) {
  Bytes fork = GoldenFork();
  const Bytes replaced = Hex(digits);
  std::copy(replaced.begin(), replaced.end(), fork.begin() + static_cast<std::ptrdiff_t>(256 + 17 + at));
  return fork;
}

TEST(ResourceFork, IsWrittenByteForByte) {
  EXPECT_EQ(WriteFork(Three()), GoldenFork());
}

TEST(ResourceFork, IsReadInTheOrderOfItsData) {
  EXPECT_EQ(Read(GoldenFork()), Three());
}

TEST(ResourceFork, WithoutResources) {
  const Bytes fork =
      Join({Hex("00000100 00000100 00000000 0000001E"), Bytes(240), Bytes(24), Hex("001C 001E FFFF")});
  EXPECT_EQ(WriteFork({}), fork);
  EXPECT_TRUE(Read(fork).empty());
}

TEST(ResourceFork, FindsByTypeAndId) {
  const std::vector<Resource> three = Three();
  EXPECT_EQ(FindResource(three, kString, 129), &three[2]);
  EXPECT_EQ(FindResource(three, kIcon, 129), nullptr);
}

TEST(ResourceFork, RefusesToWriteAnIdTwice) {
  std::vector<Resource> resources = Three();
  resources[2].id = 128;
  EXPECT_THROW(WriteFork(resources), Problem);
  resources[2].type = 0x53545221;
  EXPECT_NO_THROW(WriteFork(resources));
}

TEST(ResourceFork, RefusesToWriteSixteenMegabytes) {
  EXPECT_THROW(WriteFork({{kString, 1, 0, "", Bytes((1 << 24) - 4)}}), Problem);
  const Bytes most = WriteFork({{kString, 1, 0, "", Bytes((1 << 24) - 5)}});
  EXPECT_EQ(Read(most).at(0).bytes.size(), (1u << 24) - 5);
}

TEST(ResourceFork, RefusesToWriteAMapOfMoreThan64Kilobytes) {
  std::vector<Resource> resources;
  for (i16 id = 0; id < 5458; ++id) resources.push_back({kString, id});
  EXPECT_EQ(Read(WriteFork(resources)).size(), 5458u);  // a map of 65534 bytes
  resources.push_back({kString, -1});
  EXPECT_THROW(WriteFork(resources), Problem);
}

TEST(ResourceFork, RefusesToWriteNamesThatDoNotFit) {
  std::vector<Resource> resources = Three();
  resources[0].name = std::string(256, 'a');
  EXPECT_THROW(WriteFork(resources), Problem);
}

TEST(ResourceFork, CutAnywhereIsRefused) {
  const Bytes fork = GoldenFork();
  for (std::size_t bytes = 0; bytes < fork.size(); ++bytes) {
    const Bytes cut(fork.begin(), fork.begin() + static_cast<std::ptrdiff_t>(bytes));
    EXPECT_NE(ProblemOf(cut), "no problem") << bytes;
  }
}

TEST(ResourceFork, NoDamagedByteReadsBeyondTheFork) {
  const Bytes fork = GoldenFork();
  int refused = 0;
  for (std::size_t at = 0; at < fork.size(); ++at) {
    for (const u8 value : {u8{0}, u8{1}, u8{0x7F}, u8{0x80}, u8{0xFF}}) {
      Bytes damaged = fork;
      damaged[at] = value;
      damaged.shrink_to_fit();
      refused += ProblemOf(damaged) != "no problem";
    }
  }
  EXPECT_GT(refused, 100);
}

TEST(ResourceFork, DataBeyondItsAreaIsRefused) {
  EXPECT_EQ(ProblemOf(WithMap(51, "00000E")), "4 bytes at 14 of the data area are beyond its 17 bytes");
  Bytes fork = GoldenFork();
  fork[256 + 12 + 3] = 2;  // length of the last resource
  EXPECT_EQ(ProblemOf(fork), "2 bytes at 16 of the data area are beyond its 17 bytes");
}

TEST(ResourceFork, ReferencesBeyondTheMapAreRefused) {
  EXPECT_EQ(ProblemOf(WithMap(42, "0001")), "2 bytes at 84 of the map are beyond its 84 bytes");
  EXPECT_EQ(ProblemOf(WithMap(36, "FFFF")), "2 bytes at 65563 of the map are beyond its 84 bytes");
}

TEST(ResourceFork, OverlappingResourcesAreRefused) {
  EXPECT_EQ(ProblemOf(WithMap(75, "000009")), "the resources 'icl8' -1 and 'STR ' 129 overlap");
}

TEST(ResourceFork, NamesBeyondTheMapAreRefused) {
  EXPECT_EQ(ProblemOf(WithMap(60, "0002")), "1 bytes at 84 of the map are beyond its 84 bytes");
  EXPECT_EQ(ProblemOf(WithMap(82, "02")), "2 bytes at 83 of the map are beyond its 84 bytes");
}

TEST(ResourceFork, AnIdThatStandsTwiceIsRefused) {
  EXPECT_EQ(ProblemOf(WithMap(58, "0080")), "the resource 'STR ' 128 stands twice");
}

TEST(ResourceFork, TypesThatShareAListAreRefusedBeforeTheyFillTheMemory) {
  // 1000 types, each with the same 1000 references to an empty resource.
  Bytes list = Hex("001C 1F5E 03E7");
  for (int type = 0; type < 1000; ++type) {
    list = Join({list, Hex("41414141 03E7 1F42")});
  }
  for (int id = 0; id < 1000; ++id) list = Join({list, Hex("0001 FFFF 00 000000 00000000")});
  const Bytes map = Join({Bytes(24), list});
  Bytes header = Hex("00000100 00000104 00000004");
  for (int shift = 24; shift >= 0; shift -= 8) header.push_back(static_cast<u8>(map.size() >> shift));
  EXPECT_EQ(ProblemOf(Join({header, Bytes(240), Bytes(4), map})),
            "the resources share bytes of the data area");
}

}  // namespace
}  // namespace vorel::component
