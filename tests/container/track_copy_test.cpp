// Tracks taken over from hand-made movies: samples byte for byte, tables unchanged, places, ids and times
// renewed.
#include <gtest/gtest.h>

#include "container/movie_writer.h"
#include "tests/container/hand_movie.h"
#include "tests/container/hand_sound.h"

namespace vorel::container {
namespace {

MovieSettings Settings() {
  MovieSettings settings;
  settings.time = {24000, 1001};
  settings.creationTime = 100;
  return settings;
}

// The source's frames once more, 20 of each, with whatever `copy` takes over; the file's bytes.
template <typename Copy>
Blob Rewritten(const Blob& source, int framesOfEach, const Copy& copy) {
  const MemoryFile from(source);
  const MemoryFile to;
  const Movie movie = OpenMovie(from.descriptor, "source.mov");
  MovieWriter writer(to.descriptor, "new.mov", Settings());
  writer.AddDescription(ReadVideoTrack(movie, 0).descriptions[0]);
  copy(writer, movie);
  std::vector<u8> frame;
  for (int i = 0; i < framesOfEach; ++i) {
    for (const Sample& sample : ReadVideoTrack(movie, 0).samples) {
      ReadSample(movie, sample, frame);
      writer.AppendFrame(frame.data(), frame.size(), 0);
    }
  }
  writer.Finish();
  return Contents(to.descriptor);
}

TEST(TrackCopy, TrackIsReproducedWithNewPlacesIdAndTimes) {
  const Blob bytes = Rewritten(SourceMovie(), 1,
                               [](MovieWriter& writer, const Movie& movie) { writer.CopyTrack(movie, 1); });
  // Sound chunk 0 begins with the movie, chunk 1 behind its last frame. The movie's timescale becomes 48000,
  // a multiple of 24000, 48000 and 600; two seconds are 96000 units.
  EXPECT_EQ(bytes.substr(36, 31), "sound-0!" + kThreeFrames + "sound-1!");
  SoundSettings rescaled;
  rescaled.duration = 96000;
  const Blob sound = SoundTrack(rescaled, 2, Table("stco", 2, Be32(36) + Be32(59)));
  EXPECT_NE(bytes.find(sound), Blob::npos);
  const MemoryFile file(bytes);
  const Movie movie = OpenMovie(file.descriptor, "new.mov");
  EXPECT_EQ(movie.header.timescale, 48000u);
  EXPECT_EQ(movie.header.duration, 96000u);
  EXPECT_EQ(movie.header.nextTrackId, 3u);
  EXPECT_EQ(movie.tracks.at(0).header.duration, 6006u);
}

TEST(TrackCopy, ChunksAreInterleavedByTime) {
  // 60 frames last 2.5 seconds. A video chunk ends after a second: 24 frames; sound chunk 1 begins at one
  // second.
  const Blob bytes = Rewritten(SourceMovie(), 20,
                               [](MovieWriter& writer, const Movie& movie) { writer.CopyTrack(movie, 1); });
  EXPECT_EQ(bytes.find("sound-0!"), 36u);
  EXPECT_EQ(bytes.find("sound-1!"), 36u + 8 + 8 * 15);
}

TEST(TrackCopy, ReferencesLeadToTheNewIds) {
  const Blob bytes = Rewritten(SourceMovie(), 1, [](MovieWriter& writer, const Movie& movie) {
    writer.StandFor(movie, 0);
    writer.CopyTrack(movie, 1);
    writer.CopyTrack(movie, 2);
  });
  EXPECT_NE(bytes.find(Atom("tref", Atom("tmcd", Be32(3)))), Blob::npos);
  EXPECT_EQ(bytes.find("chap"), Blob::npos);
  EXPECT_NE(bytes.find(Atom("tmcd", Zeros(6) + Be16(1) + Zeros(18) + Atom("name", "reel"))), Blob::npos);
}

TEST(TrackCopy, ReferencesWithoutTargetsAreDropped) {
  const Blob bytes =
      Rewritten(SourceMovie(), 1, [](MovieWriter& writer, const Movie& movie) { writer.StandFor(movie, 0); });
  EXPECT_EQ(bytes.find("tref"), Blob::npos);
}

TEST(TrackCopy, StandInTakesEditsOver) {
  Blob source = SourceMovie();
  // 3003 units of 1/600 s from media time 1001.
  source.replace(source.find("elst") + 16, 4, Be32(1001));
  const Blob bytes =
      Rewritten(source, 1, [](MovieWriter& writer, const Movie& movie) { writer.StandFor(movie, 0); });
  EXPECT_NE(bytes.find(Table("elst", 1, Be32(120120) + Be32(1001) + Be32(0x10000))), Blob::npos);
}

TEST(TrackCopy, UserDataAndMetadataAreTakenOverUnlessTheyNamePlaces) {
  const Blob bytes = Rewritten(SourceMovie(), 1,
                               [](MovieWriter& writer, const Movie& movie) { writer.CopyMovieData(movie); });
  EXPECT_NE(bytes.find(Atom("udta", Atom("\xA9nam", "title")) + Atom("meta", Hdlr("mhlr", "mdta", ""))),
            Blob::npos);
  EXPECT_EQ(bytes.find("iloc"), Blob::npos);
}

TEST(TrackCopy, OldSoundTrackTellsItsSizeInItsDescription) {
  // Two chunks of two samples of one byte, says the table; the description says 2 channels of 16 bits, so 8
  // bytes a chunk.
  SoundSettings old;
  old.stsz = Atom("stsz", Be32(0) + Be32(1) + Be32(4));
  const Blob bytes = Rewritten(SourceMovie(old), 1,
                               [](MovieWriter& writer, const Movie& movie) { writer.CopyTrack(movie, 1); });
  EXPECT_EQ(bytes.substr(36, 31), "sound-0!" + kThreeFrames + "sound-1!");
}

TEST(TrackCopy, SoundOfUnknownSizeIsRefused) {
  SoundSettings unknown;
  unknown.stsz = Atom("stsz", Be32(0) + Be32(1) + Be32(4));
  unknown.format = "QDM2";
  try {
    Rewritten(SourceMovie(unknown), 1,
              [](MovieWriter& writer, const Movie& movie) { writer.CopyTrack(movie, 1); });
    FAIL();
  } catch (const Problem& problem) {
    EXPECT_EQ(problem.what,
              "the size of sound samples in format QDM2 is unknown; the track cannot be copied");
    EXPECT_EQ(problem.where.rfind("source.mov: moov/trak/mdia/minf/stbl/stsd at ", 0), 0u);
  }
}

TEST(TrackCopy, RefusedTrackLeavesTheWriterUsable) {
  Blob source = SourceMovie();
  const std::size_t sound = source.find("smhd");
  source.replace(source.find("stts", sound) + 12, 4, Be32(5));
  const Blob bytes = Rewritten(source, 1, [](MovieWriter& writer, const Movie& movie) {
    EXPECT_THROW(writer.CopyTrack(movie, 1), Problem);
    writer.CopyTrack(movie, 2);
  });
  const MemoryFile file(bytes);
  const Movie movie = OpenMovie(file.descriptor, "new.mov");
  ASSERT_EQ(movie.tracks.size(), 2u);
  EXPECT_EQ(movie.tracks[1].header.id, 2u);
  EXPECT_EQ(movie.tracks[1].firstFormat, FourCharacterCode("tmcd"));
}

TEST(TrackCopy, CopiedTrackKeepsItsReferencesToCopiedTracks) {
  SoundSettings sound;
  sound.references = Atom("tref", Atom("sync", Be32(7) + Be32(99) + Be32(1)));
  const Blob bytes = Rewritten(SourceMovie(sound), 1, [](MovieWriter& writer, const Movie& movie) {
    writer.StandFor(movie, 0);
    writer.CopyTrack(movie, 1);
    writer.CopyTrack(movie, 2);
  });
  EXPECT_NE(bytes.find(Atom("tref", Atom("sync", Be32(3) + Be32(1)))), Blob::npos);
}

TEST(TrackCopy, ReferencesThatAreCutOffAreRefusedAtOnce) {
  SoundSettings sound;
  sound.references = Atom("tref", Atom("sync", Be32(7) + Be16(0)));
  const auto copy = [](MovieWriter& writer, const Movie& movie) {
    EXPECT_THROW(writer.CopyTrack(movie, 1), Problem);
  };
  Rewritten(SourceMovie(sound), 1, copy);
}

TEST(TrackCopy, AuxiliaryDataElsewhereAreRefused) {
  Blob source = SourceMovie();
  source.replace(source.find("abcd", source.find("smhd")), 4, "saio");
  EXPECT_THROW(
      Rewritten(source, 1, [](MovieWriter& writer, const Movie& movie) { writer.CopyTrack(movie, 1); }),
      Problem);
}

TEST(TrackCopy, SoundInAnotherFileIsRefused) {
  Blob source = SourceMovie();
  source[source.find("alis" + Be32(1), source.find("smhd")) + 7] = 0;
  EXPECT_THROW(
      Rewritten(source, 1, [](MovieWriter& writer, const Movie& movie) { writer.CopyTrack(movie, 1); }),
      Problem);
}

TEST(TrackCopy, CopyOutlivesTheCallersMovie) {
  const MemoryFile to;
  MovieWriter writer(to.descriptor, "new.mov", Settings());
  const TestFolder folder;
  StoreFile(folder.path + "/source.mov", SourceMovie());
  {
    const Movie movie = OpenMovie(folder.path + "/source.mov");
    writer.AddDescription(ReadVideoTrack(movie, 0).descriptions[0]);
    writer.CopyTrack(movie, 2);
  }
  writer.Finish();
  EXPECT_EQ(Contents(to.descriptor).substr(36, 4), "TIME");
}

}  // namespace
}  // namespace vorel::container
