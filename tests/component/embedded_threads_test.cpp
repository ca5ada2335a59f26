// Operations from several threads at once. ThreadSanitizer is the judge of what is not seen here.
#include <atomic>
#include <thread>

#include "embedded_fixture.h"

namespace vorel::component::embedded {
namespace {

constexpr int kThreads = 8;
constexpr i32 kRounds = 200;

struct ThreadsTest : EmbeddedHostTest {
  void SetUp() override { Start({}); }

  template <typename Work>
  static void InThreads(Work work) {
    std::vector<std::thread> threads;
    for (int number = 0; number < kThreads; ++number) threads.emplace_back(work, number);
    for (std::thread& thread : threads) thread.join();
  }
};

TEST_F(ThreadsTest, HandlesAndBlocks) {
  InThreads([](int number) {
    for (i32 round = 0; round < kRounds; ++round) {
      const Handle handle = Host->NewHandleClear(round);
      Host->SetHandleSize(handle, round + 8);
      **handle = static_cast<u8>(number);
      Handle copy = handle;
      EXPECT_EQ(Host->HandToHand(&copy), noErr);
      EXPECT_EQ(Host->HandAndHand(handle, copy), noErr);
      EXPECT_EQ(Host->GetHandleSize(copy), 2 * (round + 8));
      EXPECT_EQ(**copy, number);
      void* block = Host->Allocate(static_cast<std::size_t>(round));
      Host->DisposeHandle(handle);
      Host->DisposeHandle(copy);
      Host->Free(block);
    }
  });
}

TEST_F(ThreadsTest, MemErrorIsOfTheThread) {
  std::atomic<int> ready = 0;
  InThreads([&ready](int number) {
    const bool fails = number % 2 == 0;
    const Handle handle = Host->NewHandleClear(fails ? -1 : 1);
    ++ready;
    while (ready < kThreads) std::this_thread::yield();
    EXPECT_EQ(Host->MemError(), fails ? memFullErr : noErr);
    Host->DisposeHandle(handle);
  });
}

TEST_F(ThreadsTest, ExactlyOneAllocationFails) {
  FailAllocation(kThreads * 10);
  std::atomic<int> failures = 0;
  InThreads([&failures](int) {
    for (int round = 0; round < 20; ++round) {
      void* block = Host->Allocate(1);
      if (block == nullptr) ++failures;
      Host->Free(block);
    }
  });
  EXPECT_EQ(failures, 1);
}

TEST_F(ThreadsTest, GestaltValuesAndPixelFormats) {
  InThreads([](int number) {
    const OSType code = FourCharacterCode("thr0") + static_cast<u32>(number);
    for (i32 round = 0; round < kRounds; ++round) {
      EXPECT_EQ(Host->SetGestaltValue(code, round), noErr);
      i32 value = -1;
      EXPECT_EQ(Host->Gestalt(code, &value), noErr);
      EXPECT_EQ(value, round);
      ICMPixelFormatInfo info = {};
      info.size = sizeof info;
      info.bitsPerPixel[0] = 30;
      EXPECT_EQ(Host->ICMSetPixelFormatInfo(code, &info), noErr);
      EXPECT_EQ(Host->QTGetPixelSize(code), 30);
    }
  });
  EXPECT_EQ(RegisteredPixelFormats().size(), static_cast<std::size_t>(kThreads));
}

// Opens, decodes nothing, and closes: instances of one thread do not see those of another.
TEST_F(ThreadsTest, Instances) {
  InThreads([](int) {
    for (i32 round = 0; round < kRounds; ++round) {
      ComponentInstance base = nullptr;
      ASSERT_EQ(Host->OpenADefaultComponent(FourCharacterCode("imdc"), FourCharacterCode("base"), &base),
                noErr);
      EXPECT_EQ(CallSelector(base, kImageCodecBusySelect, 0), 0);
      EXPECT_EQ(Host->CloseComponent(base), noErr);
    }
  });
}

}  // namespace
}  // namespace vorel::component::embedded
