// The first difference of two pictures.
#include "tool/picture_compare.h"

#include <gtest/gtest.h>

namespace vorel::tool {

namespace {

picture_io::Picture PictureOf(std::vector<u8> bytes) {
  return {picture_io::kYuvu, 3, 2, 8, std::move(bytes)};
}

const std::vector<u8> kBytes = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16};

std::optional<Difference> DifferenceAt(std::size_t place, bool comparesPadding) {
  std::vector<u8> changed = kBytes;
  changed[place] ^= 0xFF;
  return FindDifference(PictureOf(kBytes), PictureOf(changed), comparesPadding);
}

void ExpectDifference(std::size_t place, u32 row, u32 pixel, const char* component, u32 first, u32 second) {
  const std::optional<Difference> difference = DifferenceAt(place, false);
  ASSERT_TRUE(difference);
  EXPECT_EQ(difference->row, row);
  EXPECT_EQ(difference->pixel, pixel);
  EXPECT_STREQ(difference->component, component);
  EXPECT_EQ(difference->first, first);
  EXPECT_EQ(difference->second, second);
}

}  // namespace

TEST(FindDifference, EqualPicturesHaveNone) {
  EXPECT_FALSE(FindDifference(PictureOf(kBytes), PictureOf(kBytes), true));
}

TEST(FindDifference, EverySampleIsNamed) {
  ExpectDifference(0, 0, 0, "Y'", 1, 254);
  ExpectDifference(1, 0, 0, "Cb", 130, 125);
  ExpectDifference(2, 0, 1, "Y'", 3, 252);
  ExpectDifference(3, 0, 0, "Cr", 132, 123);
  ExpectDifference(12, 1, 2, "Y'", 13, 242);
  ExpectDifference(15, 1, 2, "Cr", 144, 111);
}

TEST(FindDifference, PaddingCountsOnlyWhereItIsAskedFor) {
  EXPECT_FALSE(DifferenceAt(14, false));
  ASSERT_TRUE(DifferenceAt(14, true));
  EXPECT_EQ(DifferenceAt(14, true)->pixel, 3u);
}

TEST(FindDifference, FirstOfSeveralIsTold) {
  std::vector<u8> changed = kBytes;
  changed[6] = 0;  // padding
  changed[9] = 0;
  changed[15] = 0;
  const auto difference = FindDifference(PictureOf(kBytes), PictureOf(changed), false);
  ASSERT_TRUE(difference);
  EXPECT_EQ(difference->row, 1u);
  EXPECT_STREQ(difference->component, "Cb");
}

}  // namespace vorel::tool
