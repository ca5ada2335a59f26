// Bytes of resources, one field behind the other: big-endian numbers and strings with their length in front.
#pragma once
#include <string_view>

#include "base/problem.h"
#include "component/resources/resource_fork.h"

namespace vorel::component {

inline void Put8(Bytes& bytes, u32 value) {
  bytes.push_back(static_cast<u8>(value));
}

inline void Put16(Bytes& bytes, u32 value) {
  Put8(bytes, value >> 8);
  Put8(bytes, value);
}

inline void Put32(Bytes& bytes, u32 value) {
  Put16(bytes, value >> 16);
  Put16(bytes, value);
}

inline void PutId(Bytes& bytes, i16 id) {
  Put16(bytes, static_cast<u16>(id));
}

inline void PutZeros(Bytes& bytes, std::size_t count) {
  bytes.resize(bytes.size() + count);
}

inline void PutText(Bytes& bytes, std::string_view text) {
  for (const char letter : text) bytes.push_back(static_cast<u8>(letter));
}

inline void PutString(Bytes& bytes, std::string_view text) {
  if (text.size() > 255) {
    throw Problem{"a string of a resource is longer than 255 bytes", std::string(text), "Shorten it."};
  }
  Put8(bytes, static_cast<u32>(text.size()));
  PutText(bytes, text);
}

inline void PadToEven(Bytes& bytes) {
  if (bytes.size() % 2 != 0) Put8(bytes, 0);
}

}  // namespace vorel::component
