#include "tests/component/component_fixture.h"

namespace vorel::component {

std::span<const NamedEntry> TestedEntries() {
  return Entries();
}

}  // namespace vorel::component
