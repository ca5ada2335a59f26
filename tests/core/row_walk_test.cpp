#include "frame/row_walk.h"

#include <gtest/gtest.h>

namespace vorel {
namespace {

// Addresses are numbers to the walk; nothing is read.
void* At(std::uintptr_t address) {
  return reinterpret_cast<void*>(address);
}

TEST(RowWalk, TopDownLimitsReachFromTheSecondRowToBehindTheLast) {
  RowWalk walk = OpenRowWalk(At(1000), 3, 16);
  EXPECT_EQ(walk.row, 1000u);
  EXPECT_EQ(walk.lower, 1016u);
  EXPECT_EQ(walk.upper, 1048u);
  EXPECT_TRUE(StepRow(walk));
  EXPECT_TRUE(StepRow(walk));
  EXPECT_TRUE(StepRow(walk));  // behind the last row
  EXPECT_EQ(walk.row, 1048u);
  EXPECT_FALSE(StepRow(walk));
}

TEST(RowWalk, BottomUpStartsAtTheHighestRowAndItsLimitsMoveDown) {
  RowWalk walk = OpenRowWalk(At(1000), 3, -16);
  EXPECT_EQ(walk.row, 1032u);
  EXPECT_EQ(walk.lower, 984u);
  EXPECT_EQ(walk.upper, 1016u);
  EXPECT_TRUE(StepRow(walk));
  EXPECT_TRUE(StepRow(walk));
  EXPECT_TRUE(StepRow(walk));
  EXPECT_EQ(walk.row, 984u);
  EXPECT_FALSE(StepRow(walk));
}

TEST(RowWalk, OneRowOfEitherDirection) {
  RowWalk down = OpenRowWalk(At(64), 1, 8);
  RowWalk up = OpenRowWalk(At(64), 1, -8);
  EXPECT_EQ(down.row, up.row);
  EXPECT_TRUE(StepRow(down));
  EXPECT_TRUE(StepRow(up));
}

}  // namespace
}  // namespace vorel
