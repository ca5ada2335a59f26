// What a movie under construction knows of itself, and the movie header (moov) that is made of it.
#pragma once
#include <optional>
#include <string>
#include <vector>

#include "base/integers.h"
#include "container/atom_builder.h"
#include "container/movie_reader.h"
#include "container/sample_description.h"
#include "container/track_copy.h"

namespace vorel::container {

constexpr u32 kVideoTrackId = 1;

/// Frames that lie together.
struct FrameChunk {
  u64 offset;
  u32 frames;
  u32 description;  // index from 0
};

/// Neighbouring frames that last equally long.
struct DurationRun {
  u32 frames;
  u32 duration;
};

/// The video track so far.
struct FrameTable {
  std::vector<SampleDescription> descriptions;
  std::vector<u32> sizes;  // one for each frame
  std::vector<DurationRun> durations;
  std::vector<FrameChunk> chunks;
  u64 duration = 0;  // of all frames, in the video's timescale
};

/// A track whose place the video track takes.
struct ReplacedTrack {
  Movie movie;
  std::size_t track;
};

struct MovieContents {
  u32 timescale = 0;  // of the video track
  u64 creationTime = 0;
  FrameTable frames;
  std::optional<ReplacedTrack> replaced;
  std::vector<CopiedTrack> copies;
  TrackIds ids;
  Bytes movieData;  // udta and meta, whole atoms
};

/// The movie's timescale: the video's, or a common multiple with those of other tracks where it stays small
/// enough.
u32 MovieTimescale(const MovieContents& contents);

/// The whole moov atom.
Bytes SerializeMovie(const MovieContents& contents);

}  // namespace vorel::container
