// The header atoms of movies and tracks: mvhd, tkhd, mdhd, hdlr, elst, as records, read in both their
// versions and written in the smallest that holds the values.
#pragma once
#include <array>
#include <vector>

#include "base/integers.h"
#include "container/atoms.h"

namespace vorel::container {

/// Rows of the matrix that maps the track's picture into the movie's: a b u, c d v, x y w; u, v, w are 2.30,
/// the others 16.16.
using Matrix = std::array<i32, 9>;
constexpr Matrix kIdentityMatrix = {0x10000, 0, 0, 0, 0x10000, 0, 0, 0, 0x40000000};

/// mvhd. Times are seconds since the start of 1904, UTC.
struct MovieHeader {
  u64 creationTime = 0;
  u64 modificationTime = 0;
  u32 timescale = 0;
  u64 duration = 0;  // of the longest track, in units of `timescale`
  u32 nextTrackId = 1;
};

constexpr u32 kTrackEnabled = 1, kTrackInMovie = 2, kTrackInPreview = 4, kTrackInPoster = 8;

/// tkhd.
struct TrackHeader {
  u32 flags = kTrackEnabled | kTrackInMovie | kTrackInPreview | kTrackInPoster;
  u64 creationTime = 0;
  u64 modificationTime = 0;
  u32 id = 0;
  u64 duration = 0;  // in the movie's timescale
  i16 layer = 0;
  i16 alternateGroup = 0;
  i16 volume = 0;  // 8.8
  Matrix matrix = kIdentityMatrix;
  u32 width = 0;  // as shown, 16.16
  u32 height = 0;
};

/// mdhd.
struct MediaHeader {
  u64 creationTime = 0;
  u64 modificationTime = 0;
  u32 timescale = 0;
  u64 duration = 0;
  u16 language = 0;
  u16 quality = 0;
};

/// One entry of an edit list.
struct Edit {
  u64 duration;   // in the movie's timescale
  i64 mediaTime;  // where in the media it starts, in the track's timescale; -1: nothing is shown
  u32 rate;       // 16.16
};

MovieHeader ParseMovieHeader(const AtomView& atom);
TrackHeader ParseTrackHeader(const AtomView& atom);
MediaHeader ParseMediaHeader(const AtomView& atom);
std::vector<Edit> ParseEditList(const AtomView& atom);

/// The handler type of a media's hdlr: 'vide', 'soun', 'tmcd'.
u32 ParseHandlerType(const AtomView& atom);

/// Whole atoms, headers included.
std::vector<u8> SerializeMovieHeader(const MovieHeader& header);
std::vector<u8> SerializeTrackHeader(const TrackHeader& header);
std::vector<u8> SerializeMediaHeader(const MediaHeader& header);
std::vector<u8> SerializeEditList(const std::vector<Edit>& edits);

}  // namespace vorel::container
