// Any bytes as a movie: opened, listed, read and rewritten with all of its tracks. What comes out is a movie
// or a Problem; and a movie that was rewritten opens again with as many samples.
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <vector>

#include "container/movie_reader.h"
#include "container/movie_writer.h"

namespace {

using namespace vorel;
using namespace vorel::container;

constexpr std::size_t kSamplesRead = 64;

struct MemoryFile {
  int descriptor = memfd_create("movie", MFD_CLOEXEC);
  MemoryFile() {
    if (descriptor < 0) std::abort();
  }
  MemoryFile(const MemoryFile&) = delete;
  MemoryFile& operator=(const MemoryFile&) = delete;
  ~MemoryFile() { close(descriptor); }
};

// Everything that a description tells must survive being written and parsed again.
void CheckDescription(const SampleDescription& description) {
  FindFieldOrder(description);
  FindColour(description);
  FindPixelAspect(description);
  FindCleanAperture(description);
  const std::vector<u8> bytes = SerializeSampleDescription(description);
  if (!(ParseSampleDescription(bytes.data(), bytes.size(), "again") == description)) std::abort();
}

void Rewrite(const Movie& movie, const VideoTrack& video) {
  const MemoryFile file;
  MovieSettings settings;
  settings.time = {video.timescale, 1};
  settings.creationTime = 0;
  MovieWriter writer(file.descriptor, "rewritten", settings);
  std::vector<u32> descriptions;
  for (const SampleDescription& description : video.descriptions) {
    descriptions.push_back(writer.AddDescription(description));
  }
  writer.CopyMovieData(movie);
  std::size_t copied = 0;
  for (std::size_t track = 0; track < movie.tracks.size() && copied < 4; ++track) {
    try {
      if (track == video.track) {
        writer.StandFor(movie, track);
      } else {
        writer.CopyTrack(movie, track);
        ++copied;
      }
    } catch (const Problem&) {
      // A track that cannot be copied must leave the writer as it was.
    }
  }
  const std::size_t count = std::min(video.samples.size(), kSamplesRead);
  std::vector<u8> bytes;
  for (std::size_t i = 0; i < count; ++i) {
    const Sample& sample = video.samples[i];
    ReadSample(movie, sample, bytes);
    writer.AppendFrame(bytes.data(), bytes.size(), descriptions[sample.description], sample.duration);
  }
  writer.Finish();
  const Movie again = OpenMovie(file.descriptor, "rewritten");
  if (again.tracks.size() != 1 + copied) std::abort();
  const VideoTrack videoAgain = ReadVideoTrack(again, 0);
  if (videoAgain.samples.size() != count) std::abort();
  for (std::size_t i = 0; i < count; ++i) {
    if (videoAgain.samples[i].bytes != video.samples[i].bytes) std::abort();
    if (videoAgain.samples[i].duration != video.samples[i].duration) std::abort();
  }
}

void Walk(const Movie& movie) {
  for (const std::size_t track : VideoTracks(movie)) {
    try {
      for (const SampleDescription& description : ReadVideoTrack(movie, track).descriptions)
        CheckDescription(description);
    } catch (const Problem&) {
    }
  }
  const VideoTrack video = ReadVideoTrack(movie, ChooseVideoTrack(movie));
  Rewrite(movie, video);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const u8* data, std::size_t size) {
  const MemoryFile file;
  if (write(file.descriptor, data, size) != static_cast<ssize_t>(size)) std::abort();
  try {
    Walk(OpenMovie(file.descriptor, "fuzz"));
  } catch (const Problem&) {
  }
  return 0;
}
