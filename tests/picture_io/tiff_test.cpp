// TIFF files put together here, field by field.
#include "picture_io/tiff.h"

#include <algorithm>
#include <array>

#include "tests/picture_io/picture_files.h"

namespace vorel::picture_io {

namespace {

constexpr u16 kShort = 3;
constexpr u16 kLong = 4;
constexpr u32 kSamplesAt = 2048;

struct Field {
  u16 tag;
  u16 type;
  std::vector<u32> values;
};

// A file of one strip whose samples begin at kSamplesAt, with these fields in place of the usual ones or in
// addition to them. A field without values is left out.
struct Form {
  u32 width;
  u32 height;
  u32 samples;
  u32 bits;
  bool isBig = false;
  std::vector<Field> changes = {};
};

std::vector<Field> FieldsOf(const Form& form, std::size_t bytes) {
  std::vector<Field> fields = {
      {256, kLong, {form.width}},
      {257, kLong, {form.height}},
      {258, kShort, std::vector<u32>(form.samples, form.bits)},
      {259, kShort, {1}},
      {262, kShort, {form.samples < 3 ? 1u : 2u}},
      {273, kLong, {kSamplesAt}},
      {277, kShort, {form.samples}},
      {278, kLong, {form.height}},
      {279, kLong, {static_cast<u32>(bytes)}},
  };
  if (form.samples % 2 == 0) fields.push_back({338, kShort, {2}});
  for (const Field& change : form.changes) {
    std::erase_if(fields, [&](const Field& field) { return field.tag == change.tag; });
    if (!change.values.empty()) fields.push_back(change);
  }
  std::sort(fields.begin(), fields.end(), [](const Field& a, const Field& b) { return a.tag < b.tag; });
  return fields;
}

StoredPicture TiffFile(const Form& form, const StoredPicture& samples) {
  const std::vector<Field> fields = FieldsOf(form, samples.size());
  StoredPicture file = Bytes(form.isBig ? "4d4d 002a 00000008" : "4949 2a00 08000000");
  Append(file, Number(fields.size(), 2, form.isBig));
  StoredPicture longValues;
  const std::size_t longAt = file.size() + 12 * fields.size() + 4;
  for (const Field& field : fields) {
    StoredPicture values;
    for (const u32 value : field.values)
      Append(values, Number(value, field.type == kShort ? 2 : 4, form.isBig));
    if (values.size() > 4) {
      const std::size_t at = longAt + longValues.size();
      Append(longValues, values);
      values = Number(at, 4, form.isBig);
    }
    values.resize(4);
    Append(file, Number(field.tag, 2, form.isBig));
    Append(file, Number(field.type, 2, form.isBig));
    Append(file, Number(field.values.size(), 4, form.isBig));
    Append(file, values);
  }
  Append(file, Number(0, 4, form.isBig));
  Append(file, longValues);
  EXPECT_LE(file.size(), kSamplesAt);
  file.resize(kSamplesAt);
  Append(file, samples);
  return file;
}

void ExpectPicture(const Form& form, std::string_view samples, u32 pixelFormat, std::string_view pixels) {
  const StoredPicture file = TiffFile(form, Bytes(samples));
  const PictureFileHeader header = DescribeTiff(file, "a file");
  EXPECT_EQ(header.format.pixelFormat, pixelFormat);
  EXPECT_EQ(header.format.width, form.width);
  EXPECT_EQ(header.format.height, form.height);
  EXPECT_EQ(header.unkept, "");
  const Picture picture = ReadPicture(kTiffFiles, file);
  EXPECT_EQ(FormatOfPicture(picture), header.format);
  EXPECT_EQ(PixelsOf(picture), Bytes(pixels));
}

std::string RefusalOfForm(const Form& form) {
  return RefusalOf(kTiffFiles, TiffFile(form, StoredPicture(1024)));
}

}  // namespace

TEST(Tiff, ColoursOf8BitsStayAsTheyStand) {
  ExpectPicture({2, 2, 3, 8}, "010203 040506 070809 0a0b0c", 24, "010203 040506 070809 0a0b0c");
}

TEST(Tiff, AlphaOf8BitsIsLast) {
  ExpectPicture({2, 1, 4, 8}, "01020304 05060700", kRgba8, "01020304 05060700");
}

TEST(Tiff, WordsOf16BitsGoByTheOrderOfTheFile) {
  ExpectPicture({2, 1, 3, 16, true}, "123456789abc 0001ff00fffe", kRgb16, "123456789abc 0001ff00fffe");
  ExpectPicture({2, 1, 3, 16, false}, "34127856bc9a 010000fffeff", kRgb16, "123456789abc 0001ff00fffe");
}

TEST(Tiff, AlphaOf16BitsIsFirst) {
  ExpectPicture({1, 1, 4, 16, true}, "1112 2122 3132 a1a2", kArgb16, "a1a2 1112 2122 3132");
  ExpectPicture({1, 1, 4, 16, false}, "1211 2221 3231 a2a1", kArgb16, "a1a2 1112 2122 3132");
}

TEST(Tiff, GreyBecomesThreeEqualSamples) {
  ExpectPicture({2, 1, 1, 8}, "7fc1", 24, "7f7f7f c1c1c1");
  ExpectPicture({1, 2, 1, 16, true}, "1234 5678", kRgb16, "123412341234 567856785678");
  ExpectPicture({2, 1, 2, 8}, "7f20 c140", kRgba8, "7f7f7f20 c1c1c140");
  ExpectPicture({1, 1, 2, 16, true}, "1234 5678", kArgb16, "5678 1234 1234 1234");
}

TEST(Tiff, GreyThatCountsFromWhiteIsTurnedAndAlphaIsNot) {
  const Field white0 = {262, kShort, {0}};
  ExpectPicture({2, 1, 1, 8, false, {white0}}, "00c1", 24, "ffffff 3e3e3e");
  ExpectPicture({1, 1, 2, 16, true, {white0}}, "1234 5678", kArgb16, "5678 edcb edcb edcb");
}

TEST(Tiff, PlanesAreWovenTogether) {
  const Form form = {
      2, 1, 3, 8, false, {{284, kShort, {2}}, {273, kLong, {2048, 2050, 2052}}, {279, kLong, {2, 2, 2}}}};
  ExpectPicture(form, "0102 1112 2122", 24, "011121 021222");
  const Form deep = {
      1,  2,    4,
      16, true, {{284, kShort, {2}}, {273, kLong, {2048, 2052, 2056, 2060}}, {279, kLong, {4, 4, 4, 4}}}};
  ExpectPicture(deep, "0101 0102 1111 1112 2121 2122 a1a1 a1a2", kArgb16,
                "a1a1 0101 1111 2121  a1a2 0102 1112 2122");
}

TEST(Tiff, TilesBeyondTheEdgesAreCut) {
  // One tile of 16 x 16 for a picture of 1 x 2.
  const Form form = {1,
                     2,
                     1,
                     8,
                     false,
                     {{273, kLong, {}},
                      {278, kLong, {}},
                      {279, kLong, {}},
                      {322, kLong, {16}},
                      {323, kLong, {16}},
                      {324, kLong, {kSamplesAt}},
                      {325, kLong, {256}}}};
  StoredPicture tile(256, 0x55);
  tile[0] = 0x11;
  tile[16] = 0x22;
  const Picture picture = ReadPicture(kTiffFiles, TiffFile(form, tile));
  EXPECT_EQ(PixelsOf(picture), Bytes("111111 222222"));
}

TEST(Tiff, EveryKindComesBackBitForBit) {
  for (const u32 pixelFormat : kTiffFiles.pixelFormats) {
    for (const u32 width : {1u, 2u, 3u, 17u, 64u, 67u}) {
      const Picture picture = NoisePicture(pixelFormat, width, 5);
      StoredPicture file;
      WriteTiff(picture, file);
      const Picture back = ReadPicture(kTiffFiles, file);
      EXPECT_EQ(FormatOfPicture(back), FormatOfPicture(picture));
      EXPECT_EQ(PixelsOf(back), PixelsOf(picture)) << pixelFormat << " " << width;
    }
  }
}

TEST(Tiff, PictureOfManyStripsComesBack) {
  const Picture picture = NoisePicture(kArgb16, 333, 700);
  StoredPicture file;
  WriteTiff(picture, file);
  EXPECT_EQ(PixelsOf(ReadPicture(kTiffFiles, file)), PixelsOf(picture));
}

TEST(Tiff, SamePictureMakesTheSameFile) {
  const Picture picture = NoisePicture(kRgb16, 33, 7);
  StoredPicture files[2];
  WriteTiff(picture, files[0]);
  files[1].assign(1000, 0xAA);
  WriteTiff(picture, files[1]);
  EXPECT_EQ(files[0], files[1]);
  EXPECT_EQ(StoredPicture(files[0].begin(), files[0].begin() + 4), Bytes("49492a00"));
}

TEST(Tiff, PictureOfAnotherSizeTakesTheMemoryOver) {
  Picture picture = NoisePicture(kArgb16, 40, 30);
  kTiffFiles.read(TiffFile({1, 1, 3, 8}, Bytes("010203")), "a file", picture);
  EXPECT_EQ(PixelsOf(picture), Bytes("010203"));
}

TEST(Tiff, MultipliedAlphaIsRefusedWithTheReason) {
  EXPECT_EQ(
      RefusalOfForm({1, 1, 4, 8, false, {{338, kShort, {1}}}}),
      "a file: its colours are multiplied by alpha already (pictures hold straight alpha here, and dividing "
      "would not give the same samples back; save it with unassociated alpha)");
}

TEST(Tiff, WhatIsNotHandledIsNamed) {
  const std::array<std::pair<Form, const char*>, 15> cases = {{
      {{1, 1, 4, 8, false, {{338, kShort, {0}}}}, "its last sample is not said to be alpha"},
      {{1, 1, 4, 8, false, {{338, kShort, {}}}}, "its last sample is not said to be alpha"},
      {{1, 1, 5, 8, false, {{338, kShort, {2, 0}}}}, "pixels have 5 samples, 2 of them marked as extra ones"},
      {{1, 1, 3, 32}, "samples have 32 bits"},
      {{1, 1, 1, 1}, "samples have 1 bits"},
      {{1, 1, 3, 16, false, {{339, kShort, {2, 2, 2}}}}, "samples have a sign"},
      {{1, 1, 3, 16, false, {{339, kShort, {3, 3, 3}}}}, "samples are not whole numbers"},
      {{1, 1, 3, 8, false, {{274, kShort, {3}}}},
       "rows don't go from left to right and from top to bottom (orientation 3)"},
      {{1, 1, 3, 8, false, {{262, kShort, {6}}}}, "its colours are Y'CbCr"},
      {{1, 1, 1, 8, false, {{262, kShort, {3}}, {320, kShort, std::vector<u32>(768)}}},
       "its colours are a palette"},
      {{1, 1, 3, 8, false, {{262, kShort, {77}}}}, "its colours are kind 77"},
      {{1, 1, 3, 8, false, {{262, kShort, {}}}}, "its colours are not said"},
      {{1, 1, 3, 8, false, {{259, kShort, {34712}}}},
       "the picture is compressed by kind 34712, which is not handled"},
      {{1, 1, 3, 8, false, {{256, kLong, {32768}}}}, "the picture size 32768 x 1 is not handled"},
      {{16,
        16,
        3,
        8,
        false,
        {{273, kLong, {}},
         {278, kLong, {}},
         {279, kLong, {}},
         {322, kLong, {1 << 20}},
         {323, kLong, {1 << 20}},
         {324, kLong, {kSamplesAt}},
         {325, kLong, {256}}}},
       "tiles of 1048576 x 1048576 pixels are not handled"},
  }};
  for (const auto& [form, what] : cases) {
    const std::string refusal = RefusalOfForm(form);
    EXPECT_EQ(refusal.substr(0, 8 + std::string_view(what).size()), "a file: " + std::string(what))
        << refusal;
  }
}

TEST(Tiff, FurtherPicturesAndProfilesAreNoted) {
  StoredPicture file = TiffFile({1, 1, 3, 8}, Bytes("010203"));
  const StoredPicture second = TiffFile({2, 1, 3, 8}, {});
  // The next directory stands behind the samples; its own fields of one value need no further place.
  const std::size_t link = 8 + 2 + 9 * 12;
  const StoredPicture at = Number(file.size() + 1, 4, false);
  std::copy(at.begin(), at.end(), file.begin() + static_cast<std::ptrdiff_t>(link));
  file.push_back(0);
  file.insert(file.end(), second.begin() + 8, second.begin() + static_cast<std::ptrdiff_t>(link) + 4);
  EXPECT_EQ(DescribeTiff(file, "a file").unkept, "the pictures behind the first in a file");
  EXPECT_EQ(PixelsOf(ReadPicture(kTiffFiles, file)), Bytes("010203"));
  const Field profile = {34675, 7, {1, 2}};
  EXPECT_EQ(DescribeTiff(TiffFile({1, 1, 3, 8, false, {profile}}, Bytes("010203")), "a file").unkept,
            "the colour profile");
}

TEST(Tiff, OtherFilesAreNotTiff) {
  for (const char* const bytes : {"", "4949", "4949 2a", "89504e470d0a1a0a", "4d4d 2a00 0000"}) {
    EXPECT_EQ(RefusalOf(kTiffFiles, Bytes(bytes)), "a file: not a TIFF file: it does not begin like one ()");
  }
}

TEST(Tiff, EndWithinTheSamplesIsToldInLibtiffsWords) {
  StoredPicture file = TiffFile({2, 2, 3, 8}, StoredPicture(12, 7));
  file.resize(file.size() - 1);
  const std::string refusal = RefusalOf(kTiffFiles, file);
  EXPECT_EQ(refusal.find("a file: the TIFF file cannot be read: Read error"), 0u) << refusal;
}

TEST(Tiff, EveryBeginningIsRefused) {
  ExpectBeginningsRefused(kTiffFiles, TiffFile({2, 2, 3, 16, true}, StoredPicture(24, 7)));
  for (const u32 pixelFormat : {kRgb8, kArgb16}) {
    StoredPicture file;
    WriteTiff(NoisePicture(pixelFormat, 5, 3), file);
    ExpectBeginningsRefused(kTiffFiles, file);
  }
}

TEST(Tiff, DamagedFilesArePicturesOrProblems) {
  StoredPicture file;
  WriteTiff(NoisePicture(kRgb16, 9, 7), file);
  EXPECT_GT(CountRefusedDamages(kTiffFiles, file, 2000), 500);
  const Form planes = {
      2, 1, 3, 8, false, {{284, kShort, {2}}, {273, kLong, {2048, 2050, 2052}}, {279, kLong, {2, 2, 2}}}};
  StoredPicture fields = TiffFile(planes, StoredPicture(6));
  EXPECT_GT(CountRefusedDamages(kTiffFiles, fields, 4000), 100);
}

TEST(Tiff, ClaimOfTheLargestPictureTakesLittleMemory) {
  const StoredPicture file = TiffFile({32767, 32767, 4, 16}, StoredPicture(8 * 32767));
  Picture picture;
  EXPECT_NE(ProblemText([&] { kTiffFiles.read(file, "a file", picture); }), "");
  EXPECT_LT(picture.bytes.capacity(), std::size_t{1} << 25);
}

}  // namespace vorel::picture_io
