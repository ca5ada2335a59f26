// Movies through the container's own functions.
#include "tests/tool/movies.h"

#include <gtest/gtest.h>

#include "container/movie_reader.h"
#include "container/movie_writer.h"

namespace vorel::tool {

namespace {

container::Movie Open(const TestFolder& folder, const std::string& movie) {
  return container::OpenMovie(folder.path + "/" + movie);
}

container::VideoTrack VideoOf(const container::Movie& movie) {
  return container::ReadVideoTrack(movie, container::ChooseVideoTrack(movie));
}

}  // namespace

Frames FramesOf(const TestFolder& folder, const std::string& name) {
  const container::Movie movie = Open(folder, name);
  Frames frames;
  for (const container::Sample& sample : VideoOf(movie).samples) {
    container::ReadSample(movie, sample, frames.emplace_back());
  }
  return frames;
}

container::SampleDescription DescriptionOf(const TestFolder& folder, const std::string& name) {
  return VideoOf(Open(folder, name)).descriptions.at(0);
}

u64 OffsetOfFrame(const TestFolder& folder, const std::string& name, std::size_t frame) {
  return VideoOf(Open(folder, name)).samples.at(frame).offset;
}

void RemakeMovie(
    const TestFolder& folder, const std::string& name, const std::string& copy,
    const std::function<void(Frames& frames, container::SampleDescription& description)>& change) {
  Frames frames = FramesOf(folder, name);
  container::SampleDescription description = DescriptionOf(folder, name);
  change(frames, description);
  container::MovieSettings settings;
  settings.time = {24000, 1001};
  container::MovieWriter writer(folder.path + "/" + copy, settings);
  const u32 index = writer.AddDescription(description);
  for (const std::vector<u8>& frame : frames) writer.AppendFrame(frame.data(), frame.size(), index);
  writer.Finish();
}

void MakeBrook(const TestFolder& folder) {
  const Outcome made =
      RunVorel(folder, {"encode", SamplePath("brook_640x360p_8.y4m"), "-o", "brook.mov", "-q"});
  ASSERT_EQ(made.status, 0) << made.err;
}

}  // namespace vorel::tool
