#include "frame/argument_check.h"

#include <gtest/gtest.h>

#include <cstring>

#include "vorel/vorel.h"

namespace vorel {
namespace {

// Arguments of a call that passes; each test spoils some.
struct Arguments {
  alignas(4) u8 picture[64] = {};
  alignas(4) u8 frameBytes[512] = {};
  u32 cursors[4] = {};
  u32 scratch[64] = {};
  FrameCall call = {4, 2, 16, picture, 0, &cursors[0], &cursors[2], frameBytes, scratch};
};

u32 Check(const FrameCall& call, u32 bitsPerPixel = 16) {
  return static_cast<u32>(CheckArguments(call, bitsPerPixel, "VorelYCbCr8bw422pFromyuvuEncode"));
}

template <typename T>
T* Shift(T* pointer, int bytes) {
  return reinterpret_cast<T*>(reinterpret_cast<std::uintptr_t>(pointer) + static_cast<std::uintptr_t>(bytes));
}

TEST(ArgumentCheck, GoodArgumentsPass) {
  Arguments a;
  EXPECT_EQ(Check(a.call), 0u);
  a.call.rowBytes = -16;
  EXPECT_EQ(Check(a.call), 0u);
}

TEST(ArgumentCheck, WidthIsTestedFirst) {
  Arguments a;
  a.call.width = 0;
  EXPECT_EQ(Check(a.call), 8u);
  a.call.height = 0;
  a.call.base = nullptr;
  EXPECT_EQ(Check(a.call), 8u);
}

TEST(ArgumentCheck, SizesAreTakenAsSigned) {
  Arguments a;
  a.call.width = 0x80000000u;
  EXPECT_EQ(Check(a.call), 8u);
  a.call.width = 4;
  a.call.height = 0xFFFFFFFFu;
  EXPECT_EQ(Check(a.call), 9u);
  a.call.height = 0;
  EXPECT_EQ(Check(a.call), 9u);
}

TEST(ArgumentCheck, RowsMustHoldTheSignificantBits) {
  Arguments a;
  a.call.rowBytes = 0;
  EXPECT_EQ(Check(a.call), 10u);
  a.call.width = 1;
  a.call.rowBytes = -1;  // 8 bits for 16
  EXPECT_EQ(Check(a.call), 10u);
  a.call.rowBytes = -2;  // enough, but no multiple of 4
  EXPECT_EQ(Check(a.call), 12u);
  a.call.width = 2;
  a.call.rowBytes = 4;
  EXPECT_EQ(Check(a.call), 0u);
  a.call.width = 3;
  EXPECT_EQ(Check(a.call), 10u);
  EXPECT_EQ(Check(a.call, 10), 0u);
}

TEST(ArgumentCheck, RowLengthIsAMagnitude) {
  Arguments a;
  a.call.rowBytes = -4096;
  EXPECT_EQ(Check(a.call), 0u);
  a.call.rowBytes = 4096;
  EXPECT_EQ(Check(a.call), 0u);
}

TEST(ArgumentCheck, ProductsWrapIn32Bits) {
  Arguments a;
  a.call.width = 0x10000000u;  // times 16 is 2^32
  EXPECT_EQ(Check(a.call), 0u);
  a.call.width = 4;
  a.call.rowBytes = 0x20000000;  // times 8 is 2^32: no bits at all
  EXPECT_EQ(Check(a.call), 10u);
  a.call.rowBytes = 0x10000000;  // times 8 is negative
  EXPECT_EQ(Check(a.call), 10u);
}

TEST(ArgumentCheck, PictureBeforeCursorsBeforeFrame) {
  Arguments a;
  a.call.frame = Shift(a.call.frame, 2);
  EXPECT_EQ(Check(a.call), 18u);
  u8* const frame = a.call.frame;
  a.call.frame = nullptr;
  EXPECT_EQ(Check(a.call), 17u);
  a.call.frame = frame;
  a.call.bitCursor = Shift(a.call.bitCursor, 1);
  EXPECT_EQ(Check(a.call), 16u);
  a.call.bitCursor = nullptr;
  EXPECT_EQ(Check(a.call), 15u);
  a.call.wordCursor = Shift(a.call.wordCursor, 3);
  EXPECT_EQ(Check(a.call), 14u);
  a.call.wordCursor = nullptr;
  EXPECT_EQ(Check(a.call), 13u);
  a.call.base = Shift(a.call.base, 1);
  EXPECT_EQ(Check(a.call), 12u);
  a.call.base = Shift(a.call.base, -1);
  a.call.rowBytes = 18;
  EXPECT_EQ(Check(a.call), 12u);
  a.call.base = nullptr;
  EXPECT_EQ(Check(a.call), 11u);
}

TEST(ArgumentCheck, EveryRoutineOpensWithItAndTouchesNothing) {
  Arguments a;
  std::memset(a.frameBytes, 0x5A, sizeof a.frameBytes);
  std::memset(a.picture, 0x77, sizeof a.picture);
  u32* const words = reinterpret_cast<u32*>(a.frameBytes);
  u32& word = a.cursors[0];
  u32& bit = a.cursors[2];
  word = 5;
  bit = 37;
  EXPECT_EQ(VorelYCbCr8bw422pFromyuvuEncode(0, 2, 16, a.picture, &word, &bit, words), 8u);
  EXPECT_EQ(VorelYCbCr8bw422iFromyuvuEncode(4, 0, 16, a.picture, &word, &bit, words), 9u);
  EXPECT_EQ(VorelYCbCr8bw422pToyuvuDecode(4, 2, 4, a.picture, &word, &bit, words, a.scratch), 10u);
  EXPECT_EQ(VorelYCbCr8bw422iToyuvuDecode(4, 2, 16, nullptr, &word, &bit, words), 11u);
  EXPECT_EQ(VorelYCbCr8bw422pFromyuvuEncode(4, 2, 16, a.picture + 1, nullptr, nullptr, words), 12u);
  EXPECT_EQ(word, 5u);
  EXPECT_EQ(bit, 37u);
  for (const u8 byte : a.frameBytes) ASSERT_EQ(byte, 0x5A);
  for (const u8 byte : a.picture) ASSERT_EQ(byte, 0x77);
}

TEST(ArgumentCheck, ScratchIsMissedOnlyByProgressiveDecodersAndLast) {
  Arguments a;
  const u32* words = reinterpret_cast<const u32*>(a.frameBytes);
  u32& word = a.cursors[0];
  u32& bit = a.cursors[2];
  word = 5;
  bit = 0;
  EXPECT_EQ(VorelYCbCr8bw422pToyuvuDecode(4, 2, 16, a.picture, &word, &bit, words, nullptr), 19u);
  EXPECT_EQ(word, 5u);
  EXPECT_EQ(VorelYCbCr8bw422pToyuvuDecode(0, 2, 16, a.picture, &word, &bit, words, nullptr), 8u);
  EXPECT_EQ(VorelYCbCr8bw422iToyuvuDecode(4, 2, 16, a.picture, &word, &bit, words), 0u);
}

}  // namespace
}  // namespace vorel
