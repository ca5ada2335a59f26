// Colour standards: names, heights, and the numbers of movies.
#include "tool/colour_standard.h"

#include <gtest/gtest.h>

namespace vorel::tool {

namespace {

container::SampleDescription WithColour(u16 primaries, u16 transfer, u16 matrix) {
  container::SampleDescription description;
  SetExtension(description, container::MakeColour({primaries, transfer, matrix}));
  return description;
}

void ExpectStandard(const char* name, u32 code, u16 primaries, u16 transfer, u16 matrix) {
  u32 standard = 77;
  ASSERT_TRUE(ReadStandard(name, standard));
  EXPECT_EQ(standard, code);
  const container::ColourParameters colour = ColourOfStandard(code);
  EXPECT_EQ(colour.primaries, primaries);
  EXPECT_EQ(colour.transfer, transfer);
  EXPECT_EQ(colour.matrix, matrix);
  EXPECT_EQ(StandardName(WithColour(primaries, transfer, matrix)), name);
}

}  // namespace

TEST(ColourStandard, EachHasItsNumbers) {
  ExpectStandard("ntsc", 0, 6, 1, 6);
  ExpectStandard("hd", 1, 1, 1, 1);
  ExpectStandard("hd1035", 2, 6, 7, 7);
  ExpectStandard("pal", 3, 5, 1, 6);
  ExpectStandard("unknown", 4, 2, 2, 2);
}

TEST(ColourStandard, OtherNamesAreRefusedAndChangeNothing) {
  u32 standard = 77;
  for (const char* const name : {"", "HD", "709", "secam"})
    EXPECT_FALSE(ReadStandard(name, standard)) << name;
  EXPECT_EQ(standard, 77u);
}

TEST(ColourStandard, HighPicturesAreHd) {
  EXPECT_EQ(StandardForHeight(719), 0u);
  EXPECT_EQ(StandardForHeight(720), 1u);
}

TEST(ColourStandard, MatrixAloneIsWhatMoviesAreDecodedBy) {
  EXPECT_EQ(StandardOfDescription(WithColour(6, 1, 6)), 0u);
  EXPECT_EQ(StandardOfDescription(WithColour(9, 16, 1)), 1u);
  EXPECT_EQ(StandardOfDescription(WithColour(1, 1, 7)), 2u);
  EXPECT_EQ(StandardOfDescription(WithColour(5, 1, 6)), 0u);
  EXPECT_EQ(StandardOfDescription(WithColour(2, 2, 2)), 0u);
  EXPECT_EQ(StandardOfDescription({}), 0u);
}

TEST(ColourStandard, OtherNumbersHaveNoName) {
  EXPECT_EQ(StandardName(WithColour(9, 16, 9)), "");
  EXPECT_EQ(StandardName({}), "");
}

}  // namespace vorel::tool
