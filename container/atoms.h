// Atoms of a movie: size, four-character type, payload, where the size is 32-bit, or 1 and a 64-bit size
// behind the type, or 0 for "up to the end of the enclosing space". A movie header is held in memory and
// walked through views; every length is checked against the space around it before it is used. Messages name
// an atom by its path and its offset in the file.
#pragma once
#include <string>
#include <vector>

#include "base/bytes.h"
#include "base/integers.h"
#include "base/problem.h"

namespace vorel::container {

/// One atom in memory. The memory belongs to whoever made the outermost view and outlives all views into it.
struct AtomView {
  u32 type;
  u32 headerBytes;  // 8, or 16 with a 64-bit size
  const u8* payload;
  u64 payloadBytes;
  u64 offset;        // of the header, from the start of the file
  std::string path;  // "moov/trak/tkhd"
  std::string file;  // name of the file, for messages
};

/// Type and size of an atom as its first bytes tell.
struct AtomHeader {
  u32 type;
  u32 headerBytes;
  u64 totalBytes;  // header included
};

/// A four-character code for people: 'moov' as moov, codes with other than printable characters as
/// 0x00000001.
std::string CodeText(u32 code);

/// Reads an atom's header from the first bytes of `available` bytes of space; `at` must hold min(available,
/// 16) bytes. `where` is what the message names. Throws Problem when the size does not fit.
AtomHeader ParseAtomHeader(const u8* at, u64 available, const std::string& where);

/// "a.mov: moov/trak/tkhd at 1234"
std::string WhereIs(const AtomView& atom);

/// Throws Problem about an atom.
[[noreturn]] void ThrowDamaged(const AtomView& atom, const std::string& what);

/// All atoms inside an atom, from byte `skip` of its payload on. A zero word at the end, with which some
/// writers close a list, is no atom. Throws Problem at the first that does not fit.
std::vector<AtomView> ChildAtoms(const AtomView& parent, u64 skip = 0);

/// The only child of a type. Find gives null when there is none, Require throws; both throw when there are
/// two.
const AtomView* FindAtom(const std::vector<AtomView>& atoms, u32 type, const AtomView& parent);
const AtomView& RequireAtom(const std::vector<AtomView>& atoms, u32 type, const AtomView& parent);

/// Reads big-endian fields of a payload one after the other. Each read throws Problem when the payload ends
/// before.
struct FieldReader {
  const AtomView* atom;
  u64 position;  // at most atom->payloadBytes
};

FieldReader ReadFields(const AtomView& atom);
u8 Read8(FieldReader& fields);
u16 Read16(FieldReader& fields);
u32 Read32(FieldReader& fields);
u64 Read64(FieldReader& fields);
u64 BytesLeft(const FieldReader& fields);
void SkipBytes(FieldReader& fields, u64 count);
/// Address of `count` bytes of payload, and steps over them.
const u8* ReadBytes(FieldReader& fields, u64 count);
/// Version byte and 24 bits of flags; throws when the version is above `highestVersion`.
u32 ReadVersion(FieldReader& fields, u32 highestVersion);

/// A table of `count` entries of `entryBytes` behind the fields; throws when the payload is too short for it.
const u8* ReadTable(FieldReader& fields, u64 count, u64 entryBytes);

}  // namespace vorel::container
