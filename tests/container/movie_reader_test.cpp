// The reader on movies put together by hand: every order and form of atoms that other writers use, and every
// kind of movie that is refused.
#include "container/movie_reader.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <thread>

#include "tests/container/hand_movie.h"

namespace vorel::container {
namespace {

std::vector<Blob> FramesOf(const Blob& bytes) {
  const MemoryFile file(bytes);
  const Movie movie = OpenMovie(file.descriptor, "test.mov");
  std::vector<Blob> frames;
  std::vector<u8> frame;
  for (const Sample& sample : ReadVideoTrack(movie, ChooseVideoTrack(movie)).samples) {
    ReadSample(movie, sample, frame);
    frames.emplace_back(frame.begin(), frame.end());
  }
  return frames;
}

const std::vector<Blob> kFrames = {"AAAA", "BBBBB", "CCCCCC"};

TEST(MovieReader, HeadersTellBrandTimesTracksAndSizes) {
  const MemoryFile file(ThreeFrameMovie());
  const Movie movie = OpenMovie(file.descriptor, "test.mov");
  EXPECT_EQ(movie.brand, 0x71742020u);
  EXPECT_EQ(movie.header.timescale, 24000u);
  EXPECT_EQ(movie.header.duration, 3003u);
  ASSERT_EQ(movie.tracks.size(), 1u);
  const Track& track = movie.tracks[0];
  EXPECT_EQ(track.header.id, 1u);
  EXPECT_EQ(track.header.flags, 15u);
  EXPECT_EQ(track.header.width, 640u << 16);
  EXPECT_EQ(track.header.height, 360u << 16);
  EXPECT_EQ(track.header.matrix, kIdentityMatrix);
  EXPECT_EQ(track.header.duration, 3003u);
  EXPECT_EQ(track.media.timescale, 24000u);
  EXPECT_EQ(track.media.duration, 3003u);
  EXPECT_EQ(track.handler, 0x76696465u);
  EXPECT_EQ(track.firstFormat, 0x56726C34u);
  ASSERT_EQ(track.edits.size(), 1u);
  EXPECT_EQ(track.edits[0].duration, 3003u);
  EXPECT_EQ(track.edits[0].mediaTime, 0);
  EXPECT_EQ(track.edits[0].rate, 0x10000u);
}

TEST(MovieReader, SamplesTellPlaceSizeDurationAndDescription) {
  const MemoryFile file(ThreeFrameMovie());
  const Movie movie = OpenMovie(file.descriptor, "test.mov");
  const auto video = ReadVideoTrack(movie, 0);
  EXPECT_EQ(video.rate, (FrameRate{24000, 1001}));
  ASSERT_EQ(video.descriptions.size(), 1u);
  EXPECT_EQ(video.descriptions[0].width, 640);
  ASSERT_EQ(video.samples.size(), 3u);
  EXPECT_EQ(video.samples[0].offset, 28u);
  EXPECT_EQ(video.samples[1].offset, 32u);
  EXPECT_EQ(video.samples[2].offset, 37u);
  EXPECT_EQ(video.samples[2].bytes, 6u);
  EXPECT_EQ(video.samples[2].duration, 1001u);
  EXPECT_EQ(video.samples[2].description, 0u);
  EXPECT_TRUE(video.samples[2].sync);
}

TEST(MovieReader, MovieHeaderBeforeTheMedia) {
  const std::size_t moovBytes = Atom("moov", Mvhd(24000, 3003) + VideoTrak(ThreeFrameTables(0))).size();
  const auto frames = static_cast<u32>(20 + moovBytes + 8);
  const Blob moov = Atom("moov", Mvhd(24000, 3003) + VideoTrak(ThreeFrameTables(frames)));
  EXPECT_EQ(FramesOf(Ftyp() + moov + Atom("mdat", kThreeFrames)), kFrames);
}

TEST(MovieReader, MovieWithoutFileType) {
  const Blob moov = Atom("moov", Mvhd(24000, 3003) + VideoTrak(ThreeFrameTables(8)));
  const MemoryFile file(Atom("mdat", kThreeFrames) + moov);
  EXPECT_EQ(OpenMovie(file.descriptor, "test.mov").brand, 0u);
  EXPECT_EQ(FramesOf(Atom("mdat", kThreeFrames) + moov), kFrames);
}

TEST(MovieReader, SixtyFourBitSizesOfMediaAndHeader) {
  const Blob moov = WideAtom("moov", Mvhd(24000, 3003) + VideoTrak(ThreeFrameTables(36)));
  EXPECT_EQ(FramesOf(Ftyp() + WideAtom("mdat", kThreeFrames) + moov), kFrames);
}

TEST(MovieReader, WideAtomBeforeTheMedia) {
  const Blob moov = Atom("moov", Mvhd(24000, 3003) + VideoTrak(ThreeFrameTables(36)));
  EXPECT_EQ(FramesOf(Ftyp() + Atom("wide", "") + Atom("mdat", kThreeFrames) + moov), kFrames);
}

TEST(MovieReader, SizeZeroReachesToTheEndOfTheFile) {
  const std::size_t moovBytes = Atom("moov", Mvhd(24000, 3003) + VideoTrak(ThreeFrameTables(0))).size();
  const Blob moov =
      Atom("moov", Mvhd(24000, 3003) + VideoTrak(ThreeFrameTables(static_cast<u32>(20 + moovBytes + 8))));
  EXPECT_EQ(FramesOf(Ftyp() + moov + OpenAtomToEnd("mdat", kThreeFrames)), kFrames);
}

TEST(MovieReader, SizeZeroReachesToTheEndOfTheEnclosingAtom) {
  HandTables tables = ThreeFrameTables(kHandFrameOffset);
  tables.more = OpenAtomToEnd("free", "anything");
  EXPECT_EQ(FramesOf(ThreeFrameMovie(tables)), kFrames);
}

TEST(MovieReader, UnknownAtomsAreSteppedOverEverywhere) {
  HandTables tables = ThreeFrameTables(kHandFrameOffset);
  tables.stsd = Atom("abcd", "x") + tables.stsd;
  tables.more = WideAtom("efgh", "yz");
  const Blob moov =
      Atom("moov", Atom("skip", "") + Mvhd(24000, 3003) + Atom("\xA9xyz", "1") + VideoTrak(tables));
  EXPECT_EQ(
      FramesOf(Ftyp() + Atom("mdat", kThreeFrames) + Atom("free", Zeros(9)) + moov + Atom("uuid", Zeros(16))),
      kFrames);
}

TEST(MovieReader, UserDataClosedByAZeroWord) {
  const Blob udta = Atom("udta", Atom("name", "n") + Be32(0));
  const Blob moov = Atom("moov", Mvhd(24000, 3003) + udta + VideoTrak(ThreeFrameTables(28)) + Be32(0));
  EXPECT_EQ(FramesOf(Ftyp() + Atom("mdat", kThreeFrames) + moov), kFrames);
}

TEST(MovieReader, PaddingBehindTheLastAtom) {
  EXPECT_EQ(FramesOf(ThreeFrameMovie() + Zeros(5)), kFrames);
  EXPECT_EQ(FramesOf(ThreeFrameMovie() + Zeros(800)), kFrames);
}

TEST(MovieReader, VersionOneHeadersHaveSixtyFourBitTimes) {
  const Blob matrix = Be32(0x10000) + Zeros(12) + Be32(0x10000) + Zeros(12) + Be32(0x40000000);
  const Blob mvhd = Atom("mvhd", Be32(0x01000000) + Be64(1) + Be64(2) + Be32(24000) + Be64(0x123456789) +
                                     Be32(0x10000) + Be16(0x100) + Zeros(10) + matrix + Zeros(24) + Be32(9));
  const Blob tkhd =
      Atom("tkhd", Be32(0x0100000F) + Be64(1) + Be64(2) + Be32(7) + Be32(0) + Be64(0x123456789) + Zeros(8) +
                       Be16(0xFFFF) + Be16(3) + Be16(0x100) + Be16(0) + matrix + Be32(1) + Be32(2));
  const Blob mdhd = Atom(
      "mdhd", Be32(0x01000000) + Be64(1) + Be64(2) + Be32(90000) + Be64(0x9876543210) + Be16(5) + Be16(6));
  const Blob elst = Atom("elst", Be32(0x01000000) + Be32(2) + Be64(0x100000000) + Be64(~u64{0}) +
                                     Be32(0x10000) + Be64(5) + Be64(0x200000000) + Be32(0x8000));
  const Blob mdia = Atom("mdia", mdhd + Hdlr("mhlr", "vide", "v") + Atom("minf", ""));
  const MemoryFile file(Atom("moov", mvhd + Atom("trak", tkhd + Atom("edts", elst) + mdia)));
  const Movie movie = OpenMovie(file.descriptor, "test.mov");
  EXPECT_EQ(movie.header.duration, 0x123456789u);
  EXPECT_EQ(movie.header.nextTrackId, 9u);
  const Track& track = movie.tracks.at(0);
  EXPECT_EQ(track.header.id, 7u);
  EXPECT_EQ(track.header.duration, 0x123456789u);
  EXPECT_EQ(track.header.layer, -1);
  EXPECT_EQ(track.header.alternateGroup, 3);
  EXPECT_EQ(track.header.volume, 0x100);
  EXPECT_EQ(track.header.width, 1u);
  EXPECT_EQ(track.header.height, 2u);
  EXPECT_EQ(track.media.timescale, 90000u);
  EXPECT_EQ(track.media.duration, 0x9876543210u);
  EXPECT_EQ(track.media.language, 5);
  EXPECT_EQ(track.media.quality, 6);
  ASSERT_EQ(track.edits.size(), 2u);
  EXPECT_EQ(track.edits[0].duration, 0x100000000u);
  EXPECT_EQ(track.edits[0].mediaTime, -1);
  EXPECT_EQ(track.edits[1].mediaTime, 0x200000000);
  EXPECT_EQ(track.edits[1].rate, 0x8000u);
}

TEST(MovieReader, EmptyEditInVersionZeroIsMinusOne) {
  const Blob edts = Atom("edts", Table("elst", 1, Be32(10) + Be32(0xFFFFFFFF) + Be32(0x10000)));
  const Blob trak =
      Atom("trak", Tkhd(1, 1, 1, 1) + edts + Atom("mdia", Mdhd(1, 1) + Hdlr("mhlr", "vide", "")));
  const MemoryFile file(Atom("moov", Mvhd(1, 1) + trak));
  EXPECT_EQ(OpenMovie(file.descriptor, "test.mov").tracks.at(0).edits.at(0).mediaTime, -1);
}

TEST(MovieReader, FirstEnabledOfSeveralVideoTracksIsChosen) {
  const HandTables tables = ThreeFrameTables(kHandFrameOffset);
  const Blob sound = Atom("trak", Tkhd(4, 1, 0, 0) + Atom("mdia", Mdhd(1, 1) + Hdlr("mhlr", "soun", "")));
  const MemoryFile file(
      Ftyp() + Atom("mdat", kThreeFrames) +
      Atom("moov", Mvhd(24000, 3003) + sound + VideoTrak(tables, 1, 14) + VideoTrak(tables, 2, 15)));
  const Movie movie = OpenMovie(file.descriptor, "test.mov");
  EXPECT_EQ(VideoTracks(movie), (std::vector<std::size_t>{1, 2}));
  EXPECT_EQ(ChooseVideoTrack(movie), 2u);
}

TEST(MovieReader, DisabledVideoTrackIsChosenWhenThereIsNoOther) {
  const MemoryFile file(Ftyp() + Atom("mdat", kThreeFrames) +
                        Atom("moov", Mvhd(24000, 3003) + VideoTrak(ThreeFrameTables(28), 1, 0)));
  EXPECT_EQ(ChooseVideoTrack(OpenMovie(file.descriptor, "test.mov")), 0u);
}

TEST(MovieReader, ManyThreadsReadAtOnce) {
  const MemoryFile file(ThreeFrameMovie());
  const Movie movie = OpenMovie(file.descriptor, "test.mov");
  const auto video = ReadVideoTrack(movie, 0);
  std::vector<std::thread> threads;
  std::vector<int> wrong(4);
  for (std::size_t t = 0; t < wrong.size(); ++t) {
    threads.emplace_back([&, t] {
      std::vector<u8> frame;
      for (std::size_t i = 0; i < 300; ++i) {
        ReadSample(movie, video.samples[(i + t) % 3], frame);
        if (Blob(frame.begin(), frame.end()) != kFrames[(i + t) % 3]) ++wrong[t];
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(wrong, std::vector<int>(4));
}

TEST(MovieReader, SamplesBeyondFourGibibytes) {
  const u64 far = u64{5} << 30;
  HandTables tables = ThreeFrameTables(0);
  tables.stco = Table("co64", 1, Be64(far));
  const Blob moov = Atom("moov", Mvhd(24000, 3003) + VideoTrak(tables));
  const MemoryFile file(Ftyp() + moov + Be32(1) + "mdat" + Be64(far + 15 - 20 - moov.size()));
  ASSERT_EQ(pwrite(file.descriptor, kThreeFrames.data(), 15, static_cast<off_t>(far)), 15);
  const Movie movie = OpenMovie(file.descriptor, "test.mov");
  const auto video = ReadVideoTrack(movie, 0);
  std::vector<u8> frame;
  ReadSample(movie, video.samples.at(2), frame);
  EXPECT_EQ(Blob(frame.begin(), frame.end()), "CCCCCC");
}

}  // namespace
}  // namespace vorel::container
