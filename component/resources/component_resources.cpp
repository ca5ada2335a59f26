// What the host finds components by: descriptions, names, codec information, lists of pixel formats, and the
// tables that lead from public ids to these.
#include <algorithm>
#include <string>

#include "component/component_table.h"
#include "component/format_lists.h"
#include "component/resources/resource_bytes.h"
#include "component/resources/resource_tables.h"

namespace vorel::component {
namespace {

constexpr u32 kThing = FourCharacterCode("thng");
constexpr u32 kEntryName = FourCharacterCode("dlle");
constexpr u32 kPublicResources = FourCharacterCode("thnr");
constexpr u32 kName = FourCharacterCode("strn");
constexpr u32 kSentence = FourCharacterCode("stri");
constexpr u32 kCodecInformation = FourCharacterCode("cdci");
constexpr u32 kPixelFormats = FourCharacterCode("cpix");
constexpr u32 kOptions = FourCharacterCode("ccop");
constexpr u32 kIcon = FourCharacterCode("icl8");

constexpr u32 kWindowsPlatform = 4;
constexpr std::size_t kTypeNameBytes = 32;  // with the length in front

void PutReference(Bytes& bytes, u32 type, i16 id) {
  Put32(bytes, type);
  PutId(bytes, id);
}

// The form with one platform entry and a table of public resources: 76 bytes.
Bytes Thing(const ComponentRow& row) {
  const ComponentKind& kind = KindOf(row);
  Bytes bytes;
  Put32(bytes, row.type);
  Put32(bytes, row.subtype);
  Put32(bytes, row.manufacturer);
  PutZeros(bytes, 8 + 6);  // flags, mask and code: the platform entry has them
  PutReference(bytes, kName, row.id);
  PutReference(bytes, kSentence, row.id);
  PutReference(bytes, kIcon, kIconId);
  Put32(bytes, kComponentVersion);
  Put32(bytes, kind.registrationFlags);
  PutId(bytes, kIconId);
  Put32(bytes, 1);
  Put32(bytes, kind.flags);
  PutReference(bytes, kEntryName, row.id);
  Put16(bytes, kWindowsPlatform);
  PutReference(bytes, kPublicResources, row.id);
  return bytes;
}

Bytes EntryName(const ComponentRow& row) {
  Bytes bytes;
  PutText(bytes, row.entry);
  Put8(bytes, 0);
  return bytes;
}

Bytes StringOf(const char* text) {
  Bytes bytes;
  PutString(bytes, text);
  return bytes;
}

// Codec information, laid out as the host's record of 72 bytes.
Bytes CodecInformation(const ComponentRow& row) {
  Bytes bytes;
  PutString(bytes, row.name);
  PutZeros(bytes, kTypeNameBytes - bytes.size());
  Put16(bytes, 0);                  // version
  Put16(bytes, kComponentVersion);  // revision; also tells a reader the byte order
  Put32(bytes, kMaker);
  Put32(bytes, 0x10200020);  // decompress flags
  Put32(bytes, row.compressFlags);
  Put32(bytes, row.formatFlags);
  Put8(bytes, 255);   // compression accuracy
  Put8(bytes, 255);   // decompression accuracy
  Put16(bytes, 205);  // compression speed
  Put16(bytes, 236);  // decompression speed
  Put8(bytes, 166);   // compression level
  Put8(bytes, 0);
  Put16(bytes, 1);     // minimum height
  Put16(bytes, 1);     // minimum width
  PutZeros(bytes, 4);  // latencies
  PutZeros(bytes, 4);  // private data
  return bytes;
}

// A transcoder takes its subtype alone.
Bytes PixelFormats(const ComponentRow& row) {
  Bytes bytes;
  if (row.type == kTranscoderType) {
    Put32(bytes, row.subtype);
    return bytes;
  }
  const FormatList list = row.type == kCompressorType ? SourceFormats(row.family) : TargetFormats(row.family);
  for (std::size_t i = 0; i < list.count; ++i) Put32(bytes, list.codes[i]);
  return bytes;
}

Bytes OneCode(u32 code) {
  Bytes bytes;
  Put32(bytes, code);
  return bytes;
}

void PutPublicResource(Bytes& bytes, u32 type, i16 id) {
  PutReference(bytes, type, kPublicId);
  Put16(bytes, 0);
  PutReference(bytes, type, id);
  Put16(bytes, 0);  // stands in a resource, is not made by a call
}

Bytes PublicResources(const ComponentRow& row) {
  Bytes bytes;
  PutPublicResource(bytes, kCodecInformation, row.id);
  PutPublicResource(bytes, kPixelFormats, row.id);
  PutPublicResource(bytes, KindOf(row).aviListType, row.id);
  if (row.type == kCompressorType) PutPublicResource(bytes, kOptions, row.id);
  return bytes;
}

// One resource of each component, in the order of the table.
void Append(std::vector<Resource>& resources, u32 type, Bytes (*make)(const ComponentRow&)) {
  for (const ComponentRow& row : kComponents) {
    resources.push_back({.type = type, .id = row.id, .bytes = make(row)});
  }
}

}  // namespace

void AppendComponentResources(std::vector<Resource>& resources) {
  Append(resources, kThing, Thing);
  Append(resources, kEntryName, EntryName);
  Append(resources, kPublicResources, PublicResources);
  Append(resources, kName, [](const ComponentRow& row) { return StringOf(row.name); });
  Append(resources, kSentence, [](const ComponentRow& row) { return StringOf(row.sentence); });
  Append(resources, kCodecInformation, CodecInformation);
  Append(resources, kPixelFormats, PixelFormats);
  for (const ComponentRow& row : kComponents) {
    resources.push_back({.type = KindOf(row).aviListType, .id = row.id, .bytes = OneCode(row.subtype)});
  }
  for (const ComponentRow& row : kComponents) {
    // 1: no slider for quality.
    if (row.type == kCompressorType) {
      resources.push_back({.type = kOptions, .id = row.id, .bytes = OneCode(1)});
    }
  }
}

}  // namespace vorel::component
