// Files that are no movies, and kinds of movies that are refused, each with the message that tells why.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include "container/movie_reader.h"
#include "tests/container/hand_movie.h"

namespace vorel::container {
namespace {

Problem ProblemOf(const Blob& bytes) {
  try {
    const MemoryFile file(bytes);
    const Movie movie = OpenMovie(file.descriptor, "test.mov");
    ReadVideoTrack(movie, ChooseVideoTrack(movie));
  } catch (const Problem& problem) {
    return problem;
  }
  return {"no problem", "", ""};
}

TEST(MovieRefusal, RefusesAMovieWithoutVideo) {
  const Problem problem = ProblemOf(Atom("moov", Mvhd(24000, 3003)));
  EXPECT_EQ(problem.what, "the movie has no video track among its 0 tracks");
  EXPECT_EQ(problem.where, "test.mov: moov at 0");
}

TEST(MovieRefusal, RefusesATrackThatIsNotVideo) {
  const Blob sound = Atom("trak", Tkhd(4, 1, 0, 0) + Atom("mdia", Mdhd(1, 1) + Hdlr("mhlr", "soun", "")));
  const MemoryFile file(Atom("moov", Mvhd(1, 1) + sound));
  const Movie movie = OpenMovie(file.descriptor, "test.mov");
  try {
    ReadVideoTrack(movie, 0);
    FAIL();
  } catch (const Problem& problem) {
    EXPECT_EQ(problem.what, "the track is not video but soun");
  }
}

TEST(MovieRefusal, RefusesAFileThatIsNoMovie) {
  EXPECT_EQ(ProblemOf("").what, "no movie header (moov) in 0 bytes");
  EXPECT_EQ(ProblemOf(Atom("mdat", "abc")).what, "no movie header (moov) in 11 bytes");
  const Problem text = ProblemOf("This is a text and not a movie.");
  EXPECT_EQ(text.where, "test.mov:  is  at 0");
  EXPECT_EQ(text.what, "the atom says 1416128883 bytes, but only 31 are left in what holds it");
}

TEST(MovieRefusal, RefusesCompressedHeaders) {
  const Problem problem = ProblemOf(Ftyp() + Atom("moov", Atom("cmov", Atom("dcom", "zlib"))));
  EXPECT_EQ(problem.what, "the movie header is compressed, which is not supported");
  EXPECT_EQ(problem.where, "test.mov: moov/cmov at 28");
}

TEST(MovieRefusal, RefusesFragments) {
  EXPECT_EQ(ProblemOf(Ftyp() + Atom("moov", Mvhd(1, 1) + Atom("mvex", ""))).where,
            "test.mov: moov/mvex at 136");
  EXPECT_EQ(ProblemOf(Ftyp() + Atom("moof", "")).what,
            "the movie is split into fragments, which is not supported");
}

TEST(MovieRefusal, RefusesReferenceMovies) {
  EXPECT_EQ(ProblemOf(Atom("moov", Atom("rmra", ""))).what, "the movie only refers to other movies");
}

TEST(MovieRefusal, RefusesTwoMovieHeaders) {
  const Blob moov = Atom("moov", Mvhd(1, 1));
  EXPECT_EQ(ProblemOf(moov + moov).where, "test.mov: moov at 116");
}

TEST(MovieRefusal, RefusesMediaInOtherFiles) {
  Blob bytes = ThreeFrameMovie();
  const std::size_t flags = bytes.find("alis" + Be32(1)) + 7;
  bytes[flags] = 0;
  const Problem problem = ProblemOf(bytes);
  EXPECT_EQ(problem.what, "the track's media lie in another file, which is not supported");
  EXPECT_EQ(problem.where, "test.mov: moov/trak/mdia/minf/dinf/dref/alis at " + std::to_string(flags - 11));
}

TEST(MovieRefusal, RefusesADescriptionWithoutDataReference) {
  HandTables tables = ThreeFrameTables(kHandFrameOffset);
  tables.stsd = Table("stsd", 1, ImageDescription("Vrl4", 640, 360).replace(14, 2, Be16(2)));
  EXPECT_EQ(ProblemOf(ThreeFrameMovie(tables)).what, "data reference 2 is named, but there are 1");
}

TEST(MovieRefusal, RefusesAHugeMovieHeaderBeforeReadingIt) {
  const Blob start = Be32(1) + "moov" + Be64((u64{1} << 28) + 1);
  const MemoryFile file(start);
  ASSERT_EQ(ftruncate(file.descriptor, (off_t{1} << 28) + 1), 0);
  try {
    OpenMovie(file.descriptor, "test.mov");
    FAIL();
  } catch (const Problem& problem) {
    EXPECT_EQ(problem.what, "the movie header says 268435457 bytes; 268435456 are the most that are read");
  }
}

TEST(MovieRefusal, RefusesAPipe) {
  int ends[2];
  ASSERT_EQ(pipe(ends), 0);
  try {
    OpenMovie(ends[0], "the pipe");
    ADD_FAILURE();
  } catch (const Problem& problem) {
    EXPECT_EQ(problem.where, "the pipe");
    EXPECT_NE(problem.what.find("is a pipe"), std::string::npos);
  }
  close(ends[0]);
  close(ends[1]);
}

TEST(MovieRefusal, MissingFileAndFolderAreNamedWithTheReason) {
  try {
    OpenMovie("/nowhere/at/all.mov");
    FAIL();
  } catch (const Problem& problem) {
    EXPECT_EQ(problem.where, "/nowhere/at/all.mov");
    EXPECT_EQ(problem.what, "cannot be opened: No such file or directory");
  }
  try {
    OpenMovie("/tmp");
    FAIL();
  } catch (const Problem& problem) {
    EXPECT_EQ(problem.what, "cannot be read: Is a directory");
  }
}

TEST(MovieRefusal, DescriptorThatCannotBeReadIsReportedWithTheReason) {
  const MemoryFile file(ThreeFrameMovie());
  const int writeOnly = open(("/proc/self/fd/" + std::to_string(file.descriptor)).c_str(), O_WRONLY);
  ASSERT_GE(writeOnly, 0);
  try {
    OpenMovie(writeOnly, "test.mov");
    ADD_FAILURE();
  } catch (const Problem& problem) {
    EXPECT_EQ(problem.what, "cannot be read: Bad file descriptor");
    EXPECT_EQ(problem.where, "test.mov");
  }
  close(writeOnly);
}

TEST(MovieRefusal, FileThatShrinksAfterOpeningIsReported) {
  const MemoryFile file(ThreeFrameMovie());
  const Movie movie = OpenMovie(file.descriptor, "test.mov");
  const auto video = ReadVideoTrack(movie, 0);
  ASSERT_EQ(ftruncate(file.descriptor, 30), 0);
  std::vector<u8> frame;
  EXPECT_THROW(ReadSample(movie, video.samples[0], frame), Problem);
}

}  // namespace
}  // namespace vorel::container
