// Header atoms. Version 0 has 32-bit times and durations, version 1 has 64-bit ones; all else is the same.
#include "container/track_fields.h"

#include <limits>

#include "container/atom_builder.h"

namespace vorel::container {

namespace {

constexpr u32 kMvhd = FourCharacterCode("mvhd"), kTkhd = FourCharacterCode("tkhd"),
              kMdhd = FourCharacterCode("mdhd");
constexpr u32 kElst = FourCharacterCode("elst");
constexpr u32 kNormalRate = 0x10000;  // 16.16
constexpr u16 kFullVolume = 0x100;    // 8.8
constexpr u64 kLargest32 = std::numeric_limits<u32>::max();

u64 ReadTime(FieldReader& fields, bool wide) {
  return wide ? Read64(fields) : Read32(fields);
}

void PutTime(Bytes& bytes, u64 time, bool wide) {
  if (wide) {
    Put64(bytes, time);
  } else {
    Put32(bytes, static_cast<u32>(time));
  }
}

// All ones in a 32-bit duration mean "unknown", so the largest value takes the wide form too.
bool NeedsWide(u64 creation, u64 modification, u64 duration) {
  return creation > kLargest32 || modification > kLargest32 || duration >= kLargest32;
}

void PutMatrix(Bytes& bytes, const Matrix& matrix) {
  for (const i32 entry : matrix) Put32(bytes, static_cast<u32>(entry));
}

}  // namespace

MovieHeader ParseMovieHeader(const AtomView& atom) {
  FieldReader fields = ReadFields(atom);
  const bool wide = ReadVersion(fields, 1) >> 24 == 1;
  MovieHeader header;
  header.creationTime = ReadTime(fields, wide);
  header.modificationTime = ReadTime(fields, wide);
  header.timescale = Read32(fields);
  header.duration = ReadTime(fields, wide);
  SkipBytes(fields, 4 + 2 + 10 + 36 + 24);  // rate, volume, reserved, matrix, preview to current time
  header.nextTrackId = Read32(fields);
  if (header.timescale == 0) ThrowDamaged(atom, "the movie's timescale is 0");
  return header;
}

TrackHeader ParseTrackHeader(const AtomView& atom) {
  FieldReader fields = ReadFields(atom);
  const u32 version = ReadVersion(fields, 1);
  const bool wide = version >> 24 == 1;
  TrackHeader header;
  header.flags = version & 0xFFFFFF;
  header.creationTime = ReadTime(fields, wide);
  header.modificationTime = ReadTime(fields, wide);
  header.id = Read32(fields);
  SkipBytes(fields, 4);
  header.duration = ReadTime(fields, wide);
  SkipBytes(fields, 8);
  header.layer = static_cast<i16>(Read16(fields));
  header.alternateGroup = static_cast<i16>(Read16(fields));
  header.volume = static_cast<i16>(Read16(fields));
  SkipBytes(fields, 2);
  for (i32& entry : header.matrix) entry = static_cast<i32>(Read32(fields));
  header.width = Read32(fields);
  header.height = Read32(fields);
  return header;
}

MediaHeader ParseMediaHeader(const AtomView& atom) {
  FieldReader fields = ReadFields(atom);
  const bool wide = ReadVersion(fields, 1) >> 24 == 1;
  MediaHeader header;
  header.creationTime = ReadTime(fields, wide);
  header.modificationTime = ReadTime(fields, wide);
  header.timescale = Read32(fields);
  header.duration = ReadTime(fields, wide);
  header.language = Read16(fields);
  header.quality = Read16(fields);
  if (header.timescale == 0) ThrowDamaged(atom, "the track's timescale is 0");
  return header;
}

std::vector<Edit> ParseEditList(const AtomView& atom) {
  FieldReader fields = ReadFields(atom);
  const bool wide = ReadVersion(fields, 1) >> 24 == 1;
  const u32 count = Read32(fields);
  FieldReader check = fields;
  ReadTable(check, count, wide ? 20 : 12);
  std::vector<Edit> edits;
  edits.reserve(count);
  for (u32 i = 0; i < count; ++i) {
    Edit edit;
    edit.duration = ReadTime(fields, wide);
    edit.mediaTime = wide ? static_cast<i64>(Read64(fields)) : static_cast<i32>(Read32(fields));
    edit.rate = Read32(fields);
    edits.push_back(edit);
  }
  return edits;
}

u32 ParseHandlerType(const AtomView& atom) {
  FieldReader fields = ReadFields(atom);
  SkipBytes(fields, 8);
  return Read32(fields);
}

std::vector<u8> SerializeMovieHeader(const MovieHeader& header) {
  Bytes bytes;
  const bool wide = NeedsWide(header.creationTime, header.modificationTime, header.duration);
  const std::size_t start = OpenFullAtom(bytes, kMvhd, wide ? 1 : 0, 0);
  PutTime(bytes, header.creationTime, wide);
  PutTime(bytes, header.modificationTime, wide);
  Put32(bytes, header.timescale);
  PutTime(bytes, header.duration, wide);
  Put32(bytes, kNormalRate);
  Put16(bytes, kFullVolume);
  PutZeros(bytes, 10);
  PutMatrix(bytes, kIdentityMatrix);
  PutZeros(bytes, 24);  // preview, poster, selection, current time
  Put32(bytes, header.nextTrackId);
  CloseAtom(bytes, start);
  return bytes;
}

std::vector<u8> SerializeTrackHeader(const TrackHeader& header) {
  Bytes bytes;
  const bool wide = NeedsWide(header.creationTime, header.modificationTime, header.duration);
  const std::size_t start = OpenFullAtom(bytes, kTkhd, wide ? 1 : 0, header.flags);
  PutTime(bytes, header.creationTime, wide);
  PutTime(bytes, header.modificationTime, wide);
  Put32(bytes, header.id);
  PutZeros(bytes, 4);
  PutTime(bytes, header.duration, wide);
  PutZeros(bytes, 8);
  Put16(bytes, static_cast<u16>(header.layer));
  Put16(bytes, static_cast<u16>(header.alternateGroup));
  Put16(bytes, static_cast<u16>(header.volume));
  PutZeros(bytes, 2);
  PutMatrix(bytes, header.matrix);
  Put32(bytes, header.width);
  Put32(bytes, header.height);
  CloseAtom(bytes, start);
  return bytes;
}

std::vector<u8> SerializeMediaHeader(const MediaHeader& header) {
  Bytes bytes;
  const bool wide = NeedsWide(header.creationTime, header.modificationTime, header.duration);
  const std::size_t start = OpenFullAtom(bytes, kMdhd, wide ? 1 : 0, 0);
  PutTime(bytes, header.creationTime, wide);
  PutTime(bytes, header.modificationTime, wide);
  Put32(bytes, header.timescale);
  PutTime(bytes, header.duration, wide);
  Put16(bytes, header.language);
  Put16(bytes, header.quality);
  CloseAtom(bytes, start);
  return bytes;
}

std::vector<u8> SerializeEditList(const std::vector<Edit>& edits) {
  bool wide = false;
  for (const Edit& edit : edits) {
    wide = wide || edit.duration > kLargest32 || edit.mediaTime != static_cast<i32>(edit.mediaTime);
  }
  Bytes bytes;
  const std::size_t start = OpenFullAtom(bytes, kElst, wide ? 1 : 0, 0);
  Put32(bytes, static_cast<u32>(edits.size()));
  for (const Edit& edit : edits) {
    PutTime(bytes, edit.duration, wide);
    PutTime(bytes, static_cast<u64>(edit.mediaTime), wide);
    Put32(bytes, edit.rate);
  }
  CloseAtom(bytes, start);
  return bytes;
}

}  // namespace vorel::container
