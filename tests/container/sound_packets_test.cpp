// Sizes of sound samples as sound descriptions of all versions imply them.
#include "container/sound_packets.h"

#include <gtest/gtest.h>

#include "base/problem.h"
#include "tests/container/hand_movie.h"

namespace vorel::container {
namespace {

Blob Description(const Blob& format, u32 version, u32 channels, u32 bits, const Blob& more = "") {
  return Atom(format,
              Zeros(6) + Be16(1) + Be16(version) + Zeros(6) + Be16(channels) + Be16(bits) + Zeros(8) + more);
}

// "bytes/samples", or "unknown".
std::string Size(const Blob& descriptions) {
  const AtomView table = {
      0, 0, reinterpret_cast<const u8*>(descriptions.data()), descriptions.size(), 0, "stsd", "a"};
  const std::optional<ImpliedSampleSize> size = SoundPacketSize(ChildAtoms(table));
  return size ? std::to_string(size->bytes) + "/" + std::to_string(size->samples) : "unknown";
}

TEST(SoundPackets, UncompressedSoundTakesItsBitsOnEachChannel) {
  EXPECT_EQ(Size(Description("twos", 0, 2, 16)), "4/1");
  EXPECT_EQ(Size(Description("sowt", 0, 1, 16)), "2/1");
  EXPECT_EQ(Size(Description("raw ", 0, 1, 8)), "1/1");
  EXPECT_EQ(Size(Description("NONE", 0, 6, 8)), "6/1");
}

TEST(SoundPackets, SomeFormatsHaveASizeOfTheirOwnWhateverTheBitsSay) {
  EXPECT_EQ(Size(Description("in24", 0, 2, 16)), "6/1");
  EXPECT_EQ(Size(Description("in32", 0, 2, 16)), "8/1");
  EXPECT_EQ(Size(Description("fl32", 0, 1, 16)), "4/1");
  EXPECT_EQ(Size(Description("fl64", 0, 1, 16)), "8/1");
  EXPECT_EQ(Size(Description("ulaw", 0, 2, 16)), "2/1");
  EXPECT_EQ(Size(Description("alaw", 0, 2, 16)), "2/1");
  EXPECT_EQ(Size(Description("ima4", 0, 2, 16)), "68/64");
  EXPECT_EQ(Size(Description("MAC3", 0, 2, 8)), "4/6");
  EXPECT_EQ(Size(Description("MAC6", 0, 1, 8)), "1/6");
}

TEST(SoundPackets, VersionOneTellsPackets) {
  // Samples per packet, bytes of one channel's packet, bytes of all channels' packets, bytes per sample.
  EXPECT_EQ(Size(Description("xyzw", 1, 2, 16, Be32(160) + Be32(33) + Be32(66) + Be32(2))), "66/160");
  EXPECT_EQ(Size(Description("twos", 1, 2, 16, Zeros(16))), "4/1");
}

TEST(SoundPackets, VersionTwoTellsPackets) {
  // Size, rate (8), channels, constant, bits, flags, bytes per packet, samples per packet.
  const Blob fields = Be32(72) + Zeros(8) + Be32(2) + Be32(0x7F000000) + Be32(24) + Be32(12);
  EXPECT_EQ(Size(Description("lpcm", 2, 3, 16, fields + Be32(6) + Be32(1))), "6/1");
  EXPECT_EQ(Size(Description("lpcm", 2, 3, 16, fields + Be32(0) + Be32(0))), "unknown");
}

TEST(SoundPackets, UnknownOrDifferentDescriptionsTellNothing) {
  EXPECT_EQ(Size(""), "unknown");
  EXPECT_EQ(Size(Description("QDM2", 0, 2, 16)), "unknown");
  EXPECT_EQ(Size(Description("twos", 0, 0, 16)), "unknown");
  EXPECT_EQ(Size(Description("twos", 0, 2, 16) + Description("sowt", 0, 2, 16)), "4/1");
  EXPECT_EQ(Size(Description("twos", 0, 2, 16) + Description("twos", 0, 1, 16)), "unknown");
  EXPECT_EQ(Size(Description("twos", 0, 2, 16) + Description("QDM2", 0, 2, 16)), "unknown");
}

TEST(SoundPackets, ShortDescriptionIsRefused) {
  EXPECT_THROW(Size(Atom("twos", Zeros(8))), Problem);
  EXPECT_THROW(Size(Description("xyzw", 1, 2, 16, Zeros(8))), Problem);
}

}  // namespace
}  // namespace vorel::container
