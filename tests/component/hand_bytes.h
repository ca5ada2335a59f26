// Bytes of resources written down by hand, and read again without the code under test.
#pragma once
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "component/resources/resource_tables.h"

namespace vorel::component {

/// "0001 FF" as three bytes. Blanks mean nothing.
inline Bytes Hex(const std::string& digits) {
  Bytes bytes;
  int held = -1;
  for (const char digit : digits) {
    if (digit == ' ') continue;
    const int value = digit <= '9' ? digit - '0' : digit - 'A' + 10;
    if (held >= 0) bytes.push_back(static_cast<u8>(held << 4 | value));
    held = held >= 0 ? -1 : value;
  }
  return bytes;
}

inline std::string Text(const Bytes& bytes) {
  return {bytes.begin(), bytes.end()};
}

inline Bytes Join(const std::vector<Bytes>& parts) {
  Bytes all;
  for (const Bytes& part : parts) {
    for (const u8 byte : part) all.push_back(byte);
  }
  return all;
}

inline u32 Big(const Bytes& bytes, std::size_t at, std::size_t count) {
  u32 value = 0;
  for (std::size_t i = 0; i < count; ++i) value = value << 8 | bytes.at(at + i);
  return value;
}

inline int Signed16(const Bytes& bytes, std::size_t at) {
  return static_cast<i16>(Big(bytes, at, 2));
}

/// The string that stands behind its length at a place.
inline std::string StringAt(const Bytes& bytes, std::size_t at) {
  std::string text;
  for (std::size_t i = 0; i < bytes.at(at); ++i) text += static_cast<char>(bytes.at(at + 1 + i));
  return text;
}

/// Strings of a 'STR#'.
inline std::vector<std::string> Strings(const Bytes& bytes) {
  std::vector<std::string> strings;
  std::size_t at = 2;
  for (u32 i = 0; i < Big(bytes, 0, 2); ++i) {
    strings.push_back(StringAt(bytes, at));
    at += 1 + strings.back().size();
  }
  EXPECT_EQ(at, bytes.size());
  return strings;
}

inline u32 CodeOf(const std::string& text) {
  u32 code = 0;
  for (const char letter : text) code = code << 8 | static_cast<u8>(letter);
  return code;
}

/// The bytes of a resource of the tables; a failure and no bytes if there is none.
inline Bytes BytesOf(const std::string& type, int id) {
  static const std::vector<Resource> resources = AllResources();
  for (const Resource& resource : resources) {
    if (resource.type == CodeOf(type) && resource.id == id) return resource.bytes;
  }
  ADD_FAILURE() << "no " << type << " " << id;
  return {};
}

inline std::vector<int> IdsOf(const std::string& type) {
  std::vector<int> ids;
  for (const Resource& resource : AllResources()) {
    if (resource.type == CodeOf(type)) ids.push_back(resource.id);
  }
  return ids;
}

}  // namespace vorel::component
