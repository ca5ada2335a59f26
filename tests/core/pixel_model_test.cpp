// Values of the reference model against values worked out by hand: it judges the fast conversions, so nothing
// of theirs may judge it.
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <string>

#include "tests/reference/pixel_model.h"
#include "tests/reference/pixel_rows.h"

namespace {

using namespace reference;

constexpr int kStandards[] = {0, 1, 2};

struct GreyCase {
  Name layout, pixel;
  Bytes white, black;
  int whiteLuma, blackLuma, neutral;
};

TEST(PixelMatrix, BlackAndWhiteAreExactInAllRowsOfWeights) {
  const Bytes zero4(4), zero8(8), full3(3, 0xFF), full4(4, 0xFF), full8(8, 0xFF);
  const GreyCase cases[] = {
      {"YCbCr8bu444", "RGB", full3, Bytes(3), 219, 0, 128},
      {"YCbCr8bv422", "_RGB", full4, zero4, 235, 16, 128},
      {"YCbCr8bu444", "F210", full4, zero4, 219, 0, 128},
      {"YCbCr8bv422", "b64_", full8, zero8, 235, 16, 128},
      {"YCbCr10bv444", "BGR_", full4, zero4, 940, 64, 512},
      {"YCbCr10bv422", "F10k", full4, zero4, 940, 64, 512},
      {"YCbCr10bv444", "L64_", full8, zero8, 940, 64, 512},
      {"YCbCr8bv444", "_VRGB", Bytes(4, 235), Bytes(4, 16), 235, 16, 128},
      {"YCbCr10bv444", "_VRGB", Bytes(4, 235), Bytes(4, 16), 940, 64, 512},
      {"YCbCr8bv444", "S210", Big32({Field30(940, 940, 940)}), Big32({Field30(64, 64, 64)}), 235, 16, 128},
      {"YCbCr10bv422", "S210", Big32({Field30(940, 940, 940)}), Big32({Field30(64, 64, 64)}), 940, 64, 512},
  };
  for (const GreyCase& test : cases)
    for (const int standard : {0, 1, 2, 3, 4, 99, -1}) {
      SCOPED_TRACE(std::string(test.layout) + " from " + std::string(test.pixel));
      EXPECT_EQ(First(Fetch(test.layout, test.pixel, test.white, 1, standard)),
                (Samples{test.whiteLuma, test.neutral, test.neutral}));
      EXPECT_EQ(First(Fetch(test.layout, test.pixel, test.black, 1, standard)),
                (Samples{test.blackLuma, test.neutral, test.neutral}));
    }
}

TEST(PixelMatrix, WhiteOfRgbFramesAndOfYccFramesArrivesAsWhite) {
  const RowSamples white8 = {{255}, {255}, {255}, {}};
  const RowSamples white10 = {{1023}, {1023}, {1023}, {}};
  const RowSamples video8 = {{235}, {128}, {128}, {}};
  const RowSamples video10 = {{940}, {512}, {512}, {}};
  for (const int standard : kStandards) {
    EXPECT_EQ(Store("RGB8bf", "_v408", white8, 1, standard), (Bytes{128, 235, 128, 235}));
    EXPECT_EQ(Store("RGB8bf", "_r408", white8, 1, standard), (Bytes{255, 219, 128, 128}));
    EXPECT_EQ(Store("RGB10bf", "VUY_", white10, 1, standard), (Bytes{128, 128, 235, 235}));
    EXPECT_EQ(Store("RGB8bf", "v410", white8, 1, standard), Little32({Field30(512, 940, 512) << 2}));
    EXPECT_EQ(Store("RGB10bf", "v410", white10, 1, standard), Little32({Field30(512, 940, 512) << 2}));
    EXPECT_EQ(Store("RGB8bf", "_V416", white8, 1, standard), Little16({0x8000, 0x8000, 0xEB00, 0xEB00}));
    EXPECT_EQ(Store("RGB10bf", "_V416", white10, 1, standard), Little16({0x8000, 0x8000, 0xEB00, 0xEB00}));
    EXPECT_EQ(Store("RGB10bf", "Y216", white10, 1, standard), Little16({0x2000, 0x3AC0, 0x2000, 0x3AC0}));
    EXPECT_EQ(Store("YCbCr8bv444", "_RGB", video8, 1, standard), (Bytes{255, 255, 255, 255}));
    EXPECT_EQ(Store("YCbCr8bu444", "RGB", {{219}, {128}, {128}, {}}, 1, standard), Bytes(3, 255));
    EXPECT_EQ(Store("YCbCr8bv444", "F210", video8, 1, standard), Big32({Field30(1022, 1022, 1022)}));
    EXPECT_EQ(Store("YCbCr8bv444", "_VRGB", video8, 1, standard), (Bytes{255, 235, 235, 235}));
    EXPECT_EQ(Store("YCbCr8bv444", "S210", video8, 1, standard), Big32({Field30(940, 940, 940)}));
    EXPECT_EQ(Store("YCbCr10bv444", "RGB", video10, 1, standard), Bytes(3, 255));
    EXPECT_EQ(Store("YCbCr10bv444", "F210", video10, 1, standard), Big32({Field30(1023, 1023, 1023)}));
    EXPECT_EQ(Store("YCbCr10bv444", "_VRGB", video10, 1, standard), (Bytes{255, 235, 235, 235}));
    EXPECT_EQ(Store("YCbCr10bv444", "S210", video10, 1, standard), Big32({Field30(940, 940, 940)}));
    EXPECT_EQ(First(Fetch("RGB10bf", "_v408", {128, 235, 128, 0}, 1, standard)), (Samples(3, 1023)));
    EXPECT_EQ(First(Fetch("RGB8bf", "_r408", {0, 219, 128, 128}, 1, standard)), (Samples(3, 255)));
  }
}

TEST(PixelMatrix, RedIn601OnTheScaleOf8Bits) {
  // Y' (65 * 255 + 127) / 255 = 65; R on the scale (73 * 255 + 42) / 85 = 219, B 0; Cb ((0 - 65) * 112 + 195
  // * 128 + 97) / 195 = 17777 / 195; Cr (154 * 112 + 154 * 128 + 77) / 154 = 37037 / 154.
  EXPECT_EQ(First(Fetch("YCbCr8bu444", "RGB", {255, 0, 0}, 1)), (Samples{65, 91, 240}));
}

TEST(PixelMatrix, ShadesBrighterThanWhiteKeepClearOfTheReservedCodesOnly) {
  for (const int standard : kStandards) {
    const RowSamples bright = {{235, 254, 255, 0}, Samples(4, 128), Samples(4, 128), {}};
    EXPECT_EQ(Store("YCbCr8bv444", "_VRGB", bright, 4, standard),
              (Bytes{255, 235, 235, 235, 255, 254, 254, 254, 255, 254, 254, 254, 255, 1, 1, 1}));
    // y of 239 and -16 on the scale of 10 bits: (4 * 112 * 239 + 56) / 112 = 956, and -63 since -63.5 is cut.
    EXPECT_EQ(Store("YCbCr8bv444", "S210", {{255, 0}, {128, 128}, {128, 128}, {}}, 2, standard),
              Big32({Field30(1019, 1019, 1019), Field30(4, 4, 4)}));
  }
}

TEST(PixelMatrix, VideoRgbFrom8BitSamplesRoundsUpOnBothSidesOfZero) {
  // 601, Y' 0, Cr 129: R1 = 154 - 112 * 16 = -1638, (4 * -1638 + 56) / 112 = -58, and 6 with black added.
  // B1 = -1792, (-7168 + 56) / 112 = -63 (-63.5 cut), so 1, limited to 4.
  // G = (-16 * 876 + 24 * 63 + 65 * 58 + 65) / 130 = -8669 / 130 = -66, so -2, limited to 4.
  EXPECT_EQ(Store("YCbCr8bv444", "S210", {{0}, {128}, {129}, {}}, 1), Big32({Field30(6, 4, 4)}));
  // From 10 bits the rounding is symmetric. Y' 64, Cr 513: R1 = 615, (615 + 224) / 448 = 1; G = (-261 - 258)
  // / 516 = -1. Cr 511: R1 = -615, (-615 - 224) / 448 = -1; G = (261 + 258) / 516 = 1.
  EXPECT_EQ(Store("YCbCr10bv444", "S210", {{64, 64}, {512, 512}, {513, 511}, {}}, 2),
            Big32({Field30(65, 63, 64), Field30(63, 65, 64)}));
}

TEST(PixelMatrix, GreenComesFromRedAndBlueBeforeTheirLimits) {
  // 601, 8 bits, Y' 235, Cb 128, Cr 255: R1 = 154 * 127 + 112 * 219 = 44086, (44086 * 85 + 4088) / 8176 =
  // 458; B = 255; G = (219 * 255 + 65 - 24 * 255 - 65 * 458) / 130 = 20020 / 130 = 154.
  EXPECT_EQ(Store("YCbCr8bv444", "RGB", {{235}, {128}, {255}, {}}, 1), (Bytes{255, 154, 255}));
}

TEST(PixelMatrix, WideProductsWrapFromV416AndDoNotFromV216) {
  // 601 on the scale 3504, Y' 4095, Cr 4095, Cb 2048: R1 = 2457 * 2047 + 1792 * 3839 = 11908967, B1 =
  // 6879488. Times 341: 4060957747 and 2345905408. Wrapped at 32 bits -234009549 and -1949061888, so R = -111
  // and B = -930, and G = (3839 * 1023 + 1029 + 399 * 930 + 1047 * 111) / 2058 = 2145.
  EXPECT_EQ(First(Fetch("RGB10bf", "_V416", Little16({0xFFF0, 0x8000, 0xFFF0, 0}), 1)),
            (Samples{0, 1023, 0}));
  // Exact: R = 1940, B = 1121, G = (3927297 + 1029 - 399 * 1121 - 1047 * 1940) / 2058 = 1449867 / 2058 = 704.
  EXPECT_EQ(First(Fetch("RGB10bf", "v216", Little16({0x8000, 0xFFF0, 0xFFF0, 0}), 1)),
            (Samples{1023, 704, 1023}));
}

TEST(PixelMatrix, VideoRgbOutsideItsRangeWrapsAfterTheFilter) {
  // S210 blue 1023, red and green 0, in 601: T = -64 * 777 + 959 * 99 = 45213, Y' = 52 + 64; Cb is 804548 /
  // 777 = 1035 and does not fit; Cr is 263219 / 615 = 427. The second pixel is black.
  const Bytes row = Big32({Field30(0, 0, 1023), Field30(64, 64, 64)});
  const RowSamples pixels = Fetch("YCbCr10bv444", "S210", row, 2);
  EXPECT_EQ(First(pixels), (Samples{116, 1035 - 1024, 427}));
  EXPECT_EQ(Fetch("YCbCr10bv422", "S210", row, 2).second, Samples{(3 * 1035 + 512 + 2) / 4});
}

TEST(PixelMatrix, EightBitRgbComesBackFromTenBitYcc) {
  for (const int standard : kStandards)
    for (int red = 0; red < 256; red += 5) {
      Bytes row;
      for (int green = 0; green < 256; green += 5)
        for (int blue = green % 3; blue < 256; blue += 3)
          for (const int value : {red, green, blue}) row.push_back(static_cast<std::uint8_t>(value));
      const std::size_t width = row.size() / 3;
      const RowSamples frame = FetchRow("YCbCr10bv444", "RGB", standard, row.data(), width);
      ASSERT_EQ(Store("YCbCr10bv444", "RGB", frame, width, standard), row);
      const RowSamples rgb = FetchRow("RGB8bf", "RGB", standard, row.data(), width);
      const Bytes deep = Store("RGB8bf", "_V416", rgb, width, standard);
      ASSERT_EQ(Store("RGB8bf", "RGB", FetchRow("RGB8bf", "_V416", standard, deep.data(), width), width),
                row);
    }
}

TEST(PixelMatrix, TenBitRgbComesBackFromTwelveBitYcc) {
  std::uint32_t state = 3;
  for (const int standard : kStandards) {
    RowSamples rgb;
    for (int i = 0; i < 100000; ++i)
      for (Samples* line : {&rgb.first, &rgb.second, &rgb.third})
        line->push_back(static_cast<int>(Next(state)) & 1023);
    const std::size_t width = rgb.first.size();
    const Bytes row = Store("RGB10bf", "_V416", rgb, width, standard);
    const RowSamples back = FetchRow("RGB10bf", "_V416", standard, row.data(), width);
    ASSERT_TRUE(back.first == rgb.first && back.second == rgb.second && back.third == rgb.third);
  }
}

TEST(PixelMatrix, YccInsideTheCubeComesBackFromOddDepths) {
  const struct {
    Name layout, pixel, source;
    int white;  // code of it; a pixel with neither black nor white in it was not clamped
  } cases[] = {{"YCbCr8bu444", "F210", "RGB", 1022},
               {"YCbCr8bu444", "b64_", "RGB", 0xFF80},
               {"YCbCr10bv444", "b64_", "F210", 0xFFF0}};
  constexpr std::size_t kWidth = 50000;
  for (const auto& test : cases)
    for (const int standard : kStandards) {
      std::uint32_t state = 4;
      Bytes row(RowBytes(test.source, kWidth));
      for (std::uint8_t& byte : row) byte = static_cast<std::uint8_t>(Next(state));
      const RowSamples frame = FetchRow(test.layout, test.source, standard, row.data(), kWidth);
      const Bytes wide = Store(test.layout, test.pixel, frame, kWidth, standard);
      const RowSamples codes = ReadCodes(test.pixel, wide.data(), kWidth);
      const RowSamples back = FetchRow(test.layout, test.pixel, standard, wide.data(), kWidth);
      const auto isInside = [&test](int code) { return code > 0 && code < test.white; };
      std::size_t inside = 0;
      for (std::size_t x = 0; x < kWidth; ++x) {
        if (!isInside(codes.first[x]) || !isInside(codes.second[x]) || !isInside(codes.third[x])) continue;
        ++inside;
        ASSERT_EQ(back.first[x], frame.first[x]);
        ASSERT_EQ(back.second[x], frame.second[x]);
        ASSERT_EQ(back.third[x], frame.third[x]);
      }
      EXPECT_GT(inside, kWidth / 2);
    }
}

}  // namespace
