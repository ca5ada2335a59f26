// 'thng' resources, from the layout with a list of platform entries on. Components are registered before any of
// them runs and stay as they are, so nothing is locked here.
#include "component/embedded/component_registry.h"

#include <algorithm>
#include <cstring>

#include "base/problem.h"
#include "component/embedded/big_endian_reader.h"
#include "component/embedded/dialogs.h"
#include "component/embedded/resource_source.h"

namespace vorel::component::embedded {

namespace {

constexpr OSType kComponentResource = FourCharacterCode("thng");
constexpr OSType kEntryResource = FourCharacterCode("dlle");
constexpr u32 kManyPlatforms = 8;  // registration flag: flags and code stand in the platform entries

struct ResourceName {
  OSType type;
  i16 id;
};

struct PlatformEntry {
  u32 flags;
  ResourceName code;
};

ResourceName ReadResourceName(BigEndianReader& reader) {
  const OSType type = Read32(reader);
  return {type, ReadSigned16(reader)};
}

[[noreturn]] void ThrowDamaged(i16 id, const std::string& what) {
  throw Problem{what, "resource 'thng' " + std::to_string(id), "build the resources of the components again"};
}

std::string TextOf(ResourceName name) {
  const auto bytes = FindResourceBytes(name.type, name.id);
  if (!bytes) return {};
  BigEndianReader reader = {*bytes};
  return Utf8FromMacRoman(ReadText(reader));
}

// The name of an exported function, up to its end 0.
std::string EntryNameOf(i16 component, ResourceName code) {
  const auto bytes = FindResourceBytes(code.type, code.id);
  if (!bytes) ThrowDamaged(component, "names a 'dlle' that is not there: " + std::to_string(code.id));
  const auto end = std::find(bytes->begin(), bytes->end(), u8{0});
  if (end == bytes->end()) ThrowDamaged(component, "has a 'dlle' without an end");
  return {bytes->begin(), end};
}

// The entry for a platform whose code is in a library.
PlatformEntry ReadPlatformEntries(BigEndianReader& reader, i16 id) {
  const u32 count = Read32(reader);
  for (u32 i = 0; i < count && reader.complete; ++i) {
    PlatformEntry entry;
    entry.flags = Read32(reader);
    entry.code = ReadResourceName(reader);
    Read16(reader);  // platform
    if (reader.complete && entry.code.type == kEntryResource) return entry;
  }
  ThrowDamaged(id, reader.complete ? "has no platform entry with a 'dlle'" : "is too short");
}

ComponentListing ReadComponent(const SourceResource& resource) {
  BigEndianReader reader = {resource.bytes};
  ComponentListing listing;
  listing.resource = resource.id;
  listing.type = Read32(reader);
  listing.subtype = Read32(reader);
  listing.manufacturer = Read32(reader);
  const u32 ownFlags = Read32(reader);
  Read32(reader);            // mask
  ReadResourceName(reader);  // code of the form without platform entries
  listing.name = TextOf(ReadResourceName(reader));
  listing.information = TextOf(ReadResourceName(reader));
  ReadResourceName(reader);  // icon
  listing.version = Read32(reader);
  const u32 registration = Read32(reader);
  Read16(reader);  // icon family
  if (!reader.complete) ThrowDamaged(resource.id, "is too short");
  const PlatformEntry platform = ReadPlatformEntries(reader, resource.id);
  listing.flags = (registration & kManyPlatforms) != 0 ? platform.flags : ownFlags;
  listing.entry = EntryNameOf(resource.id, platform.code);
  return listing;
}

ComponentEntry FindEntry(std::span<const NamedEntry> entries, const std::string& name) {
  for (const NamedEntry& entry : entries)
    if (name == entry.name) return entry.entry;
  return nullptr;
}

bool Fits(OSType wanted, OSType code) {
  return wanted == 0 || wanted == code;
}

std::vector<RegisteredComponent> components;

}  // namespace

void RegisterComponents(std::span<const NamedEntry> entries) {
  std::vector<RegisteredComponent> found;
  for (const SourceResource& resource : ResourcesOfType(kComponentResource)) {
    RegisteredComponent component = {ReadComponent(resource), nullptr};
    component.listing.number = static_cast<u32>(found.size()) + 1;
    component.entry = FindEntry(entries, component.listing.entry);
    found.push_back(component);
  }
  components = std::move(found);
}

void ForgetComponents() {
  components.clear();
}

const RegisteredComponent* FindComponent(u32 number) {
  return number >= 1 && number <= components.size() ? &components[number - 1] : nullptr;
}

const RegisteredComponent* FirstComponent(OSType type, OSType subtype) {
  for (const RegisteredComponent& component : components)
    if (Fits(type, component.listing.type) && Fits(subtype, component.listing.subtype)) return &component;
  return nullptr;
}

std::vector<ComponentListing> FindComponents(OSType type, OSType subtype, OSType manufacturer) {
  std::vector<ComponentListing> found;
  for (const RegisteredComponent& component : components) {
    const ComponentListing& listing = component.listing;
    if (Fits(type, listing.type) && Fits(subtype, listing.subtype) &&
        Fits(manufacturer, listing.manufacturer))
      found.push_back(listing);
  }
  return found;
}

}  // namespace vorel::component::embedded
