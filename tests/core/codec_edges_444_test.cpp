// The corners of the 4:4:4 and RGB codecs, with streams worked out by hand. Codes that are written out here:
//   8b 4:4:4 p   B: 0 is 000, +1 001   A: 0 is 0, +1 10, -1 111; 16 bits from +23 to +234
//   8b 4:4:4 i   B: 0 is 000           A: 0 is 0
//   10bv 4:4:4 p B: 0 is 0000          A: 0 is 00
//   RGB 8bf p    B: 0 is 000, +1 001   A: 0 is 00, +1 01
//   RGB 8bf i    B: 0 is 000           A: 0 is 0
//   RGB 10bf i   B: 0 is 000           A: 0 is 00
#include "tests/core/hand_coded.h"

namespace vorel {
namespace {

using reference::Little16;
using reference::Little32;

Bytes Repeated(const Bytes& pixel, int count) {
  Bytes row;
  for (int i = 0; i < count; ++i) row.insert(row.end(), pixel.begin(), pixel.end());
  return row;
}

std::string Fields(std::initializer_list<u32> samples, int depth) {
  std::string text;
  for (const u32 sample : samples) text += Field(sample, depth);
  return text;
}

// ---- 8bv and 8bu 4:4:4. VUY_ and VUYA: Cr Cb Y' A; r408: A Y' Cb Cr

TEST(Edges8b444, OnePixelIsCodedFromTheStartValues) {
  EXPECT_EQ(EncodeToText("YCbCr8bv444p", "VUY_", 1, {{127, 128, 126, 0}}), WithoutSpaces("0 001 0 111"));
}

TEST(Edges8b444, AnInterlacedRowStartsFromTheRowAboveRawOrNot) {
  const Bytes far = {0, 0, 253, 0};  // three codes of 16 bits: a raw row
  EXPECT_EQ(EncodeToText("YCbCr8bv444i", "VUY_", 1, {far, far}), "1" + Fields({253, 0, 0}, 8) + Zeros(1 + 5));
  const Bytes near = {130, 126, 127, 0};
  const std::string one = EncodeToText("YCbCr8bv444i", "VUY_", 1, {near});
  EXPECT_EQ(one[0], '0');
  EXPECT_EQ(EncodeToText("YCbCr8bv444i", "VUY_", 1, {near, near}), one + Zeros(1 + 5));
}

TEST(Edges8b444, AlphaOf8buStartsAt128OrAt110ByScan) {
  EXPECT_EQ(EncodeToText("YCbCrA8bu4444p", "Ar408", 1, {{128, 110, 128, 128}}), Zeros(1 + 6));
  EXPECT_NE(EncodeToText("YCbCrA8bu4444p", "Ar408", 1, {{110, 110, 128, 128}})[1], '0');
  EXPECT_EQ(EncodeToText("YCbCrA8bu4444i", "Ar408", 1, {{110, 110, 128, 128}}), Zeros(1 + 6));
  EXPECT_NE(EncodeToText("YCbCrA8bu4444i", "Ar408", 1, {{128, 110, 128, 128}})[1], '0');
  EXPECT_EQ(EncodeToText("YCbCrA8bv4444p", "VUYA", 1, {{128, 128, 125, 125}}), Zeros(1 + 6));
  EXPECT_EQ(EncodeToText("YCbCrA8bv4444i", "VUYA", 1, {{128, 128, 125, 125}}), Zeros(1 + 6));
}

TEST(Edges8b444, RowsOfOneColourAreZerosBelowTheFirst) {
  const Bytes row = Repeated({33, 200, 77, 0}, 5);
  const std::string first = EncodeToText("YCbCr8bv444p", "VUY_", 5, {row});
  EXPECT_EQ(EncodeToText("YCbCr8bv444p", "VUY_", 5, {row, row, row}), first + Zeros(2 * (1 + 5 * 5)));
}

TEST(Edges8b444, APredictionBelowZeroWrapsWithTheSample) {
  // Above 255 and 0; at the left 0. The prediction is -128, and no residual gives 128.
  const std::string frame = "1" + Fields({255, 255, 255, 0, 0, 0}, 8) + "0 001 10 10  000 0 0";
  EXPECT_EQ(DecodeFromText("YCbCr8bv444p", "VUY_", 2, 2, frame)[1],
            (Bytes{0, 0, 0, 235, 128, 128, 128, 235}));
}

TEST(Edges8b444, TheTwoRangesDifferInTheStartAlone) {
  // The samples 90 100 110 and 91 100 110, in both.
  const Bytes video = {100, 90, 110, 0, 100, 91, 110, 0};    // _v408: Cb Y' Cr
  const Bytes lowered = {0, 90, 100, 110, 0, 91, 100, 110};  // _r408
  for (const std::string scan : {"p", "i"}) {
    const std::string fromVideo = EncodeToText("YCbCr8bv444" + scan, "_v408", 2, {video, video});
    const std::string fromLowered = EncodeToText("YCbCr8bu444" + scan, "_r408", 2, {lowered, lowered});
    EXPECT_NE(fromVideo, fromLowered);
    // From the second pixel on there is no difference.
    const std::size_t tail =
        fromVideo.size() - EncodeToText("YCbCr8bv444" + scan, "_v408", 1, {{100, 90, 110, 0}}).size();
    EXPECT_EQ(fromVideo.substr(fromVideo.size() - tail), fromLowered.substr(fromLowered.size() - tail));
  }
}

TEST(Edges8b444, FillersHaveNoInfluence) {
  const PictureRows rows = {{100, 90, 110, 0x17, 1, 2, 3, 0xFF}};
  EXPECT_EQ(ThroughFrame("YCbCr8bv444i", "_v408", "_v408", 2, rows)[0],
            (Bytes{100, 90, 110, 0xEB, 1, 2, 3, 0xEB}));
  EXPECT_EQ(EncodeToText("YCbCr8bv444i", "_v408", 2, rows),
            EncodeToText("YCbCr8bv444i", "_v408", 2, {{100, 90, 110, 0, 1, 2, 3, 0}}));
  EXPECT_EQ(ThroughFrame("YCbCr8bu444i", "_r408", "_r408", 1, {{0x17, 90, 100, 110}})[0],
            (Bytes{0xFF, 90, 100, 110}));
}

TEST(Edges8b444, ARowIsRawOnlyBeyondItsOwnWords) {
  // 21 bits, and 15 more for each of `far` residuals of chroma. A raw row is three words and a bit.
  const auto encode = [](int far) {
    Bytes row;
    int cb = 128;
    int cr = 128;
    for (int x = 0; x < 4; ++x) {
      if (2 * x < far) cb ^= 128;
      if (2 * x + 1 < far) cr ^= 128;
      row.insert(row.end(), {static_cast<u8>(cr), static_cast<u8>(cb), 125, 0});
    }
    return EncodeToText("YCbCr8bv444p", "VUY_", 4, {row});
  };
  EXPECT_EQ(encode(7).size(), 21u + 7 * 15);
  EXPECT_EQ(encode(7)[0], '0');
  EXPECT_EQ(encode(8).size(), 1u + 96);
  EXPECT_EQ(encode(8)[0], '1');
}

// ---- 10bv 4:4:4. v410: Cb from bit 2, Y' from 12, Cr from 22; V416: Cr Cb Y' A

TEST(Edges10bv444, LowBitsOfV410AreLost) {
  const u32 pixel = 300u << 2 | 400u << 12 | 500u << 22;
  EXPECT_EQ(EncodeToText("YCbCr10bv444p", "v410", 1, {Little32({pixel | 3})}),
            EncodeToText("YCbCr10bv444p", "v410", 1, {Little32({pixel})}));
  EXPECT_EQ(ThroughFrame("YCbCr10bv444p", "v410", "v410", 1, {Little32({pixel | 3})})[0], Little32({pixel}));
}

TEST(Edges10bv444, OnePictureGivesOneStream) {
  const Bytes packed = Little32({300u << 2 | 400u << 12 | 500u << 22, 301u << 2 | 407u << 12 | 499u << 22});
  const Bytes words = Little16({500 << 6, 300 << 6, 400 << 6, 1, 499 << 6, 301 << 6, 407 << 6, 0xFFF});
  for (const std::string_view frames : {"YCbCr10bv444p", "YCbCr10bv444i"})
    EXPECT_EQ(EncodeToText(frames, "v410", 2, {packed, packed}),
              EncodeToText(frames, "_V416", 2, {words, words}));
}

TEST(Edges10bv444, AlphaIsDroppedAndColourStays) {
  const PictureRows rows = {Little16({500 << 6, 300 << 6, 400 << 6, 940 << 6})};
  EXPECT_EQ(ThroughFrame("YCbCrA10bv4444p", "AV416", "v410", 1, rows)[0],
            Little32({300u << 2 | 400u << 12 | 500u << 22}));
  EXPECT_EQ(ThroughFrame("YCbCrA10bv4444p", "AV416", "AV416", 1, rows), rows);
}

TEST(Edges10bv444, NoResidualAtTheFirstPixelIsThePixelAbove) {
  const std::string frame = "1" + Fields({400, 300, 500}, 10) + "0 0000 00 00";
  const PictureRows rows = DecodeFromText("YCbCr10bv444p", "v410", 1, 2, frame);
  EXPECT_EQ(rows[1], rows[0]);
  EXPECT_EQ(rows[0], Little32({300u << 2 | 400u << 12 | 500u << 22}));
}

// ---- RGB 8bf

TEST(EdgesRgb8, OnePixelIsAChainOfDifferences) {
  EXPECT_EQ(EncodeToText("RGB8bfp", "RGB", 1, {{129, 129, 129}}), WithoutSpaces("0 001 00 00"));
  EXPECT_EQ(EncodeToText("RGB8bfp", "RGB", 1, {{128, 129, 129}}), WithoutSpaces("0 000 01 00"));
  EXPECT_EQ(EncodeToText("RGB8bfp", "RGB", 1, {{128, 128, 129}}), WithoutSpaces("0 000 00 01"));
}

TEST(EdgesRgb8, Grey128IsAllZerosInBothScans) {
  const Bytes row = Repeated({128}, 3 * 5);
  EXPECT_EQ(EncodeToText("RGB8bfp", "RGB", 5, {row, row}), Zeros(2 * (1 + 5 * 7)));
  EXPECT_EQ(EncodeToText("RGB8bfi", "RGB", 5, {row, row}), Zeros(2 * (1 + 5 * 5)));
}

TEST(EdgesRgb8, NoiseCostsOneBitARow) {
  u32 state = 1;
  PictureRows rows;
  for (int y = 0; y < 6; ++y) {
    Bytes& row = rows.emplace_back();
    for (int i = 0; i < 3 * 40; ++i) row.push_back(static_cast<u8>(reference::Next(state)));
  }
  EXPECT_EQ(EncodeToText("RGB8bfp", "RGB", 40, rows).size(), 6u * (1 + 40 * 24));
  EXPECT_EQ(EncodeToText("RGB8bfi", "RGB", 40, rows).size(), 6u * (1 + 40 * 24));
}

TEST(EdgesRgb8, ARawRowStartsTheNextInterlacedRow) {
  const std::string frame = "1" + Fields({10, 20, 30, 40, 50, 60}, 8) + Zeros(1 + 2 * 5);
  EXPECT_EQ(DecodeFromText("RGB8bfi", "RGB", 2, 2, frame)[1], Repeated({10, 20, 30}, 2));
}

TEST(EdgesRgb8, AlphaComesFirstAndIsPredictedLikeColour) {
  const std::string frame = "1" + Fields({10, 1, 2, 3, 20, 1, 2, 3}, 8) + "0 01 000 00 00  00 000 00 00";
  EXPECT_EQ(DecodeFromText("RGBA8bfp", "ARGB", 2, 2, frame)[1],
            (Bytes{11, 1, 2, 3, (3 * (11 + 20) - 2 * 10) >> 2, 1, 2, 3}));
}

// ---- RGB 10bf

TEST(EdgesRgb10, AlphaIsCutOrShifted) {
  const std::string frame = "1" + Fields({0x2AB, 0x100, 0x3FF, 0x004}, 10);
  EXPECT_EQ(DecodeFromText("RGBA10bfp", "ARGB", 1, 1, frame)[0], (Bytes{0xAA, 0x40, 0xFF, 0x01}));
  EXPECT_EQ(DecodeFromText("RGBA10bfp", "b64a", 1, 1, frame)[0],
            (Bytes{0xAA, 0xC0, 0x40, 0x00, 0xFF, 0xC0, 0x01, 0x00}));
}

TEST(EdgesRgb10, AnInterlacedRowKnowsNothingOfTheRowsBefore) {
  const std::string row = Zeros(1 + 2 * 7);
  for (const u32 sample : {0u, 512u, 1023u}) {
    const std::string frame = "1" + Fields({sample, sample, sample, 1, 2, 3}, 10) + row;
    EXPECT_EQ(DecodeFromText("RGB10bfi", "F210", 2, 2, frame)[1],
              reference::Big32({reference::Field30(512, 512, 512), reference::Field30(512, 512, 512)}));
  }
}

TEST(EdgesRgb10, WhiteIs511AboveTheStartInTheFirstColourAlone) {
  // Symbol 511: the codes of 16 bits begin at symbol 243 with 36,540.
  EXPECT_EQ(EncodeToText("RGB10bfi", "F210", 1, {reference::Big32({reference::Field30(1023, 1023, 1023)})}),
            "0" + Field(36540 + 511 - 243, 16) + "0000");
}

}  // namespace
}  // namespace vorel
