// Reads the big-endian fields of a resource one after the other. A read beyond the end gives 0 and is remembered,
// so a whole record is read first and judged once.
#pragma once
#include <span>
#include <string>

#include "base/bytes.h"
#include "component/host_types.h"

namespace vorel::component::embedded {

struct BigEndianReader {
  std::span<const u8> bytes;
  std::size_t position = 0;
  bool complete = true;  // no read went beyond the end
};

inline std::span<const u8> ReadBytes(BigEndianReader& reader, std::size_t count) {
  if (count > reader.bytes.size() - reader.position) {
    reader.complete = false;
    reader.position = reader.bytes.size();
    return {};
  }
  reader.position += count;
  return reader.bytes.subspan(reader.position - count, count);
}

inline u8 Read8(BigEndianReader& reader) {
  const std::span<const u8> field = ReadBytes(reader, 1);
  return field.empty() ? u8{0} : field[0];
}

inline u16 Read16(BigEndianReader& reader) {
  const std::span<const u8> field = ReadBytes(reader, 2);
  return field.empty() ? u16{0} : LoadBig16(field.data());
}

inline i16 ReadSigned16(BigEndianReader& reader) {
  return static_cast<i16>(Read16(reader));
}

inline u32 Read32(BigEndianReader& reader) {
  const std::span<const u8> field = ReadBytes(reader, 4);
  return field.empty() ? u32{0} : LoadBig32(field.data());
}

inline Rect ReadRect(BigEndianReader& reader) {
  Rect rect;
  rect.top = ReadSigned16(reader);
  rect.left = ReadSigned16(reader);
  rect.bottom = ReadSigned16(reader);
  rect.right = ReadSigned16(reader);
  return rect;
}

// A length byte and that many characters.
inline std::string ReadText(BigEndianReader& reader) {
  const std::span<const u8> text = ReadBytes(reader, Read8(reader));
  return {text.begin(), text.end()};
}

}  // namespace vorel::component::embedded
