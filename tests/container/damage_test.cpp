// A small movie damaged in every place: whatever comes out is a movie or a problem, never anything else; and
// the problem names the place.
#include <gtest/gtest.h>

#include "container/movie_reader.h"
#include "tests/container/hand_movie.h"

namespace vorel::container {
namespace {

// Opens, lists and reads everything; returns the problem's place, or "" when there is none.
std::string PlaceOfDamage(const Blob& bytes) {
  const MemoryFile file(bytes);
  try {
    const Movie movie = OpenMovie(file.descriptor, "a.mov");
    const auto video = ReadVideoTrack(movie, ChooseVideoTrack(movie));
    std::vector<u8> frame;
    for (const Sample& sample : video.samples) ReadSample(movie, sample, frame);
  } catch (const Problem& problem) {
    EXPECT_FALSE(problem.what.empty());
    return problem.where;
  }
  return "";
}

Blob DamageSubject() {
  HandTables tables = ThreeFrameTables(kHandFrameOffset);
  const Blob extensions = Atom("Kesp", "abcd") + Atom("fiel", "\x02\x09");
  tables.stsd = Table("stsd", 1, ImageDescription("Vrl4", 640, 360, extensions));
  tables.more = Table("stss", 1, Be32(1));
  return ThreeFrameMovie(tables);
}

TEST(Damage, SubjectIsSound) {
  EXPECT_EQ(PlaceOfDamage(DamageSubject()), "");
}

TEST(Damage, CutOffAnywhereIsReported) {
  const Blob whole = DamageSubject();
  for (std::size_t length = 0; length < whole.size(); ++length) {
    const std::string place = PlaceOfDamage(whole.substr(0, length));
    EXPECT_EQ(place.rfind("a.mov", 0), 0u) << length << " " << place;
  }
}

TEST(Damage, CutOffHeaderNamesTheHeaderAndItsOffset) {
  const Blob whole = DamageSubject();
  EXPECT_EQ(PlaceOfDamage(whole.substr(0, whole.size() - 1)), "a.mov: moov at 43");
  EXPECT_EQ(PlaceOfDamage(whole.substr(0, 42)), "a.mov: mdat at 20");
  EXPECT_EQ(PlaceOfDamage(whole.substr(0, 47)), "a.mov: ? at 43");
}

TEST(Damage, CutOffMediaBehindTheHeaderAreReported) {
  const std::size_t moovBytes = Atom("moov", Mvhd(24000, 3003) + VideoTrak(ThreeFrameTables(0))).size();
  const Blob moov =
      Atom("moov", Mvhd(24000, 3003) + VideoTrak(ThreeFrameTables(static_cast<u32>(moovBytes + 8))));
  const Blob whole = moov + OpenAtomToEnd("mdat", kThreeFrames);
  EXPECT_EQ(PlaceOfDamage(whole), "");
  const std::string place = PlaceOfDamage(whole.substr(0, whole.size() - 1));
  EXPECT_EQ(place, "a.mov: moov/trak/mdia/minf/stbl/stco at " + std::to_string(moovBytes - 20));
}

TEST(Damage, EveryByteFlippedEveryWay) {
  const Blob whole = DamageSubject();
  int opened = 0;
  int refused = 0;
  for (std::size_t at = 0; at < whole.size(); ++at) {
    for (const int flip : {0x01, 0x80, 0xFF}) {
      Blob bytes = whole;
      bytes[at] = static_cast<char>(bytes[at] ^ flip);
      ++(PlaceOfDamage(bytes).empty() ? opened : refused);
    }
  }
  // Both must happen: most bytes carry values, lengths and counts carry structure.
  EXPECT_GT(opened, 500);
  EXPECT_GT(refused, 300);
}

TEST(Damage, FlippedLengthNamesItsAtom) {
  struct Case {
    const char* type;
    const char* path;
  };
  const Blob whole = DamageSubject();
  for (const Case& atom :
       {Case{"trak", "moov/trak"}, Case{"tkhd", "moov/trak/tkhd"}, Case{"mdia", "moov/trak/mdia"},
        Case{"stbl", "moov/trak/mdia/minf/stbl"}, Case{"stco", "moov/trak/mdia/minf/stbl/stco"},
        Case{"Kesp", "moov/trak/mdia/minf/stbl/stsd/Vrl4/Kesp"}}) {
    const std::size_t offset = whole.find(atom.type) - 4;
    Blob bytes = whole;
    bytes.replace(offset, 4, Be32(0x7FFFFFFF));
    EXPECT_EQ(PlaceOfDamage(bytes), std::string("a.mov: ") + atom.path + " at " + std::to_string(offset));
    bytes.replace(offset, 4, Be32(3));
    EXPECT_EQ(PlaceOfDamage(bytes), std::string("a.mov: ") + atom.path + " at " + std::to_string(offset));
  }
}

TEST(Damage, MissingAtomNamesItsParent) {
  struct Case {
    const char* type;
    const char* parent;
    const char* path;
  };
  const Blob whole = DamageSubject();
  for (const Case& atom :
       {Case{"mvhd", "moov", "moov"}, Case{"tkhd", "trak", "moov/trak"}, Case{"mdia", "trak", "moov/trak"},
        Case{"mdhd", "mdia", "moov/trak/mdia"}, Case{"stsd", "stbl", "moov/trak/mdia/minf/stbl"},
        Case{"dinf", "minf", "moov/trak/mdia/minf"}, Case{"dref", "dinf", "moov/trak/mdia/minf/dinf"}}) {
    Blob bytes = whole;
    bytes.replace(whole.find(atom.type), 4, "free");
    EXPECT_EQ(PlaceOfDamage(bytes),
              std::string("a.mov: ") + atom.path + " at " + std::to_string(whole.find(atom.parent) - 4));
  }
}

TEST(Damage, ZeroTimescalesAreRefused) {
  Blob bytes = DamageSubject();
  bytes.replace(bytes.find("mvhd") + 16, 4, Be32(0));
  EXPECT_EQ(PlaceOfDamage(bytes), "a.mov: moov/mvhd at 51");
  bytes = DamageSubject();
  const std::size_t mdhd = bytes.find("mdhd");
  bytes.replace(mdhd + 16, 4, Be32(0));
  EXPECT_EQ(PlaceOfDamage(bytes), "a.mov: moov/trak/mdia/mdhd at " + std::to_string(mdhd - 4));
}

TEST(Damage, WrongCountOfDescriptionsIsRefused) {
  Blob bytes = DamageSubject();
  const std::size_t stsd = bytes.find("stsd");
  bytes.replace(stsd + 8, 4, Be32(2));
  EXPECT_EQ(PlaceOfDamage(bytes), "a.mov: moov/trak/mdia/minf/stbl/stsd at " + std::to_string(stsd - 4));
}

}  // namespace
}  // namespace vorel::container
