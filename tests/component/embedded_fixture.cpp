#include "embedded_fixture.h"

#include <map>

namespace vorel::component::embedded {

Blob Be16(u64 value) {
  return {static_cast<char>(value >> 8), static_cast<char>(value)};
}

Blob Be32(u64 value) {
  return Be16(value >> 16 & 0xFFFF) + Be16(value & 0xFFFF);
}

Blob PascalText(const std::string& text) {
  return static_cast<char>(text.size()) + text;
}

Blob HandFork(const std::vector<HandResource>& resources) {
  std::vector<std::string> types;
  std::map<std::string, Blob> references;
  Blob data;
  for (const HandResource& resource : resources) {
    if (references.count(resource.type) == 0) types.push_back(resource.type);
    references[resource.type] +=
        Be16(static_cast<u16>(resource.id)) + Be16(0xFFFF) + Be32(data.size()) + Be32(0);
    data += Be32(resource.bytes.size()) + resource.bytes;
  }
  Blob list = Be16(types.size() - 1);
  Blob lists;
  for (const std::string& type : types) {
    list += type + Be16(references[type].size() / 12 - 1) + Be16(2 + 8 * types.size() + lists.size());
    lists += references[type];
  }
  list += lists;
  const Blob map = Blob(24, '\0') + Be16(28) + Be16(28 + list.size()) + list;
  return Be32(256) + Be32(256 + data.size()) + Be32(data.size()) + Be32(map.size()) + Blob(240, '\0') + data +
         map;
}

std::vector<HandResource> HandComponent(i16 id, const std::string& codes, const std::string& entry) {
  const Blob number = Be16(static_cast<u16>(id));
  const Blob thing = codes + Be32(0) + Be32(0) + Be32(0) + Be16(0) + "strn" + number + "stri" + number +
                     "icl8" + number + Be32(0x267) + Be32(9) + number + Be32(1) + Be32(0x10200020) + "dlle" +
                     number + Be16(4) + "thnr" + number;
  return {{"thng", id, thing}, {"dlle", id, entry + '\0'}};
}

}  // namespace vorel::component::embedded
