// Every count of a sample table is checked against the atom that holds it and against the other counts.
#include "container/table_check.h"

#include <string>

#include "base/bytes.h"

namespace vorel::container {

namespace {

constexpr u32 kStts = FourCharacterCode("stts"), kStsc = FourCharacterCode("stsc"),
              kStsz = FourCharacterCode("stsz");
constexpr u32 kStz2 = FourCharacterCode("stz2"), kStco = FourCharacterCode("stco"),
              kCo64 = FourCharacterCode("co64");

std::string Number(u64 value) {
  return std::to_string(value);
}

void LoadSizes(Tables& tables, const AtomView& table) {
  const AtomView* compact = FindAtom(tables.atoms, kStz2, table);
  tables.sizes = compact != nullptr ? compact : &RequireAtom(tables.atoms, kStsz, table);
  FieldReader fields = ReadFields(*tables.sizes);
  ReadVersion(fields, 0);
  const u32 sizeField = Read32(fields);
  tables.sampleCount = Read32(fields);
  tables.constantSize = compact != nullptr ? 0 : sizeField;
  tables.sizeBits = compact != nullptr ? sizeField & 0xFF : 32;
  if (tables.constantSize != 0) return;
  if (tables.sizeBits == 4) {
    tables.sizeEntries = ReadTable(fields, (u64{tables.sampleCount} + 1) / 2, 1);
  } else if (tables.sizeBits == 8 || tables.sizeBits == 16 || tables.sizeBits == 32) {
    tables.sizeEntries = ReadTable(fields, tables.sampleCount, tables.sizeBits / 8);
  } else {
    ThrowDamaged(*tables.sizes, "sample sizes of " + Number(tables.sizeBits) + " bits are unknown");
  }
}

void LoadDurations(Tables& tables, const AtomView& table) {
  tables.durations = &RequireAtom(tables.atoms, kStts, table);
  FieldReader fields = ReadFields(*tables.durations);
  ReadVersion(fields, 0);
  tables.durationRunCount = Read32(fields);
  tables.durationRuns = ReadTable(fields, tables.durationRunCount, 8);
  u64 samples = 0;
  u64 time = 0;
  for (u64 run = 0; run < tables.durationRunCount; ++run) {
    const u64 count = LoadBig32(tables.durationRuns + 8 * run);
    samples += count;
    if (__builtin_add_overflow(time, count * LoadBig32(tables.durationRuns + 8 * run + 4), &time)) {
      ThrowDamaged(*tables.durations, "the durations add up to more than 64 bits hold");
    }
  }
  if (samples != tables.sampleCount) {
    ThrowDamaged(*tables.durations, "there are durations for " + Number(samples) +
                                        " samples, but sizes for " + Number(tables.sampleCount));
  }
}

void LoadChunkOffsets(Tables& tables, const AtomView& table) {
  const AtomView* wide = FindAtom(tables.atoms, kCo64, table);
  const AtomView* narrow = FindAtom(tables.atoms, kStco, table);
  if (wide != nullptr && narrow != nullptr)
    ThrowDamaged(*wide, "the chunks' offsets stand twice, in stco and in co64");
  tables.chunks = wide != nullptr ? wide : narrow;
  if (tables.chunks == nullptr) ThrowDamaged(table, "the chunks' offsets (stco or co64) are missing");
  tables.chunkOffsetBytes = wide != nullptr ? 8 : 4;
  FieldReader fields = ReadFields(*tables.chunks);
  ReadVersion(fields, 0);
  tables.chunkCount = Read32(fields);
  tables.chunkOffsets = ReadTable(fields, tables.chunkCount, tables.chunkOffsetBytes);
}

void LoadChunkRuns(Tables& tables, const AtomView& table, u32 descriptions) {
  tables.runs = &RequireAtom(tables.atoms, kStsc, table);
  FieldReader fields = ReadFields(*tables.runs);
  ReadVersion(fields, 0);
  tables.chunkRunCount = Read32(fields);
  tables.chunkRuns = ReadTable(fields, tables.chunkRunCount, 12);
  u64 previous = 0;
  for (u64 i = 0; i < tables.chunkRunCount; ++i) {
    const u64 number = LoadBig32(tables.chunkRuns + 12 * i);
    if (i == 0 && number != 1)
      ThrowDamaged(*tables.runs, "the first entry begins with chunk " + Number(number) + ", not 1");
    if (number <= previous)
      ThrowDamaged(*tables.runs, "entry " + Number(i + 1) + " does not follow the one before");
    if (number > tables.chunkCount) {
      ThrowDamaged(*tables.runs, "entry " + Number(i + 1) + " begins with chunk " + Number(number) +
                                     ", but there are only " + Number(tables.chunkCount));
    }
    previous = number;
  }
  u64 samples = 0;  // at most 2^32 chunks of less than 2^32 samples
  for (u64 i = 0; i < tables.chunkRunCount; ++i) {
    const ChunkRun run = RunAt(tables, i);
    if (run.description >= descriptions) {
      ThrowDamaged(*tables.runs, "entry " + Number(i + 1) + " names sample description " +
                                     Number(u64{run.description} + 1) + ", but there are only " +
                                     Number(descriptions));
    }
    samples += (run.end - run.first) * run.samplesPerChunk;
  }
  if (samples != tables.sampleCount) {
    ThrowDamaged(*tables.runs, "the chunks hold " + Number(samples) + " samples, but there are sizes for " +
                                   Number(tables.sampleCount));
  }
}

}  // namespace

u32 SampleSize(const Tables& tables, u64 sample) {
  if (tables.constantSize != 0) return tables.constantSize;
  switch (tables.sizeBits) {
    case 4:
      return sample % 2 == 0 ? tables.sizeEntries[sample / 2] >> 4u : tables.sizeEntries[sample / 2] & 15u;
    case 8:
      return tables.sizeEntries[sample];
    case 16:
      return LoadBig16(tables.sizeEntries + 2 * sample);
    default:
      return LoadBig32(tables.sizeEntries + 4 * sample);
  }
}

u64 ChunkOffset(const Tables& tables, u64 chunk) {
  return tables.chunkOffsetBytes == 8 ? LoadBig64(tables.chunkOffsets + 8 * chunk)
                                      : LoadBig32(tables.chunkOffsets + 4 * chunk);
}

ChunkRun RunAt(const Tables& tables, u64 run) {
  const u8* entry = tables.chunkRuns + 12 * run;
  const bool last = run + 1 == tables.chunkRunCount;
  return {u64{LoadBig32(entry)} - 1, last ? u64{tables.chunkCount} : u64{LoadBig32(entry + 12)} - 1,
          LoadBig32(entry + 4), LoadBig32(entry + 8) - 1};
}

Tables LoadTables(const AtomView& table, u32 descriptions) {
  Tables tables = {};
  tables.atoms = ChildAtoms(table);
  LoadSizes(tables, table);
  LoadDurations(tables, table);
  LoadChunkOffsets(tables, table);
  LoadChunkRuns(tables, table, descriptions);
  return tables;
}

}  // namespace vorel::container
