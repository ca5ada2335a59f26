// The image description's bytes, both ways.
#include "container/sample_description.h"

#include <algorithm>
#include <utility>

#include "container/atom_builder.h"

namespace vorel::container {

namespace {

constexpr std::size_t kNameFieldBytes = 32;  // length byte included
constexpr std::size_t kColourTableHeaderBytes = 8;
constexpr std::size_t kColourTableEntryBytes = 8;

// Pictures of 1, 2, 4 and 8 bits are indexed; 32 more are shades of grey. Others with clutID 0 carry no
// table.
bool HasColourTable(const SampleDescription& description) {
  const int bits = description.depth & 0x1F;
  return description.clutID == 0 && description.depth <= 40 &&
         (bits == 1 || bits == 2 || bits == 4 || bits == 8);
}

std::string ReadName(FieldReader& fields) {
  const u8* field = ReadBytes(fields, kNameFieldBytes);
  const std::size_t length = std::min<std::size_t>(field[0], kNameFieldBytes - 1);
  return {reinterpret_cast<const char*>(field) + 1, length};
}

// Seed (4), flags (2), number of the last entry (2, -1 for none), entries.
std::vector<u8> ReadColourTable(FieldReader& fields) {
  FieldReader ahead = fields;
  SkipBytes(ahead, 6);
  const std::size_t entries = static_cast<u16>(Read16(ahead) + 1);
  const std::size_t count = kColourTableHeaderBytes + entries * kColourTableEntryBytes;
  const u8* table = ReadBytes(fields, count);
  return {table, table + count};
}

}  // namespace

bool operator==(const Extension& a, const Extension& b) {
  return a.type == b.type && a.bytes == b.bytes;
}

bool operator==(const SampleDescription& a, const SampleDescription& b) {
  return SerializeSampleDescription(a) == SerializeSampleDescription(b);
}

SampleDescription ParseSampleDescription(const AtomView& entry) {
  if (entry.headerBytes != 8) ThrowDamaged(entry, "an image description has a 32-bit size");
  FieldReader fields = ReadFields(entry);
  SampleDescription description;
  description.cType = entry.type;
  description.resvd1 = Read32(fields);
  description.resvd2 = Read16(fields);
  description.dataRefIndex = Read16(fields);
  description.version = Read16(fields);
  description.revisionLevel = Read16(fields);
  description.vendor = Read32(fields);
  description.temporalQuality = Read32(fields);
  description.spatialQuality = Read32(fields);
  description.width = Read16(fields);
  description.height = Read16(fields);
  description.hRes = Read32(fields);
  description.vRes = Read32(fields);
  description.dataSize = Read32(fields);
  description.frameCount = Read16(fields);
  description.name = ReadName(fields);
  description.depth = Read16(fields);
  description.clutID = static_cast<i16>(Read16(fields));
  if (HasColourTable(description)) description.colourTable = ReadColourTable(fields);
  for (const AtomView& extension : ChildAtoms(entry, fields.position)) {
    description.extensions.push_back(
        {extension.type, {extension.payload, extension.payload + extension.payloadBytes}});
  }
  return description;
}

SampleDescription ParseSampleDescription(const u8* bytes, std::size_t count, const std::string& name) {
  const AtomView whole = {0, 0, bytes, count, 0, "image description", name};
  const std::vector<AtomView> entries = ChildAtoms(whole);
  if (entries.size() != 1 || entries[0].payload + entries[0].payloadBytes != bytes + count) {
    ThrowDamaged(whole, "the description does not fill its " + std::to_string(count) + " bytes");
  }
  return ParseSampleDescription(entries[0]);
}

std::vector<u8> SerializeSampleDescription(const SampleDescription& description) {
  Bytes bytes;
  const std::size_t start = OpenAtom(bytes, description.cType);
  Put32(bytes, description.resvd1);
  Put16(bytes, description.resvd2);
  Put16(bytes, description.dataRefIndex);
  Put16(bytes, description.version);
  Put16(bytes, description.revisionLevel);
  Put32(bytes, description.vendor);
  Put32(bytes, description.temporalQuality);
  Put32(bytes, description.spatialQuality);
  Put16(bytes, description.width);
  Put16(bytes, description.height);
  Put32(bytes, description.hRes);
  Put32(bytes, description.vRes);
  Put32(bytes, description.dataSize);
  Put16(bytes, description.frameCount);
  PutPascalString(bytes, description.name.substr(0, kNameFieldBytes - 1));
  PutZeros(bytes, start + 82 - bytes.size());
  Put16(bytes, description.depth);
  Put16(bytes, static_cast<u16>(description.clutID));
  PutBytes(bytes, description.colourTable);
  for (const Extension& extension : description.extensions) {
    PutAtom(bytes, extension.type, extension.bytes.data(), extension.bytes.size());
  }
  CloseAtom(bytes, start);
  return bytes;
}

const Extension* FindExtension(const SampleDescription& description, u32 type) {
  const auto found = std::find_if(description.extensions.begin(), description.extensions.end(),
                                  [type](const Extension& extension) { return extension.type == type; });
  return found == description.extensions.end() ? nullptr : &*found;
}

void SetExtension(SampleDescription& description, Extension extension) {
  const auto isOfType = [type = extension.type](const Extension& other) { return other.type == type; };
  const auto first = std::find_if(description.extensions.begin(), description.extensions.end(), isOfType);
  if (first == description.extensions.end()) {
    description.extensions.push_back(std::move(extension));
    return;
  }
  *first = std::move(extension);
  description.extensions.erase(std::remove_if(first + 1, description.extensions.end(), isOfType),
                               description.extensions.end());
}

void RemoveExtension(SampleDescription& description, u32 type) {
  std::erase_if(description.extensions,
                [type](const Extension& extension) { return extension.type == type; });
}

}  // namespace vorel::container
