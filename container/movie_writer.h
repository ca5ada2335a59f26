// Writes QuickTime movies with one video track, and copies further tracks from other movies. Frames are
// stored as they come; the movie header follows them. A movie under construction has a hidden name beside its
// target and gets the target's name when it is complete, so that a target is either whole or not there.
#pragma once
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "base/integers.h"
#include "container/movie_reader.h"
#include "container/output_file.h"
#include "container/sample_description.h"
#include "container/time_base.h"

namespace vorel::container {

struct MovieSettings {
  TimeBase time;           // TimeBaseOfRate(rate); neither term is 0
  bool overwrite = false;  // an existing target may be replaced

  // Seconds since the start of 1904, UTC, see MovieTimeOfUnixTime; unset: now.
  std::optional<u64> creationTime = std::nullopt;

  // The first frame lies no earlier than here; the space before it is a hole.
  u64 mediaOffset = 0;
};

/// Seconds since the start of 1904 for seconds since the start of 1970.
constexpr u64 MovieTimeOfUnixTime(i64 seconds) {
  return static_cast<u64>(seconds + 2'082'844'800);
}

struct MovieState;

/// A movie under construction; for one thread at a time. Every function throws Problem with the target's name
/// when the system refuses to write; the writer can then only be destroyed. Destroyed before Finish it
/// removes what it wrote and leaves the target untouched.
class MovieWriter {
 public:
  /// Creates the temporary file beside `path`. Throws Problem when the target exists and `overwrite` is not
  /// set, when it is not a regular file, or when its folder cannot be written.
  MovieWriter(const std::string& path, const MovieSettings& settings);

  /// Writes to an empty file that the caller holds open, from its start; nothing is renamed, synced or
  /// closed. `name` is what messages call it.
  MovieWriter(int descriptor, const std::string& name, const MovieSettings& settings);

  ~MovieWriter();
  MovieWriter(const MovieWriter&) = delete;
  MovieWriter& operator=(const MovieWriter&) = delete;

  /// Adds an image description and returns its index. A description equal to an earlier one gets that one's
  /// index.
  u32 AddDescription(const SampleDescription& description);

  /// Appends one frame with the settings' frame duration. `description` is an index that AddDescription gave.
  void AppendFrame(const u8* bytes, std::size_t count, u32 description);

  /// Appends one frame that lasts `duration` units.
  void AppendFrame(const u8* bytes, std::size_t count, u32 description, u32 duration);

  /// Takes a track of another movie over: samples byte for byte, headers and tables with new offsets and a
  /// new id. Chunks are interleaved with the frames by their time. The movie's file is shared and stays open
  /// until the writer is gone. Throws Problem for damage, for media in other files, and for sound whose size
  /// in bytes its description does not tell.
  void CopyTrack(const Movie& movie, std::size_t track);

  /// The video track stands for this track of another movie, all of whose frames it holds: it takes over edit
  /// list, matrix, layer, language and references to other copied tracks; references to that track lead to
  /// the new one.
  void StandFor(const Movie& movie, std::size_t track);

  /// Takes over the user data and metadata (udta, meta) of another movie.
  void CopyMovieData(const Movie& movie);

  /// Writes the movie header, syncs the file and gives it the target's name. Without `overwrite` a target
  /// that has appeared meanwhile stays, and Problem is thrown. Throws Problem when no description was added.
  void Finish();

  /// Name of the temporary file, for removal in a signal handler; empty after Finish and when writing to a
  /// descriptor. The string stays in place as long as the writer.
  const std::string& TemporaryPath() const;

  /// Frames appended, and bytes written so far.
  u64 Frames() const;
  u64 FileBytes() const;

 private:
  std::unique_ptr<MovieState> state;
};

}  // namespace vorel::container
