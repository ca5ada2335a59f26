#include "component/resources/resource_fork.h"

#include <algorithm>
#include <map>
#include <set>
#include <utility>

#include "base/bytes.h"
#include "base/problem.h"
#include "component/resources/resource_bytes.h"

namespace vorel::component {
namespace {

constexpr u32 kDataOffset = 256;      // the header and what the system may keep behind it
constexpr u32 kTypeListOffset = 28;   // within the map
constexpr u32 kTypeBytes = 8;         // of an entry of the type list
constexpr u32 kReferenceBytes = 12;   // of an entry of a reference list
constexpr u32 kNoName = 0xFFFF;       // in place of the offset of a name
constexpr u32 kDataLimit = 1u << 24;  // references have 24 bits for an offset
constexpr u32 kMapLimit = 1u << 16;   // the map's own offsets have 16

std::string TypeText(u32 type) {
  std::string text = "'";
  for (int shift = 24; shift >= 0; shift -= 8) {
    const char letter = static_cast<char>(type >> shift & 0xFF);
    text += letter >= ' ' && letter <= '~' ? letter : '?';
  }
  return text + "'";
}

std::string ResourceText(u32 type, i16 id) {
  return TypeText(type) + " " + std::to_string(id);
}

// Resources of one type, by their place in the caller's list.
struct TypeGroup {
  u32 type;
  std::vector<std::size_t> members;
};

// Types in the order of their first appearance.
std::vector<TypeGroup> GroupByType(const std::vector<Resource>& resources) {
  std::vector<TypeGroup> groups;
  std::map<u32, std::size_t> places;
  for (std::size_t i = 0; i < resources.size(); ++i) {
    const auto [place, isNew] = places.emplace(resources[i].type, groups.size());
    if (isNew) groups.push_back({resources[i].type, {}});
    groups[place->second].members.push_back(i);
  }
  return groups;
}

void RefuseDoubleIds(const std::vector<Resource>& resources, const std::string& where) {
  std::set<std::pair<u32, i16>> seen;
  for (const Resource& resource : resources) {
    if (seen.emplace(resource.type, resource.id).second) continue;
    throw Problem{"the resource " + ResourceText(resource.type, resource.id) + " stands twice", where,
                  "Give each resource of a type an id of its own."};
  }
}

[[noreturn]] void ThrowTooLarge(const std::string& what) {
  throw Problem{what, "resource fork", "Write fewer or smaller resources."};
}

struct DataArea {
  Bytes bytes;
  std::vector<u32> offsets;  // of each resource
};

DataArea WriteData(const std::vector<Resource>& resources) {
  DataArea data;
  for (const Resource& resource : resources) {
    if (resource.bytes.size() + 4 + data.bytes.size() >= kDataLimit) {
      ThrowTooLarge("the resources need more than 16 MiB");
    }
    data.offsets.push_back(static_cast<u32>(data.bytes.size()));
    Put32(data.bytes, static_cast<u32>(resource.bytes.size()));
    data.bytes.insert(data.bytes.end(), resource.bytes.begin(), resource.bytes.end());
  }
  return data;
}

Bytes WriteMap(const std::vector<Resource>& resources, const std::vector<u32>& dataOffsets) {
  const std::vector<TypeGroup> groups = GroupByType(resources);
  const std::size_t typeListBytes = 2 + kTypeBytes * groups.size();
  const std::size_t nameListOffset = kTypeListOffset + typeListBytes + kReferenceBytes * resources.size();
  if (nameListOffset >= kMapLimit) ThrowTooLarge("the map of the resources would be longer than 64 KiB");
  Bytes map;
  PutZeros(map, 24);  // header and handles that the host fills in, attributes
  Put16(map, kTypeListOffset);
  Put16(map, static_cast<u32>(nameListOffset));
  Put16(map, static_cast<u32>(groups.size() - 1));  // 0xFFFF for none
  std::size_t referenceOffset = typeListBytes;
  for (const TypeGroup& group : groups) {
    Put32(map, group.type);
    Put16(map, static_cast<u32>(group.members.size() - 1));
    Put16(map, static_cast<u32>(referenceOffset));
    referenceOffset += kReferenceBytes * group.members.size();
  }
  Bytes names;
  for (const TypeGroup& group : groups) {
    for (const std::size_t member : group.members) {
      const Resource& resource = resources[member];
      PutId(map, resource.id);
      Put16(map, resource.name.empty() ? kNoName : static_cast<u32>(names.size()));
      Put32(map, u32{resource.attributes} << 24 | dataOffsets[member]);
      PutZeros(map, 4);
      if (!resource.name.empty()) PutString(names, resource.name);
      if (names.size() >= kNoName) ThrowTooLarge("the names of the resources need more than 64 KiB");
    }
  }
  map.insert(map.end(), names.begin(), names.end());
  if (map.size() >= kMapLimit) ThrowTooLarge("the map of the resources would be longer than 64 KiB");
  return map;
}

// Part of a fork that is being read: no read reaches beyond it.
struct Area {
  const u8* at;
  u64 bytes;
  const char* name;
  const std::string* where;
};

[[noreturn]] void ThrowDamaged(const std::string& what, const std::string& where) {
  throw Problem{what, where, "The resource fork is damaged; take another copy of the file."};
}

const u8* At(const Area& area, u64 offset, u64 bytes) {
  if (offset > area.bytes || bytes > area.bytes - offset) {
    ThrowDamaged(std::to_string(bytes) + " bytes at " + std::to_string(offset) + " of the " + area.name +
                     " are beyond its " + std::to_string(area.bytes) + " bytes",
                 *area.where);
  }
  return area.at + offset;
}

u32 Read16(const Area& area, u64 offset) {
  return LoadBig16(At(area, offset, 2));
}

u32 Read32(const Area& area, u64 offset) {
  return LoadBig32(At(area, offset, 4));
}

Area Part(const Area& whole, u64 offset, u64 bytes, const char* name) {
  return {At(whole, offset, bytes), bytes, name, whole.where};
}

struct PlacedResource {
  u32 dataOffset;
  Resource resource;
};

PlacedResource ReadReference(const Area& map, const Area& data, u64 at, u32 type, u64 nameList) {
  PlacedResource placed{};
  Resource& resource = placed.resource;
  resource.type = type;
  resource.id = static_cast<i16>(Read16(map, at));
  const u32 nameOffset = Read16(map, at + 2);
  resource.attributes = *At(map, at + 4, 1);
  placed.dataOffset = Read32(map, at + 4) & (kDataLimit - 1);
  const u32 bytes = Read32(data, placed.dataOffset);
  const u8* first = At(data, u64{placed.dataOffset} + 4, bytes);
  resource.bytes.assign(first, first + bytes);
  if (nameOffset != kNoName) {
    const u32 letters = *At(map, nameList + nameOffset, 1);
    const u8* name = At(map, nameList + nameOffset + 1, letters);
    resource.name.assign(name, name + letters);
  }
  return placed;
}

// References and data that a sound fork can still have. Both are spent while reading, so that a small damaged
// fork in which lists overlap cannot ask for much memory.
struct Budget {
  u64 references;  // that the map still has room for
  u64 dataBytes;   // that the data area still has
};

void Spend(u64& budget, u64 amount, const char* what, const std::string& where) {
  if (amount > budget) ThrowDamaged(std::string("the resources share ") + what, where);
  budget -= amount;
}

std::vector<PlacedResource> ReadReferences(const Area& map, const Area& data) {
  const u64 typeList = Read16(map, 24);
  const u64 nameList = Read16(map, 26);
  const u32 types = (Read16(map, typeList) + 1) & 0xFFFF;
  Budget budget = {map.bytes / kReferenceBytes, data.bytes};
  std::vector<PlacedResource> placed;
  for (u32 i = 0; i < types; ++i) {
    const u64 entry = typeList + 2 + u64{kTypeBytes} * i;
    const u32 type = Read32(map, entry);
    const u32 count = Read16(map, entry + 4) + 1;
    const u64 list = typeList + Read16(map, entry + 6);
    Spend(budget.references, count, "references", *map.where);
    for (u32 k = 0; k < count; ++k) {
      placed.push_back(ReadReference(map, data, list + u64{kReferenceBytes} * k, type, nameList));
      Spend(budget.dataBytes, placed.back().resource.bytes.size() + 4, "bytes of the data area", *map.where);
    }
  }
  return placed;
}

void RefuseOverlap(const std::vector<PlacedResource>& sorted, const std::string& where) {
  for (std::size_t i = 1; i < sorted.size(); ++i) {
    const PlacedResource& before = sorted[i - 1];
    const Resource& after = sorted[i].resource;
    if (before.dataOffset + 4 + before.resource.bytes.size() <= sorted[i].dataOffset) continue;
    ThrowDamaged("the resources " + ResourceText(before.resource.type, before.resource.id) + " and " +
                     ResourceText(after.type, after.id) + " overlap",
                 where);
  }
}

}  // namespace

Bytes WriteFork(const std::vector<Resource>& resources) {
  RefuseDoubleIds(resources, "resource fork");
  const DataArea data = WriteData(resources);
  const Bytes map = WriteMap(resources, data.offsets);
  Bytes fork;
  Put32(fork, kDataOffset);
  Put32(fork, kDataOffset + static_cast<u32>(data.bytes.size()));
  Put32(fork, static_cast<u32>(data.bytes.size()));
  Put32(fork, static_cast<u32>(map.size()));
  PutZeros(fork, kDataOffset - fork.size());
  fork.insert(fork.end(), data.bytes.begin(), data.bytes.end());
  fork.insert(fork.end(), map.begin(), map.end());
  return fork;
}

std::vector<Resource> ReadFork(const u8* fork, std::size_t forkBytes, const std::string& where) {
  const Area whole = {fork, forkBytes, "fork", &where};
  const Area data = Part(whole, Read32(whole, 0), Read32(whole, 8), "data area");
  const Area map = Part(whole, Read32(whole, 4), Read32(whole, 12), "map");
  std::vector<PlacedResource> placed = ReadReferences(map, data);
  std::stable_sort(placed.begin(), placed.end(), [](const PlacedResource& a, const PlacedResource& b) {
    return a.dataOffset < b.dataOffset;
  });
  RefuseOverlap(placed, where);
  std::vector<Resource> resources;
  resources.reserve(placed.size());
  for (PlacedResource& one : placed) resources.push_back(std::move(one.resource));
  RefuseDoubleIds(resources, where);
  return resources;
}

const Resource* FindResource(const std::vector<Resource>& resources, u32 type, i16 id) {
  for (const Resource& resource : resources) {
    if (resource.type == type && resource.id == id) return &resource;
  }
  return nullptr;
}

}  // namespace vorel::component
