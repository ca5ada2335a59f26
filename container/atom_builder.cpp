// Appending of big-endian fields and nested atoms.
#include "container/atom_builder.h"

#include <algorithm>
#include <limits>

#include "base/bytes.h"
#include "base/problem.h"

namespace vorel::container {

void Put8(Bytes& bytes, u8 value) {
  bytes.push_back(value);
}

void Put16(Bytes& bytes, u16 value) {
  bytes.resize(bytes.size() + 2);
  StoreBig16(bytes.data() + bytes.size() - 2, value);
}

void Put32(Bytes& bytes, u32 value) {
  bytes.resize(bytes.size() + 4);
  StoreBig32(bytes.data() + bytes.size() - 4, value);
}

void Put64(Bytes& bytes, u64 value) {
  bytes.resize(bytes.size() + 8);
  StoreBig64(bytes.data() + bytes.size() - 8, value);
}

void PutZeros(Bytes& bytes, std::size_t count) {
  bytes.resize(bytes.size() + count);
}

void PutBytes(Bytes& bytes, const u8* from, std::size_t count) {
  bytes.insert(bytes.end(), from, from + count);
}

void PutBytes(Bytes& bytes, const Bytes& from) {
  bytes.insert(bytes.end(), from.begin(), from.end());
}

void PutPascalString(Bytes& bytes, const std::string& text) {
  const std::size_t length = std::min<std::size_t>(text.size(), 255);
  Put8(bytes, static_cast<u8>(length));
  bytes.insert(bytes.end(), text.begin(), text.begin() + static_cast<std::ptrdiff_t>(length));
}

std::size_t OpenAtom(Bytes& bytes, u32 type) {
  const std::size_t start = bytes.size();
  Put32(bytes, 0);
  Put32(bytes, type);
  return start;
}

void CloseAtom(Bytes& bytes, std::size_t start) {
  const std::size_t size = bytes.size() - start;
  if (size > std::numeric_limits<u32>::max())
    throw Problem{"the movie header exceeds 4 GiB", "", "write shorter movies"};
  StoreBig32(bytes.data() + start, static_cast<u32>(size));
}

std::size_t OpenFullAtom(Bytes& bytes, u32 type, u8 version, u32 flags) {
  const std::size_t start = OpenAtom(bytes, type);
  Put32(bytes, u32{version} << 24 | flags);
  return start;
}

void PutAtom(Bytes& bytes, u32 type, const u8* payload, std::size_t count) {
  const std::size_t start = OpenAtom(bytes, type);
  PutBytes(bytes, payload, count);
  CloseAtom(bytes, start);
}

}  // namespace vorel::container
