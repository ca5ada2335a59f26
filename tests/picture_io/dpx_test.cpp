// DPX files put together here, field by field, at the places that the format gives them.
#include "picture_io/dpx.h"

#include <array>

#include "tests/picture_io/picture_files.h"

namespace vorel::picture_io {

namespace {

struct Field {
  std::size_t at;
  std::size_t bytes;
  u64 value;
};

struct Form {
  u32 width;
  u32 height;
  bool isBig = true;
  std::size_t headerBytes = 2048;
};

// A header of 2048 bytes, or another number, and the samples. Everything that isn't said is 0.
StoredPicture DpxFile(const Form& form, std::string_view samples, const std::vector<Field>& changes = {}) {
  std::vector<Field> fields = {
      {0, 4, 0x53445058},
      {4, 4, form.headerBytes},
      {24, 4, 1664},
      {28, 4, 384},
      {660, 4, 0xFFFFFFFF},
      {770, 2, 1},
      {772, 4, form.width},
      {776, 4, form.height},
      {792, 4, 1023},
      {800, 1, 50},
      {803, 1, 10},
      {804, 2, 1},
      {808, 4, form.headerBytes},
  };
  fields.insert(fields.end(), changes.begin(), changes.end());
  StoredPicture file(form.headerBytes);
  for (const Field& field : fields) {
    const StoredPicture number = Number(field.value, field.bytes, form.isBig);
    std::copy(number.begin(), number.end(), file.begin() + static_cast<std::ptrdiff_t>(field.at));
  }
  Append(file, Bytes(samples));
  return file;
}

std::string RefusalWith(const std::vector<Field>& changes) {
  return RefusalOf(kDpxFiles, DpxFile({1, 1}, "00000000", changes));
}

void ExpectPixels(const StoredPicture& file, std::string_view pixels) {
  const Picture picture = ReadPicture(kDpxFiles, file);
  EXPECT_EQ(picture.pixelFormat, FourCharacterCode("F10k"));
  EXPECT_EQ(PixelsOf(picture), Bytes(pixels));
}

}  // namespace

// R 1023, G 0, B 1 and R 1, G 512, B 2 as words: 1023 << 22 | 1 << 2 and 1 << 22 | 512 << 12 | 2 << 2.
TEST(Dpx, BigEndianWordsStayAsTheyStand) {
  ExpectPixels(DpxFile({2, 1}, "ffc00004 00600008"), "ffc00004 00600008");
}

TEST(Dpx, LittleEndianWordsAreTurnedRound) {
  const StoredPicture file = DpxFile({2, 1, false}, "0400c0ff 08006000");
  EXPECT_EQ(StoredPicture(file.begin(), file.begin() + 4), Bytes("58504453"));
  ExpectPixels(file, "ffc00004 00600008");
}

TEST(Dpx, TheTwoLowestBitsAreNotSamples) {
  ExpectPixels(DpxFile({2, 1}, "ffffffff 00000003"), "fffffffc 00000000");
  ExpectPixels(DpxFile({2, 1, false}, "ffffffff 03000000"), "fffffffc 00000000");
}

TEST(Dpx, SamplesBeginWhereTheElementSays) {
  ExpectPixels(DpxFile({1, 1}, "11111110 22222220", {{808, 4, 2052}}), "22222220");
  ExpectPixels(DpxFile({1, 1}, "11111110 22222220", {{4, 4, 2052}}), "11111110");
}

TEST(Dpx, WithoutAPlaceOfTheElementTheFileSaysIt) {
  for (const u64 unknown : {u64{0}, u64{0xFFFFFFFF}}) {
    ExpectPixels(DpxFile({1, 1}, "11111110 22222220", {{4, 4, 2052}, {808, 4, unknown}}), "22222220");
  }
}

TEST(Dpx, HeaderWithoutFilmAndTelevisionDoes) {
  const StoredPicture file = DpxFile({1, 1, true, 1664}, "11111110");
  ExpectPixels(file, "11111110");
  EXPECT_EQ(DescribeDpx(file, "a file").format.rate, Ratio{});
}

TEST(Dpx, PaddingOfRowsIsPassedOver) {
  ExpectPixels(DpxFile({1, 3}, "11111110 aaaaaaaa aaaa 22222220 bbbbbbbb bbbb 33333330", {{812, 4, 6}}),
               "11111110 22222220 33333330");
}

TEST(Dpx, UnknownPaddingIsNone) {
  ExpectPixels(DpxFile({1, 2}, "11111110 22222220", {{812, 4, 0xFFFFFFFF}}), "11111110 22222220");
}

TEST(Dpx, FieldsThatAreNotSetDontMatter) {
  ExpectPixels(DpxFile({1, 1}, "11111110", {{780, 4, 0xFFFFFFFF}, {806, 2, 0xFFFF}, {660, 4, 0}}),
               "11111110");
}

TEST(Dpx, RateIsOfTelevisionOrElseOfFilm) {
  constexpr u64 k23976 = 0x41BFCED9;  // as a float
  constexpr u64 k25 = 0x41C80000;
  constexpr u64 k2997 = 0x41EFC28F;  // 29.97, rounded before it was stored
  const auto rateWith = [](const std::vector<Field>& fields) {
    return DescribeDpx(DpxFile({1, 1, false}, "00000000", fields), "a file").format.rate;
  };
  EXPECT_EQ(rateWith({}), (Ratio{0, 0}));
  EXPECT_EQ(rateWith({{1724, 4, k25}}), (Ratio{25, 1}));
  EXPECT_EQ(rateWith({{1724, 4, k25}, {1940, 4, k23976}}), (Ratio{24000, 1001}));
  EXPECT_EQ(rateWith({{1724, 4, k25}, {1940, 4, k2997}}), (Ratio{30000, 1001}));
  EXPECT_EQ(rateWith({{1724, 4, 0xFFFFFFFF}, {1940, 4, 0xFFFFFFFF}}), (Ratio{0, 0}));  // not a number
  EXPECT_EQ(rateWith({{1724, 4, 0x7F800000}, {1940, 4, 0xC1C80000}}), (Ratio{0, 0}));  // infinity, -25
  EXPECT_EQ(rateWith({{1724, 4, 0x41C70000}}), (Ratio{0, 0}));                         // 24.875
}

TEST(Dpx, HeaderTellsOfPixelsAndFields) {
  const StoredPicture file =
      DpxFile({7, 5}, std::string(7 * 5 * 8, '0'), {{1628, 4, 16}, {1632, 4, 15}, {1928, 1, 1}});
  const ClipFormat format = DescribeDpx(file, "a file").format;
  EXPECT_EQ(format.width, 7u);
  EXPECT_EQ(format.height, 5u);
  EXPECT_EQ(format.aspect, (Ratio{16, 15}));
  EXPECT_EQ(format.scan, ScanOrder::interlaced);
  const ClipFormat unsaid =
      DescribeDpx(
          DpxFile({1, 1}, "00000000", {{1628, 4, 0xFFFFFFFF}, {1632, 4, 0xFFFFFFFF}, {1928, 1, 0xFF}}),
          "a file")
          .format;
  EXPECT_EQ(unsaid.aspect, Ratio{});
  EXPECT_EQ(unsaid.scan, ScanOrder::unknown);
}

TEST(Dpx, DensitiesAreNoted) {
  const auto unkeptWith = [](u64 transfer) {
    return DescribeDpx(DpxFile({1, 1}, "00000000", {{801, 1, transfer}}), "a file").unkept;
  };
  EXPECT_EQ(unkeptWith(0), "");
  EXPECT_EQ(unkeptWith(1), "that samples are printing densities");
  EXPECT_EQ(unkeptWith(3), "that samples are logarithmic");
}

TEST(Dpx, WhatIsNotHandledIsNamed) {
  const std::array<std::pair<Field, const char*>, 15> cases = {{
      {{800, 1, 51}, "the picture is RGB with alpha (descriptor 51)"},
      {{800, 1, 6}, "the picture is luma (descriptor 6)"},
      {{800, 1, 100}, "the picture is Y'CbCr 4:2:2 (descriptor 100)"},
      {{800, 1, 200}, "the picture is of no kind known here (descriptor 200)"},
      {{803, 1, 8}, "samples have 8 bits"},
      {{803, 1, 16}, "samples have 16 bits"},
      {{804, 2, 0}, "samples are packed without gaps (packing 0)"},
      {{804, 2, 2}, "samples are in the lower bits of words (packing 2)"},
      {{804, 2, 9}, "samples are packed in no way known here (packing 9)"},
      {{806, 2, 1}, "the picture is run-length coded"},
      {{780, 4, 1}, "samples have a sign"},
      {{770, 2, 3}, "the picture has 3 elements"},
      {{660, 4, 77}, "the picture is encrypted"},
      {{768, 2, 2}, "rows don't go from left to right and from top to bottom (orientation 2)"},
      {{808, 4, 1000}, "samples begin at byte 1000, within the header"},
  }};
  for (const auto& [field, what] : cases) {
    const std::string refusal = RefusalWith({field});
    EXPECT_EQ(refusal.substr(0, refusal.rfind(" (")), "a file: " + std::string(what));
  }
}

TEST(Dpx, RefusalSaysWhatIsHandled) {
  EXPECT_EQ(RefusalWith({{803, 1, 12}}),
            "a file: samples have 12 bits (DPX files are read with one element of 10-bit RGB, three samples "
            "to a word)");
}

TEST(Dpx, SizesThatNoMovieHoldsAreRefused) {
  EXPECT_EQ(RefusalWith({{772, 4, 0}}),
            "a file: the picture size 0 x 1 is not handled (sides are from 1 to 32767 pixels)");
  EXPECT_EQ(RefusalWith({{776, 4, 0xFFFFFFFF}}),
            "a file: the picture size 1 x 4294967295 is not handled (sides are from 1 to 32767 pixels)");
}

TEST(Dpx, ClaimsBeyondTheFileAreFoundBeforeMemoryIsTaken) {
  const std::array<std::vector<Field>, 5> cases = {{
      {{808, 4, 2049}},
      {{808, 4, 0xFFFFFFFE}},
      {{772, 4, 2}},
      {{772, 4, 32767}, {776, 4, 32767}, {812, 4, 0xFFFFFFFE}, {808, 4, 0xFFFFFFFE}},
      {{776, 4, 2}, {812, 4, 0}},
  }};
  for (const std::vector<Field>& fields : cases) {
    Picture picture;
    const StoredPicture file = DpxFile({1, 1}, "00000000", fields);
    const std::string refusal = ProblemText([&] { kDpxFiles.read(file, "a file", picture); });
    EXPECT_EQ(refusal.find("a file: the file ends within its picture: "), 0u) << refusal;
    EXPECT_EQ(picture.bytes.capacity(), 0u);
  }
}

TEST(Dpx, OtherFilesAreNotDpx) {
  for (const char* const bytes : {"", "534450", "89504e470d0a1a0a"}) {
    EXPECT_EQ(RefusalOf(kDpxFiles, Bytes(bytes)),
              "a file: not a DPX file: it begins with neither SDPX nor XPDS ()");
  }
}

TEST(Dpx, EveryBeginningIsRefused) {
  ExpectBeginningsRefused(kDpxFiles, DpxFile({2, 2}, std::string(32, '1')));
  ExpectBeginningsRefused(kDpxFiles, DpxFile({1, 2, false, 1664}, std::string(20, '1'), {{812, 4, 2}}));
}

TEST(Dpx, DamagedFilesArePicturesOrProblems) {
  EXPECT_GT(CountRefusedDamages(kDpxFiles, DpxFile({3, 2}, std::string(48, '7')), 20000), 100);
}

}  // namespace vorel::picture_io
