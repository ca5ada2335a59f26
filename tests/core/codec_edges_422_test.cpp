// The corners of the 4:2:2 codecs, with streams worked out by hand. Codes that are written out here:
//   8bv p   A: 0 is 000             B: 0 is 0, +1 is 10, -1 is 111; 16 bits from +25 to +232
//   8bv i   A: 0 is 000             B: 0 is 0
//   10bv p  A: 0 is 0000, +1 00010  B: 0 is 00
//   10bv i  A: 0 is 000, -1 is 11111  B: 0 is 00
#include "tests/core/hand_coded.h"

namespace vorel {
namespace {

using reference::Little16;
using reference::Little32;

// 2vuy: Cb Y'0 Cr Y'1
Bytes Pair(int first, int cb, int second, int cr) {
  return {static_cast<u8>(cb), static_cast<u8>(first), static_cast<u8>(cr), static_cast<u8>(second)};
}

Bytes Pairs(std::initializer_list<Bytes> pairs) {
  Bytes row;
  for (const Bytes& pair : pairs) row.insert(row.end(), pair.begin(), pair.end());
  return row;
}

// VUYA: Cr Cb Y' A
Bytes Vuya(int luma, int alpha) {
  return {128, 128, static_cast<u8>(luma), static_cast<u8>(alpha)};
}

std::string RawPair(u32 first, u32 cb, u32 second, u32 cr, int depth = 8) {
  return Field(first, depth) + Field(cb, depth) + Field(second, depth) + Field(cr, depth);
}

// ---- 8bv 4:2:2

TEST(Edges8bv422, TheGreyOfTheStartValuesIsAllZeros) {
  const Bytes row = Pairs({Pair(125, 128, 125, 128), Pair(125, 128, 125, 128), Pair(125, 128, 125, 128)});
  EXPECT_EQ(EncodeToText("YCbCr8bv422p", "2vuy", 6, {row}), Zeros(1 + 3 * 8));
  EXPECT_EQ(EncodeToText("YCbCr8bv422i", "2vuy", 6, {row}), Zeros(1 + 3 * 8));
}

TEST(Edges8bv422, AGradientOfChromaIsNotWrappedBeforeItIsHalved) {
  // Cb goes from 0 to 255 between the rows, Cr from 255 to 0: their gradients are +255 and -255.
  const std::string above = "1" + RawPair(100, 0, 100, 255) + RawPair(100, 50, 100, 200);
  const std::string below = "0 000 111 000 10  000 0 000 0";
  const PictureRows rows = DecodeFromText("YCbCr8bv422p", "2vuy", 4, 2, above + below);
  EXPECT_EQ(rows[1], Pairs({Pair(100, 255, 100, 0), Pair(100, 50 + 127, 100, 200 - 128)}));
}

TEST(Edges8bv422, Y216IsLimitedTo1And254) {
  const auto through = [](int first, int second) {
    return ThroughFrame("YCbCr8bv422p", "Y216", "2vuy", 2, {Little16({128 << 6, first, 128 << 6, second})});
  };
  EXPECT_EQ(through(0, 254 << 6)[0], Pair(1, 128, 254, 128));
  EXPECT_EQ(through(63, 255 << 6)[0], Pair(1, 128, 254, 128));
  EXPECT_EQ(through(2 << 6, 0xFFFF)[0], Pair(2, 128, 254, 128));
}

TEST(Edges8bv422, LumaOfR408IsLimitedTo254) {
  const auto through = [](u8 first, u8 second) {
    return ThroughFrame("YCbCr8bv422p", "_r408", "2vuy", 2, {{9, first, 128, 128, 9, second, 128, 128}});
  };
  EXPECT_EQ(through(237, 238)[0], Pair(253, 128, 254, 128));
  EXPECT_EQ(through(239, 255)[0], Pair(254, 128, 254, 128));
}

TEST(Edges8bv422, AnInterlacedRowStartsFromTheRowAbove) {
  const Bytes row = Pair(200, 90, 200, 60);
  const std::string one = EncodeToText("YCbCr8bv422i", "2vuy", 2, {row});
  EXPECT_EQ(EncodeToText("YCbCr8bv422i", "2vuy", 2, {row, row}), one + Zeros(1 + 8));
  // A raw row is no exception.
  const std::string raw = "1" + RawPair(200, 90, 33, 60);
  EXPECT_EQ(DecodeFromText("YCbCr8bv422i", "yuvs", 2, 2, raw + Zeros(1 + 8))[1], (Bytes{200, 90, 200, 60}));
}

TEST(Edges8bv422, OddWidthFromPixelsRepeatsTheLastPixel) {
  const PictureRows rows = {{60, 70, 50, 9}};  // VUY_: Cr Cb Y'
  EXPECT_EQ(ThroughFrame("YCbCr8bv422p", "VUY_", "2vuy", 1, rows)[0], Pair(50, 70, 50, 60));
  EXPECT_EQ(ThroughFrame("YCbCr8bv422p", "VUY_", "VUY_", 1, rows)[0], (Bytes{60, 70, 50, 235}));
}

TEST(Edges8bv422, ARowOfV210EndsInsideAGroup) {
  // Four pairs: Cb Y' Cr Y' in threes, the last word with one field.
  const auto word = [](u32 a, u32 b, u32 c) { return (a | b << 10 | c << 20) << 2; };
  const Bytes row = Little32({word(10, 11, 12), word(13, 14, 15), word(16, 17, 18), word(19, 20, 21),
                              word(22, 23, 24), word(25, 0, 0)});
  const Bytes read =
      Pairs({Pair(11, 10, 13, 12), Pair(15, 14, 17, 16), Pair(19, 18, 21, 20), Pair(23, 22, 25, 24)});
  EXPECT_EQ(ThroughFrame("YCbCr8bv422p", "v210", "2vuy", 8, {row, row}), (PictureRows{read, read}));
  EXPECT_EQ(ThroughFrame("YCbCr8bv422p", "v210", "v210", 8, {row, row}), (PictureRows{row, row}));
}

// ---- 8bv 4:2:2:4

TEST(Edges8bv4224, AnOpaquePictureCostsOneBitOfAlphaAPixel) {
  // The first alpha is 110 above its start value: code 54,996 + 110 - 25.
  const Bytes row = Pairs({Vuya(125, 235), Vuya(125, 235)});
  const std::string first = "0" + Field(55081, 16) + Zeros(9);
  EXPECT_EQ(EncodeToText("YCbCrA8bv4224p", "VUYA", 2, {row}), first);
  EXPECT_EQ(EncodeToText("YCbCrA8bv4224p", "VUYA", 2, {row, row}), first + Zeros(11));
}

TEST(Edges8bv4224, EveryInterlacedRowStartsFromTheConstants) {
  const Bytes row = Pairs({Vuya(70, 235), Vuya(71, 234)});
  const std::string one = EncodeToText("YCbCrA8bv4224i", "VUYA", 2, {row});
  EXPECT_EQ(EncodeToText("YCbCrA8bv4224i", "VUYA", 2, {row, row}), one + one);
}

TEST(Edges8bv4224, ColourIsTheSameWithAndWithoutAlpha) {
  const std::string frame = "1" + Field(235, 8) + Field(60, 8) + Field(90, 8) + Field(16, 8) + Field(61, 8) +
                            Field(91, 8) + "0 0 000 10 0 000 111";
  // The second pixel below: Y' is (3 * (60 + 61) - 2 * 60) >> 2, A is (3 * (235 + 16) - 2 * 235) >> 2.
  EXPECT_EQ(DecodeFromText("YCbCrA8bv4224p", "2vuy", 2, 2, frame)[1], Pair(60, 91, 60, 90));
  EXPECT_EQ(DecodeFromText("YCbCrA8bv4224p", "VUYA", 2, 2, frame)[1],
            (Bytes{90, 91, 60, 235, 90, 91, 60, 70}));
}

TEST(Edges8bv4224, ARowOfTheLongestCodesIsStoredRaw) {
  Bytes row;
  for (int x = 0; x < 8; ++x) {
    const u8 far = x % 2 == 0 ? 253 : 125;       // alpha and luma: 128 to and fro
    const u8 chroma = x / 2 % 2 == 0 ? 0 : 255;  // filtered: 0, 191, 64, 191
    row.insert(row.end(), {chroma, chroma, far, far});
  }
  const std::string text = EncodeToText("YCbCrA8bv4224p", "VUYA", 8, {row});
  EXPECT_EQ(text.size(), 1u + 4 * 48);
  EXPECT_EQ(text.substr(0, 25), "1" + Field(253, 8) + Field(253, 8) + Field(0, 8));
}

TEST(Edges8bv4224, OddWidthFallsBackSooner) {
  // Two codes of 16 bits and four short ones: 39 bits, which finish one word.
  const Bytes pixel = Vuya(253, 235);
  const std::string wide = EncodeToText("YCbCrA8bv4224p", "VUYA", 2, {Pairs({pixel, pixel})});
  EXPECT_EQ(wide.size(), 39u);
  EXPECT_EQ(wide[0], '0');
  const std::string narrow = EncodeToText("YCbCrA8bv4224p", "VUYA", 1, {pixel});
  EXPECT_EQ(narrow, "1" + Field(235, 8) + Field(253, 8) + Field(128, 8) + Field(235, 8) + Field(253, 8) +
                        Field(128, 8));
}

// ---- 10bv 4:2:2

// v216: Cb Y'0 Cr Y'1
Bytes Deep(std::initializer_list<int> samples) {
  Bytes row;
  for (const int sample : samples) {
    const Bytes word = Little16({sample << 6});
    row.insert(row.end(), word.begin(), word.end());
  }
  return row;
}

TEST(Edges10bv422, OnePixelIsAWholePair) {
  const Bytes pair = Deep({512, 502, 513, 777});
  EXPECT_EQ(ThroughFrame("YCbCr10bv422p", "v216", "v216", 1, {pair})[0], pair);
  const Bytes pixel = Little32({300 << 2 | 400 << 12 | 500u << 22});  // Cb Y' Cr
  EXPECT_EQ(ThroughFrame("YCbCr10bv422p", "v410", "v216", 1, {pixel})[0], Deep({300, 400, 500, 400}));
}

TEST(Edges10bv422, TheGreyOfTheStartValuesIsAllZerosInEveryInterlacedRow) {
  const Bytes row = Deep({512, 502, 512, 502, 512, 502, 512, 502});
  EXPECT_EQ(EncodeToText("YCbCr10bv422i", "v216", 4, {row, row, row}), Zeros(3 * (1 + 2 * 10)));
}

TEST(Edges10bv422, TheOnlyRowIsPredictedFromTheLeft) {
  EXPECT_EQ(EncodeToText("YCbCr10bv422p", "v216", 2, {Deep({512, 503, 512, 503})}),
            WithoutSpaces("0 00010 00 0000 00"));
}

TEST(Edges10bv422, APredictedRowOfExactlyTheBudgetStays) {
  // Eight residuals of chroma and `far` of luma take 16 bits each. A raw row is five words and a bit.
  const auto encode = [](int far) {
    Bytes row;
    int luma = 502;
    for (int k = 0; k < 4; ++k) {
      const int chroma = k % 2 == 0 ? 0 : 512;
      const int first = luma = 2 * k < far ? (luma + 512) % 1024 : luma;
      const int second = luma = 2 * k + 1 < far ? (luma + 512) % 1024 : luma;
      const Bytes pair = Deep({chroma, first, chroma, second});
      row.insert(row.end(), pair.begin(), pair.end());
    }
    return EncodeToText("YCbCr10bv422p", "v216", 8, {row});
  };
  EXPECT_EQ(encode(2).size(), 1u + 8 * 16 + 2 * 16 + 6 * 4);
  EXPECT_EQ(encode(2)[0], '0');
  EXPECT_EQ(encode(3).size(), 1u + 160);
  EXPECT_EQ(encode(3)[0], '1');
}

TEST(Edges10bv422, ARawRowIsANeighbourLikeAnyOther) {
  const std::string zeros = "0 0000 00 0000 00";
  const PictureRows rows =
      DecodeFromText("YCbCr10bv422p", "v216", 2, 3, zeros + "1" + RawPair(100, 300, 200, 400, 10) + zeros);
  EXPECT_EQ(rows[1], Deep({300, 100, 400, 200}));
  EXPECT_EQ(rows[2], Deep({300, 100, 400, (3 * (100 + 200) - 2 * 100) >> 2}));
}

TEST(Edges10bv422, ANegativeStrideBeginsWithTheLastRowInMemory) {
  const Bytes top = Deep({512, 502, 512, 510});
  const Bytes bottom = Deep({600, 400, 500, 450});
  const std::string upwards = EncodeToText("YCbCr10bv422p", "v216", 2, {bottom, top});
  Bytes picture = Pairs({top, bottom});
  std::vector<u32> frame(32);
  Arguments a = {2, 2, -8, 0, 0, 0};
  const Member& member = FindMember(Direction::encode, "YCbCr10bv422p", "v216");
  ASSERT_EQ(CallEncoder(*member.routine, a, picture.data(), reinterpret_cast<u8*>(frame.data())), 0u);
  ASSERT_EQ(a.word * 32 + a.bit, upwards.size());
  for (std::size_t i = 0; i < upwards.size(); ++i)
    EXPECT_EQ(reinterpret_cast<u8*>(frame.data())[i / 8] << i % 8 & 0x80, upwards[i] == '1' ? 0x80 : 0) << i;
}

TEST(Edges10bv422, ColourIsTheSameWithAndWithoutAlpha) {
  const auto fields = [](std::initializer_list<u32> samples) {
    std::string text = "1";
    for (const u32 sample : samples) text += Field(sample, 10);
    return text;
  };
  const std::string frame = fields({940, 100, 300, 64, 200, 400});  // A0 Y'0 Cb A1 Y'1 Cr
  EXPECT_EQ(DecodeFromText("YCbCrA10bv4224i", "v216", 2, 1, frame)[0], Deep({300, 100, 400, 200}));
  // AV416: Cr Cb Y' A
  EXPECT_EQ(DecodeFromText("YCbCrA10bv4224i", "AV416", 2, 1, frame)[0],
            Deep({400, 300, 100, 940, 400, 300, 200, 64}));
}

TEST(Edges10bv422, ADropFrom0To1023IsTheResidualMinusOne) {
  // Y'0 is 522 above its start value: 16 bits.
  const std::string text = EncodeToText("YCbCr10bv422i", "v216", 2, {Deep({512, 0, 512, 1023})});
  EXPECT_EQ(text.size(), 1u + 16 + 2 + 5 + 2);
  EXPECT_EQ(text.substr(17), WithoutSpaces("00 11111 00"));
}

TEST(Edges10bv422, RowsOfV210TakeTheWordsThatTheyNeed) {
  for (u32 pairs = 1; pairs <= 3; ++pairs) {
    std::string frame = "1";
    for (u32 k = 0; k < pairs; ++k) frame += RawPair(0x3FF, 0x3FF, 0x3FF, 0x3FF, 10);
    const PictureRows rows = DecodeFromText("YCbCr10bv422p", "v210", 2 * pairs, 1, frame);
    ASSERT_EQ(rows[0].size(), 4 * (pairs + 1));
    const u32 last[] = {0x000003FF, 0x000FFFFF, 0x3FFFFFFF};
    const Bytes word = Little32({last[pairs - 1]});
    EXPECT_TRUE(std::equal(word.begin(), word.end(), rows[0].end() - 4));
  }
}

}  // namespace
}  // namespace vorel
