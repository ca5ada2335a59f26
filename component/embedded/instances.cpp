// Instances are opened, called and closed here. No lock is held while a component runs: it may open others.
#include "component/embedded/instances.h"

#include <algorithm>
#include <mutex>
#include <new>
#include <unordered_map>

#include "component/embedded/base_decompressor.h"
#include "component/embedded/operations.h"
#include "component/embedded/platform_results.h"
#include "component/selectors.h"

namespace vorel::component::embedded {

namespace {

struct Instances {
  std::mutex mutex;
  std::unordered_map<ComponentInstance, std::unique_ptr<HostInstance>> open;
};

Instances instances;

// A call with room for all slots, where the record itself declares one.
constexpr std::size_t kCallBytes = sizeof(ComponentParameters) + (kMostSlots - 1) * sizeof(Slot);
static_assert(kMostSlots * sizeof(Slot) <= 0xFF, "paramSize is a byte");

// What a call needs to know of its instance; false if it is not open.
bool LookUp(ComponentInstance instance, ComponentEntry& entry, Handle& storage) {
  const std::scoped_lock lock(instances.mutex);
  const auto found = instances.open.find(instance);
  if (found == instances.open.end()) return false;
  entry = found->second->entry;
  storage = found->second->storage;
  return true;
}

void Forget(ComponentInstance instance) {
  std::unique_ptr<HostInstance> gone;  // outlives the lock: a built-in one may have much to free
  const std::scoped_lock lock(instances.mutex);
  const auto found = instances.open.find(instance);
  if (found == instances.open.end()) return;
  gone = std::move(found->second);
  instances.open.erase(found);
}

OSErr Open(const RegisteredComponent* component, ComponentEntry entry, ComponentInstance* instance) {
  auto record = std::make_unique<HostInstance>(HostInstance{component, entry, nullptr, nullptr});
  const ComponentInstance opened = record.get();
  {
    const std::scoped_lock lock(instances.mutex);
    instances.open.emplace(opened, std::move(record));
  }
  const ComponentResult result = CallSelector(opened, kComponentOpenSelect, opened);
  if (result != noErr) {
    Forget(opened);
    return static_cast<OSErr>(result);
  }
  *instance = opened;
  return noErr;
}

}  // namespace

ComponentResult CallComponent(ComponentInstance instance, ComponentParameters* parameters) {
  ComponentEntry entry;
  Handle storage;
  if (parameters == nullptr || !LookUp(instance, entry, storage)) return badComponentInstance;
  return entry(parameters, storage);
}

ComponentResult DelegateComponentCall(ComponentParameters* parameters, ComponentInstance instance) {
  return CallComponent(instance, parameters);
}

std::array<Slot, kMostSlots> SlotsOf(const ComponentParameters& parameters) {
  std::array<Slot, kMostSlots> slots = {};
  const std::size_t present = (parameters.paramSize + sizeof(Slot) - 1) / sizeof(Slot);
  const Slot* given = parameters.params;
  std::copy_n(given, std::min(present, kMostSlots), slots.begin());
  return slots;
}

// Every selector function has the same type and takes all slots.
ComponentResult CallWithStorage(Handle storage, ComponentParameters* parameters, SelectorFunction function) {
  if (parameters == nullptr || function == nullptr) return paramErr;
  const auto slots = SlotsOf(*parameters);
  return function(storage, slots[0], slots[1], slots[2], slots[3], slots[4], slots[5], slots[6], slots[7],
                  slots[8], slots[9]);
}

ComponentResult CallWithSlots(ComponentInstance instance, i16 selector, std::span<const Slot> slots) {
  if (slots.size() > kMostSlots) return paramErr;
  alignas(ComponentParameters) std::byte block[kCallBytes] = {};
  auto* parameters = new (block) ComponentParameters{};
  parameters->paramSize = static_cast<u8>(slots.size() * sizeof(Slot));
  parameters->what = selector;
  Slot* given = parameters->params;
  std::copy(slots.begin(), slots.end(), given);
  return CallComponent(instance, parameters);
}

void SetComponentInstanceStorage(ComponentInstance instance, Handle storage) {
  const std::scoped_lock lock(instances.mutex);
  const auto found = instances.open.find(instance);
  if (found != instances.open.end()) found->second->storage = storage;
}

void GiveMemory(ComponentInstance instance, std::shared_ptr<void> builtIn) {
  const std::scoped_lock lock(instances.mutex);
  const auto found = instances.open.find(instance);
  if (found == instances.open.end()) return;
  found->second->builtIn = std::move(builtIn);
  found->second->storage = static_cast<Handle>(found->second->builtIn.get());
}

// The instance answers calls until its Close is over, for what it closes in turn may still call it.
OSErr CloseComponent(ComponentInstance instance) {
  ComponentEntry entry;
  Handle storage;
  if (!LookUp(instance, entry, storage)) return static_cast<OSErr>(badComponentInstance);
  const ComponentResult result = CallSelector(instance, kComponentCloseSelect, instance);
  Forget(instance);
  return static_cast<OSErr>(result);
}

OSErr OpenComponent(u32 number, ComponentInstance* instance) {
  if (instance == nullptr) return paramErr;
  *instance = nullptr;
  const RegisteredComponent* component = FindComponent(number);
  if (component == nullptr || component->entry == nullptr) return invalidComponentID;
  return Open(component, component->entry, instance);
}

OSErr OpenADefaultComponent(OSType type, OSType subtype, ComponentInstance* instance) {
  if (instance == nullptr) return paramErr;
  *instance = nullptr;
  if (type == kBaseType && subtype == kBaseSubtype) return Open(nullptr, BaseDecompressorEntry, instance);
  const RegisteredComponent* component = FirstComponent(type, subtype);
  return OpenComponent(component == nullptr ? 0 : component->listing.number, instance);
}

ComponentInstance AsComponent(u32 number) {
  return reinterpret_cast<ComponentInstance>(static_cast<Slot>(number));
}

const RegisteredComponent* ComponentBehind(ComponentInstance component) {
  {
    const std::scoped_lock lock(instances.mutex);
    const auto found = instances.open.find(component);
    if (found != instances.open.end()) return found->second->component;
  }
  const Slot number = ToSlot(component);
  return number > 0 && number <= INT32_MAX ? FindComponent(static_cast<u32>(number)) : nullptr;
}

i32 InstancesInUse() {
  const std::scoped_lock lock(instances.mutex);
  return static_cast<i32>(instances.open.size());
}

void ForgetInstances() {
  const std::scoped_lock lock(instances.mutex);
  instances.open.clear();
}

}  // namespace vorel::component::embedded
