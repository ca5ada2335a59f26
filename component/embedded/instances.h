// Open instances of components, and what the host keeps of each.
#pragma once
#include <array>
#include <memory>

#include "component/embedded/component_registry.h"

namespace vorel::component {

// One open instance. `storage` is what the component has set; the host only hands it back.
struct HostInstance {
  const embedded::RegisteredComponent* component;  // null for what is built into the host
  ComponentEntry entry;
  Handle storage;
  std::shared_ptr<void> builtIn;  // memory of a built-in component
};

}  // namespace vorel::component

namespace vorel::component::embedded {

/// The slots of a call; those that it does not have are 0.
std::array<Slot, kMostSlots> SlotsOf(const ComponentParameters& parameters);

/// Gives an instance of a built-in component its memory, which goes with the instance and is its storage.
void GiveMemory(ComponentInstance instance, std::shared_ptr<void> builtIn);

/// The component that a number or an open instance stands for; null for neither, and for built-in ones.
const RegisteredComponent* ComponentBehind(ComponentInstance component);

i32 InstancesInUse();
void ForgetInstances();

}  // namespace vorel::component::embedded
