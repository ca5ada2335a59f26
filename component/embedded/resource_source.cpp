// Resources of a fork, read once and looked up by type and id. They do not change while components run, so
// nothing is locked here.
#include "component/embedded/resource_source.h"

#include "component/resources/resource_fork.h"

namespace vorel::component::embedded {

namespace {

std::vector<Resource> resources;

}  // namespace

void TakeResources(std::span<const u8> fork) {
  resources = fork.empty() ? std::vector<Resource>()
                           : ReadFork(fork.data(), fork.size(), "resource fork of the components");
}

void ForgetResources() {
  resources.clear();
}

std::optional<std::span<const u8>> FindResourceBytes(OSType type, i16 id) {
  const Resource* resource = FindResource(resources, type, id);
  if (resource == nullptr) return std::nullopt;
  return resource->bytes;
}

std::vector<SourceResource> ResourcesOfType(OSType type) {
  std::vector<SourceResource> found;
  for (const Resource& resource : resources)
    if (resource.type == type) found.push_back({resource.id, resource.bytes});
  return found;
}

}  // namespace vorel::component::embedded
