// The tables of a stbl atom, found and checked against each other, before they are walked.
#pragma once
#include <vector>

#include "base/integers.h"
#include "container/atoms.h"

namespace vorel::container {

// Pointers lead into `atoms`, so a record is moved but not copied; entries are big-endian.
struct Tables {
  std::vector<AtomView> atoms;
  const AtomView* durations;
  const u8* durationRuns;  // samples (4), duration (4)
  u32 durationRunCount;
  const AtomView* runs;
  const u8* chunkRuns;  // first chunk (4), samples per chunk (4), description (4), both numbers from 1
  u32 chunkRunCount;
  const AtomView* chunks;
  const u8* chunkOffsets;
  u32 chunkOffsetBytes;  // 4 or 8
  u32 chunkCount;
  const AtomView* sizes;
  const u8* sizeEntries;  // unused when all samples have constantSize
  u32 sizeBits;           // 4, 8, 16 or 32
  u32 constantSize;
  u32 sampleCount;
};

// Chunks [first, end) from 0, all with as many samples and the same description.
struct ChunkRun {
  u64 first;
  u64 end;
  u32 samplesPerChunk;
  u32 description;  // from 0
};

/// Finds the tables of a stbl atom and checks every count: against its atom and against the other tables.
/// Throws Problem.
Tables LoadTables(const AtomView& table, u32 descriptions);

/// Size of a sample, offset of a chunk, and the run of equal chunks that an stsc entry stands for; all
/// numbers from 0.
u32 SampleSize(const Tables& tables, u64 sample);
u64 ChunkOffset(const Tables& tables, u64 chunk);
ChunkRun RunAt(const Tables& tables, u64 run);

}  // namespace vorel::container
