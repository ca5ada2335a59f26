// Where the host is looked for, and how the library binds to it. What the binder knows stays in the process, so
// every test runs in a process of its own.
#include <gtest/gtest.h>
#include <windows.h>

#include <cstring>
#include <string>

#include "component/host_errors.h"
#include "component/windows/quicktime_search.h"
#include "component/windows/windows_host.h"

namespace vorel::component::windows {

namespace {

constexpr const char* kInstallerKey = "SOFTWARE\\Apple Computer, Inc.\\QuickTime";
constexpr const char* kProcessorKey = "HARDWARE\\DESCRIPTION\\System\\CentralProcessor\\0";

// The folder in which the build puts libraries of several kinds.
std::string FolderOf(const std::string& kind) {
  char path[MAX_PATH];
  GetModuleFileNameA(nullptr, path, MAX_PATH);
  const std::string program = path;
  return program.substr(0, program.rfind('\\')) + "\\quicktimes\\" + kind;
}

std::string SystemFolderText() {
  char path[MAX_PATH];
  GetSystemDirectoryA(path, MAX_PATH);
  return path;
}

void SetValue(const char* name, const std::string& text) {
  HKEY key = nullptr;
  ASSERT_EQ(RegCreateKeyA(HKEY_LOCAL_MACHINE, kInstallerKey, &key), ERROR_SUCCESS);
  const auto* const bytes = reinterpret_cast<const BYTE*>(text.c_str());
  ASSERT_EQ(RegSetValueExA(key, name, 0, REG_SZ, bytes, static_cast<DWORD>(text.size() + 1)), ERROR_SUCCESS);
  RegCloseKey(key);
}

std::string LastSelector() {
  char text[16] = {};
  GetEnvironmentVariableA("VOREL_TEST_SELECTOR", text, sizeof text);
  return text;
}

bool IsLoaded() {
  return GetModuleHandleA("QuickTime.qts") != nullptr;
}

struct BinderTest : testing::Test {
  void SetUp() override {
    RegDeleteTreeA(HKEY_LOCAL_MACHINE, kInstallerKey);
    ASSERT_FALSE(IsLoaded());
    ASSERT_EQ(bindHook, BindQuickTime);
  }
  void TearDown() override { RegDeleteTreeA(HKEY_LOCAL_MACHINE, kInstallerKey); }

  static std::string QuickTimeFolder() {
    PathText folder;
    return FindQuickTimeFolder(folder) ? folder.text.data() : "none";
  }
  static std::string ExtensionsFolder() {
    PathText folder;
    return FindExtensionsFolder(folder) ? folder.text.data() : "none";
  }
  static void HoldItself() { SetEnvironmentVariableA("VOREL_TEST_HOLDS", "1"); }
};

// --- Folders ---

TEST_F(BinderTest, WithoutValuesItIsTheSystemFolder) {
  EXPECT_EQ(QuickTimeFolder(), SystemFolderText() + "\\");
}

TEST_F(BinderTest, TheLibraryThatIsLoadedGoesFirst) {
  ASSERT_NE(LoadLibraryA((FolderOf("old") + "\\QuickTime.qts").c_str()), nullptr);
  SetValue("QTSysDir", FolderOf("new"));
  EXPECT_EQ(QuickTimeFolder(), FolderOf("old") + "\\");
}

TEST_F(BinderTest, TheFirstValueGoesBeforeTheSecond) {
  SetValue("QTSysDir", FolderOf("new"));
  SetValue("QuickTime.qts folder", FolderOf("old"));
  EXPECT_EQ(QuickTimeFolder(), FolderOf("new") + "\\");
}

TEST_F(BinderTest, AFolderThatIsNotThereIsPassedOver) {
  SetValue("QTSysDir", FolderOf("nowhere"));
  SetValue("QuickTime.qts folder", FolderOf("old"));
  EXPECT_EQ(QuickTimeFolder(), FolderOf("old") + "\\");
  SetValue("QuickTime.qts folder", FolderOf("old") + "\\QuickTime.qts");  // a file
  EXPECT_EQ(QuickTimeFolder(), SystemFolderText() + "\\");
}

TEST_F(BinderTest, AnEmptyValueIsNoFolder) {
  SetValue("QTSysDir", "");
  EXPECT_EQ(QuickTimeFolder(), SystemFolderText() + "\\");
}

TEST_F(BinderTest, ASeparatorAtTheEndIsKept) {
  SetValue("QTSysDir", FolderOf("new") + "\\");
  EXPECT_EQ(QuickTimeFolder(), FolderOf("new") + "\\");
  SetValue("QTSysDir", FolderOf("new") + "/");
  EXPECT_EQ(QuickTimeFolder(), FolderOf("new") + "/");
}

// Path and end 0 fit 260 bytes with the library's name of 13.
TEST_F(BinderTest, TheLongestFolderLeavesRoomForTheName) {
  const std::string longest = "Q:\\" + std::string(242, 'x');
  SetValue("QTExtDir", longest);
  EXPECT_EQ(ExtensionsFolder(), longest + "\\");
  SetValue("QTExtDir", longest + "x");
  EXPECT_EQ(ExtensionsFolder(), SystemFolderText() + "\\QuickTime\\");
}

TEST_F(BinderTest, ExtensionsAreInTheFolderThatIsNamedForThem) {
  SetValue("QTExtDir", "Q:\\nowhere");  // nobody looks whether it is there
  SetValue("QTSysDir", FolderOf("new"));
  EXPECT_EQ(ExtensionsFolder(), "Q:\\nowhere\\");
}

TEST_F(BinderTest, ExtensionsAreBesideTheLibraryOrBelowTheSystemFolder) {
  EXPECT_EQ(ExtensionsFolder(), SystemFolderText() + "\\QuickTime\\");
  SetValue("QTSysDir", FolderOf("new"));
  EXPECT_EQ(ExtensionsFolder(), FolderOf("new") + "\\");
}

// --- Binding ---

TEST_F(BinderTest, WithoutAHostTheHookStaysAndALaterHostIsFound) {
  EXPECT_EQ(BindQuickTime(), -2093);
  EXPECT_EQ(bindHook, BindQuickTime);
  EXPECT_EQ(moduleHandle, nullptr);
  EXPECT_EQ(Host->CallWithStorage(nullptr, nullptr, nullptr), -2093);
  SetValue("QTSysDir", FolderOf("old"));
  EXPECT_EQ(Host->CallWithStorage(nullptr, nullptr, nullptr), 77);
  EXPECT_EQ(bindHook, nullptr);
}

TEST_F(BinderTest, TheLibraryIsLoadedFromTheExtensionsFolderWhenItIsNotInItsOwn) {
  SetValue("QTSysDir", FolderOf(".."));  // without the library
  SetValue("QTExtDir", FolderOf("old"));
  EXPECT_EQ(BindQuickTime(), 0);
  EXPECT_TRUE(IsLoaded());
}

struct MissingEntryTest : BinderTest, testing::WithParamInterface<const char*> {};

TEST_P(MissingEntryTest, TheHookStays) {
  SetValue("QTSysDir", FolderOf(GetParam()));
  EXPECT_EQ(BindQuickTime(), -2094);
  EXPECT_EQ(bindHook, BindQuickTime);
  EXPECT_EQ(BindQuickTime(), -2094);
  EXPECT_EQ(Host->CallWithStorage(nullptr, nullptr, nullptr), -2094);
}

INSTANTIATE_TEST_SUITE_P(Entries, MissingEntryTest,
                         testing::Values("no_storage_call", "no_component_call", "no_dispatcher"));

TEST_F(BinderTest, TheFirstServiceBindsAndFindsItsArguments) {
  SetValue("QTSysDir", FolderOf("old"));
  const Handle handle = reinterpret_cast<Handle>(0x12345678);
  EXPECT_EQ(Host->GetHandleSize(handle), 0x12345678);
  EXPECT_EQ(LastSelector(), "00150034");
  EXPECT_EQ(bindHook, nullptr);
  EXPECT_EQ(Host->OpenComponentResFile(reinterpret_cast<ComponentInstance>(0x4321)), 0x4321);
  EXPECT_EQ(LastSelector(), "00010015");
}

TEST_F(BinderTest, AnOldHostIsKeptAndNotAsked) {
  HoldItself();
  SetValue("QTSysDir", FolderOf("old"));
  EXPECT_EQ(BindQuickTime(), 0);
  EXPECT_NE(moduleHandle, nullptr);
  EXPECT_EQ(LastSelector(), "");
}

TEST_F(BinderTest, AHostWithoutAVersionIsKeptAndNotAsked) {
  HoldItself();
  SetValue("QTSysDir", FolderOf("no_version"));
  EXPECT_EQ(BindQuickTime(), 0);
  EXPECT_NE(moduleHandle, nullptr);
  EXPECT_EQ(LastSelector(), "");
}

TEST_F(BinderTest, ANewHostThatHoldsItselfIsReleased) {
  HoldItself();
  SetValue("QTSysDir", FolderOf("new"));
  EXPECT_EQ(BindQuickTime(), 0);
  EXPECT_EQ(LastSelector(), "001D0059");
  EXPECT_EQ(moduleHandle, nullptr);
  EXPECT_FALSE(IsLoaded());
  EXPECT_EQ(bindHook, nullptr);
  EXPECT_NE(theQuickTimeDispatcher, nullptr);
}

TEST_F(BinderTest, ANewHostThatDoesNotHoldItselfIsKept) {
  SetValue("QTSysDir", FolderOf("new"));
  EXPECT_EQ(BindQuickTime(), 0);
  EXPECT_EQ(LastSelector(), "001D0059");
  EXPECT_NE(moduleHandle, nullptr);
  EXPECT_TRUE(IsLoaded());
}

// Of each part of the version one byte counts: 7.2048.1 is 7.0.1.
TEST_F(BinderTest, PartsOfTheVersionAreBytes) {
  HoldItself();
  SetValue("QTSysDir", FolderOf("wide_version"));
  EXPECT_EQ(BindQuickTime(), 0);
  EXPECT_NE(moduleHandle, nullptr);
}

// A host that is in the process already stays there; only the binder's own reference goes.
TEST_F(BinderTest, AHostThatIsLoadedAlreadyStaysLoaded) {
  HoldItself();
  ASSERT_NE(LoadLibraryA((FolderOf("new") + "\\QuickTime.qts").c_str()), nullptr);
  EXPECT_EQ(BindQuickTime(), 0);
  EXPECT_EQ(moduleHandle, nullptr);
  EXPECT_TRUE(IsLoaded());
}

// Only a reference that this very call has made is given up.
TEST_F(BinderTest, AHostOfAnEarlierCallIsKeptAndNotAsked) {
  HoldItself();
  moduleHandle = LoadLibraryA((FolderOf("new") + "\\QuickTime.qts").c_str());
  ASSERT_NE(moduleHandle, nullptr);
  EXPECT_EQ(BindQuickTime(), 0);
  EXPECT_NE(moduleHandle, nullptr);
  EXPECT_EQ(LastSelector(), "");
}

// --- Questions ---

struct ProcessorSpeedTest : BinderTest {
  void SetUp() override {
    BinderTest::SetUp();
    ASSERT_EQ(RegOpenKeyExA(HKEY_LOCAL_MACHINE, kProcessorKey, 0, KEY_ALL_ACCESS, &key), ERROR_SUCCESS);
    size = sizeof speed;
    RegQueryValueExA(key, "~MHz", nullptr, nullptr, reinterpret_cast<BYTE*>(&speed), &size);
  }
  void TearDown() override {
    Set(speed, sizeof speed);
    RegCloseKey(key);
    BinderTest::TearDown();
  }
  void Set(DWORD value, DWORD bytes) const {
    RegSetValueExA(key, "~MHz", 0, REG_DWORD, reinterpret_cast<const BYTE*>(&value), bytes);
  }
  HKEY key = nullptr;
  DWORD speed = 0;
  DWORD size = 0;
};

TEST_F(ProcessorSpeedTest, IsTheValue) {
  Set(2345, 4);
  EXPECT_EQ(Host->ProcessorMegahertz(), 2345u);
}

TEST_F(ProcessorSpeedTest, IsNotKnownWithoutTheValueOrItsBytes) {
  Set(2345, 0);
  EXPECT_EQ(Host->ProcessorMegahertz(), 0u);
  RegDeleteValueA(key, "~MHz");
  EXPECT_EQ(Host->ProcessorMegahertz(), 0u);
}

TEST_F(BinderTest, MemoryIsZeroed) {
  for (const std::size_t bytes : {std::size_t{1}, std::size_t{4100}, std::size_t{300000}}) {
    auto* const memory = static_cast<u8*>(Host->Allocate(bytes));
    ASSERT_NE(memory, nullptr);
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(memory) % 8, 0u);
    for (std::size_t i = 0; i < bytes; ++i) ASSERT_EQ(memory[i], 0);
    std::memset(memory, 0xFF, bytes);
    Host->Free(memory);
  }
}

TEST_F(BinderTest, EveryOperationIsThere) {
  const char* const* const operations = reinterpret_cast<const char* const*>(Host);
  for (std::size_t i = 0; i < sizeof *Host / sizeof *operations; ++i) EXPECT_NE(operations[i], nullptr) << i;
}

}  // namespace

}  // namespace vorel::component::windows
