// Down from a track to its sample table, and the check of its data references.
#include "container/media_atoms.h"

namespace vorel::container {

namespace {

constexpr u32 kSelfContained = 1;     // flag of a data reference
constexpr u64 kTableHeaderBytes = 8;  // version and flags, count

AtomView RequireIn(const AtomView& parent, u32 type) {
  return RequireAtom(ChildAtoms(parent), type, parent);
}

// A table of atoms: version and flags, count, atoms.
std::vector<AtomView> TableOfAtoms(const AtomView& atom) {
  FieldReader fields = ReadFields(atom);
  ReadVersion(fields, 1);
  const u32 count = Read32(fields);
  std::vector<AtomView> entries = ChildAtoms(atom, kTableHeaderBytes);
  if (entries.size() != count) {
    ThrowDamaged(atom, "the table says " + std::to_string(count) + " entries, but holds " +
                           std::to_string(entries.size()));
  }
  return entries;
}

}  // namespace

MediaAtoms FindMediaAtoms(const AtomView& track) {
  MediaAtoms media;
  media.information = RequireIn(RequireIn(track, kMdia), kMinf);
  media.table = RequireIn(media.information, kStbl);
  media.descriptions = RequireIn(media.table, kStsd);
  return media;
}

std::vector<AtomView> DescriptionEntries(const MediaAtoms& media) {
  return TableOfAtoms(media.descriptions);
}

void RequireOwnMedia(const MediaAtoms& media, const std::vector<AtomView>& entries) {
  const AtomView references = RequireIn(RequireIn(media.information, kDinf), kDref);
  const std::vector<AtomView> files = TableOfAtoms(references);
  for (const AtomView& entry : entries) {
    FieldReader fields = ReadFields(entry);
    SkipBytes(fields, 6);
    const u32 number = Read16(fields);
    if (number == 0 || number > files.size()) {
      ThrowDamaged(entry, "data reference " + std::to_string(number) + " is named, but there are " +
                              std::to_string(files.size()));
    }
    FieldReader reference = ReadFields(files[number - 1]);
    if ((Read32(reference) & kSelfContained) == 0) {
      throw Problem{"the track's media lie in another file, which is not supported",
                    WhereIs(files[number - 1]), "save the movie as self-contained first"};
    }
  }
}

u32 FirstFormat(const AtomView& track) {
  try {
    const std::vector<AtomView> entries = DescriptionEntries(FindMediaAtoms(track));
    return entries.empty() ? 0 : entries.front().type;
  } catch (const Problem&) {
    return 0;
  }
}

}  // namespace vorel::container
