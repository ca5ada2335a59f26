// Builds atoms in memory: fields are appended in big-endian order, and an atom's size is filled in when it is
// closed.
#pragma once
#include <string>
#include <vector>

#include "base/integers.h"

namespace vorel::container {

using Bytes = std::vector<u8>;

void Put8(Bytes& bytes, u8 value);
void Put16(Bytes& bytes, u16 value);
void Put32(Bytes& bytes, u32 value);
void Put64(Bytes& bytes, u64 value);
void PutZeros(Bytes& bytes, std::size_t count);
void PutBytes(Bytes& bytes, const u8* from, std::size_t count);
void PutBytes(Bytes& bytes, const Bytes& from);

/// A length byte and at most 255 characters.
void PutPascalString(Bytes& bytes, const std::string& text);

/// Starts an atom and returns where; CloseAtom fills its size in. Atoms may nest.
std::size_t OpenAtom(Bytes& bytes, u32 type);
void CloseAtom(Bytes& bytes, std::size_t start);

/// OpenAtom, then version and flags.
std::size_t OpenFullAtom(Bytes& bytes, u32 type, u8 version, u32 flags);

/// A whole atom of given payload.
void PutAtom(Bytes& bytes, u32 type, const u8* payload, std::size_t count);

}  // namespace vorel::container
