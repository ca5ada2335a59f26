// Start and stop, and what the process and the machine are asked.
#include <filesystem>

#include "base/problem.h"
#include "embedded_fixture.h"

namespace vorel::component::embedded {
namespace {

using HostTest = EmbeddedHostTest;

TEST_F(HostTest, EveryOperationIsFilled) {
  Start({});
#define VOREL_EXPECT_FILLED(NAME, SELECTOR, RESULT, PARAMETERS) EXPECT_NE(Host->NAME, nullptr) << #NAME;
  VOREL_HOST_SERVICES(VOREL_EXPECT_FILLED)
  VOREL_HOST_QUESTIONS(VOREL_EXPECT_FILLED)
#undef VOREL_EXPECT_FILLED
}

TEST_F(HostTest, OneHostRunsAtATime) {
  Start({});
  const HostOperations* running = Host;
  EXPECT_THROW(Start({}), Problem);
  EXPECT_EQ(Host, running);
}

TEST_F(HostTest, StopTellsWhatIsLeftAndFreesIt) {
  Start({});
  Host->NewHandleClear(10);
  Host->Allocate(10);
  HostCounts left;
  left.handles = 1;
  left.blocks = 1;
  EXPECT_EQ(StopEmbeddedHost(), left);
  EXPECT_EQ(Host, nullptr);
  EXPECT_EQ(CountsInUse(), HostCounts());
  EXPECT_EQ(StopEmbeddedHost(), HostCounts());
}

TEST_F(HostTest, NothingStaysFromOneHostToTheNext) {
  Start({});
  ICMPixelFormatInfo info = {};
  info.size = sizeof info;
  info.bitsPerPixel[0] = 30;
  ASSERT_EQ(Host->ICMSetPixelFormatInfo(FourCharacterCode("v410"), &info), noErr);
  Host->SetGestaltValue(FourCharacterCode("Form"), 5);
  FailAllocation(1);
  StopEmbeddedHost();
  Start({});
  EXPECT_EQ(Host->QTGetPixelSize(FourCharacterCode("v410")), 0);
  i32 value;
  EXPECT_EQ(Host->Gestalt(FourCharacterCode("Form"), &value), gestaltUndefSelectorErr);
  void* block = Host->Allocate(1);
  EXPECT_NE(block, nullptr);
  Host->Free(block);
}

TEST_F(HostTest, GestaltKnowsTheVersionFirst) {
  Start({.quickTimeVersion = 0x06508000});
  i32 value = 0;
  EXPECT_EQ(Host->Gestalt(FourCharacterCode("qtim"), &value), noErr);
  EXPECT_EQ(value, 0x06508000);
  EXPECT_EQ(Host->Gestalt(FourCharacterCode("qtim"), nullptr), paramErr);
}

TEST_F(HostTest, WithoutAVersionGestaltFailsAndLeavesTheValue) {
  Start({.quickTimeVersion = 0});
  i32 value = 77;
  EXPECT_EQ(Host->Gestalt(FourCharacterCode("qtim"), &value), gestaltUndefSelectorErr);
  EXPECT_EQ(value, 77);
}

TEST_F(HostTest, SetGestaltValueStoresAndReplaces) {
  Start({});
  i32 value = 0;
  EXPECT_EQ(Host->SetGestaltValue(FourCharacterCode("Scan"), 1), noErr);
  EXPECT_EQ(Host->SetGestaltValue(FourCharacterCode("Scan"), -2), noErr);
  EXPECT_EQ(Host->Gestalt(FourCharacterCode("Scan"), &value), noErr);
  EXPECT_EQ(value, -2);
}

TEST_F(HostTest, ExecutablePathIsOfThisProcessUnlessSet) {
  Start({});
  char path[4096];
  const u32 length = Host->ExecutablePath(path, sizeof path);
  EXPECT_EQ(std::string(path), std::filesystem::canonical("/proc/self/exe").string());
  EXPECT_EQ(length, std::string(path).size());
}

TEST_F(HostTest, ExecutablePathIsCutToTheRoom) {
  Start({.executablePath = "C:\\AfterFX.exe"});
  char path[8] = "xxxxxxx";
  EXPECT_EQ(Host->ExecutablePath(path, 5), 4u);
  EXPECT_EQ(std::string(path, 8), std::string("C:\\A\0xx\0", 8));
  EXPECT_EQ(Host->ExecutablePath(path, 0), 0u);
}

TEST_F(HostTest, ExecutableVersionsOnlyWithAResource) {
  Start({});
  u32 product = 1, file = 2;
  EXPECT_EQ(Host->ExecutableVersions(&product, &file), 0);
  EXPECT_EQ(product, 1u);
  StopEmbeddedHost();
  Start({.executableMajors = ExecutableMajors{7, 9}});
  EXPECT_EQ(Host->ExecutableVersions(&product, &file), 1);
  EXPECT_EQ(product, 7u);
  EXPECT_EQ(file, 9u);
}

TEST_F(HostTest, ProcessorSpeedIsThatOfTheSettings) {
  Start({.processorMegahertz = 0});
  EXPECT_EQ(Host->ProcessorMegahertz(), 0u);
  StopEmbeddedHost();
  Start({.processorMegahertz = 2500});
  EXPECT_EQ(Host->ProcessorMegahertz(), 2500u);
}

}  // namespace
}  // namespace vorel::component::embedded
