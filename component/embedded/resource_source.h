// The resources that the host was given, by type and id.
#pragma once
#include <optional>
#include <span>
#include <vector>

#include "component/host_types.h"

namespace vorel::component::embedded {

struct SourceResource {
  i16 id;
  std::span<const u8> bytes;
};

/// Throws Problem for a damaged fork; what was there before stays then. An empty span is a fork without resources.
void TakeResources(std::span<const u8> fork);
void ForgetResources();

std::optional<std::span<const u8>> FindResourceBytes(OSType type, i16 id);

/// In the order of the fork.
std::vector<SourceResource> ResourcesOfType(OSType type);

}  // namespace vorel::component::embedded
