// Bounds of atoms, and messages about them.
#include "container/atoms.h"

namespace vorel::container {

namespace {

// No list of ours has more entries; a hostile one must not fill the memory with views.
constexpr std::size_t kMaxChildAtoms = 1 << 16;

}  // namespace

std::string CodeText(u32 code) {
  std::string text;
  for (int shift = 24; shift >= 0; shift -= 8) {
    const u32 character = code >> shift & 0xFF;
    if ((character < 0x20 || character > 0x7E) && character != 0xA9) {
      static constexpr char kDigits[] = "0123456789ABCDEF";
      text = "0x";
      for (int digit = 28; digit >= 0; digit -= 4) text += kDigits[code >> digit & 0xF];
      return text;
    }
    // The sign with which user data types begin stands outside of ASCII.
    if (character == 0xA9) text += "\xC2";
    text += static_cast<char>(character);
  }
  return text;
}

AtomHeader ParseAtomHeader(const u8* at, u64 available, const std::string& where) {
  if (available < 8) {
    throw Problem{"an atom needs 8 bytes, but only " + std::to_string(available) + " are left", where, ""};
  }
  AtomHeader header = {LoadBig32(at + 4), 8, LoadBig32(at)};
  if (header.totalBytes == 0) header.totalBytes = available;
  if (header.totalBytes == 1) {
    if (available < 16) {
      throw Problem{"the atom's 64-bit size reaches beyond the end of what holds it", where, ""};
    }
    header.headerBytes = 16;
    header.totalBytes = LoadBig64(at + 8);
  }
  if (header.totalBytes < header.headerBytes) {
    throw Problem{"the atom says " + std::to_string(header.totalBytes) + " bytes, less than its own header",
                  where, ""};
  }
  if (header.totalBytes > available) {
    throw Problem{"the atom says " + std::to_string(header.totalBytes) + " bytes, but only " +
                      std::to_string(available) + " are left in what holds it",
                  where, "the file may be cut off or damaged"};
  }
  return header;
}

std::string WhereIs(const AtomView& atom) {
  return atom.file + ": " + atom.path + " at " + std::to_string(atom.offset);
}

void ThrowDamaged(const AtomView& atom, const std::string& what) {
  throw Problem{what, WhereIs(atom), ""};
}

std::vector<AtomView> ChildAtoms(const AtomView& parent, u64 skip) {
  if (skip > parent.payloadBytes) ThrowDamaged(parent, "the atom ends before the atoms that it should hold");
  std::vector<AtomView> children;
  u64 position = skip;
  while (position < parent.payloadBytes) {
    const u8* at = parent.payload + position;
    const u64 available = parent.payloadBytes - position;
    if (available == 4 && LoadBig32(at) == 0) break;
    if (available >= 8 && LoadBig64(at) == 0) break;
    if (children.size() == kMaxChildAtoms) ThrowDamaged(parent, "the atom holds too many atoms");
    const u64 offset = parent.offset + parent.headerBytes + position;
    std::string path = parent.path + "/" + (available < 8 ? "?" : CodeText(LoadBig32(at + 4)));
    const AtomHeader header =
        ParseAtomHeader(at, available, parent.file + ": " + path + " at " + std::to_string(offset));
    children.push_back({header.type, header.headerBytes, at + header.headerBytes,
                        header.totalBytes - header.headerBytes, offset, std::move(path), parent.file});
    position += header.totalBytes;
  }
  return children;
}

const AtomView* FindAtom(const std::vector<AtomView>& atoms, u32 type, const AtomView& parent) {
  const AtomView* found = nullptr;
  for (const AtomView& atom : atoms) {
    if (atom.type != type) continue;
    if (found != nullptr) ThrowDamaged(atom, "the atom stands twice in " + parent.path);
    found = &atom;
  }
  return found;
}

const AtomView& RequireAtom(const std::vector<AtomView>& atoms, u32 type, const AtomView& parent) {
  const AtomView* found = FindAtom(atoms, type, parent);
  if (found == nullptr) ThrowDamaged(parent, "the atom " + CodeText(type) + " is missing");
  return *found;
}

FieldReader ReadFields(const AtomView& atom) {
  return {&atom, 0};
}

u64 BytesLeft(const FieldReader& fields) {
  return fields.atom->payloadBytes - fields.position;
}

const u8* ReadBytes(FieldReader& fields, u64 count) {
  if (count > BytesLeft(fields)) {
    ThrowDamaged(*fields.atom, "the atom is too short: " + std::to_string(count) +
                                   " bytes are expected behind its first " + std::to_string(fields.position) +
                                   ", but it has only " + std::to_string(BytesLeft(fields)) + " more");
  }
  const u8* at = fields.atom->payload + fields.position;
  fields.position += count;
  return at;
}

u8 Read8(FieldReader& fields) {
  return *ReadBytes(fields, 1);
}
u16 Read16(FieldReader& fields) {
  return LoadBig16(ReadBytes(fields, 2));
}
u32 Read32(FieldReader& fields) {
  return LoadBig32(ReadBytes(fields, 4));
}
u64 Read64(FieldReader& fields) {
  return LoadBig64(ReadBytes(fields, 8));
}

void SkipBytes(FieldReader& fields, u64 count) {
  ReadBytes(fields, count);
}

u32 ReadVersion(FieldReader& fields, u32 highestVersion) {
  const u32 versionAndFlags = Read32(fields);
  if (versionAndFlags >> 24 > highestVersion) {
    ThrowDamaged(*fields.atom,
                 "version " + std::to_string(versionAndFlags >> 24) + " of this atom is unknown");
  }
  return versionAndFlags;
}

const u8* ReadTable(FieldReader& fields, u64 count, u64 entryBytes) {
  if (count > BytesLeft(fields) / entryBytes) {
    ThrowDamaged(*fields.atom, "the table says " + std::to_string(count) + " entries of " +
                                   std::to_string(entryBytes) + " bytes, but the atom has only " +
                                   std::to_string(BytesLeft(fields)) + " bytes for them");
  }
  return ReadBytes(fields, count * entryBytes);
}

}  // namespace vorel::container
