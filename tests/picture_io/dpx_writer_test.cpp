// Written DPX files: their fields, at the places that the format gives them, and their samples.
#include <array>

#include "picture_io/dpx.h"
#include "tests/picture_io/picture_files.h"

namespace vorel::picture_io {

namespace {

struct Field {
  std::size_t at;
  std::size_t bytes;
  u64 value;
};

u64 NumberAt(const StoredPicture& file, std::size_t at, std::size_t bytes, bool isBig) {
  u64 value = 0;
  for (std::size_t i = 0; i < bytes; ++i) value = value << 8 | file.at(at + (isBig ? i : bytes - 1 - i));
  return value;
}

// Pictures as frames give them: the two lowest bits of a word are 0.
Picture NoiseOf10Bits(u32 width, u32 height) {
  Picture picture = NoisePicture(kRgb10, width, height);
  for (std::size_t i = 3; i < picture.bytes.size(); i += 4) picture.bytes[i] &= 0xFC;
  return picture;
}

}  // namespace

TEST(DpxWriter, PicturesComeBackBitForBitInBothByteOrders) {
  for (const u32 width : {1u, 2u, 17u, 67u}) {
    const Picture picture = NoiseOf10Bits(width, 5);
    for (const DpxOrder order : {DpxOrder::bigEndian, DpxOrder::littleEndian}) {
      StoredPicture file(9, 0xAA);
      WriteDpx(picture, FormatOfPicture(picture), order, file);
      const Picture back = ReadPicture(kDpxFiles, file);
      EXPECT_EQ(FormatOfPicture(back), FormatOfPicture(picture));
      EXPECT_EQ(PixelsOf(back), PixelsOf(picture));
    }
  }
}

TEST(DpxWriter, WrittenFieldsStandAtTheirPlaces) {
  Picture picture = NoiseOf10Bits(3, 2);
  picture.bytes[3] |= 3;
  ClipFormat format = FormatOfPicture(picture);
  format.rate = {25, 1};
  format.aspect = {16, 15};
  format.scan = ScanOrder::topFirst;
  for (const bool isBig : {true, false}) {
    StoredPicture file;
    (isBig ? kDpxFiles : kLittleEndianDpxFiles).write(picture, format, file);
    ASSERT_EQ(file.size(), 2048u + 24);
    EXPECT_EQ(StoredPicture(file.begin(), file.begin() + 4), Bytes(isBig ? "53445058" : "58504453"));
    EXPECT_EQ(std::string(file.begin() + 8, file.begin() + 16), std::string("V1.0\0\0\0\0", 8));
    EXPECT_EQ(std::string(file.begin() + 160, file.begin() + 171), std::string("VorelVideo\0", 11));
    const std::array<Field, 30> fields = {{
        {4, 4, 2048},
        {16, 4, 2072},
        {24, 4, 1664},
        {28, 4, 384},
        {32, 4, 0},
        {36, 1, 0},
        {136, 1, 0},
        {660, 4, 0xFFFFFFFF},
        {768, 2, 0},
        {770, 2, 1},
        {772, 4, 3},
        {776, 4, 2},
        {780, 4, 0},
        {784, 4, 0},
        {788, 4, 0xFFFFFFFF},
        {792, 4, 1023},
        {800, 1, 50},
        {801, 1, 0},
        {802, 1, 0},
        {803, 1, 10},
        {804, 2, 1},
        {806, 2, 0},
        {808, 4, 2048},
        {812, 4, 0},
        {1628, 4, 16},
        {1632, 4, 15},
        {1724, 4, 0x41C80000},
        {1928, 1, 1},
        {1940, 4, 0x41C80000},
        {1920, 4, 0xFFFFFFFF},
    }};
    for (const Field& field : fields) {
      EXPECT_EQ(NumberAt(file, field.at, field.bytes, isBig), field.value) << "at " << field.at;
    }
    const u64 first = NumberAt(picture.bytes, 0, 4, true);
    EXPECT_EQ(first & 3, 3u);
    EXPECT_EQ(NumberAt(file, 2048, 4, isBig), first - 3);
    EXPECT_EQ(DescribeDpx(file, "a file").format.rate, format.rate);
  }
}

TEST(DpxWriter, WhatIsNotKnownIsWrittenAsUnknown) {
  const Picture picture = NoiseOf10Bits(1, 1);
  StoredPicture file;
  kDpxFiles.write(picture, FormatOfPicture(picture), file);
  EXPECT_EQ(DescribeDpx(file, "a file").format, FormatOfPicture(picture));
  EXPECT_EQ(NumberAt(file, 1724, 4, true), 0xFFFFFFFFu);
  EXPECT_EQ(NumberAt(file, 1628, 8, true), 0xFFFFFFFFFFFFFFFFu);
}

}  // namespace vorel::picture_io
