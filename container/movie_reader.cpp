// From a file to its movie header and tracks. The header is read into memory whole; samples stay in the file.
#include "container/movie_reader.h"

#include <utility>

#include "container/media_atoms.h"

namespace vorel::container {

namespace {

constexpr u32 kFtyp = FourCharacterCode("ftyp"), kMoov = FourCharacterCode("moov"),
              kMoof = FourCharacterCode("moof");
constexpr u32 kMvhd = FourCharacterCode("mvhd"), kMvex = FourCharacterCode("mvex"),
              kCmov = FourCharacterCode("cmov");
constexpr u32 kRmra = FourCharacterCode("rmra"), kTrak = FourCharacterCode("trak"),
              kTkhd = FourCharacterCode("tkhd");
constexpr u32 kEdts = FourCharacterCode("edts"), kElst = FourCharacterCode("elst"),
              kMdhd = FourCharacterCode("mdhd");
constexpr u32 kHdlr = FourCharacterCode("hdlr");

constexpr char kRewrapAdvice[] = "rewrap it as an ordinary movie with the program that made it";

// What the outermost atoms of a file tell.
struct FileLayout {
  u32 brand = 0;
  AtomHeader header = {};  // of moov
  u64 headerOffset = 0;
  bool headerFound = false;
};

FileLayout ReadFileLayout(const InputFile& file) {
  FileLayout layout;
  u64 offset = 0;
  while (offset < file.bytes) {
    u8 first[16] = {};
    const u64 available = file.bytes - offset;
    ReadAt(file, offset, first,
           static_cast<std::size_t>(available < sizeof first ? available : sizeof first));
    // Zeros behind the last atom are padding.
    if (offset > 0 && available < 8 && LoadBig64(first) == 0) break;
    const std::string path = available < 8 ? "?" : CodeText(LoadBig32(first + 4));
    const std::string where = file.name + ": " + path + " at " + std::to_string(offset);
    const AtomHeader atom = ParseAtomHeader(first, available, where);
    if (atom.type == kMoof) {
      throw Problem{"the movie is split into fragments, which is not supported", where, kRewrapAdvice};
    }
    if (atom.type == kFtyp && offset == 0 && atom.totalBytes >= atom.headerBytes + 4) {
      ReadAt(file, atom.headerBytes, first, 4);
      layout.brand = LoadBig32(first);
    }
    if (atom.type == kMoov) {
      if (layout.headerFound) throw Problem{"the file has a second movie header", where, ""};
      if (atom.totalBytes > kMaxMovieHeaderBytes) {
        throw Problem{"the movie header says " + std::to_string(atom.totalBytes) + " bytes; " +
                          std::to_string(kMaxMovieHeaderBytes) + " are the most that are read",
                      where, ""};
      }
      layout.header = atom;
      layout.headerOffset = offset;
      layout.headerFound = true;
    }
    offset += atom.totalBytes;
  }
  if (!layout.headerFound) {
    throw Problem{"no movie header (moov) in " + std::to_string(file.bytes) + " bytes", file.name,
                  "the file is not a QuickTime movie, or its end is missing"};
  }
  return layout;
}

void RefuseOtherKinds(const std::vector<AtomView>& atoms) {
  for (const AtomView& atom : atoms) {
    if (atom.type == kCmov)
      throw Problem{"the movie header is compressed, which is not supported", WhereIs(atom), kRewrapAdvice};
    if (atom.type == kMvex) {
      throw Problem{"the movie is split into fragments, which is not supported", WhereIs(atom),
                    kRewrapAdvice};
    }
    if (atom.type == kRmra)
      throw Problem{"the movie only refers to other movies", WhereIs(atom), "open one of those instead"};
  }
}

Track ParseTrack(const AtomView& atom) {
  Track track = {};
  track.atom = atom;
  const std::vector<AtomView> atoms = ChildAtoms(atom);
  track.header = ParseTrackHeader(RequireAtom(atoms, kTkhd, atom));
  if (const AtomView* edits = FindAtom(atoms, kEdts, atom)) {
    const std::vector<AtomView> lists = ChildAtoms(*edits);
    if (const AtomView* list = FindAtom(lists, kElst, *edits)) track.edits = ParseEditList(*list);
  }
  const AtomView& media = RequireAtom(atoms, kMdia, atom);
  const std::vector<AtomView> mediaAtoms = ChildAtoms(media);
  track.media = ParseMediaHeader(RequireAtom(mediaAtoms, kMdhd, media));
  track.handler = ParseHandlerType(RequireAtom(mediaAtoms, kHdlr, media));
  track.firstFormat = FirstFormat(atom);
  return track;
}

Movie OpenMovie(std::shared_ptr<const InputFile> file) {
  Movie movie;
  const FileLayout layout = ReadFileLayout(*file);
  const u64 payloadBytes = layout.header.totalBytes - layout.header.headerBytes;
  auto bytes = std::make_shared<std::vector<u8>>(static_cast<std::size_t>(payloadBytes));
  ReadAt(*file, layout.headerOffset + layout.header.headerBytes, bytes->data(), bytes->size());
  movie.atom = {
      kMoov, layout.header.headerBytes, bytes->data(), payloadBytes, layout.headerOffset, "moov", file->name};
  movie.headerBytes = std::move(bytes);
  movie.brand = layout.brand;
  movie.file = std::move(file);
  const std::vector<AtomView> atoms = ChildAtoms(movie.atom);
  RefuseOtherKinds(atoms);
  movie.header = ParseMovieHeader(RequireAtom(atoms, kMvhd, movie.atom));
  for (const AtomView& atom : atoms) {
    if (atom.type == kTrak) movie.tracks.push_back(ParseTrack(atom));
  }
  return movie;
}

}  // namespace

Movie OpenMovie(const std::string& path) {
  return OpenMovie(OpenInputFile(path));
}

Movie OpenMovie(int descriptor, const std::string& name) {
  return OpenMovie(BorrowInputFile(descriptor, name));
}

std::vector<std::size_t> VideoTracks(const Movie& movie) {
  std::vector<std::size_t> tracks;
  for (std::size_t i = 0; i < movie.tracks.size(); ++i) {
    if (movie.tracks[i].handler == kVideoHandler) tracks.push_back(i);
  }
  return tracks;
}

std::size_t ChooseVideoTrack(const Movie& movie) {
  const std::vector<std::size_t> tracks = VideoTracks(movie);
  if (tracks.empty()) {
    throw Problem{"the movie has no video track among its " + std::to_string(movie.tracks.size()) + " tracks",
                  WhereIs(movie.atom), ""};
  }
  for (const std::size_t track : tracks) {
    if ((movie.tracks[track].header.flags & kTrackEnabled) != 0) return track;
  }
  return tracks.front();
}

VideoTrack ReadVideoTrack(const Movie& movie, std::size_t track) {
  const Track& chosen = movie.tracks.at(track);
  if (chosen.handler != kVideoHandler) {
    throw Problem{"the track is not video but " + CodeText(chosen.handler), WhereIs(chosen.atom), ""};
  }
  const MediaAtoms media = FindMediaAtoms(chosen.atom);
  const std::vector<AtomView> entries = DescriptionEntries(media);
  if (entries.empty()) ThrowDamaged(media.descriptions, "the track has no sample description");
  RequireOwnMedia(media, entries);
  VideoTrack video;
  video.track = track;
  video.timescale = chosen.media.timescale;
  for (const AtomView& entry : entries) video.descriptions.push_back(ParseSampleDescription(entry));
  video.samples = ReadSamples(media.table, static_cast<u32>(entries.size()), movie.file->bytes);
  video.rate = AverageRate(video.samples, video.timescale);
  return video;
}

FrameRate AverageRate(const std::vector<Sample>& samples, u32 timescale) {
  u64 duration = 0;
  for (const Sample& sample : samples) duration += sample.duration;
  return ReducedRate(u64{samples.size()} * timescale, duration);
}

void ReadSample(const Movie& movie, const Sample& sample, std::vector<u8>& bytes) {
  bytes.resize(sample.bytes);
  ReadSample(movie, sample, bytes.data());
}

void ReadSample(const Movie& movie, const Sample& sample, u8* to) {
  ReadAt(*movie.file, sample.offset, to, sample.bytes);
}

}  // namespace vorel::container
