// The writer against movies put together by hand, and through the reader where bytes would say too little.
#include "container/movie_writer.h"

#include <gtest/gtest.h>

#include "tests/container/hand_movie.h"

namespace vorel::container {
namespace {

SampleDescription Description(u16 width = 640, u16 height = 360) {
  SampleDescription description;
  description.cType = FourCharacterCode("Vrl4");
  description.vendor = FourCharacterCode("Vorl");
  description.spatialQuality = 1024;
  description.width = width;
  description.height = height;
  description.name = "Test";
  return description;
}

MovieSettings Settings(FrameRate rate = {24000, 1001}) {
  MovieSettings settings;
  settings.time = TimeBaseOfRate(rate);
  settings.creationTime = 100;
  return settings;
}

void Append(MovieWriter& writer, const Blob& frame, u32 description = 0) {
  writer.AppendFrame(reinterpret_cast<const u8*>(frame.data()), frame.size(), description);
}

Blob MovieOfThreeFrames() {
  const MemoryFile file;
  MovieWriter writer(file.descriptor, "a.mov", Settings());
  writer.AddDescription(Description());
  Append(writer, "AAAA");
  Append(writer, "BBBBB");
  Append(writer, "CCCCCC");
  writer.Finish();
  return Contents(file.descriptor);
}

TEST(MovieWriter, BytesOfASmallMovie) {
  // wide (8 bytes) goes before mdat, so the frames begin at 36.
  const Blob moov = Atom("moov", Mvhd(24000, 3003) + VideoTrak(ThreeFrameTables(36)));
  EXPECT_EQ(MovieOfThreeFrames(), Ftyp() + Atom("wide", "") + Atom("mdat", kThreeFrames) + moov);
}

TEST(MovieWriter, SameInputGivesTheSameBytes) {
  EXPECT_EQ(MovieOfThreeFrames(), MovieOfThreeFrames());
}

TEST(MovieWriter, CreationTimeIsNowWhenNotGiven) {
  EXPECT_EQ(MovieTimeOfUnixTime(0), 2082844800u);
  const MemoryFile file;
  MovieSettings settings = Settings();
  settings.creationTime.reset();
  MovieWriter writer(file.descriptor, "a.mov", settings);
  writer.AddDescription(Description());
  writer.Finish();
  const u64 written = OpenMovie(file.descriptor, "a.mov").header.creationTime;
  EXPECT_NEAR(static_cast<double>(written), static_cast<double>(time(nullptr)) + 2082844800.0, 100);
}

TEST(MovieWriter, FramesOfOneSizeNeedNoSizeTable) {
  const MemoryFile file;
  MovieWriter writer(file.descriptor, "a.mov", Settings());
  writer.AddDescription(Description());
  for (int i = 0; i < 3; ++i) Append(writer, "abcde");
  writer.Finish();
  const Blob bytes = Contents(file.descriptor);
  EXPECT_NE(bytes.find(Atom("stsz", Be32(0) + Be32(5) + Be32(3))), Blob::npos);
  const Movie movie = OpenMovie(file.descriptor, "a.mov");
  EXPECT_EQ(ReadVideoTrack(movie, 0).samples.at(2).offset, 46u);
}

TEST(MovieWriter, EmptyFramesKeepASizeTable) {
  const MemoryFile file;
  MovieWriter writer(file.descriptor, "a.mov", Settings());
  writer.AddDescription(Description());
  Append(writer, "");
  Append(writer, "");
  writer.Finish();
  const auto video = ReadVideoTrack(OpenMovie(file.descriptor, "a.mov"), 0);
  ASSERT_EQ(video.samples.size(), 2u);
  EXPECT_EQ(video.samples[1].bytes, 0u);
}

TEST(MovieWriter, MovieWithoutFramesIsWhole) {
  const MemoryFile file;
  MovieWriter writer(file.descriptor, "a.mov", Settings());
  writer.AddDescription(Description());
  writer.Finish();
  const auto video = ReadVideoTrack(OpenMovie(file.descriptor, "a.mov"), 0);
  EXPECT_TRUE(video.samples.empty());
  EXPECT_EQ(video.rate, (FrameRate{0, 1}));
}

TEST(MovieWriter, RatesComeBackExactly) {
  for (const FrameRate rate :
       {FrameRate{24000, 1001}, FrameRate{30000, 1001}, FrameRate{25, 1}, FrameRate{24, 1},
        FrameRate{60000, 1001}, FrameRate{1, 3}, FrameRate{120, 1}, FrameRate{2997, 125}}) {
    const MemoryFile file;
    MovieWriter writer(file.descriptor, "a.mov", Settings(rate));
    writer.AddDescription(Description());
    for (int i = 0; i < 10; ++i) Append(writer, "x");
    writer.Finish();
    EXPECT_EQ(ReadVideoTrack(OpenMovie(file.descriptor, "a.mov"), 0).rate, rate) << rate.numerator;
  }
}

TEST(MovieWriter, DurationsOfTheirOwnForEachFrame) {
  const MemoryFile file;
  MovieWriter writer(file.descriptor, "a.mov", Settings({25, 1}));
  writer.AddDescription(Description());
  const u8 byte = 7;
  for (const u32 duration : {100u, 100u, 50u, 0u, 100u}) writer.AppendFrame(&byte, 1, 0, duration);
  writer.Finish();
  const Blob runs = Be32(2) + Be32(100) + Be32(1) + Be32(50) + Be32(1) + Be32(0) + Be32(1) + Be32(100);
  EXPECT_NE(Contents(file.descriptor).find(Table("stts", 4, runs)), Blob::npos);
  const Movie movie = OpenMovie(file.descriptor, "a.mov");
  EXPECT_EQ(movie.header.duration, 350u);
  EXPECT_EQ(movie.tracks.at(0).edits.at(0).duration, 350u);
}

TEST(MovieWriter, ChunkEndsAfterASecondOrAMegabyte) {
  const MemoryFile file;
  MovieWriter writer(file.descriptor, "a.mov", Settings({10, 1}));
  writer.AddDescription(Description());
  for (int i = 0; i < 25; ++i) Append(writer, "abc");
  const Blob big(700'000, 'x');
  for (int i = 0; i < 5; ++i) Append(writer, big);
  writer.Finish();
  // 10 and 10 small frames, then 5 small ones and two big ones, then the remaining big ones by two and one.
  const Blob runs = Be32(1) + Be32(10) + Be32(1) + Be32(3) + Be32(7) + Be32(1) + Be32(4) + Be32(2) + Be32(1) +
                    Be32(5) + Be32(1) + Be32(1);
  EXPECT_NE(Contents(file.descriptor).find(Table("stsc", 4, runs)), Blob::npos);
}

TEST(MovieWriter, SeveralDescriptionsEachWithItsFrames) {
  const MemoryFile file;
  MovieWriter writer(file.descriptor, "a.mov", Settings());
  EXPECT_EQ(writer.AddDescription(Description()), 0u);
  EXPECT_EQ(writer.AddDescription(Description(320, 180)), 1u);
  EXPECT_EQ(writer.AddDescription(Description()), 0u);
  Append(writer, "a", 0);
  Append(writer, "b", 1);
  Append(writer, "c", 1);
  Append(writer, "d", 0);
  writer.Finish();
  const auto video = ReadVideoTrack(OpenMovie(file.descriptor, "a.mov"), 0);
  ASSERT_EQ(video.descriptions.size(), 2u);
  EXPECT_EQ(video.descriptions[1].width, 320);
  ASSERT_EQ(video.samples.size(), 4u);
  EXPECT_EQ(video.samples[0].description, 0u);
  EXPECT_EQ(video.samples[2].description, 1u);
  EXPECT_EQ(video.samples[3].description, 0u);
}

TEST(MovieWriter, DataReferenceOfAnotherMovieDoesNotMatter) {
  const MemoryFile file;
  MovieWriter writer(file.descriptor, "a.mov", Settings());
  SampleDescription description = Description();
  description.dataRefIndex = 3;
  EXPECT_EQ(writer.AddDescription(description), 0u);
  EXPECT_EQ(writer.AddDescription(description), 0u);
  writer.Finish();
  EXPECT_EQ(ReadVideoTrack(OpenMovie(file.descriptor, "a.mov"), 0).descriptions.at(0).dataRefIndex, 1);
}

TEST(MovieWriter, ExtensionsStandInTheFileAsGiven) {
  const MemoryFile file;
  MovieWriter writer(file.descriptor, "a.mov", Settings());
  SampleDescription description = Description(720, 480);
  SetExtension(description, {FourCharacterCode("Kesp"), {'8', 'b', 'w', 'p'}});
  SetExtension(description, MakeFieldOrder({2, 14}));
  SetExtension(description, MakePixelAspect({10, 11}));
  writer.AddDescription(description);
  Append(writer, "x");
  writer.Finish();
  const Blob extensions = Atom("Kesp", "8bwp") + Atom("fiel", "\x02\x0E") + Atom("pasp", Be32(10) + Be32(11));
  const Blob entry = ImageDescription("Vrl4", 720, 480, extensions);
  EXPECT_NE(Contents(file.descriptor).find(Table("stsd", 1, entry)), Blob::npos);
}

TEST(MovieWriter, TrackIsShownAsWideAsItsPixelsAre) {
  const MemoryFile file;
  MovieWriter writer(file.descriptor, "a.mov", Settings());
  SampleDescription description = Description(720, 480);
  SetExtension(description, MakePixelAspect({10, 11}));
  writer.AddDescription(description);
  writer.Finish();
  // 720 * 10 / 11 = 654.5454..., in 16.16.
  EXPECT_EQ(OpenMovie(file.descriptor, "a.mov").tracks.at(0).header.width, 42896291u);
  EXPECT_EQ(OpenMovie(file.descriptor, "a.mov").tracks.at(0).header.height, 480u << 16);
}

}  // namespace
}  // namespace vorel::container
