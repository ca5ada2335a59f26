// Resources of a fork, found once and looked up by type and id. They do not change while components run, so
// nothing is locked here.
#include "component/embedded/resource_source.h"

#include "base/problem.h"
#include "component/embedded/big_endian_reader.h"

namespace vorel::component::embedded {

namespace {

constexpr std::size_t kTypeListField = 24;  // of the map
constexpr std::size_t kTypeBytes = 8;
constexpr std::size_t kReferenceBytes = 12;

struct TypedResource {
  OSType type;
  SourceResource resource;
};

std::vector<TypedResource> resources;

[[noreturn]] void ThrowDamaged(const std::string& what) {
  throw Problem{what, "resource fork of the components", "build the resources of the components again"};
}

std::span<const u8> Part(std::span<const u8> bytes, std::size_t offset, std::size_t count, const char* name) {
  if (offset > bytes.size() || count > bytes.size() - offset)
    ThrowDamaged(std::string(name) + " reaches beyond the end");
  return bytes.subspan(offset, count);
}

std::span<const u8> ResourceData(std::span<const u8> data, std::size_t offset) {
  const std::size_t count = LoadBig32(Part(data, offset, 4, "length of a resource").data());
  return Part(data, offset + 4, count, "resource");
}

std::vector<TypedResource> ReadFork(std::span<const u8> fork) {
  const u8* header = Part(fork, 0, 16, "header").data();
  const auto data = Part(fork, LoadBig32(header), LoadBig32(header + 8), "data area");
  const auto map = Part(fork, LoadBig32(header + 4), LoadBig32(header + 12), "map");
  const std::size_t listOffset = LoadBig16(Part(map, kTypeListField, 2, "map header").data());
  const auto list = Part(map, listOffset, map.size() - std::min(listOffset, map.size()), "type list");
  const u32 types = (LoadBig16(Part(list, 0, 2, "type list").data()) + 1u) & 0xFFFF;
  std::vector<TypedResource> found;
  for (u32 t = 0; t < types; ++t) {
    const u8* type = Part(list, 2 + t * kTypeBytes, kTypeBytes, "type list").data();
    const u32 count = LoadBig16(type + 4) + 1u;
    const std::size_t offset = LoadBig16(type + 6);
    for (u32 r = 0; r < count; ++r) {
      const u8* reference = Part(list, offset + r * kReferenceBytes, kReferenceBytes, "reference").data();
      const auto id = static_cast<i16>(LoadBig16(reference));
      found.push_back({LoadBig32(type), {id, ResourceData(data, LoadBig32(reference + 4) & 0xFFFFFF)}});
    }
  }
  return found;
}

}  // namespace

void TakeResources(std::span<const u8> fork) {
  resources = fork.empty() ? std::vector<TypedResource>() : ReadFork(fork);
}

void ForgetResources() {
  resources.clear();
}

std::optional<std::span<const u8>> FindResourceBytes(OSType type, i16 id) {
  for (const TypedResource& entry : resources)
    if (entry.type == type && entry.resource.id == id) return entry.resource.bytes;
  return std::nullopt;
}

std::vector<SourceResource> ResourcesOfType(OSType type) {
  std::vector<SourceResource> found;
  for (const TypedResource& entry : resources)
    if (entry.type == type) found.push_back(entry.resource);
  return found;
}

}  // namespace vorel::component::embedded
