// Where a track's samples lie: the tables of durations (stts), chunks (stsc, stco or co64), sizes (stsz or
// stz2) and sync samples (stss), checked against each other and against the file, and joined into one list.
#pragma once
#include <optional>
#include <vector>

#include "base/integers.h"
#include "container/atoms.h"

namespace vorel::container {

/// One sample: for video, one frame.
struct Sample {
  u64 offset;  // of its first byte in the file
  u32 bytes;
  u32 duration;     // in units of the track's timescale
  u32 description;  // index into the track's descriptions, from 0
  bool sync;        // decodes alone
};

/// Samples that lie together. A track's copy is made chunk by chunk, with the other tables taken over
/// unchanged.
struct Chunk {
  u64 offset;
  u64 bytes;
  u64 firstSample;  // from 0
  u64 start;        // time of the first sample in units of the track's timescale
};

/// More samples than this in one track are refused when they are listed one by one: three days of 60 frames a
/// second.
constexpr u64 kMaxListedSamples = u64{1} << 24;

/// Bytes per sample where a table of constant size counts something else (old sound tracks say 1 and mean one
/// sample of all channels): `bytes` bytes hold `samples` samples.
struct ImpliedSampleSize {
  u32 bytes;
  u32 samples;
};

/// All samples of a table. `table` is the stbl atom, `descriptions` the number of its descriptions.
/// Throws Problem naming the atom at the first disagreement, and when a sample reaches beyond `fileBytes`.
std::vector<Sample> ReadSamples(const AtomView& table, u32 descriptions, u64 fileBytes);

/// All chunks of a table, under the same checks.
std::vector<Chunk> ReadChunks(const AtomView& table, u32 descriptions, u64 fileBytes,
                              std::optional<ImpliedSampleSize> implied);

}  // namespace vorel::container
