// Every routine against the plain reference coder: the same frames, pictures, cursors and statuses, and
// nothing else touched.
#include <gtest/gtest.h>

#include "frame/frame_bounds.h"
#include "frame/stream_cursor.h"
#include "tests/core/guarded.h"
#include "tests/reference/code_lengths.h"
#include "vorel/vorel.h"

namespace vorel {
namespace {

struct Setting {
  u32 width;
  u32 height;
  i32 rowBytes;
  u32 word;
  u32 bit;
  bool interlaced;
};

std::ostream& operator<<(std::ostream& out, const Setting& s) {
  return out << s.width << " x " << s.height << ", row bytes " << s.rowBytes << ", cursor " << s.word << '/'
             << s.bit << (s.interlaced ? " i" : " p");
}

u32 EncodeWith(const Setting& s, const u8* picture, u32& word, u32& bit, u8* frame) {
  const auto routine = s.interlaced ? VorelYCbCr8bw422iFromyuvuEncode : VorelYCbCr8bw422pFromyuvuEncode;
  return routine(s.width, s.height, s.rowBytes, picture, &word, &bit, reinterpret_cast<u32*>(frame));
}

u32 DecodeWith(const Setting& s, u8* picture, u32& word, u32& bit, const u8* frame, u8* scratch) {
  const u32* words = reinterpret_cast<const u32*>(frame);
  if (s.interlaced)
    return VorelYCbCr8bw422iToyuvuDecode(s.width, s.height, s.rowBytes, picture, &word, &bit, words);
  return VorelYCbCr8bw422pToyuvuDecode(s.width, s.height, s.rowBytes, picture, &word, &bit, words, scratch);
}

// Encodes with both coders into frames that already hold `lead` everywhere; then decodes the frame again.
void CompareEncoders(const Setting& s, const reference::Picture& rows) {
  const StreamCursor folded = Fold({s.word, s.bit});
  const u64 bound = MaxFrameBytes(YCbCr8bw422, s.width, s.height);
  constexpr u8 kLead = 0xA7;
  reference::Bits before = BytesToBits(std::vector<u8>(std::size_t{folded.word} * 4 + 4, kLead));
  before.resize(BitPosition(folded));
  const auto expected = reference::EncodeWide(rows, s.interlaced, s.width, before, folded.word, bound);

  const std::vector<u8> pictureBytes = RowsToBytes(rows, s.rowBytes, 0x99);
  Guarded picture(pictureBytes.size(), 0);
  std::copy(pictureBytes.begin(), pictureBytes.end(), picture.data());
  Guarded frame(std::size_t{folded.word} * 4 + bound, kLead);
  u32 word = s.word;
  u32 bit = s.bit;
  ASSERT_EQ(EncodeWith(s, picture.data(), word, bit, frame.data()), expected.status) << s;
  ASSERT_EQ(word, s.word + expected.bits.size() / 32) << s;
  ASSERT_EQ(bit, expected.bits.size() % 32) << s;
  ASSERT_TRUE(frame.MarksIntact()) << s;
  ASSERT_TRUE(picture.MarksIntact()) << s;
  std::vector<u8> words = BitsToWords(expected.bits);
  if (expected.status != 0) words.resize(std::min(words.size(), frame.size() & ~std::size_t{3}));
  ASSERT_EQ(std::vector<u8>(frame.data(), frame.data() + words.size()), words) << s;
  if (expected.status != 0) return;

  Guarded readable(frame.size() + 8, 0);
  std::copy_n(frame.data(), words.size(), readable.data());
  Guarded copy(picture.size(), 0x3C);
  Guarded scratch(std::size_t{UnitsPerRow(YCbCr8bw422, s.width)} * 4 + 12, 0x11);
  u32 wordAgain = s.word;
  u32 bitAgain = s.bit;
  ASSERT_EQ(DecodeWith(s, copy.data(), wordAgain, bitAgain, readable.data(), scratch.data()), 0u) << s;
  ASSERT_EQ(wordAgain, word) << s;
  ASSERT_EQ(bitAgain, bit) << s;
  const std::vector<u8> expectedCopy = RowsToBytes(rows, s.rowBytes, 0x3C);
  ASSERT_EQ(std::vector<u8>(copy.data(), copy.data() + copy.size()), expectedCopy) << s;
  ASSERT_TRUE(copy.MarksIntact() && scratch.MarksIntact()) << s;
}

i32 RowLength(u32 width, u32 padding) {
  return static_cast<i32>((width + 1) / 2 * 4 + 4 * padding);
}

TEST(Twin, EncodersAndDecodersOnAllSmallSizes) {
  const u32 cursors[][2] = {{5, 0}, {0, 1}, {5, 31}, {5, 37}};
  u32 seed = 1;
  for (u32 width = 1; width <= 67; ++width) {
    for (u32 height = 1; height <= 5; ++height) {
      for (const bool interlaced : {false, true}) {
        const Kind kind = static_cast<Kind>(seed % 5);
        const auto& cursor = cursors[seed / 5 % 4];
        const i32 length = RowLength(width, seed % 3);
        const Setting setting = {width,     height,    seed % 2 == 0 ? length : -length,
                                 cursor[0], cursor[1], interlaced};
        CompareEncoders(setting, MakePicture(kind, width, height, seed));
        if (testing::Test::HasFatalFailure()) return;
        ++seed;
      }
    }
  }
}

TEST(Twin, EveryKindOfPictureAtTheEdgesOfStripsAndBands) {
  u32 seed = 1000;
  for (const u32 width : {63u, 64u, 65u, 127u, 128u, 129u, 131u}) {
    for (const u32 height : {1u, 2u, 7u, 8u, 9u, 10u, 16u, 17u, 18u}) {
      for (const Kind kind : {Kind::flat, Kind::ramp, Kind::photo, Kind::noise, Kind::edges}) {
        for (const bool interlaced : {false, true}) {
          ++seed;
          CompareEncoders({width, height, RowLength(width, 0), 5, seed % 70, interlaced},
                          MakePicture(kind, width, height, seed));
          if (testing::Test::HasFatalFailure()) return;
        }
      }
    }
  }
}

// Rows of noise among rows that predict well: raw and predicted rows follow each other in one band.
TEST(Twin, RawRowsBetweenPredictedOnes) {
  for (u32 seed = 1; seed <= 40; ++seed) {
    const u32 width = 20 + seed;
    reference::Picture rows = MakePicture(Kind::photo, width, 20, seed);
    const reference::Picture noise = MakePicture(Kind::noise, width, 20, seed + 500);
    std::mt19937 random(seed);
    for (std::size_t y = 0; y < rows.size(); ++y) {
      if (random() % 3 == 0) rows[y] = noise[y];
    }
    CompareEncoders({width, 20, RowLength(width, 1), 5, seed, seed % 2 == 0}, rows);
    if (testing::Test::HasFatalFailure()) return;
  }
}

// Beyond 4,096 pixels bands have fewer rows, and from some width on rows are decoded in pieces.
TEST(Twin, WidePictures) {
  for (const u32 width : {4095u, 4096u, 4097u, 4700u, 6000u, 9000u, 12001u, 12400u, 18000u, 37000u}) {
    for (const bool interlaced : {false, true}) {
      reference::Picture rows = MakePicture(Kind::photo, width, 12, width);
      rows[3] = MakePicture(Kind::noise, width, 1, width)[0];
      CompareEncoders({width, 12, RowLength(width, 0), 5, 0, interlaced}, rows);
      if (testing::Test::HasFatalFailure()) return;
    }
  }
}

// Any bits decode: to the picture, cursors and status of the reference coder. Rows behind a failure keep what
// they held.
TEST(Twin, DecodersOnArbitraryBits) {
  u32 ended[5] = {};
  for (u32 seed = 1; seed <= 600; ++seed) {
    std::mt19937 random(seed);
    const u32 width = 1 + static_cast<u32>(random() % 90);
    const u32 height = 1 + static_cast<u32>(random() % 20);
    const bool interlaced = random() % 2 == 0;
    const i32 length = RowLength(width, static_cast<u32>(random() % 2));
    const Setting s = {
        width, height, random() % 2 == 0 ? length : -length, 5, static_cast<u32>(random() % 33), interlaced};
    const StreamCursor folded = Fold({s.word, s.bit});
    const u64 bound = MaxFrameBytes(YCbCr8bw422, width, height);
    // Codes of up to 16 bits and one row beyond the bound.
    std::vector<u8> stream(std::size_t{folded.word} * 4 + bound + std::size_t{width + 1} * 8 + 64);
    if (random() % 2 == 0) {
      for (u8& byte : stream) byte = static_cast<u8>(random());
    } else {
      // Rows of residuals of any size: long codes, which lead past the frame bound.
      const reference::Code a =
          reference::MakeCode(interlaced ? reference::kWideInterlacedA : reference::kWideProgressiveA);
      const reference::Code b =
          reference::MakeCode(interlaced ? reference::kWideInterlacedB : reference::kWideProgressiveB);
      reference::Bits bits(BitPosition(folded));
      for (u32 i = 0; bits.size() < stream.size() * 8; ++i) {
        if (i % (width + width % 2) == 0) bits.push_back(false);
        for (const reference::Code* code : {&a, &b}) {
          for (const char bit : code->words[random() % 256]) bits.push_back(bit == '1');
        }
      }
      stream = BitsToWords(bits);
    }
    stream.resize(stream.size() & ~std::size_t{3});
    const auto expected = reference::DecodeWide(BytesToBits(stream), BitPosition(folded), interlaced, width,
                                                height, folded.word, bound);
    reference::Picture rows = expected.picture;
    Guarded picture(static_cast<std::size_t>(std::abs(s.rowBytes)) * height, 0x3C);
    std::vector<u8> expectedBytes(picture.size(), 0x3C);
    for (std::size_t y = 0; y < rows.size(); ++y) {
      const std::size_t line = s.rowBytes < 0 ? height - 1 - y : y;
      std::copy(rows[y].begin(), rows[y].end(),
                expectedBytes.begin() +
                    static_cast<std::ptrdiff_t>(line * static_cast<std::size_t>(std::abs(s.rowBytes))));
    }
    Guarded frame(stream.size(), 0);
    std::copy(stream.begin(), stream.end(), frame.data());
    Guarded scratch(std::size_t{UnitsPerRow(YCbCr8bw422, width)} * 4 + 12, 0x11);
    u32 word = s.word;
    u32 bit = s.bit;
    ASSERT_EQ(DecodeWith(s, picture.data(), word, bit, frame.data(), scratch.data()), expected.status)
        << seed << ": " << s;
    ASSERT_EQ(word, s.word + expected.position / 32) << seed;
    ASSERT_EQ(bit, expected.position % 32) << seed;
    ASSERT_EQ(std::vector<u8>(picture.data(), picture.data() + picture.size()), expectedBytes)
        << seed << ": " << s;
    ASSERT_TRUE(picture.MarksIntact() && scratch.MarksIntact()) << seed;
    ++ended[expected.status];
  }
  EXPECT_GT(ended[0], 50u);
  EXPECT_GT(ended[4], 50u);
}

}  // namespace
}  // namespace vorel
