// String lists: the settings text of the compressors, a line each with a return at its end, and the names of
// frame formats. Bytes are Mac Roman.
#include <string>

#include "component/component_table.h"
#include "component/format_names.h"
#include "component/resources/resource_bytes.h"
#include "component/resources/resource_tables.h"

namespace vorel::component {
namespace {

constexpr u32 kStringList = FourCharacterCode("STR#");

// Lines behind the six names. A compressor of 8bw ends with the two modes.
constexpr const char* kSettingsLines[] = {
    "Mode: One-way",
    "Mode: Self-check",
    "Conversion: Perfect",
    "Conversion: Best",
    "Video Color Standard: NTSC",
    "Video Color Standard: PAL|S\203CAM",  // the capital E with an acute accent
    "Video Color Standard: HD",
    "Video Color Standard: HD 1035",
    "Video Color Standard: unknown",
    "RGB Input Range: Full",
    "RGB Input Range: Video",
    "RGB Input Range: Automatic",
};
constexpr std::size_t kModeLines = 2;

constexpr const char* kGenericLines[6] = {"Vorel", "Vorel p", "Vorel i", "Vorel A", "Vorel A p", "Vorel A i"};

// Where the six names of a settings text stand in a family's list of frame formats: both heads, each with the
// two scans behind it.
constexpr std::size_t kLineOfName[6] = {0, 2, 3, 1, 4, 5};

Bytes StringList(const std::vector<std::string>& strings) {
  Bytes bytes;
  Put16(bytes, static_cast<u32>(strings.size()));
  for (const std::string& string : strings) PutString(bytes, string);
  return bytes;
}

// The list of format names of a compressor stands behind its settings text.
const FormatNameList& NamesOf(const ComponentRow& compressor) {
  for (const FormatNameList& list : kFormatNameLists) {
    if (list.id == FormatNamesId(compressor)) return list;
  }
  throw Problem{"a compressor has no list of format names", compressor.entry, ""};
}

Bytes SettingsText(const ComponentRow& compressor) {
  const bool isGeneric = compressor.family == VOREL_GENERIC;
  const FormatNameList& names = NamesOf(compressor);
  std::vector<std::string> lines;
  for (std::size_t i = 0; i < std::size(kGenericLines); ++i) {
    const char* name = isGeneric ? kGenericLines[i] : kFormatNames[names.first - 1 + kLineOfName[i]];
    lines.push_back(std::string(name) + "\r");
  }
  const std::size_t count = compressor.family == VOREL_YCBCR_8BW_422 ? kModeLines : std::size(kSettingsLines);
  for (std::size_t i = 0; i < count; ++i) lines.push_back(std::string(kSettingsLines[i]) + "\r");
  return StringList(lines);
}

Bytes FormatNames(const FormatNameList& list) {
  return StringList({kFormatNames + list.first - 1, kFormatNames + list.first - 1 + list.count});
}

}  // namespace

void AppendTextResources(std::vector<Resource>& resources) {
  for (const ComponentRow& row : kComponents) {
    if (row.type != kCompressorType) continue;
    resources.push_back({.type = kStringList, .id = SettingsTextId(row), .bytes = SettingsText(row)});
  }
  for (const FormatNameList& list : kFormatNameLists) {
    resources.push_back({.type = kStringList, .id = list.id, .bytes = FormatNames(list)});
  }
}

}  // namespace vorel::component
