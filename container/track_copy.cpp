// Rewriting of a track's atoms for another movie.
#include "container/track_copy.h"

#include <algorithm>
#include <limits>
#include <optional>

#include "container/media_atoms.h"
#include "container/sound_packets.h"

namespace vorel::container {

namespace {

constexpr u32 kTkhd = FourCharacterCode("tkhd"), kEdts = FourCharacterCode("edts"),
              kTref = FourCharacterCode("tref");
constexpr u32 kStco = FourCharacterCode("stco"), kCo64 = FourCharacterCode("co64"),
              kSaio = FourCharacterCode("saio");
constexpr u32 kStsz = FourCharacterCode("stsz");

void PutVerbatim(Bytes& bytes, const AtomView& atom) {
  PutAtom(bytes, atom.type, atom.payload, static_cast<std::size_t>(atom.payloadBytes));
}

void PutTable(Bytes& bytes, const AtomView& table, const CopiedTrack& copy) {
  const std::size_t start = OpenAtom(bytes, table.type);
  for (const AtomView& atom : ChildAtoms(table)) {
    if (atom.type == kStco || atom.type == kCo64) {
      PutChunkOffsets(bytes, copy.offsets);
    } else if (atom.type == kSaio) {
      throw Problem{"the samples have auxiliary data elsewhere in the file, which cannot be copied",
                    WhereIs(atom), ""};
    } else {
      PutVerbatim(bytes, atom);
    }
  }
  CloseAtom(bytes, start);
}

// mdia and minf down to stbl.
void PutMedia(Bytes& bytes, const AtomView& media, const CopiedTrack& copy) {
  const std::size_t start = OpenAtom(bytes, media.type);
  for (const AtomView& atom : ChildAtoms(media)) {
    if (media.type == kMdia && atom.type == kMinf) {
      PutMedia(bytes, atom, copy);
    } else if (media.type == kMinf && atom.type == kStbl) {
      PutTable(bytes, atom, copy);
    } else {
      PutVerbatim(bytes, atom);
    }
  }
  CloseAtom(bytes, start);
}

// Nothing when the size table itself tells how many bytes a sample takes.
std::optional<ImpliedSampleSize> ImpliedSize(const Track& track, const MediaAtoms& media,
                                             const std::vector<AtomView>& entries) {
  if (track.handler != kSoundHandler) return std::nullopt;
  const std::vector<AtomView> tables = ChildAtoms(media.table);
  const AtomView* sizes = FindAtom(tables, kStsz, media.table);
  if (sizes == nullptr) return std::nullopt;
  FieldReader fields = ReadFields(*sizes);
  SkipBytes(fields, 4);
  if (Read32(fields) != 1) return std::nullopt;
  const std::optional<ImpliedSampleSize> implied = SoundPacketSize(entries);
  if (!implied && Read32(fields) != 0) {
    throw Problem{"the size of sound samples in format " + CodeText(track.firstFormat) +
                      " is unknown; the track cannot be copied",
                  WhereIs(media.descriptions), "leave the track out"};
  }
  return implied;
}

}  // namespace

CopiedTrack OpenTrackCopy(const Movie& movie, std::size_t track, u32 id) {
  CopiedTrack copy = {movie, track, id, {}, {}};
  const Track& source = movie.tracks.at(track);
  const MediaAtoms media = FindMediaAtoms(source.atom);
  const std::vector<AtomView> entries = DescriptionEntries(media);
  RequireOwnMedia(media, entries);
  copy.chunks = ReadChunks(media.table, static_cast<u32>(entries.size()), movie.file->bytes,
                           ImpliedSize(source, media, entries));
  Bytes discarded;
  PutCopiedTrack(discarded, copy, movie.header.timescale, {});
  return copy;
}

void PutCopiedTrack(Bytes& bytes, const CopiedTrack& copy, u32 movieTimescale, const TrackIds& ids) {
  const Track& source = copy.movie.tracks[copy.track];
  const std::size_t start = OpenAtom(bytes, source.atom.type);
  for (const AtomView& atom : ChildAtoms(source.atom)) {
    if (atom.type == kTkhd) {
      TrackHeader header = source.header;
      header.id = copy.id;
      header.duration = CopiedDuration(copy.movie, copy.track, movieTimescale);
      PutBytes(bytes, SerializeTrackHeader(header));
    } else if (atom.type == kEdts) {
      const std::size_t edits = OpenAtom(bytes, kEdts);
      PutBytes(bytes, SerializeEditList(RescaledEdits(copy.movie, copy.track, movieTimescale)));
      CloseAtom(bytes, edits);
    } else if (atom.type == kTref) {
      PutReferences(bytes, copy.movie, copy.track, ids);
    } else if (atom.type == kMdia) {
      PutMedia(bytes, atom, copy);
    } else {
      PutVerbatim(bytes, atom);
    }
  }
  CloseAtom(bytes, start);
}

u64 CopiedDuration(const Movie& movie, std::size_t track, u32 movieTimescale) {
  u64 duration = 0;
  for (const Edit& edit : RescaledEdits(movie, track, movieTimescale)) {
    if (__builtin_add_overflow(duration, edit.duration, &duration)) return std::numeric_limits<u64>::max();
  }
  const MediaHeader& media = movie.tracks[track].media;
  return duration != 0 ? duration : RescaleTime(media.duration, media.timescale, movieTimescale);
}

std::vector<Edit> RescaledEdits(const Movie& movie, std::size_t track, u32 movieTimescale) {
  std::vector<Edit> edits = movie.tracks[track].edits;
  for (Edit& edit : edits) edit.duration = RescaleTime(edit.duration, movie.header.timescale, movieTimescale);
  return edits;
}

void PutReferences(Bytes& bytes, const Movie& movie, std::size_t track, const TrackIds& ids) {
  const AtomView& source = movie.tracks[track].atom;
  const std::vector<AtomView> atoms = ChildAtoms(source);
  const AtomView* references = FindAtom(atoms, kTref, source);
  if (references == nullptr) return;
  Bytes kept;
  for (const AtomView& atom : ChildAtoms(*references)) {
    FieldReader fields = ReadFields(atom);
    Bytes targets;
    while (BytesLeft(fields) > 0) {
      const auto target = ids.find({movie.file.get(), Read32(fields)});
      if (target != ids.end()) Put32(targets, target->second);
    }
    if (!targets.empty()) PutAtom(kept, atom.type, targets.data(), targets.size());
  }
  if (!kept.empty()) PutAtom(bytes, kTref, kept.data(), kept.size());
}

void PutChunkOffsets(Bytes& bytes, const std::vector<u64>& offsets) {
  const bool wide = std::any_of(offsets.begin(), offsets.end(),
                                [](u64 offset) { return offset > std::numeric_limits<u32>::max(); });
  const std::size_t start = OpenFullAtom(bytes, wide ? kCo64 : kStco, 0, 0);
  Put32(bytes, static_cast<u32>(offsets.size()));
  for (const u64 offset : offsets) {
    if (wide) {
      Put64(bytes, offset);
    } else {
      Put32(bytes, static_cast<u32>(offset));
    }
  }
  CloseAtom(bytes, start);
}

}  // namespace vorel::container
