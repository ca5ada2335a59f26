// Opens QuickTime movies: the movie header and the list of its tracks, then a video track's descriptions and
// samples. Movies that are split up (fragments), packed (cmov) or keep their media in other files are refused
// with a message that says so.
//
//   const Movie movie = OpenMovie("a.mov");
//   const VideoTrack video = ReadVideoTrack(movie, ChooseVideoTrack(movie));
//   ReadSample(movie, video.samples[0], bytes);
#pragma once
#include <memory>
#include <string>
#include <vector>

#include "base/integers.h"
#include "container/atoms.h"
#include "container/input_file.h"
#include "container/sample_description.h"
#include "container/sample_table.h"
#include "container/time_base.h"
#include "container/track_fields.h"

namespace vorel::container {

constexpr u32 kVideoHandler = FourCharacterCode("vide");
constexpr u32 kSoundHandler = FourCharacterCode("soun");

/// What the headers tell of one track.
struct Track {
  TrackHeader header;       // id, flags, size as shown, duration in the movie's timescale
  MediaHeader media;        // timescale, duration in it, language
  u32 handler;              // kVideoHandler, kSoundHandler, or another code
  std::vector<Edit> edits;  // empty when the track has no edit list
  u32 firstFormat;          // four-character code of the first sample description, 0 when there is none
  AtomView atom;            // trak
};

/// An open movie. Copies share the file and the header's memory and keep both alive.
struct Movie {
  std::shared_ptr<const InputFile> file;
  std::shared_ptr<const std::vector<u8>> headerBytes;  // what all views point into
  AtomView atom;                                       // moov
  u32 brand;                                           // of ftyp; 0 when the file has none
  MovieHeader header;                                  // timescale, duration
  std::vector<Track> tracks;                           // in file order
};

/// A video track ready to be read.
struct VideoTrack {
  std::size_t track;  // index into Movie::tracks
  u32 timescale;
  FrameRate rate;                               // see AverageRate
  std::vector<SampleDescription> descriptions;  // at least one
  std::vector<Sample> samples;                  // in time order
};

/// A larger movie header is refused: it would hold more than ten million frames.
constexpr u64 kMaxMovieHeaderBytes = u64{1} << 28;

/// Opens a movie and reads its headers; sample tables are left for ReadVideoTrack. Throws Problem: the
/// system's reason with the path, or the damaged atom with its offset.
Movie OpenMovie(const std::string& path);

/// The same from a descriptor that can seek; it stays the caller's and must stay open as long as the movie or
/// a copy lives.
Movie OpenMovie(int descriptor, const std::string& name);

/// Indices of all video tracks, in file order.
std::vector<std::size_t> VideoTracks(const Movie& movie);

/// The first enabled video track, or the first one when none is enabled. Throws Problem when the movie has no
/// video.
std::size_t ChooseVideoTrack(const Movie& movie);

/// Reads the descriptions and sample tables of a video track. Throws Problem for damage, for media in other
/// files, and for a track that is not video.
VideoTrack ReadVideoTrack(const Movie& movie, std::size_t track);

/// timescale/duration in lowest terms when all samples last equally long, else the average over the track;
/// 0/1 when there are no samples or they have no duration.
FrameRate AverageRate(const std::vector<Sample>& samples, u32 timescale);

/// Reads one sample; `bytes` gets its size. Any number of threads may read at once. Throws Problem.
void ReadSample(const Movie& movie, const Sample& sample, std::vector<u8>& bytes);

/// The same into memory of at least sample.bytes bytes.
void ReadSample(const Movie& movie, const Sample& sample, u8* to);

}  // namespace vorel::container
