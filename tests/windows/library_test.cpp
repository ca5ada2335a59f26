// The component library as it is delivered: its resources, its binding and its entries.
#include <windows.h>

#include <set>

#include "component/resources/resource_tables.h"
#include "tests/component/component_fixture.h"
#include "tests/windows/library_under_test.h"

namespace vorel::component {

namespace {

TEST(LibraryStart, LoadingCallsNothingOfTheHost) {
  EXPECT_EQ(TestedLibrary().callsWhileLoading, 0u);
}

TEST(LibraryStart, SelectorFunctionsAreCalledByTheHost) {
  const LibraryUnderTest& library = TestedLibrary();
  const u32 before = library.standIn->storageCalls;
  ComponentParameters parameters = {0, 0, kComponentVersionSelect, {0}};
  EXPECT_EQ(TestedEntries()[0].entry(&parameters, nullptr), 615);
  EXPECT_EQ(library.standIn->storageCalls, before + 1);
}

TEST(LibraryResources, AreThoseOfTheTables) {
  EXPECT_EQ(TestedLibrary().resources, AllResources());
}

TEST(LibraryResources, NameEveryEntryOnceOrMore) {
  std::set<std::string> names;
  for (const NamedEntry& entry : TestedEntries()) names.insert(entry.name);
  EXPECT_EQ(names.size(), 21u);
}

TEST_F(ComponentTest, OpeningGoesThroughTheDispatcherAlone) {
  StandIn& standIn = *TestedLibrary().standIn;
  const u32 before = standIn.calls;
  ComponentInstance instance = Open(kDecompressorType, FourCharacterCode("Vrl3"));
  ASSERT_NE(instance, nullptr);
  EXPECT_GT(standIn.calls, before);
  EXPECT_EQ(Host->CloseComponent(instance), noErr);
}

}  // namespace

}  // namespace vorel::component
