// Movies beyond 32 bits, the movie's way to its name, and everything that a writer refuses.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include "container/movie_writer.h"
#include "tests/container/hand_movie.h"

namespace vorel::container {
namespace {

SampleDescription Description() {
  SampleDescription description;
  description.cType = FourCharacterCode("Vrl4");
  description.vendor = FourCharacterCode("Vorl");
  description.spatialQuality = 1024;
  description.width = 640;
  description.height = 360;
  description.name = "Test";
  return description;
}

MovieSettings Settings() {
  MovieSettings settings;
  settings.time = TimeBaseOfRate({24000, 1001});
  settings.creationTime = 100;
  return settings;
}

void Append(MovieWriter& writer, const Blob& frame, u32 description = 0) {
  writer.AppendFrame(reinterpret_cast<const u8*>(frame.data()), frame.size(), description);
}

TEST(MovieWriterLimits, MediaBeyondFourGibibytesGetWideSizesAndOffsets) {
  const u64 far = (u64{1} << 32) + 100;
  const MemoryFile file;
  MovieSettings settings = Settings();
  settings.mediaOffset = far;
  MovieWriter writer(file.descriptor, "a.mov", settings);
  writer.AddDescription(Description());
  Append(writer, "AAAA");
  Append(writer, "BBBBB");
  writer.Finish();
  EXPECT_EQ(writer.FileBytes(), static_cast<u64>(lseek(file.descriptor, 0, SEEK_END)));
  Blob start(36, '\0');
  ASSERT_EQ(pread(file.descriptor, start.data(), 36, 0), 36);
  EXPECT_EQ(start, Ftyp() + Be32(1) + "mdat" + Be64(far + 9 - 20));
  Blob rest(2000, '\0');
  rest.resize(
      static_cast<std::size_t>(pread(file.descriptor, rest.data(), rest.size(), static_cast<off_t>(far))));
  EXPECT_EQ(rest.substr(0, 9), "AAAABBBBB");
  EXPECT_NE(rest.find(Table("co64", 1, Be64(far))), Blob::npos);
  const Movie movie = OpenMovie(file.descriptor, "a.mov");
  std::vector<u8> frame;
  ReadSample(movie, ReadVideoTrack(movie, 0).samples.at(1), frame);
  EXPECT_EQ(Blob(frame.begin(), frame.end()), "BBBBB");
}

TEST(MovieWriterLimits, LastOffsetOfThirtyTwoBitsStaysNarrow) {
  const MemoryFile file;
  MovieSettings settings = Settings();
  settings.mediaOffset = 0xFFFFFFFF;
  MovieWriter writer(file.descriptor, "a.mov", settings);
  writer.AddDescription(Description());
  Append(writer, "A");
  writer.Finish();
  Blob rest(2000, '\0');
  rest.resize(static_cast<std::size_t>(pread(file.descriptor, rest.data(), rest.size(), 0xFFFFFFFF)));
  EXPECT_NE(rest.find(Table("stco", 1, Be32(0xFFFFFFFF))), Blob::npos);
  Blob start(16, '\0');
  ASSERT_EQ(pread(file.descriptor, start.data(), 16, 20), 16);
  EXPECT_EQ(start, Atom("wide", "") + Be32(0xFFFFFFFFu - 20 - 8 + 1) + "mdat");
}

TEST(MovieWriterLimits, MediaSizeOfThirtyTwoBitsStaysNarrow) {
  for (const u64 size : {u64{0xFFFFFFFF}, u64{0x100000000}}) {
    const MemoryFile file;
    MovieSettings settings = Settings();
    settings.mediaOffset = 20 + 8 + size - 1;  // behind ftyp and wide; the frame is one byte
    MovieWriter writer(file.descriptor, "a.mov", settings);
    writer.AddDescription(Description());
    Append(writer, "A");
    writer.Finish();
    Blob start(16, '\0');
    ASSERT_EQ(pread(file.descriptor, start.data(), 16, 20), 16);
    const Blob narrow = Atom("wide", "") + Be32(0xFFFFFFFF) + "mdat";
    const Blob wide = Be32(1) + "mdat" + Be64(0x100000008);
    EXPECT_EQ(start, size == 0xFFFFFFFF ? narrow : wide);
    EXPECT_EQ(OpenMovie(file.descriptor, "a.mov").tracks.size(), 1u);
  }
}

TEST(MovieWriterLimits, DurationBeyondThirtyTwoBitsTakesVersionOne) {
  const MemoryFile file;
  MovieWriter writer(file.descriptor, "a.mov", Settings());
  writer.AddDescription(Description());
  const u8 byte = 7;
  for (int i = 0; i < 3; ++i) writer.AppendFrame(&byte, 1, 0, 0x80000000);
  writer.Finish();
  const Movie movie = OpenMovie(file.descriptor, "a.mov");
  EXPECT_EQ(movie.header.duration, u64{3} << 31);
  EXPECT_EQ(movie.tracks.at(0).header.duration, u64{3} << 31);
  EXPECT_EQ(movie.tracks.at(0).media.duration, u64{3} << 31);
  EXPECT_EQ(movie.tracks.at(0).edits.at(0).duration, u64{3} << 31);
  const Blob bytes = Contents(file.descriptor);
  EXPECT_EQ(bytes.substr(bytes.find("mvhd") + 4, 4), Be32(0x01000000));
}

TEST(MovieWriterLimits, FileAppearsWhenFinished) {
  const TestFolder folder;
  const std::string path = folder.path + "/a.mov";
  MovieWriter writer(path, Settings());
  EXPECT_EQ(writer.TemporaryPath().rfind(folder.path + "/.a.mov.", 0), 0u);
  writer.AddDescription(Description());
  Append(writer, "AAAA");
  EXPECT_EQ(writer.Frames(), 1u);
  EXPECT_NE(access(path.c_str(), F_OK), 0);
  writer.Finish();
  EXPECT_TRUE(writer.TemporaryPath().empty());
  EXPECT_EQ(NamesIn(folder.path), std::vector<std::string>{"a.mov"});
  EXPECT_EQ(ReadVideoTrack(OpenMovie(path), 0).samples.size(), 1u);
}

TEST(MovieWriterLimits, AbandonedMovieLeavesNothing) {
  const TestFolder folder;
  StoreFile(folder.path + "/a.mov", "old");
  MovieSettings settings = Settings();
  settings.overwrite = true;
  {
    MovieWriter writer(folder.path + "/a.mov", settings);
    writer.AddDescription(Description());
    Append(writer, "AAAA");
  }
  EXPECT_EQ(NamesIn(folder.path), std::vector<std::string>{"a.mov"});
  EXPECT_EQ(ContentsOf(folder.path + "/a.mov"), "old");
}

TEST(MovieWriterLimits, MovieMayBeReadWhileItIsReplaced) {
  const TestFolder folder;
  const std::string path = folder.path + "/a.mov";
  StoreFile(path, ThreeFrameMovie());
  const Movie old = OpenMovie(path);
  const auto video = ReadVideoTrack(old, 0);
  MovieSettings settings = Settings();
  settings.overwrite = true;
  MovieWriter writer(path, settings);
  writer.AddDescription(video.descriptions[0]);
  std::vector<u8> frame;
  for (const Sample& sample : video.samples) {
    ReadSample(old, sample, frame);
    writer.AppendFrame(frame.data(), frame.size(), 0);
  }
  writer.Finish();
  const Movie now = OpenMovie(path);
  ReadSample(now, ReadVideoTrack(now, 0).samples.at(2), frame);
  EXPECT_EQ(Blob(frame.begin(), frame.end()), "CCCCCC");
}

TEST(MovieWriterLimits, MisuseIsReported) {
  const MemoryFile file;
  MovieWriter writer(file.descriptor, "a.mov", Settings());
  EXPECT_THROW(Append(writer, "x"), Problem);
  EXPECT_THROW(writer.Finish(), Problem);
  writer.AddDescription(Description());
  EXPECT_THROW(Append(writer, "x", 1), Problem);
  writer.Finish();
  EXPECT_THROW(Append(writer, "x"), Problem);
  EXPECT_THROW(writer.Finish(), Problem);
  MovieSettings settings = Settings();
  settings.time.frameDuration = 0;
  EXPECT_THROW(MovieWriter(file.descriptor, "a.mov", settings), Problem);
}

TEST(MovieWriterLimits, FullDiskNamesTheMovie) {
  const int full = open("/dev/full", O_WRONLY);
  ASSERT_GE(full, 0);
  try {
    MovieWriter writer(full, "full.mov", Settings());
    ADD_FAILURE();
  } catch (const Problem& problem) {
    EXPECT_EQ(problem.where, "full.mov");
    EXPECT_EQ(problem.what, "cannot be written: No space left on device");
  }
  close(full);
}

}  // namespace
}  // namespace vorel::container
