// PNG files put together here, chunk by chunk and without compression, and one compressed by another program.
#include "picture_io/png.h"

#include <array>

#include "tests/picture_io/picture_files.h"

namespace vorel::picture_io {

namespace {

constexpr u8 kGrey = 0;
constexpr u8 kColour = 2;
constexpr u8 kPalette = 3;
constexpr u8 kGreyAlpha = 4;
constexpr u8 kColourAlpha = 6;

u32 CyclicSum(const StoredPicture& bytes) {
  u32 sum = ~u32{0};
  for (const u8 byte : bytes) {
    sum ^= byte;
    for (int bit = 0; bit < 8; ++bit) sum = (sum & 1) != 0 ? sum >> 1 ^ 0xEDB88320 : sum >> 1;
  }
  return ~sum;
}

StoredPicture Chunk(std::string_view name, const StoredPicture& data) {
  StoredPicture named(name.begin(), name.end());
  Append(named, data);
  StoredPicture chunk = Number(data.size(), 4, true);
  Append(chunk, named);
  Append(chunk, Number(CyclicSum(named), 4, true));
  return chunk;
}

// Up to 65535 bytes in one stored block.
StoredPicture Stored(const StoredPicture& data) {
  u32 low = 1;
  u32 high = 0;
  for (const u8 byte : data) {
    low = (low + byte) % 65521;
    high = (high + low) % 65521;
  }
  StoredPicture stream = Bytes("7801 01");
  Append(stream, Number(data.size(), 2, false));
  Append(stream, Number(~data.size(), 2, false));
  Append(stream, data);
  Append(stream, Number(high << 16 | low, 4, true));
  return stream;
}

struct Form {
  u32 width;
  u32 height;
  u8 depth;
  u8 colour;
  u8 interlace = 0;
};

// `chunks` stand before the samples; `rows` begin with their filter bytes.
StoredPicture PngFile(const Form& form, const StoredPicture& chunks, const StoredPicture& rows) {
  StoredPicture header = Number(form.width, 4, true);
  Append(header, Number(form.height, 4, true));
  Append(header, {form.depth, form.colour, 0, 0, form.interlace});
  StoredPicture file = Bytes("89504e470d0a1a0a");
  Append(file, Chunk("IHDR", header));
  Append(file, chunks);
  Append(file, Chunk("IDAT", Stored(rows)));
  Append(file, Chunk("IEND", {}));
  return file;
}

// Checks header and pixels at once.
void ExpectPicture(const StoredPicture& file, const Form& form, u32 pixelFormat, std::string_view pixels) {
  const PictureFileHeader header = DescribePng(file, "a file");
  EXPECT_EQ(header.format.pixelFormat, pixelFormat);
  EXPECT_EQ(header.format.width, form.width);
  EXPECT_EQ(header.format.height, form.height);
  const Picture picture = ReadPicture(kPngFiles, file);
  EXPECT_EQ(FormatOfPicture(picture), header.format);
  EXPECT_EQ(PixelsOf(picture), Bytes(pixels));
}

}  // namespace

TEST(Png, ColoursOf8BitsStayAsTheyStand) {
  const Form form = {3, 2, 8, kColour};
  const StoredPicture rows = Bytes("00 010203 040506 070809  00 0a0b0c 0d0e0f 101112");
  ExpectPicture(PngFile(form, {}, rows), form, 24, "010203 040506 070809 0a0b0c 0d0e0f 101112");
}

TEST(Png, AlphaOf8BitsIsLast) {
  const Form form = {2, 1, 8, kColourAlpha};
  ExpectPicture(PngFile(form, {}, Bytes("00 01020304 05060700")), form, kRgba8, "01020304 05060700");
}

TEST(Png, WordsOf16BitsStayBigEndian) {
  const Form form = {2, 1, 16, kColour};
  ExpectPicture(PngFile(form, {}, Bytes("00 123456789abc 0001ff00fffe")), form, kRgb16,
                "123456789abc 0001ff00fffe");
}

TEST(Png, AlphaOf16BitsIsFirst) {
  const Form form = {2, 1, 16, kColourAlpha};
  ExpectPicture(PngFile(form, {}, Bytes("00 1112 2122 3132 a1a2  0102 0304 0506 0708")), form, kArgb16,
                "a1a2 1112 2122 3132  0708 0102 0304 0506");
}

TEST(Png, GreyOfFewBitsIsScaledToWholeBytes) {
  const Form one = {3, 1, 1, kGrey};
  ExpectPicture(PngFile(one, {}, Bytes("00 a0")), one, 24, "ffffff 000000 ffffff");
  const Form two = {4, 1, 2, kGrey};
  ExpectPicture(PngFile(two, {}, Bytes("00 1b")), two, 24, "000000 555555 aaaaaa ffffff");
  const Form four = {2, 1, 4, kGrey};
  ExpectPicture(PngFile(four, {}, Bytes("00 3c")), four, 24, "333333 cccccc");
}

TEST(Png, GreyBecomesThreeEqualSamples) {
  const Form eight = {2, 1, 8, kGrey};
  ExpectPicture(PngFile(eight, {}, Bytes("00 7fc1")), eight, 24, "7f7f7f c1c1c1");
  const Form sixteen = {1, 1, 16, kGrey};
  ExpectPicture(PngFile(sixteen, {}, Bytes("00 1234")), sixteen, kRgb16, "1234 1234 1234");
  const Form alpha = {1, 1, 8, kGreyAlpha};
  ExpectPicture(PngFile(alpha, {}, Bytes("00 7f20")), alpha, kRgba8, "7f7f7f20");
  const Form deepAlpha = {1, 1, 16, kGreyAlpha};
  ExpectPicture(PngFile(deepAlpha, {}, Bytes("00 1234 5678")), deepAlpha, kArgb16, "5678 1234 1234 1234");
}

TEST(Png, PaletteBecomesItsColours) {
  const Form form = {4, 1, 2, kPalette};
  const StoredPicture palette = Chunk("PLTE", Bytes("010203 111213 212223 313233"));
  ExpectPicture(PngFile(form, palette, Bytes("00 e4")), form, 24, "313233 212223 111213 010203");
}

TEST(Png, TransparencyOfAPaletteBecomesAlpha) {
  const Form form = {3, 1, 8, kPalette};
  StoredPicture chunks = Chunk("PLTE", Bytes("010203 111213 212223"));
  Append(chunks, Chunk("tRNS", Bytes("0080")));
  ExpectPicture(PngFile(form, chunks, Bytes("00 000102")), form, kRgba8, "01020300 11121380 212223ff");
}

TEST(Png, TransparentColourBecomesAlpha) {
  const Form colour = {2, 1, 8, kColour};
  ExpectPicture(PngFile(colour, Chunk("tRNS", Bytes("0001 0002 0003")), Bytes("00 010203 010204")), colour,
                kRgba8, "01020300 010204ff");
  const Form deep = {2, 1, 16, kColour};
  ExpectPicture(PngFile(deep, Chunk("tRNS", Bytes("0101 0202 0303")), Bytes("00 010102020303 010102020304")),
                deep, kArgb16, "0000 0101 0202 0303  ffff 0101 0202 0304");
  const Form grey = {2, 1, 8, kGrey};
  ExpectPicture(PngFile(grey, Chunk("tRNS", Bytes("0007")), Bytes("00 0708")), grey, kRgba8,
                "07070700 080808ff");
}

TEST(Png, GammaAndPrimariesAreNotApplied) {
  const Form form = {2, 1, 8, kColour};
  StoredPicture chunks = Chunk("gAMA", Bytes("000186a0"));
  Append(chunks,
         Chunk("cHRM", Bytes("00007a25 000080e8 0000fa00 000080e8 00007530 0000ea60 00003a98 00001770")));
  Append(chunks, Chunk("sBIT", Bytes("050505")));
  const StoredPicture file = PngFile(form, chunks, Bytes("00 408010 c0207f"));
  ExpectPicture(file, form, 24, "408010 c0207f");
  EXPECT_EQ(DescribePng(file, "a file").unkept, "gamma and primaries");
  const auto unkeptOf = [form](const StoredPicture& chunk) {
    return DescribePng(PngFile(form, chunk, Bytes("00 408010 c0207f")), "a file").unkept;
  };
  EXPECT_EQ(unkeptOf(Chunk("gAMA", Bytes("0000b18f"))), "gamma");
  EXPECT_EQ(unkeptOf(Chunk("sRGB", Bytes("00"))), "that colours are sRGB");
  EXPECT_EQ(unkeptOf(Chunk("sBIT", Bytes("050505"))), "");
}

// A picture of 3 x 3 in the passes of Adam7: pass 1 has (0,0); 4 has (2,0) in its row; 5 has row 2, columns 0
// and 2; 6 has column 1 of rows 0 and 2; 7 has row 1.
TEST(Png, InterlacedRowsFindTheirPlaces) {
  const Form form = {3, 3, 8, kGrey, 1};
  const StoredPicture rows = Bytes("00 01  00 03  00 0709  00 02 00 08  00 040506");
  ExpectPicture(PngFile(form, {}, rows), form, 24,
                "010101 020202 030303  040404 050505 060606  070707 080808 090909");
}

// 5 x 3, RGB of 8 bits, rows filtered by sub, up and Paeth, compressed by Python's zlib at level 9.
TEST(Png, FilteredAndCompressedRowsComeBack) {
  const Form form = {5, 3, 8, kColour};
  StoredPicture expected;
  for (int row = 0; row < 3; ++row) {
    for (int byte = 0; byte < 15; ++byte)
      expected.push_back(static_cast<u8>(row * row * 40 + byte * 17 + row));
  }
  const Picture picture = ReadPicture(
      kPngFiles,
      Bytes("89504e470d0a1a0a0000000d4948445200000005000000030802000000d45452af0000001a4944415478da63"
            "6410543246024c9aa880a5b2b212215b590900c3d009615c9e372f0000000049454e44ae426082"));
  EXPECT_EQ(FormatOfPicture(picture).width, form.width);
  EXPECT_EQ(PixelsOf(picture), expected);
}

TEST(Png, EveryKindComesBackBitForBit) {
  for (const u32 pixelFormat : kPngFiles.pixelFormats) {
    for (const u32 width : {1u, 2u, 3u, 17u, 64u, 67u}) {
      const Picture picture = NoisePicture(pixelFormat, width, 5);
      StoredPicture file;
      WritePng(picture, file);
      const Picture back = ReadPicture(kPngFiles, file);
      EXPECT_EQ(FormatOfPicture(back), FormatOfPicture(picture));
      EXPECT_EQ(PixelsOf(back), PixelsOf(picture)) << pixelFormat << " " << width;
    }
  }
}

TEST(Png, WrittenHeaderNamesTheKind) {
  const std::array<std::pair<u32, StoredPicture>, 4> kinds = {{{24, {8, kColour}},
                                                               {kRgba8, {8, kColourAlpha}},
                                                               {kRgb16, {16, kColour}},
                                                               {kArgb16, {16, kColourAlpha}}}};
  for (const auto& [pixelFormat, kind] : kinds) {
    StoredPicture file;
    WritePng(NoisePicture(pixelFormat, 258, 3), file);
    ASSERT_GT(file.size(), 26u);
    EXPECT_EQ(StoredPicture(file.begin(), file.begin() + 24),
              Bytes("89504e470d0a1a0a 0000000d 49484452 00000102 00000003"));
    EXPECT_EQ(StoredPicture(file.begin() + 24, file.begin() + 26), kind);
  }
}

TEST(Png, PictureOfAnotherSizeTakesTheMemoryOver) {
  Picture picture = NoisePicture(kArgb16, 40, 30);
  const Form form = {1, 1, 8, kColour};
  kPngFiles.read(PngFile(form, {}, Bytes("00 010203")), "a file", picture);
  EXPECT_EQ(PixelsOf(picture), Bytes("010203"));
}

TEST(Png, OtherFilesAreNotPng) {
  EXPECT_EQ(RefusalOf(kPngFiles, {}), "a file: not a PNG file: it does not begin like one ()");
  EXPECT_EQ(RefusalOf(kPngFiles, Bytes("53445058 00000800 0000 0000")),
            "a file: not a PNG file: it does not begin like one ()");
}

TEST(Png, BadCheckSumIsToldInLibpngsWords) {
  StoredPicture file = PngFile({1, 1, 8, kColour}, {}, Bytes("00 010203"));
  file[16] ^= 1;
  EXPECT_EQ(RefusalOf(kPngFiles, file),
            "a file: the PNG file cannot be read: IHDR: CRC error (the file is damaged or not complete)");
}

TEST(Png, EveryBeginningIsRefused) {
  ExpectBeginningsRefused(kPngFiles, PngFile({3, 3, 8, kGrey, 1}, Chunk("gAMA", Bytes("000186a0")),
                                             Bytes("00 01  00 03  00 0709  00 02 00 08  00 040506")));
  StoredPicture file;
  WritePng(NoisePicture(kArgb16, 5, 3), file);
  ExpectBeginningsRefused(kPngFiles, file);
}

TEST(Png, DamageIsFoundByCheckSums) {
  StoredPicture file;
  WritePng(NoisePicture(kRgb16, 9, 7), file);
  EXPECT_GT(CountRefusedDamages(kPngFiles, file, 1000), 900);
}

// Samples changed under check sums that are right again.
TEST(Png, DamagedStreamsNeverCrash) {
  Noise noise{5};
  for (int attempt = 0; attempt < 2000; ++attempt) {
    StoredPicture header = Bytes("00000007 00000005 08 02 00 00 00");
    header[8 + noise() % 5] = static_cast<u8>(noise() % 17);
    StoredPicture palette(3 * (1 + noise() % 5));
    StoredPicture samples = Stored(StoredPicture(noise() % 400, 0));
    for (int change = 0; change < 3; ++change)
      samples[noise() % samples.size()] = static_cast<u8>(noise() % 8);
    StoredPicture file = Bytes("89504e470d0a1a0a");
    Append(file, Chunk("IHDR", header));
    Append(file, Chunk("PLTE", palette));
    if (noise() % 2 == 0) Append(file, Chunk("tRNS", StoredPicture(noise() % 9, 3)));
    Append(file, Chunk("IDAT", samples));
    Append(file, Chunk("IEND", {}));
    Picture picture;
    const std::string refusal = ProblemText([&] { kPngFiles.read(file, "a file", picture); });
    if (refusal.empty()) {
      EXPECT_EQ(picture.width, 7u);
      PixelsOf(picture);
    } else {
      EXPECT_EQ(refusal.substr(0, 8), "a file: ");
    }
  }
}

TEST(Png, ClaimOfTheLargestPictureTakesNoMemory) {
  const StoredPicture file = PngFile({32767, 32767, 16, kColourAlpha}, {}, Bytes("00 010203"));
  Picture picture;
  EXPECT_EQ(ProblemText([&] { kPngFiles.read(file, "a file", picture); }),
            "a file: the file is too short for its picture of 32767 x 32767 "
            "(the file is damaged or not complete)");
  EXPECT_EQ(picture.bytes.capacity(), 0u);
}

TEST(Png, SidesBeyondThoseOfMoviesAreRefused) {
  EXPECT_EQ(RefusalOf(kPngFiles, PngFile({32768, 1, 8, kColour}, {}, Bytes("00"))),
            "a file: the picture size 32768 x 1 is not handled (sides are from 1 to 32767 pixels)");
}

}  // namespace vorel::picture_io
