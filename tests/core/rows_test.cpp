// Rows of 8bw frames: worked examples and the hazards of prediction, row decision and bounds.
#include <gtest/gtest.h>

#include <random>

#include "base/bytes.h"
#include "frame/frame_bounds.h"
#include "tests/core/guarded.h"
#include "vorel/vorel.h"

namespace vorel {
namespace {

struct Encoded {
  u32 status;
  u32 word;
  u32 bit;
  std::vector<u8> frame;  // from word 0; zeros where nothing was stored
};

// Encodes rows of pairs * 4 bytes from word 5 on.
Encoded EncodeRows(const reference::Picture& rows, bool interlaced, u32 width, u32 bit = 0) {
  Encoded result = {0, 5, bit, {}};
  const i32 rowBytes = static_cast<i32>((width + 1) / 2 * 4);
  std::vector<u8> picture = RowsToBytes(rows, rowBytes, 0);
  const u32 height = static_cast<u32>(rows.size());
  result.frame.assign(20 + bit / 8 + MaxFrameBytes(YCbCr8bw422, width, height) + 8, 0);
  const auto routine = interlaced ? VorelYCbCr8bw422iFromyuvuEncode : VorelYCbCr8bw422pFromyuvuEncode;
  result.status = routine(width, height, rowBytes, picture.data(), &result.word, &result.bit,
                          reinterpret_cast<u32*>(result.frame.data()));
  return result;
}

struct Decoded {
  u32 status;
  u32 word;
  u32 bit;
  std::vector<u8> picture;
};

Decoded DecodeRows(const std::vector<u8>& frame, bool interlaced, u32 width, u32 height, u32 bit = 0) {
  Decoded result = {0, 5, bit, {}};
  const i32 rowBytes = static_cast<i32>((width + 1) / 2 * 4);
  result.picture.assign(static_cast<std::size_t>(rowBytes) * height, 0xA5);
  std::vector<u8> readable = frame;
  readable.resize(frame.size() + std::size_t{width} * 8 + 64);
  std::vector<u8> scratch(VorelScratchBytes(width));
  const u32* words = reinterpret_cast<const u32*>(readable.data());
  result.status = interlaced
                      ? VorelYCbCr8bw422iToyuvuDecode(width, height, rowBytes, result.picture.data(),
                                                      &result.word, &result.bit, words)
                      : VorelYCbCr8bw422pToyuvuDecode(width, height, rowBytes, result.picture.data(),
                                                      &result.word, &result.bit, words, scratch.data());
  return result;
}

void ExpectRoundTrip(const reference::Picture& rows, bool interlaced, u32 width) {
  const Encoded encoded = EncodeRows(rows, interlaced, width);
  ASSERT_EQ(encoded.status, 0u);
  const Decoded decoded = DecodeRows(encoded.frame, interlaced, width, static_cast<u32>(rows.size()));
  EXPECT_EQ(decoded.status, 0u);
  EXPECT_EQ(decoded.word, encoded.word);
  EXPECT_EQ(decoded.bit, encoded.bit);
  EXPECT_EQ(decoded.picture, RowsToBytes(rows, static_cast<i32>((width + 1) / 2 * 4), 0));
}

// Bits of a frame behind its header, as text.
std::string BitText(const std::vector<u8>& frame, std::size_t from, std::size_t count) {
  std::string text;
  for (std::size_t i = from; i < from + count; ++i)
    text += (frame[20 + i / 8] >> (7 - i % 8) & 1) != 0 ? '1' : '0';
  return text;
}

TEST(WorkedExample, OnePair) {
  const Encoded encoded = EncodeRows({{130, 1, 127, 255}}, false, 2);
  EXPECT_EQ(encoded.status, 0u);
  EXPECT_EQ(encoded.word, 10u);
  EXPECT_EQ(encoded.bit, 14u);
  EXPECT_EQ(BitText(encoded.frame, 0, 32), "00100101101111000000000000000000");
  EXPECT_EQ(encoded.frame[20], 0x25);
  EXPECT_EQ(encoded.frame[21], 0xBC);
  const Decoded decoded = DecodeRows(encoded.frame, false, 2, 1);
  EXPECT_EQ(decoded.picture, (std::vector<u8>{130, 1, 127, 255}));
}

TEST(WorkedExample, WholeFrameWithHeader) {
  const std::vector<u8> expected = {'V', 'o', 'r', 'l', 13,  10,  0,   10,  0xFF, 'T',  'a', 'm',
                                    'r', 'i', 'c', 'k', 'Y', 'b', 'Y', 'r', 0x25, 0xBC, 0,   0};
  alignas(4) u8 picture[4] = {130, 1, 127, 255};
  std::vector<u32> frame(20);
  u32 word = 0;
  u32 bit = 0;
  ASSERT_EQ(VorelGenericEncode(FourCharacterCode("yuvu"), 0, 2, 1, 4, picture, &word, &bit, frame.data(), 0),
            0u);
  EXPECT_EQ((word * 32 + 7 + bit) / 8, 42u);
  const u8* bytes = reinterpret_cast<const u8*>(frame.data());
  EXPECT_EQ(std::vector<u8>(bytes, bytes + 24), expected);
}

TEST(WorkedExample, FlatTwoByTwoIs18ZeroBits) {
  const Encoded encoded = EncodeRows({{128, 0, 128, 0}, {128, 0, 128, 0}}, false, 2);
  EXPECT_EQ(encoded.word, 10u);
  EXPECT_EQ(encoded.bit, 18u);
  EXPECT_EQ((encoded.word * 32 + 7 + encoded.bit) / 8, 43u);
  EXPECT_EQ(BitText(encoded.frame, 0, 32), std::string(32, '0'));
}

TEST(Prediction, FirstPairOfALaterRowIsPredictedFromTheOneAbove) {
  // Second row equal to the first: header and four residuals of zero.
  const Encoded first = EncodeRows({{120, 3, 120, 254}}, false, 2);
  const Encoded both = EncodeRows({{120, 3, 120, 254}, {120, 3, 120, 254}}, false, 2);
  const std::size_t used = (first.word - 10) * 32 + first.bit;
  EXPECT_EQ(both.word * 32 + both.bit, first.word * 32 + first.bit + 9);
  EXPECT_EQ(BitText(both.frame, used, 9), "000000000");
}

TEST(Prediction, BlendWrapsAndIsNotLimited) {
  // L = T = 0 and TL = 255 predict -128, that is 128; L = T = 255 and TL = 0 predict 382, that is 126. Y'1 of
  // the first pair has L at its left, T above and TL above the left.
  const Encoded low = EncodeRows({{255, 0, 0, 0}, {0, 0, 128, 0}}, false, 2);
  const Encoded lowFirst = EncodeRows({{255, 0, 0, 0}}, false, 2);
  ASSERT_EQ(low.status, 0u);
  // Row 2: Y'0 is 0 - 255 = symbol 1 (001), Cb 0 (0), Y'1 128 - 128 = 0 (000), Cr 0 (0).
  EXPECT_EQ(BitText(low.frame, (lowFirst.word - 10) * 32 + lowFirst.bit, 9), "000100000");
  const Encoded high = EncodeRows({{0, 0, 255, 0}, {255, 0, 126, 0}}, false, 2);
  const Encoded highFirst = EncodeRows({{0, 0, 255, 0}}, false, 2);
  // Row 2: Y'0 is 255 - 0 = symbol 255 (1111), Cb (0), Y'1 126 - 126 = 0 (000), Cr (0).
  EXPECT_EQ(BitText(high.frame, (highFirst.word - 10) * 32 + highFirst.bit, 10), "0111100000");
}

TEST(Prediction, ChromaDifferencesAreThoseOfSignedBytes) {
  // L = 127 and TL = -128 give (L - TL) >> 1 = 127: with T = 0 the prediction of the second pair's Cb is 127.
  const reference::Picture rows = {{128, 0x80, 128, 0, 128, 0, 128, 0}, {128, 127, 128, 0, 128, 127, 128, 0}};
  const Encoded encoded = EncodeRows(rows, false, 4);
  const Encoded first = EncodeRows({rows[0]}, false, 4);
  const std::size_t start = (first.word - 10) * 32 + first.bit;
  // Header, Y'0 (000), Cb 127 - (-128) = symbol 255 (111), Y'1 (000), Cr (0); then Y'0 (000), Cb 0 (0), Y'1
  // (000), Cr (0).
  EXPECT_EQ(BitText(encoded.frame, start, 19), "0000111000000000000");
  EXPECT_EQ(encoded.word * 32 + encoded.bit, first.word * 32 + first.bit + 19);
}

TEST(Prediction, ChromaAtBothEndsWrapsAndReturns) {
  for (const bool interlaced : {false, true}) {
    ExpectRoundTrip({{0, 0x80, 255, 0x7F, 255, 0x7F, 0, 0x80},
                     {255, 0x7F, 0, 0x80, 0, 0x80, 255, 0x7F},
                     {0, 0x7F, 0, 0x7F, 1, 0x80, 1, 0x80}},
                    interlaced, 4);
  }
}

TEST(RowStart, LaterInterlacedRowsStartFromTheFirstPairAbove) {
  // The second row repeats Y'0, Cb and Cr of the pair above, whose Y'1 plays no part.
  const Encoded first = EncodeRows({{90, 30, 70, 20}}, true, 2);
  const Encoded both = EncodeRows({{90, 30, 70, 20}, {90, 30, 90, 20}}, true, 2);
  // Symbols 0: A is 000, B is 0 in the interlaced codes too.
  EXPECT_EQ(BitText(both.frame, (first.word - 10) * 32 + first.bit, 9), "000000000");
}

// A row of noise stands raw: one header bit and the bytes of its pairs in their order.
TEST(RawRow, HoldsTheBytesBehindAOneBit) {
  std::vector<std::uint8_t> noise;
  for (int i = 0; i < 32; ++i)
    noise.push_back(i % 2 == 0 ? (i % 4 == 0 ? 0 : 128) : (i % 4 == 1 ? 0x80 : 0x40));
  const Encoded encoded = EncodeRows({noise}, false, 16);
  EXPECT_EQ(encoded.word, 10u + 8);
  EXPECT_EQ(encoded.bit, 1u);
  std::string expected = "1";
  for (const u8 byte : noise) {
    for (int i = 7; i >= 0; --i) expected += (byte >> i & 1) != 0 ? '1' : '0';
  }
  EXPECT_EQ(BitText(encoded.frame, 0, expected.size()), expected);
}

TEST(RawRow, IsPredictedFromLikeAnyRow) {
  std::vector<std::uint8_t> noise;
  for (int i = 0; i < 64; ++i) noise.push_back(static_cast<std::uint8_t>(i * 89 + (i % 3) * 101));
  for (const bool interlaced : {false, true}) {
    const reference::Picture rows = {noise, noise, noise};
    ExpectRoundTrip(rows, interlaced, 32);
    if (interlaced) continue;
    // Progressive: the row above repeats, so the row behind costs least. 32 codes of A are three bits each,
    // 32 of B one.
    const Encoded one = EncodeRows({noise}, false, 32);
    const Encoded two = EncodeRows({noise, noise}, false, 32);
    EXPECT_GT(BitText(one.frame, 0, 1), "0");
    const u32 bits = two.word * 32 + two.bit - one.word * 32 - one.bit;
    EXPECT_LT(bits, 33u * 32);
  }
}

// The decision counts whole words since the row's start, so it depends on where in a word the row began.
TEST(RowDecision, CountsCompletedWords) {
  const std::vector<std::uint8_t> row = {0, 0x80, 0, 0x80};
  const reference::Code a = reference::MakeCode(
      "3x2 4x2 5x3 6x3 7x5 8x5 9x8 10x8 11x10 12x10 13x13 14x15 15x19 16x54 15x18 "
      "14x15 13x12 12x10 11x10 10x8 9x7 8x6 7x5 6x3 5x2 4x3");
  ASSERT_EQ(a.words[128].size(), 16u);  // Y'0: 0 - 128
  ASSERT_EQ(a.words[0].size(), 3u);     // Y'1: 0 - 0
  // 16 + 16 + 3 + 16 bits of codes: 51. (f + 52) >> 5 exceeds 1 from f = 12 on.
  for (u32 fill = 0; fill < 32; ++fill) {
    const Encoded encoded = EncodeRows({row}, false, 2, fill);
    ASSERT_EQ(encoded.status, 0u);
    EXPECT_EQ(BitText(encoded.frame, fill, 1), fill < 12 ? "0" : "1") << fill;
    const u32 bits = (encoded.word - 5) * 32 + encoded.bit - 5 * 32 - fill;
    EXPECT_EQ(bits, fill < 12 ? 52u : 33u) << fill;
    const Decoded decoded = DecodeRows(encoded.frame, false, 2, 1, fill);
    EXPECT_EQ(decoded.picture, row);
  }
}

TEST(RowDecision, AHeaderBitThatFillsAWordIsRewound) {
  std::vector<std::uint8_t> noise;
  for (int i = 0; i < 16; ++i)
    noise.push_back(i % 2 == 0 ? (i % 4 == 0 ? 0 : 128) : (i % 4 == 1 ? 0x80 : 0x40));
  const Encoded encoded = EncodeRows({noise}, false, 8, 31);
  ASSERT_EQ(encoded.status, 0u);
  EXPECT_EQ(BitText(encoded.frame, 0, 32), std::string(31, '0') + "1");
  EXPECT_EQ(std::vector<u8>(encoded.frame.begin() + 24, encoded.frame.begin() + 24 + 16), noise);
  EXPECT_EQ(encoded.bit, 0u);
  EXPECT_EQ(encoded.word, 5u + 6 + 4);  // a zero word closes the stream
}

TEST(Bounds, AFrameOfZerosDecodesToAFlatPicture) {
  const std::vector<u8> zeros(400, 0);
  for (const bool interlaced : {false, true}) {
    const Decoded decoded = DecodeRows(zeros, interlaced, 7, 3);
    EXPECT_EQ(decoded.status, 0u);
    for (std::size_t i = 0; i < decoded.picture.size(); ++i)
      EXPECT_EQ(decoded.picture[i], i % 2 == 0 ? 128 : 0);
    EXPECT_EQ(decoded.word, 5u + (160 + 3 * 33) / 32);
    EXPECT_EQ(decoded.bit, 3u * 33 % 32);
  }
}

TEST(Bounds, ReadingPastTheFrameBoundEndsWith4AndKeepsTheRowsSoFar) {
  // Codes of 16 bits throughout: the sixth of eight rows passes the bound.
  const reference::Code a = reference::MakeCode(
      "3x2 4x2 5x3 6x3 7x5 8x5 9x8 10x8 11x10 12x10 13x13 14x15 15x19 16x54 15x18 "
      "14x15 13x12 12x10 11x10 10x8 9x7 8x6 7x5 6x3 5x2 4x3");
  const reference::Code b = reference::MakeCode(
      "1x1 2x1 4x1 6x1 8x1 9x1 10x2 11x2 12x3 13x2 14x5 15x5 16x208 15x5 14x4 13x3 12x2 "
      "11x2 10x2 9x1 8x1 7x1 6x1 3x1");
  std::string stream(160, '0');
  constexpr u32 kWidth = 8;
  constexpr u32 kHeight = 8;
  for (u32 y = 0; y < kHeight; ++y) {
    stream += '0';
    for (u32 i = 0; i < kWidth * 2; ++i) stream += (i % 2 == 0 ? a : b).words[128];
  }
  reference::Bits bits;
  for (const char bit : stream) bits.push_back(bit == '1');
  const Decoded decoded = DecodeRows(BitsToWords(bits), false, kWidth, kHeight);
  EXPECT_EQ(decoded.status, 4u);
  // The bound is 1 + 128 + 32 + 4 bytes; each row takes 257 bits. After the fifth row the current word ends
  // at byte 164.
  const u32 rows = 6;
  EXPECT_EQ((decoded.word - 5) * 32 + decoded.bit, 160 + rows * 257);
  const std::size_t untouched = 16 * rows;
  for (std::size_t i = untouched; i < decoded.picture.size(); ++i) EXPECT_EQ(decoded.picture[i], 0xA5);
  EXPECT_NE(decoded.picture[untouched - 1], 0xA5);
}

// Narrow pictures of a special kind creep past the bound row by row: predicted rows may be up to 31 bits
// longer than raw ones. The bound is met with an attempted row in place, or behind a row that stays.
TEST(Bounds, AnHonestPictureCanPassTheFrameBoundAndNothingIsStoredBehindIt) {
  u32 inAttempt = 0;
  u32 behindRow = 0;
  for (u32 seed = 0; seed < 300; ++seed) {
    std::mt19937 random(seed);
    const u32 height = 150 + static_cast<u32>(random() % 300);
    const auto small = [&](u32 range) { return static_cast<std::uint8_t>(random() % range); };
    const std::vector<std::uint8_t> flat = {128, 0, 128, 0};
    const std::vector<std::uint8_t> far = {small(60), 0x80, small(60), small(4)};
    reference::Picture rows;
    for (u32 y = 0; y < height; ++y) rows.push_back(y % 2 == 0 ? flat : far);
    const u64 bound = MaxFrameBytes(YCbCr8bw422, 2, height);
    const auto expected = reference::EncodeWide(rows, true, 2, reference::Bits(160), 5, bound);
    if (expected.status != 1) continue;
    ++(expected.attemptFailed ? inAttempt : behindRow);
    const std::vector<u8> picture = RowsToBytes(rows, 4, 0);
    Guarded source(picture.size(), 0);
    std::copy(picture.begin(), picture.end(), source.data());
    Guarded frame(20 + static_cast<std::size_t>(bound), 0);
    u32 word = 5;
    u32 bit = 0;
    u32* const words = reinterpret_cast<u32*>(frame.data());
    ASSERT_EQ(VorelYCbCr8bw422iFromyuvuEncode(2, height, 4, source.data(), &word, &bit, words), 1u);
    ASSERT_EQ(word, 5 + expected.bits.size() / 32);
    ASSERT_EQ(bit, expected.bits.size() % 32);
    ASSERT_TRUE(frame.MarksIntact());
  }
  EXPECT_GT(inAttempt, 0u);
  EXPECT_GT(behindRow, 0u);
}

// Frame routines have no length among their arguments. In a whole frame they load two words behind the last
// coded bit at most.
TEST(Bounds, DecodersLoadAtMostTwoWordsBehindAWholeFrame) {
  u32 frames = 0;
  u32 seed = 0;
  for (const u32 width : {1u, 2u, 5u, 31u, 64u, 130u, 700u, 13000u}) {
    for (const u32 height : {1u, 2u, 8u, 9u, 20u}) {
      for (const Kind kind : {Kind::flat, Kind::photo, Kind::noise}) {
        for (const bool interlaced : {false, true}) {
          if (width > 5000 && height > 9) continue;
          const reference::Picture rows = MakePicture(kind, width, height, ++seed);
          const Encoded encoded = EncodeRows(rows, interlaced, width);
          if (encoded.status != 0) continue;  // a tiny picture past its bound
          ++frames;
          // To the end of the last word that holds a bit, and two words.
          const std::size_t bits = std::size_t{encoded.word - 5} * 32 + encoded.bit;
          std::vector<u8> bytes = encoded.frame;
          bytes.resize((bits + 31) / 32 * 4 + 8);
          Fenced frame(bytes);
          const i32 rowBytes = static_cast<i32>((width + 1) / 2 * 4);
          std::vector<u8> picture(static_cast<std::size_t>(rowBytes) * height);
          std::vector<u8> scratch(VorelScratchBytes(width));
          u32 word = 5;
          u32 bit = 0;
          const u32* words = reinterpret_cast<const u32*>(frame.data());
          const u32 status =
              interlaced
                  ? VorelYCbCr8bw422iToyuvuDecode(width, height, rowBytes, picture.data(), &word, &bit, words)
                  : VorelYCbCr8bw422pToyuvuDecode(width, height, rowBytes, picture.data(), &word, &bit, words,
                                                  scratch.data());
          ASSERT_EQ(status, 0u);
          ASSERT_EQ(picture, RowsToBytes(rows, rowBytes, 0)) << width << " x " << height;
        }
      }
    }
  }
  EXPECT_GT(frames, 200u);
}

TEST(Sizes, OddWidthCodesTheWholeLastPair) {
  // The second pixel of the last pair counts like any other, above and beside.
  for (const bool interlaced : {false, true}) {
    ExpectRoundTrip(
        {{10, 1, 20, 2, 30, 3, 199, 4}, {11, 1, 21, 2, 31, 3, 7, 4}, {12, 1, 22, 2, 32, 3, 250, 4}},
        interlaced, 3);
  }
}

TEST(Sizes, HeightOneUsesTheFirstRowRuleOnly) {
  const Encoded p = EncodeRows({{130, 1, 127, 255}}, false, 2);
  EXPECT_EQ(p.bit, 14u);
  ExpectRoundTrip({{130, 1, 127, 255}}, false, 2);
  ExpectRoundTrip({{130, 1, 127, 255}}, true, 2);
}

TEST(Strides, BottomUpStartsAtTheHighestAddress) {
  const reference::Picture rows = {{1, 2, 3, 4}, {5, 6, 7, 8}, {9, 10, 11, 12}};
  const Encoded topDown = EncodeRows(rows, false, 2);
  std::vector<u8> picture = RowsToBytes(rows, -4, 0);
  std::vector<u8> frame(topDown.frame.size(), 0);
  u32 word = 5;
  u32 bit = 0;
  ASSERT_EQ(VorelYCbCr8bw422pFromyuvuEncode(2, 3, -4, picture.data(), &word, &bit,
                                            reinterpret_cast<u32*>(frame.data())),
            0u);
  EXPECT_EQ(frame, topDown.frame);
  EXPECT_EQ(picture[0], 9);
}

}  // namespace
}  // namespace vorel
