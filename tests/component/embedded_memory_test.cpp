// Handles and blocks.
#include <algorithm>

#include "embedded_fixture.h"

namespace vorel::component::embedded {
namespace {

struct MemoryTest : EmbeddedHostTest {
  void SetUp() override { Start({}); }
};

Handle HandleWith(const std::string& text) {
  const Handle handle = Host->NewHandleClear(static_cast<i32>(text.size()));
  std::copy(text.begin(), text.end(), *handle);
  return handle;
}

TEST_F(MemoryTest, NewHandleIsZeroed) {
  const Handle handle = Host->NewHandleClear(1000);
  ASSERT_NE(handle, nullptr);
  EXPECT_EQ(Host->MemError(), noErr);
  EXPECT_EQ(Host->GetHandleSize(handle), 1000);
  EXPECT_EQ(std::count(*handle, *handle + 1000, 0), 1000);
  EXPECT_EQ(CountsInUse().handles, 1);
  Host->DisposeHandle(handle);
  EXPECT_EQ(CountsInUse().handles, 0);
}

TEST_F(MemoryTest, EmptyHandleHasABlock) {
  const Handle handle = Host->NewHandleClear(0);
  ASSERT_NE(handle, nullptr);
  EXPECT_NE(*handle, nullptr);
  EXPECT_EQ(Host->GetHandleSize(handle), 0);
  Host->DisposeHandle(handle);
}

TEST_F(MemoryTest, NegativeSizeIsRefused) {
  EXPECT_EQ(Host->NewHandleClear(-1), nullptr);
  EXPECT_EQ(Host->MemError(), memFullErr);
  const Handle handle = HandleWith("abc");
  Host->SetHandleSize(handle, -1);
  EXPECT_EQ(Host->MemError(), memFullErr);
  EXPECT_EQ(TextOfHandle(handle), "abc");
  Host->DisposeHandle(handle);
}

TEST_F(MemoryTest, ResizeKeepsTheBytesAndMovesThem) {
  const Handle handle = HandleWith("abcdef");
  const u8* before = *handle;
  Host->SetHandleSize(handle, 8);
  EXPECT_EQ(Host->MemError(), noErr);
  EXPECT_NE(*handle, before);
  EXPECT_EQ(TextOfHandle(handle), Blob("abcdef\0\0", 8));
  Host->SetHandleSize(handle, 2);
  EXPECT_EQ(TextOfHandle(handle), "ab");
  Host->DisposeHandle(handle);
}

TEST_F(MemoryTest, HandToHandGivesACopy) {
  const Handle original = HandleWith("abc");
  Handle copy = original;
  EXPECT_EQ(Host->HandToHand(&copy), noErr);
  EXPECT_NE(copy, original);
  (*original)[0] = 'x';
  EXPECT_EQ(TextOfHandle(copy), "abc");
  Host->DisposeHandle(original);
  Host->DisposeHandle(copy);
}

TEST_F(MemoryTest, HandAndHandAppends) {
  const Handle source = HandleWith("def");
  const Handle destination = HandleWith("abc");
  EXPECT_EQ(Host->HandAndHand(source, destination), noErr);
  EXPECT_EQ(TextOfHandle(destination), "abcdef");
  EXPECT_EQ(TextOfHandle(source), "def");
  Host->DisposeHandle(source);
  Host->DisposeHandle(destination);
}

TEST_F(MemoryTest, AHandleCanBeAppendedToItself) {
  const Handle handle = HandleWith("abc");
  EXPECT_EQ(Host->HandAndHand(handle, handle), noErr);
  EXPECT_EQ(TextOfHandle(handle), "abcabc");
  Host->DisposeHandle(handle);
}

TEST_F(MemoryTest, NullIsToleratedAndNoMisuse) {
  Host->DisposeHandle(nullptr);
  EXPECT_EQ(Host->MemError(), noErr);
  EXPECT_EQ(Host->GetHandleSize(nullptr), 0);
  EXPECT_EQ(Host->MemError(), -109);
  Handle none = nullptr;
  EXPECT_EQ(Host->HandToHand(&none), -109);
  EXPECT_EQ(Host->HandToHand(nullptr), -109);
  Host->Free(nullptr);
}

TEST_F(MemoryTest, WhatIsNotLiveIsCountedAndChangesNothing) {
  const Handle handle = HandleWith("abc");
  Host->DisposeHandle(handle);
  Host->DisposeHandle(handle);
  EXPECT_EQ(Host->MemError(), -109);
  u8* notAHandle = nullptr;
  Host->SetHandleSize(&notAHandle, 5);
  EXPECT_EQ(Host->MemError(), -109);
  int local;
  Host->Free(&local);
  EXPECT_EQ(CountsInUse().misuses, 3);
  expectedAtEnd.misuses = 3;
}

TEST_F(MemoryTest, BlocksAreZeroedAndAligned) {
  u8* block = static_cast<u8*>(Host->Allocate(100));
  ASSERT_NE(block, nullptr);
  EXPECT_EQ(std::count(block, block + 100, 0), 100);
  EXPECT_EQ(reinterpret_cast<std::uintptr_t>(block) % alignof(std::max_align_t), 0u);
  EXPECT_EQ(CountsInUse().blocks, 1);
  Host->Free(block);
  EXPECT_EQ(CountsInUse().blocks, 0);
}

TEST_F(MemoryTest, TheNthAllocationFailsOnce) {
  FailAllocation(3);
  const Handle first = Host->NewHandleClear(1);
  void* second = Host->Allocate(1);
  EXPECT_NE(first, nullptr);
  EXPECT_NE(second, nullptr);
  EXPECT_EQ(Host->NewHandleClear(1), nullptr);
  EXPECT_EQ(Host->MemError(), memFullErr);
  void* fourth = Host->Allocate(1);
  EXPECT_NE(fourth, nullptr);
  Host->DisposeHandle(first);
  Host->Free(second);
  Host->Free(fourth);
}

TEST_F(MemoryTest, EveryKindOfAllocationCanFailAndLeavesTheHandle) {
  const Handle handle = HandleWith("abc");
  FailAllocation(1);
  EXPECT_EQ(Host->Allocate(1), nullptr);
  FailAllocation(1);
  Host->SetHandleSize(handle, 100);
  EXPECT_EQ(Host->MemError(), memFullErr);
  FailAllocation(1);
  EXPECT_EQ(Host->HandAndHand(handle, handle), memFullErr);
  FailAllocation(1);
  Handle copy = handle;
  EXPECT_EQ(Host->HandToHand(&copy), memFullErr);
  EXPECT_EQ(copy, handle);
  EXPECT_EQ(TextOfHandle(handle), "abc");
  FailAllocation(1);
  FailAllocation(0);
  Host->SetHandleSize(handle, 4);
  EXPECT_EQ(Host->MemError(), noErr);
  Host->DisposeHandle(handle);
}

}  // namespace
}  // namespace vorel::component::embedded
