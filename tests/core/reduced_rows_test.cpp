// The decoder of interlaced 8bv 4:2:2 frames whose rows have lost low bits: against its model, and by hand.
// In class A of this code 0 is 000, in class B 0 is 0.
#include "tests/reference/reduced_rows.h"
#include "tests/core/hand_coded.h"
#include "tests/core/painted_rows.h"

namespace vorel {
namespace {

struct Reduced {
  u32 status;
  u64 position;
  PictureRows rows;
  bool operator==(const Reduced&) const = default;
};

std::size_t BoundOf(u32 width, u32 height) {
  return VorelMaxFrameBytes(YCbCr8bv422.tags[1], width, height);
}

// Streams begin at bit 0. Behind the bits there are zeros, as far as a damaged frame may be read.
Reduced Decode(const reference::Bits& bits, u32 width, u32 height) {
  std::vector<u8> frame = BitsToWords(bits);
  frame.resize(std::max(frame.size(), BoundOf(width, height)) / 4 * 4 + std::size_t{width + 1} * 8 + 16);
  const std::size_t rowBytes = std::size_t{(width + 1) / 2} * 4;
  Guarded picture(rowBytes * height, 0x5A);
  u32 word = 0;
  u32 bit = 0;
  Guarded words(frame.size(), 0);
  std::copy(frame.begin(), frame.end(), words.data());
  const u32 status = VorelYCbCr8bv422irTo2vuyDecode(width, height, static_cast<i32>(rowBytes), picture.data(),
                                                    &word, &bit, reinterpret_cast<const u32*>(words.data()));
  EXPECT_TRUE(picture.MarksIntact());
  Reduced result = {status, u64{word} * 32 + bit, {}};
  for (std::size_t y = 0; y < height; ++y)
    result.rows.emplace_back(picture.data() + y * rowBytes, picture.data() + (y + 1) * rowBytes);
  return result;
}

Reduced Expected(const reference::Bits& bits, u32 width, u32 height) {
  const reference::ReducedPicture model =
      reference::DecodeReducedRows(bits, 0, width, height, BoundOf(width, height));
  Reduced result = {model.status, model.position, model.rows};
  result.rows.resize(height, Bytes(std::size_t{(width + 1) / 2} * 4, 0x5A));
  return result;
}

PictureRows DecodeText(const std::string& spaced, u32 width, u32 height) {
  reference::Bits bits;
  for (const char c : WithoutSpaces(spaced)) bits.push_back(c == '1');
  const Reduced result = Decode(bits, width, height);
  EXPECT_EQ(result.status, 0u);
  EXPECT_EQ(result.position, bits.size());
  return result.rows;
}

TEST(ReducedRows, ARowWithoutOnesIsPlainAndStartsFromTheConstants) {
  std::string frame;
  PictureRows rows;
  for (u8 y = 0; y < 4; ++y) {
    rows.push_back({90, static_cast<u8>(200 + y), 60, 201, static_cast<u8>(91 - y), 202, 60, 203});
    frame += EncodeToText("YCbCr8bv422i", "2vuy", 4, {rows.back()});
  }
  EXPECT_EQ(DecodeText(frame, 4, 4), rows);
}

TEST(ReducedRows, TwoOnesAreALostBit) {
  // 125 and 128 are halved, and doubled again.
  EXPECT_EQ(DecodeText("110 000 0 000 0", 2, 1)[0], (Bytes{128, 124, 128, 124}));
  EXPECT_EQ(DecodeText("11110 000 0 000 0", 2, 1)[0], (Bytes{128, 124, 128, 124}));
  EXPECT_EQ(DecodeText("1111110 000 0 000 0", 2, 1)[0], (Bytes{128, 120, 128, 120}));
}

TEST(ReducedRows, AnOddRunIsARawRowOfShortFields) {
  EXPECT_EQ(DecodeText("10" + Field(1, 8) + Field(2, 8) + Field(3, 8) + Field(4, 8), 2, 1)[0],
            (Bytes{2, 1, 4, 3}));
  EXPECT_EQ(DecodeText("111110" + Field(1, 6) + Field(2, 6) + Field(3, 6) + Field(63, 6), 2, 1)[0],
            (Bytes{8, 4, 252, 12}));
}

TEST(ReducedRows, AValueThatIsTooLargeReachesIntoTheNextByte) {
  // Cb is 64 + 136, whose code is 48,804 + 136 - 35: doubled, its top bit meets Y'0.
  EXPECT_EQ(DecodeText("110 000 " + Field(48905, 16) + " 000 0", 2, 1)[0], (Bytes{0x90, 0x7D, 0x80, 0x7C}));
}

TEST(ReducedRows, RowsThatHaveLostEverythingHoldNoFields) {
  EXPECT_EQ(DecodeText(std::string(17, '1') + "0", 4, 1)[0], Bytes(8, 0));
  EXPECT_EQ(DecodeText(std::string(71, '1') + "0", 4, 1)[0], Bytes(8, 0));
  EXPECT_EQ(DecodeText(std::string(64, '1') + "0" + Zeros(8), 2, 1)[0], Bytes(4, 0));
}

TEST(ReducedRows, AnyBitsGiveTheRowsOfTheModel) {
  u32 ended[5] = {};
  for (u32 seed = 1; seed <= 1500; ++seed) {
    Random random = StartRandom(seed);
    const u32 width = 1 + static_cast<u32>(random() % 40);
    const u32 height = 1 + static_cast<u32>(random() % 8);
    reference::Bits bits;
    const reference::Rows noise = PaintFrame("YCbCr8bv422", width, height, Paint::noise, seed);
    for (u32 y = 0; y < height; ++y) {
      if (seed % 3 == 0) {  // codes at their longest
        reference::AppendRow("YCbCr8bv422", 'i', nullptr, noise[y], false, bits);
        continue;
      }
      for (std::size_t ones = random() % 24 + (random() % 20 == 0 ? 50 : 0); ones > 0; --ones)
        bits.push_back(true);
      bits.push_back(false);
      for (std::size_t body = random() % (width * 20); body > 0; --body) bits.push_back(random() % 2 == 0);
    }
    const Reduced expected = Expected(bits, width, height);
    ASSERT_EQ(Decode(bits, width, height), expected) << "seed " << seed << ", " << width << " x " << height;
    ++ended[expected.status];
  }
  EXPECT_GT(ended[0], 300u);
  EXPECT_GT(ended[4], 100u);
}

TEST(ReducedRows, ARunOfOnesWithoutEndEndsAtTheFrameBound) {
  const Reduced result = Decode(reference::Bits(4 * 8 * BoundOf(6, 2), true), 6, 2);
  EXPECT_EQ(result.status, u32{VOREL_FRAME_BOUND_READ});
}

}  // namespace
}  // namespace vorel
