// Depth, range, chroma sampling and alpha of the reference model against values worked out by hand.
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>

#include "tests/reference/pixel_model.h"
#include "tests/reference/pixel_rows.h"

namespace {

using namespace reference;

// A row of grey with chroma of its own choice.
RowSamples Chroma(Samples chroma, int luma = 100) {
  RowSamples row;
  row.first.assign(chroma.size(), luma);
  row.second = chroma;
  row.third = chroma;
  return row;
}

// v410 pixels of Y' 400 with this Cb and Cr.
Bytes Pixels410(const Samples& chroma) {
  Bytes row;
  for (const int value : chroma) {
    const auto field = static_cast<std::uint32_t>(value);
    const Bytes pixel = Little32({Field30(field, 400, field) << 2});
    row.insert(row.end(), pixel.begin(), pixel.end());
  }
  return row;
}

TEST(PixelRanges, LumaWithoutOffsetEndsAt254InVideoRange) {
  const Samples lumas = {0, 219, 237, 238, 239, 240, 255};
  const RowSamples row = {lumas, Samples(7, 128), Samples(7, 128), {}};
  const Bytes bytes = Store("YCbCr8bu444", "_v408", row, 7);
  const Samples expected = {16, 235, 253, 254, 254, 254, 254};
  for (std::size_t x = 0; x < 7; ++x) EXPECT_EQ(bytes[4 * x + 1], expected[x]);
  EXPECT_EQ(Store("YCbCr8bu444", "2vuy", row, 6),
            (Bytes{128, 16, 128, 235, 128, 253, 128, 254, 128, 254, 128, 254}));
  EXPECT_EQ(Store("YCbCr8bu444", "v410", {{240}, {1}, {2}, {}}, 1), Little32({Field30(8, 1016, 4) << 2}));
  EXPECT_EQ(Store("YCbCr8bu444", "_V416", {{240}, {1}, {2}, {}}, 1),
            Little16({0x200, 0x100, 0xFE00, 0xEB00}));
}

TEST(PixelRanges, VideoLumaLosesItsOffsetDownToZeroInR408) {
  const RowSamples row8 = {{0, 5, 15, 16, 17, 235, 255}, Samples(7, 9), Samples(7, 8), {}};
  const Samples expected8 = {0, 0, 0, 0, 1, 219, 239};
  const Bytes bytes8 = Store("YCbCr8bv444", "_r408", row8, 7);
  for (std::size_t x = 0; x < 7; ++x) EXPECT_EQ(bytes8[4 * x + 1], expected8[x]);
  EXPECT_EQ(Store("YCbCr10bv444", "_r408", {{71}, {512}, {515}, {}}, 1), (Bytes{255, 1, 128, 128}));
  EXPECT_EQ(Store("YCbCr10bv444", "_r408", {{67}, {512}, {516}, {}}, 1), (Bytes{255, 0, 128, 129}));
}

TEST(PixelRanges, LumaOfR408IsLimitedOnItsWayIntoVideoRange) {
  const Bytes row = {0, 0, 1, 2, 0, 238, 1, 2, 0, 239, 1, 2, 0, 255, 1, 2};
  EXPECT_EQ(Fetch("YCbCr8bv422", "_r408", row, 4).first, (Samples{16, 254, 254, 254}));
  EXPECT_EQ(Fetch("YCbCr10bv422", "_r408", row, 4).first, (Samples{64, 1016, 1019, 1019}));
  EXPECT_EQ(Fetch("YCbCr10bv422", "_r408", row, 4).second, (Samples{4, 4}));
  EXPECT_EQ(Fetch("YCbCr8bu444", "_r408", row, 4).first, (Samples{0, 238, 239, 255}));
}

TEST(PixelRanges, CodesOfY216OutOfBoundsAreLimitedAndThoseOfV216AreNot) {
  const Bytes row = Little16({0, 0, 0xFFFF, 0xFFFF});
  EXPECT_EQ(Fetch("YCbCr10bv422", "Y216", row, 2).first, (Samples{4, 1019}));
  EXPECT_EQ(Fetch("YCbCr10bv422", "Y216", row, 2).second, Samples{4});
  EXPECT_EQ(Fetch("YCbCr10bv422", "Y216", row, 2).third, Samples{1019});
  EXPECT_EQ(Fetch("YCbCr8bv422", "Y216", row, 2).first, (Samples{1, 254}));
  EXPECT_EQ(Fetch("YCbCr8bv444", "Y216", row, 2).second, (Samples{1, 1}));
  EXPECT_EQ(Fetch("YCbCr8bv422", "Y216", Little16({253 << 6, 254 << 6, 255 << 6, 63}), 2).first,
            (Samples{254, 1}));
  EXPECT_EQ(Fetch("YCbCr10bv422", "v216", row, 2).first, (Samples{0, 1023}));
  EXPECT_EQ(Fetch("YCbCr8bv422", "v216", row, 2).first, (Samples{0, 255}));
}

TEST(PixelRanges, VideoRangeRgbIsLimitedIntoFullRangeFrames) {
  EXPECT_EQ(First(Fetch("RGB8bf", "S10k", Big32({Field30(4, 1019, 64) << 2}), 1)), (Samples{0, 255, 0}));
  EXPECT_EQ(First(Fetch("RGB8bf", "S10k", Big32({Field30(940, 1023, 0) << 2}), 1)), (Samples{255, 255, 0}));
  EXPECT_EQ(First(Fetch("RGB10bf", "S210", Big32({Field30(4, 1019, 64)}), 1)), (Samples{0, 1023, 0}));
  // The middle would be 511.5: 438 * 306133 + 131072 is 134217326, short of 512 << 18 by 402.
  EXPECT_EQ(First(Fetch("RGB10bf", "S210", Big32({Field30(940, 65, 502)}), 1)), (Samples{1023, 1, 511}));
  EXPECT_EQ(First(Fetch("RGB8bf", "_VRGB", {7, 16, 235, 254}, 1)), (Samples{0, 255, 255}));
  EXPECT_EQ(First(Fetch("RGB8bf", "_VRGB", {7, 1, 17, 126}, 1)), (Samples{0, 1, 128}));  // 28159 / 219
}

TEST(PixelRanges, RgbFramesWriteTheirWhiteAndBlack) {
  const RowSamples row8 = {{255}, {0}, {255}, {}};
  const RowSamples row10 = {{1023}, {0}, {1023}, {}};
  EXPECT_EQ(Store("RGB8bf", "S10k", row8, 1), Big32({Field30(940, 64, 940) << 2}));
  EXPECT_EQ(Store("RGB10bf", "S10k", row10, 1), Big32({Field30(940, 64, 940) << 2}));
  EXPECT_EQ(Store("RGB8bf", "_VRGB", row8, 1), (Bytes{255, 235, 16, 235}));
  EXPECT_EQ(Store("RGB10bf", "_VRGB", row10, 1), (Bytes{255, 235, 16, 235}));
  EXPECT_EQ(Store("RGB8bf", "F10k", row8, 1), Big32({Field30(1020, 0, 1020) << 2}));
  EXPECT_EQ(Store("RGB8bf", "b48r", row8, 1), (Bytes{0xFF, 0, 0, 0, 0xFF, 0}));
  EXPECT_EQ(Store("RGB10bf", "b48r", row10, 1), (Bytes{0xFF, 0xC0, 0, 0, 0xFF, 0xC0}));
  EXPECT_EQ(Store("RGB8bf", "L555", {{0x88}, {0x48}, {0x17}, {}}, 1), Little16({0x11 << 10 | 9 << 5 | 2}));
  EXPECT_EQ(Store("RGB8bf", "L565", {{0x88}, {0x48}, {0x17}, {}}, 1), Little16({0x11 << 11 | 18 << 5 | 2}));
  EXPECT_EQ(Store("RGB10bf", "L565", {{1023}, {16}, {63}, {}}, 1), Little16({31 << 11 | 1 << 5 | 1}));
}

TEST(PixelChroma, TheFirstPairSeesItsFirstSampleTwiceAndAnOddRowItsLast) {
  const Bytes row = {10, 50, 20, 0, 13, 51, 21, 0, 30, 52, 22, 0};  // v408: Cb Y' Cr
  const RowSamples frame = Fetch("YCbCr8bv422", "_v408", row, 3);
  EXPECT_EQ(frame.first, (Samples{50, 51, 52, 52}));
  EXPECT_EQ(frame.second, (Samples{(3 * 10 + 13 + 2) >> 2, (13 + 3 * 30 + 2) >> 2}));
  EXPECT_EQ(frame.third, (Samples{(3 * 20 + 21 + 2) >> 2, (21 + 3 * 22 + 2) >> 2}));
}

TEST(PixelChroma, SourcesOf8BitsAreWidenedBeforeTheFilterOf10) {
  const Bytes row = {1, 50, 1, 0, 2, 50, 2, 0};
  EXPECT_EQ(Fetch("YCbCr10bv422", "_v408", row, 2).second, Samples{(3 * 4 + 8 + 2) >> 2});  // 5
}

TEST(PixelChroma, SourcesOf10BitsKeepThemUpToTheFilterOf8) {
  EXPECT_EQ(Fetch("YCbCr8bv422", "v410", Pixels410({6, 7}), 2).second, Samples{2});  // (25 + 8) >> 4
  EXPECT_EQ(Fetch("YCbCr8bv422", "v410", Pixels410({6, 7}), 2).first, (Samples{100, 100}));
  const Bytes words = Little16({6 << 6, 6 << 6, 0x6400, 0, (7 << 6) + 63, (7 << 6) + 63, 0x6400, 0});
  EXPECT_EQ(Fetch("YCbCr8bv422", "_V416", words, 2).third, Samples{2});
  EXPECT_EQ(Fetch("YCbCr8bv422", "v410", Pixels410({1023, 1023}), 2).second, Samples{0});  // 4100 >> 4 is 256
}

TEST(PixelChroma, FramesAreFilteredInTheDepthOfTheTarget) {
  EXPECT_EQ(Store("YCbCr8bv444", "v210", Chroma({1, 2}), 2), Little32({Field30(5, 400, 5), 400}));
  EXPECT_EQ(Store("YCbCr8bv444", "v216", Chroma({1, 2}), 2), Little16({0x100, 100 << 8, 0x100, 100 << 8}));
  EXPECT_EQ(Store("YCbCr8bv444", "Y216", Chroma({1, 3}), 2), Little16({2 << 6, 100 << 6, 2 << 6, 100 << 6}));
  EXPECT_EQ(Store("YCbCr10bv444", "2vuy", Chroma({7, 11}), 2), (Bytes{1, 25, 1, 25}));
  EXPECT_EQ(Store("YCbCr10bv444", "v216", Chroma({7, 11}), 2), Little16({8 << 6, 6400, 8 << 6, 6400}));
}

TEST(PixelChroma, OddPixelsLieBetweenTheirPairAndTheNext) {
  const RowSamples pairs = {{1, 2, 3, 4}, {10, 13}, {20, 20}, {}};
  EXPECT_EQ(Store("YCbCr8bv422", "_v408", pairs, 4),
            (Bytes{10, 1, 20, 235, 12, 2, 20, 235, 13, 3, 20, 235, 13, 4, 20, 235}));
  EXPECT_EQ(Store("YCbCr8bv422", "_v408", pairs, 3), (Bytes{10, 1, 20, 235, 12, 2, 20, 235, 13, 3, 20, 235}));
  EXPECT_EQ(Store("YCbCr8bv422", "_v408", pairs, 1), (Bytes{10, 1, 20, 235}));
}

TEST(PixelChroma, SourcesOf422AreCutTo8BitsBeforeTheyAreAveraged) {
  const Bytes row = Little32({Field30(0, 400, 0), Field30(400, 4, 400), Field30(0, 400, 4)});
  EXPECT_EQ(Fetch("YCbCr8bv444", "v210", row, 4).second, (Samples{0, 1, 1, 1}));
}

TEST(PixelChroma, FramesOf422AreAveragedInTheirOwnDepth) {
  EXPECT_EQ(Store("YCbCr10bv422", "_v408", {Samples(4, 400), {0, 4}, {0, 4}, {}}, 4),
            (Bytes{0, 100, 0, 235, 0, 100, 0, 235, 1, 100, 1, 235, 1, 100, 1, 235}));
  const Bytes wide = Store("YCbCr8bv422", "v410", {Samples(4, 100), {0, 1}, {0, 1}, {}}, 4);
  EXPECT_EQ(wide, Pixels410({0, 4, 4, 4}));
}

TEST(PixelChroma, TheSecondLumaOfAnOddWidthIsReadAndWrittenBy422Formats) {
  const RowSamples frame = Fetch("YCbCr8bv422", "2vuy", {1, 2, 3, 4}, 1);
  EXPECT_EQ(frame.first, (Samples{2, 4}));
  EXPECT_EQ(Store("YCbCr8bv422", "2vuy", frame, 1), (Bytes{1, 2, 3, 4}));
  EXPECT_EQ(Store("YCbCr8bv444", "2vuy", {{7}, {8}, {9}, {}}, 1), (Bytes{8, 7, 9, 7}));
  EXPECT_EQ(Fetch("YCbCr8bw422", "yuvu", {1, 0x80, 3, 0xFF}, 2).third, Samples{0xFF});
}

// Alpha of a frame's sample written to a format, read back as the code at its alpha position.
int StoredAlpha(Name layout, Name pixel, int alpha) {
  const Bytes row = Store(layout, pixel, {{0}, {0}, {0}, {alpha}}, 1);
  return reference::ReadCodes(pixel, row.data(), 1).alpha[0];
}

int FetchedAlpha(Name layout, Name pixel, int alpha) {
  Bytes row(RowBytes(pixel, 1));
  reference::WriteCodes(pixel, {{0}, {0}, {0}, {alpha}}, 1, row.data());
  return Fetch(layout, pixel, row, 1).alpha[0];
}

TEST(PixelAlpha, GoesIntoTheRangeOfTheFrame) {
  EXPECT_EQ(FetchedAlpha("RGBA8bf", "ARGB", 77), 77);
  EXPECT_EQ(FetchedAlpha("RGBA8bf", "AVRGB", 77), 77);  // only its colour is video range
  EXPECT_EQ(FetchedAlpha("RGBA8bf", "b64a", 0x12FF), 0x12);
  EXPECT_EQ(FetchedAlpha("RGBA8bf", "Av408", 235), 255);
  EXPECT_EQ(FetchedAlpha("RGBA8bf", "Av408", 255), 255);
  EXPECT_EQ(FetchedAlpha("RGBA8bf", "VUYA", 3), 0);
  EXPECT_EQ(FetchedAlpha("RGBA8bf", "AV416", 502 << 6), 128);  // (438 * 255 + 438) / 876
  EXPECT_EQ(FetchedAlpha("RGBA10bf", "L64A", 0xFFFF), 1023);
  EXPECT_EQ(FetchedAlpha("RGBA10bf", "Ar408", 255), 1020);
  EXPECT_EQ(FetchedAlpha("RGBA10bf", "VUYA", 17), 5);  // (1023 + 109) / 219
  EXPECT_EQ(FetchedAlpha("RGBA10bf", "AV416", 0xEB00), 1023);
  EXPECT_EQ(FetchedAlpha("RGBA10bf", "AV416", 0xFFFF), 1023);
  EXPECT_EQ(FetchedAlpha("YCbCrA8bv4444", "AVRGB", 128), 126);  // 28158 / 255 + 16
  EXPECT_EQ(FetchedAlpha("YCbCrA8bv4444", "AV416", 0x12FF), 0x12);
  EXPECT_EQ(FetchedAlpha("YCbCrA8bv4224", "b64a", 0xFFFF), 235);
  EXPECT_EQ(FetchedAlpha("YCbCrA8bv4224", "Ar408", 255), 235);
  EXPECT_EQ(FetchedAlpha("YCbCrA8bu4444", "A46L", 0x12FF), 0x12);
  EXPECT_EQ(FetchedAlpha("YCbCrA10bv4444", "ABGR", 128), 504);  // 112255 / 255 + 64
  EXPECT_EQ(FetchedAlpha("YCbCrA10bv4444", "b64a", 0xFFF0), 940);
  EXPECT_EQ(FetchedAlpha("YCbCrA10bv4224", "Av408", 235), 940);
  EXPECT_EQ(FetchedAlpha("YCbCrA10bv4224", "AV416", 0xFFFF), 1023);
}

TEST(PixelAlpha, GoesIntoTheRangeOfTheFormat) {
  EXPECT_EQ(StoredAlpha("RGBA8bf", "b64a", 255), 0xFF00);
  EXPECT_EQ(StoredAlpha("RGBA8bf", "VUYA", 128), 126);
  EXPECT_EQ(StoredAlpha("RGBA8bf", "AV416", 255), 940 << 6);
  EXPECT_EQ(StoredAlpha("RGBA10bf", "ARGB", 1023), 255);
  EXPECT_EQ(StoredAlpha("RGBA10bf", "b64a", 0x155), 0x155 << 6);
  EXPECT_EQ(StoredAlpha("RGBA10bf", "Av408", 1023), 235);
  EXPECT_EQ(StoredAlpha("RGBA10bf", "AV416", 1023), 0xEB00);
  EXPECT_EQ(StoredAlpha("RGBA10bf", "AV416", 0), 0x1000);
  EXPECT_EQ(StoredAlpha("YCbCrA8bv4444", "ARGB", 126), 128);  // (110 * 255 + 109) / 219
  EXPECT_EQ(StoredAlpha("YCbCrA8bv4444", "Ar408", 15), 0);
  EXPECT_EQ(StoredAlpha("YCbCrA8bv4444", "b64a", 235), 0xFF80);
  EXPECT_EQ(StoredAlpha("YCbCrA8bv4444", "b64a", 255), 0xFF80);
  EXPECT_EQ(StoredAlpha("YCbCrA8bu4444", "b64a", 255), 0xFF00);
  EXPECT_EQ(StoredAlpha("YCbCrA8bu4444", "Av408", 255), 235);
  EXPECT_EQ(StoredAlpha("YCbCrA8bu4444", "AV416", 255), 0xEB00);
  EXPECT_EQ(StoredAlpha("YCbCrA10bv4444", "AVRGB", 940), 255);
  EXPECT_EQ(StoredAlpha("YCbCrA10bv4444", "L64A", 940), 0xFFF0);
  EXPECT_EQ(StoredAlpha("YCbCrA10bv4444", "L64A", 0), 0);
  EXPECT_EQ(StoredAlpha("YCbCrA10bv4444", "VUYA", 1023), 255);
}

TEST(PixelAlpha, OpaqueWordsOfDeepFormatsDependOnTheFrame) {
  const auto opaque = [](Name layout, Name pixel) {
    const Bytes row = Store(layout, pixel, {{0, 0}, {0, 0}, {0, 0}, {}}, 1);
    return reference::ReadCodes(pixel, row.data(), 1).alpha[0];
  };
  for (const Name pixel : {"b64_", "L64_", "_46L"}) {
    EXPECT_EQ(opaque("RGB8bf", pixel), 0xFF00);
    EXPECT_EQ(opaque("RGB10bf", pixel), 0xFFC0);
    EXPECT_EQ(opaque("YCbCr8bv422", pixel), 0xFF80);
    EXPECT_EQ(opaque("YCbCr8bu444", pixel), 0xFF80);
    EXPECT_EQ(opaque("YCbCr10bv444", pixel), 0xFFF0);
  }
  for (const Name layout : {"RGB8bf", "RGB10bf", "YCbCr8bv422", "YCbCr8bu444", "YCbCr10bv422"}) {
    EXPECT_EQ(opaque(layout, "_V416"), 0xEB00);
    EXPECT_EQ(opaque(layout, "VUY_"), 0xEB);
    EXPECT_EQ(opaque(layout, "_r408"), 0xFF);
    EXPECT_EQ(opaque(layout, "_VRGB"), 0xFF);
  }
}

TEST(PixelAlpha, OfTheMissingPixelIsThatOfTheFirst) {
  const RowSamples frame =
      Fetch("YCbCrA8bv4224", "VUYA", {128, 128, 50, 60, 128, 128, 51, 61, 128, 128, 52, 62}, 3);
  EXPECT_EQ(frame.alpha, (Samples{60, 61, 62, 62}));
}

}  // namespace
