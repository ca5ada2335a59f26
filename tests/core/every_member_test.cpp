// Every routine of the catalogue against the reference coder: the same frames, pictures, cursors and
// statuses, whole frames and damaged ones, and nothing else touched.
#include <gtest/gtest.h>

#include <map>
#include <set>

#include "tests/core/guarded.h"
#include "tests/core/member_walk.h"
#include "vorel/vorel.h"

namespace vorel {
namespace {

// ---- Encoders

using Pixels = std::vector<std::vector<u8>>;

std::string CompareEncoderOn(const Pixels& pixels, const Member& member, const Setting& s, Seen& seen) {
  const Arguments& a = s.arguments;
  Random random = StartRandom(s.seed + 1);
  Guarded picture(Distance(a) * a.height, 0);
  for (std::size_t i = 0; i < picture.size(); ++i) picture.data()[i] = static_cast<u8>(random());
  reference::Rows rows;
  for (std::size_t y = 0; y < a.height; ++y) {
    std::copy(pixels[y].begin(), pixels[y].end(), picture.data() + RowAt(a, y));
    rows.push_back(reference::FetchRow(member.layout, member.pixel, static_cast<int>(a.standard),
                                       pixels[y].data(), a.width));
  }
  const std::vector<u8> source(picture.data(), picture.data() + picture.size());

  const u64 bound = reference::FrameBound(member.layout, a.width, a.height);
  const std::size_t firstByte = FirstBit(a) / 32 * 4;
  Guarded frame(firstByte + bound, 0);
  for (std::size_t i = 0; i < frame.size(); ++i) frame.data()[i] = static_cast<u8>(random());
  reference::Bits lead = BytesToBits({frame.data(), frame.data() + firstByte + 4});
  lead.resize(FirstBit(a));
  const reference::EncodedFrame expected =
      reference::EncodeFrame(member.layout, member.scan, rows, a.width, lead, bound);
  ++seen.status[expected.status];
  for (const bool raw : expected.raw) ++(raw ? seen.raw : seen.predicted);

  Arguments after = a;
  const u32 status = CallEncoder(*member.routine, after, picture.data(), frame.data());
  std::string what = Differs("status", status, expected.status);
  if (what.empty()) what = CursorsDiffer(a, after, expected.bits.size());
  std::vector<u8> words = BitsToWords(expected.bits);
  // Behind a failure only the words inside the bound are there.
  if (expected.status != 0) words.resize(std::min(words.size(), frame.size() & ~std::size_t{3}));
  if (words.size() > frame.size()) what = "the model passes the bound";
  if (what.empty()) what = DiffersAt("frame", frame.data(), words);
  if (what.empty()) what = DiffersAt("source", picture.data(), source);
  if (what.empty() && !(frame.MarksIntact() && picture.MarksIntact())) what = "bytes outside are touched";
  return what;
}

std::string CompareEncoder(const Member& member, const Setting& s, Seen& seen) {
  const Arguments& a = s.arguments;
  return CompareEncoderOn(PaintPixels(member.pixel, a.width, a.height, s.paint, s.seed), member, s, seen);
}

// As rows are judged by whole words, predicted rows may be longer than raw ones. In a narrow and tall
// picture, of rows that lead farthest of some, they creep past the frame bound.
std::string CompareCreepingEncoder(const Member& member, const Setting& s, Seen& seen) {
  Setting tall = s;
  Arguments& a = tall.arguments;
  a.width = 1 + s.seed / 64 % 6;
  a.height = 60;
  a.rowBytes = static_cast<i32>((reference::RowBytes(member.pixel, a.width) + 3) / 4 * 4);
  Pixels pixels(a.height);
  reference::Rows rows(a.height);
  std::size_t fill = a.bit % 32;  // of the word in which the row begins
  for (u32 y = 0; y < a.height; ++y) {
    std::size_t farthest = 0;
    for (u32 i = 0; i < 8; ++i) {
      const std::vector<u8> row =
          PaintPixels(member.pixel, a.width, 1, Paint::mixed, s.seed + 100 * y + i)[0];
      const reference::RowSamples samples =
          reference::FetchRow(member.layout, member.pixel, static_cast<int>(a.standard), row.data(), a.width);
      const reference::RowSamples* above = y == 0 ? nullptr : &rows[y - 1];
      reference::Bits bits(fill);
      reference::AppendRow(member.layout, member.scan, above, samples, false, bits);
      if (!reference::PredictedRowStays(member.layout, a.width, fill, bits.size())) {
        bits.resize(fill);
        reference::AppendRow(member.layout, member.scan, above, samples, true, bits);
      }
      if (bits.size() <= farthest) continue;
      farthest = bits.size();
      pixels[y] = row;
      rows[y] = samples;
    }
    fill = farthest % 32;
  }
  return CompareEncoderOn(pixels, member, tall, seen);
}

// ---- Decoders

// A frame in memory that ends at a fence. Its first word is aligned: up to three bytes of it may lie before
// the readable ones, and read as zeros.
struct Loan {
  Fenced memory;
  std::size_t before;
  explicit Loan(const std::vector<u8>& bytes) : memory(bytes), before((4 - bytes.size() % 4) % 4) {}
  u8* Frame() { return memory.data() - before; }
};

// Exactly `readable` is lent, and bits behind it are zero; `exported` calls the routine of the public header,
// for which two words follow the coded bits.
std::string CompareDecoder(const Member& member, const Setting& s, const std::vector<u8>& readable,
                           bool exported, Seen& seen) {
  const Arguments& a = s.arguments;
  Loan loan(readable);
  std::vector<u8> bytes(loan.before, 0);
  bytes.insert(bytes.end(), readable.begin(), readable.end());
  const u64 bound = reference::FrameBound(member.layout, a.width, a.height);
  const reference::DecodedFrame expected = reference::DecodeFrame(
      member.layout, member.scan, BytesToBits(bytes), FirstBit(a), a.width, a.height, bound);
  ++seen.status[expected.status];

  Random random = StartRandom(s.seed + 2);
  Guarded picture(Distance(a) * a.height, 0);
  for (std::size_t i = 0; i < picture.size(); ++i) picture.data()[i] = static_cast<u8>(random());
  std::vector<u8> copy(picture.data(), picture.data() + picture.size());
  for (std::size_t y = 0; y < expected.rows.size(); ++y) {
    reference::StoreRow(member.layout, member.pixel, static_cast<int>(a.standard), expected.rows[y], a.width,
                        copy.data() + RowAt(a, y));
  }

  Guarded scratch(VorelScratchBytes(a.width), 0x77);
  Arguments after = a;
  const u32 status = exported
                         ? CallDecoder(*member.routine, after, picture.data(), loan.Frame(), scratch.data())
                         : CallBounded(*member.routine, after, picture.data(), loan.Frame(), scratch.data(),
                                       loan.before, loan.before + readable.size());
  std::string what = Differs("status", status, expected.status);
  if (what.empty()) what = CursorsDiffer(a, after, expected.position);
  if (what.empty()) what = DiffersAt("picture", picture.data(), copy);
  if (what.empty() && !picture.MarksIntact()) what = "bytes around the picture are touched";
  if (what.empty() && !scratch.MarksIntact()) what = "bytes around the scratch are touched";
  return what;
}

// Rows in any form, whatever an encoder would choose.
reference::Bits MakeFrame(const Member& member, const Setting& s, u32 rawEvery) {
  const Arguments& a = s.arguments;
  Random random = StartRandom(s.seed + 3);
  reference::Bits bits(FirstBit(a));
  for (std::size_t i = 0; i < bits.size(); ++i) bits[i] = random() % 2 == 0;
  const reference::Rows rows = PaintFrame(member.layout, a.width, a.height, s.paint, s.seed);
  for (std::size_t y = 0; y < rows.size(); ++y) {
    const bool raw = rawEvery != 0 && random() % rawEvery == 0;
    reference::AppendRow(member.layout, member.scan, y == 0 ? nullptr : &rows[y - 1], rows[y], raw, bits);
  }
  return bits;
}

std::string CompareWholeFrame(const Member& member, const Setting& s, Seen& seen) {
  const reference::Bits bits = MakeFrame(member, s, 3);
  std::vector<u8> bytes = BitsToWords(bits);
  const bool exported = s.seed % 2 == 0;
  if (exported) {
    bytes.resize(((bits.size() - 1) / 32 + 1) * 4);
    for (int i = 0; i < 8; ++i) bytes.push_back(0xE7);
  } else {
    bytes.resize((bits.size() + 7) / 8);
  }
  return CompareDecoder(member, s, bytes, exported, seen);
}

std::string CompareDamagedFrame(const Member& member, const Setting& s, Seen& seen) {
  Random random = StartRandom(s.seed + 4);
  std::vector<u8> bytes;
  const u32 damage = static_cast<u32>(random() % 4);
  if (damage == 0) {
    bytes.resize(random() % (FirstBit(s.arguments) / 8 + s.arguments.width * s.arguments.height * 6 + 64));
    for (u8& byte : bytes) byte = static_cast<u8>(random());
  } else {
    // Codes longer than raw rows, cut or with a few bits turned.
    Setting noise = s;
    noise.paint = damage == 1 ? Paint::noise : s.paint;
    bytes = BitsToWords(MakeFrame(member, noise, damage == 1 ? 0 : 4));
    if (damage == 2) bytes.resize(random() % bytes.size());
    if (damage == 3)
      for (int i = 0; i < 5; ++i) bytes[random() % bytes.size()] ^= static_cast<u8>(1u << random() % 8);
  }
  return CompareDecoder(member, s, bytes, false, seen);
}

TEST(EveryMember, EncodersWriteTheFramesOfTheModel) {
  Seen seen = {};
  Walk(Direction::encode, 384, 24, CompareEncoder, seen);
  EXPECT_GT(seen.raw, 3000u);
  EXPECT_GT(seen.predicted, 3000u);
}

TEST(EveryMember, EncodersStopAtTheFrameBoundAndStoreNothingBehindIt) {
  Seen seen = {};
  Walk(Direction::encode, 384, 1, CompareCreepingEncoder, seen);
  EXPECT_GT(seen.status[0], 100u);
  EXPECT_GT(seen.status[1], 100u);
}

TEST(EveryMember, DecodersGiveThePicturesOfTheModel) {
  Seen seen = {};
  Walk(Direction::decode, 698, 16, CompareWholeFrame, seen);
  EXPECT_GT(seen.status[0], 5000u);
}

// Bands whose strips are of one colour, next to others and to strips with a single speck.
TEST(EveryMember, DecodersGiveThePatchesOfTheModel) {
  const std::vector<Member> members = AllMembers(Direction::decode);
  Seen seen = {};
  for (std::size_t m = 0; m < members.size(); m += 3) {
    const Member& member = members[m];
    if (member.scan != 'p') continue;
    const u32 width = 500 + static_cast<u32>(m % 90);
    const i32 rowBytes = static_cast<i32>((reference::RowBytes(member.pixel, width) + 3) / 4 * 4);
    const Setting s = {
        {width, 57, rowBytes, static_cast<u32>(m % 3), 5, 0}, Paint::patches, static_cast<u32>(m)};
    const std::vector<u8> frame = BitsToWords(MakeFrame(member, s, m % 4 == 0 ? 40 : 0));
    ASSERT_EQ(CompareDecoder(member, s, frame, false, seen), "") << member.name << ": " << s;
  }
  EXPECT_GT(seen.status[0], 100u);
}

TEST(EveryMember, DecodersOfDamagedFramesStayInsideAndGiveTheRowsOfTheModel) {
  Seen seen = {};
  Walk(Direction::decode, 698, 16, CompareDamagedFrame, seen);
  EXPECT_GT(seen.status[0], 3000u);
  EXPECT_GT(seen.status[4], 1000u);
}

// Dropped alpha costs its codes all the same.
TEST(EveryMember, FramesWithAlphaEndAtTheSameBitForAllPixelFormats) {
  std::map<std::string, std::set<u64>> ends;
  std::map<std::string, int> members;
  for (const Member& member : AllMembers(Direction::decode)) {
    const std::string frameFormat = member.layout + member.scan;
    if (member.layout.find('A') == std::string::npos) continue;
    const Setting s = {{37, 3, 8 * 40, 0, 5, 0}, Paint::mixed, 7};
    const std::vector<u8> frame = BitsToWords(MakeFrame(member, s, 3));
    Guarded picture(Distance(s.arguments) * 3, 0);
    Guarded scratch(VorelScratchBytes(37), 0);
    Loan loan(frame);
    Arguments after = s.arguments;
    ASSERT_EQ(
        CallBounded(*member.routine, after, picture.data(), loan.Frame(), scratch.data(), 0, frame.size()),
        0u);
    ends[frameFormat].insert(FirstBit(after));
    ++members[frameFormat];
  }
  ASSERT_EQ(ends.size(), 14u);
  for (const auto& [frameFormat, positions] : ends) {
    EXPECT_EQ(positions.size(), 1u) << frameFormat;
    EXPECT_GT(members[frameFormat], 20) << frameFormat;
  }
}

}  // namespace
}  // namespace vorel
