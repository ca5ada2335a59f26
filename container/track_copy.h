// A track of one movie taken over into another. Its chunks are stored anew; its atoms stay as they are, but
// for those that name places in the file (stco, co64), tracks (tkhd, tref) or times of the movie (tkhd,
// elst).
#pragma once
#include <map>
#include <utility>
#include <vector>

#include "base/integers.h"
#include "container/atom_builder.h"
#include "container/movie_reader.h"
#include "container/sample_table.h"

namespace vorel::container {

/// New id of a track, by the file that it comes from and the id that it has there.
using TrackIds = std::map<std::pair<const InputFile*, u32>, u32>;

struct CopiedTrack {
  Movie movie;
  std::size_t track;
  u32 id;                     // in the new movie
  std::vector<Chunk> chunks;  // where the samples lie now
  std::vector<u64> offsets;   // where they lie in the new file: of the first chunks, as far as stored
};

/// Checks that a track can be copied and lists its chunks. Throws Problem, also for everything that
/// PutCopiedTrack could object to.
CopiedTrack OpenTrackCopy(const Movie& movie, std::size_t track, u32 id);

/// Appends the track's trak atom for a movie of another timescale. All chunks are stored.
void PutCopiedTrack(Bytes& bytes, const CopiedTrack& copy, u32 movieTimescale, const TrackIds& ids);

/// How long a track lasts in a movie of another timescale: its edits together, or its media when it has none.
u64 CopiedDuration(const Movie& movie, std::size_t track, u32 movieTimescale);

/// A track's edits with durations in another movie's timescale.
std::vector<Edit> RescaledEdits(const Movie& movie, std::size_t track, u32 movieTimescale);

/// Appends the references of a track (tref) to tracks that have a new id; nothing when there are none.
void PutReferences(Bytes& bytes, const Movie& movie, std::size_t track, const TrackIds& ids);

/// Appends the table of chunk offsets: stco, or co64 when one exceeds 32 bits.
void PutChunkOffsets(Bytes& bytes, const std::vector<u64>& offsets);

}  // namespace vorel::container
