// All components as a host finds, opens and closes them.
#include "component/entries.h"

#include "tests/component/component_fixture.h"

namespace vorel::component {

namespace {

using EntriesTest = ComponentTest;

TEST_F(EntriesTest, EveryComponentOfTheResourcesOpensAndSaysItsVersion) {
  const auto all = embedded::FindComponents(0, 0, 0);
  ASSERT_EQ(all.size(), 34u);
  for (const embedded::ComponentListing& listing : all) {
    ComponentInstance instance = nullptr;
    ASSERT_EQ(embedded::OpenComponent(listing.number, &instance), noErr) << listing.entry;
    EXPECT_EQ(embedded::CallSelector(instance, kComponentVersionSelect), 615) << listing.entry;
    EXPECT_EQ(Host->CloseComponent(instance), noErr) << listing.entry;
  }
}

}  // namespace

}  // namespace vorel::component
