// Resource forks: written, read and carried behind a library. A fork is a data area, in which each resource
// stands behind its length, and a map, which lists the resources by type. All numbers are big-endian.
#pragma once
#include <string>
#include <vector>

#include "base/integers.h"

namespace vorel::component {

using Bytes = std::vector<u8>;

struct Resource {
  u32 type;  // four-character code
  i16 id;    // once within a type
  u8 attributes = 0;
  std::string name = {};  // empty: the resource has none; 255 bytes at most
  Bytes bytes = {};

  bool operator==(const Resource&) const = default;
};

/// The resources as a fork. Their data stand in the order given, types in the order in which they first
/// appear. Throws Problem when they do not fit: 16 MiB of data, a map of 64 KiB, an id twice within a type.
Bytes WriteFork(const std::vector<Resource>& resources);

/// All resources of a fork, in the order of their data. `where` is what a message names. Throws Problem when
/// anything reaches beyond its area or overlaps, or when an id stands twice within a type.
std::vector<Resource> ReadFork(const u8* fork, std::size_t forkBytes, const std::string& where);

/// The resource of a type and id, or null.
const Resource* FindResource(const std::vector<Resource>& resources, u32 type, i16 id);

/// Where a fork stands within a file.
struct ForkPlace {
  std::size_t offset;
  std::size_t bytes;
};

/// A file that holds `image` unchanged and the fork behind it, with the directory at the end by which the host
/// finds it. Throws Problem when the image carries a fork already or is too long.
Bytes AppendFork(const Bytes& image, const Bytes& fork, const std::string& where);

/// Finds the fork of such a file. Throws Problem when there is none or when it reaches beyond the file.
ForkPlace FindFork(const u8* file, std::size_t fileBytes, const std::string& where);

}  // namespace vorel::component
