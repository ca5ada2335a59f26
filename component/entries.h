// The components' entries, one for each resource that names one: what the host calls with every selector.
#pragma once
#include <span>
#include <string_view>

#include "component/host_types.h"

extern "C" {

// parameters   the call: selector and arguments
// storage      what the component has set for this instance; null before it has
// Returns what the selector is asked for, or a host error.
#define VOREL_COMPONENT_ENTRY(NAME)                                                         \
  vorel::component::ComponentResult NAME(vorel::component::ComponentParameters* parameters, \
                                         vorel::component::Handle storage)

VOREL_COMPONENT_ENTRY(Qd_);
VOREL_COMPONENT_ENTRY(Qd0);
VOREL_COMPONENT_ENTRY(Qd1);
VOREL_COMPONENT_ENTRY(Qd2);
VOREL_COMPONENT_ENTRY(Qd3);
VOREL_COMPONENT_ENTRY(Qd4);
VOREL_COMPONENT_ENTRY(Qd5);
VOREL_COMPONENT_ENTRY(Qd6);
VOREL_COMPONENT_ENTRY(Qe_);
VOREL_COMPONENT_ENTRY(Qe0);
VOREL_COMPONENT_ENTRY(Qe1);
VOREL_COMPONENT_ENTRY(Qe2);
VOREL_COMPONENT_ENTRY(Qe3);
VOREL_COMPONENT_ENTRY(Qe4);
VOREL_COMPONENT_ENTRY(Qe5);
VOREL_COMPONENT_ENTRY(Qe6);
VOREL_COMPONENT_ENTRY(Qt2);
VOREL_COMPONENT_ENTRY(Qt3);
VOREL_COMPONENT_ENTRY(Qt4);
VOREL_COMPONENT_ENTRY(Qt5);
VOREL_COMPONENT_ENTRY(Qt6);

}  // extern "C"

namespace vorel::component {

using ComponentEntry = ComponentResult (*)(ComponentParameters* parameters, Handle storage);

struct NamedEntry {
  const char* name;  // as the resources have it
  ComponentEntry entry;
};

// All 21.
std::span<const NamedEntry> Entries();

// The tables by which an entry finds the function of a selector; null for a name that none has.
const struct SelectorTables* FindTables(std::string_view entry);

}  // namespace vorel::component
