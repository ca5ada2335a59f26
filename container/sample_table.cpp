// The walk through checked tables: durations, chunks and sizes side by side.
#include "container/sample_table.h"

#include <string>

#include "base/bytes.h"
#include "container/table_check.h"

namespace vorel::container {

namespace {

constexpr u32 kStss = FourCharacterCode("stss");

std::string Number(u64 value) {
  return std::to_string(value);
}

// Hands durations out sample by sample, or run by run.
struct DurationWalk {
  u64 nextRun;
  u64 left;  // samples of the current run
  u32 duration;
};

void EnterRun(const Tables& tables, DurationWalk& walk) {
  while (walk.left == 0) {
    const u8* run = tables.durationRuns + 8 * walk.nextRun++;
    walk.left = LoadBig32(run);
    walk.duration = LoadBig32(run + 4);
  }
}

u32 NextDuration(const Tables& tables, DurationWalk& walk) {
  EnterRun(tables, walk);
  --walk.left;
  return walk.duration;
}

u64 SkipDurations(const Tables& tables, DurationWalk& walk, u64 samples) {
  u64 time = 0;
  while (samples > 0) {
    EnterRun(tables, walk);
    const u64 step = samples < walk.left ? samples : walk.left;
    time += step * walk.duration;
    walk.left -= step;
    samples -= step;
  }
  return time;
}

void CheckPlace(const Tables& tables, u64 chunk, u64 offset, u64 bytes, u64 fileBytes) {
  if (offset <= fileBytes && bytes <= fileBytes - offset) return;
  ThrowDamaged(*tables.chunks, "chunk " + Number(chunk + 1) +
                                   " reaches beyond the end of the file: " + Number(bytes) + " bytes at " +
                                   Number(offset) + ", but the file has only " + Number(fileBytes));
}

void MarkSyncSamples(const Tables& tables, const AtomView& table, std::vector<Sample>& samples) {
  const AtomView* atom = FindAtom(tables.atoms, kStss, table);
  if (atom == nullptr) return;
  FieldReader fields = ReadFields(*atom);
  ReadVersion(fields, 0);
  const u32 count = Read32(fields);
  const u8* numbers = ReadTable(fields, count, 4);
  for (Sample& sample : samples) sample.sync = false;
  u64 previous = 0;
  for (u64 i = 0; i < count; ++i) {
    const u64 number = LoadBig32(numbers + 4 * i);
    if (number <= previous) ThrowDamaged(*atom, "entry " + Number(i + 1) + " does not follow the one before");
    if (number > samples.size()) {
      ThrowDamaged(*atom,
                   "sample " + Number(number) + " is named, but there are only " + Number(samples.size()));
    }
    samples[number - 1].sync = true;
    previous = number;
  }
}

}  // namespace

std::vector<Sample> ReadSamples(const AtomView& table, u32 descriptions, u64 fileBytes) {
  const Tables tables = LoadTables(table, descriptions);
  if (tables.sampleCount > kMaxListedSamples) {
    ThrowDamaged(*tables.sizes, "the track says " + Number(tables.sampleCount) + " samples; " +
                                    Number(kMaxListedSamples) + " are the most that are read");
  }
  if (tables.constantSize != 0 && tables.sampleCount > fileBytes / tables.constantSize) {
    ThrowDamaged(*tables.sizes, Number(tables.sampleCount) + " samples of " + Number(tables.constantSize) +
                                    " bytes are more than the file has, " + Number(fileBytes) + " bytes");
  }
  std::vector<Sample> samples;
  samples.reserve(tables.sampleCount);
  DurationWalk walk = {};
  for (u64 i = 0; i < tables.chunkRunCount; ++i) {
    const ChunkRun run = RunAt(tables, i);
    for (u64 chunk = run.first; chunk < run.end; ++chunk) {
      u64 offset = ChunkOffset(tables, chunk);
      for (u32 sample = 0; sample < run.samplesPerChunk; ++sample) {
        const u32 bytes = SampleSize(tables, samples.size());
        CheckPlace(tables, chunk, offset, bytes, fileBytes);
        samples.push_back({offset, bytes, NextDuration(tables, walk), run.description, true});
        offset += bytes;
      }
    }
  }
  MarkSyncSamples(tables, table, samples);
  return samples;
}

std::vector<Chunk> ReadChunks(const AtomView& table, u32 descriptions, u64 fileBytes,
                              std::optional<ImpliedSampleSize> implied) {
  const Tables tables = LoadTables(table, descriptions);
  if (tables.constantSize == 0) implied.reset();
  std::vector<Chunk> chunks;
  chunks.reserve(tables.chunkCount);
  DurationWalk walk = {};
  u64 sample = 0;
  u64 total = 0;
  u64 time = 0;
  for (u64 i = 0; i < tables.chunkRunCount; ++i) {
    const ChunkRun run = RunAt(tables, i);
    for (u64 chunk = run.first; chunk < run.end; ++chunk) {
      u64 bytes = 0;
      if (implied) {
        if (run.samplesPerChunk % implied->samples != 0) {
          ThrowDamaged(*tables.runs, "chunk " + Number(chunk + 1) + " does not hold whole packets of " +
                                         Number(implied->samples) + " samples");
        }
        bytes = u64{run.samplesPerChunk / implied->samples} * implied->bytes;
      } else if (tables.constantSize != 0) {
        bytes = u64{run.samplesPerChunk} * tables.constantSize;
      } else {
        for (u32 k = 0; k < run.samplesPerChunk; ++k) bytes += SampleSize(tables, sample + k);
      }
      CheckPlace(tables, chunk, ChunkOffset(tables, chunk), bytes, fileBytes);
      total += bytes;  // each at most the file's size, at most 2^32 of them
      if (total > fileBytes) ThrowDamaged(*tables.chunks, "the chunks lie on top of each other");
      chunks.push_back({ChunkOffset(tables, chunk), bytes, sample, time});
      time += SkipDurations(tables, walk, run.samplesPerChunk);
      sample += run.samplesPerChunk;
    }
  }
  return chunks;
}

}  // namespace vorel::container
