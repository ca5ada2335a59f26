// The components on the embedded host, with their real resources. Nothing may be in use at the end of a test.
#pragma once
#include <gtest/gtest.h>

#include "component/component_table.h"
#include "component/embedded/embedded_host.h"
#include "component/host_errors.h"
#include "component/resources/embedded_fork.h"
#include "component/selectors.h"

namespace vorel::component {

// The entries that the host is given: those linked here, or those of a library.
std::span<const NamedEntry> TestedEntries();

struct ComponentTest : testing::Test {
  void SetUp() override { StartHost({}); }

  // Another host than the usual one: settings but for resources and entries.
  static void StartHost(embedded::HostSettings settings) {
    settings.resourceFork = {kResourceFork, kResourceForkBytes};
    settings.entries = TestedEntries();
    embedded::StopEmbeddedHost();
    embedded::StartEmbeddedHost(settings);
  }

  void TearDown() override { EXPECT_EQ(embedded::StopEmbeddedHost(), embedded::HostCounts{}); }

  // Null if the component can't be opened.
  static ComponentInstance Open(OSType type, OSType subtype, OSType manufacturer = 0) {
    const auto found = embedded::FindComponents(type, subtype, manufacturer);
    ComponentInstance instance = nullptr;
    if (!found.empty()) embedded::OpenComponent(found[0].number, &instance);
    return instance;
  }
};

}  // namespace vorel::component
