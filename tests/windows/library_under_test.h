// VorelVideo.qtx in this process, with the stand-in for the platform beside it.
#pragma once
#include <vector>

#include "component/resources/resource_fork.h"
#include "tests/windows/quicktime_stand_in.h"

namespace vorel::component {

struct LibraryUnderTest {
  void* module;
  StandIn* standIn;
  u32 callsWhileLoading;            // of any entry of the stand-in
  std::vector<Resource> resources;  // behind the library
};

// Loaded once.
LibraryUnderTest& TestedLibrary();

}  // namespace vorel::component
