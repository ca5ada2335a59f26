// The file from front to back: ftyp, media data with room for either form of its size, movie header.
#include "container/movie_writer.h"

#include <algorithm>
#include <ctime>
#include <limits>
#include <utility>

#include "container/movie_header.h"

namespace vorel::container {

namespace {

constexpr u32 kMdat = FourCharacterCode("mdat"), kWide = FourCharacterCode("wide");
constexpr u32 kQuickTimeBrand = FourCharacterCode("qt  ");
constexpr u32 kBrandVersion = 0x20050300;  // year and month of the file format, as QuickTime writes it

constexpr u64 kChunkBytes = u64{1} << 20;  // a chunk that has this much is not continued
constexpr u64 kCopyBufferBytes = u64{4} << 20;
constexpr u64 kMediaHeaderBytes = 16;
constexpr u64 kLargest32 = std::numeric_limits<u32>::max();

}  // namespace

// The file, its contents, and where the next byte goes.
struct MovieState {
  OutputFile file;
  MovieSettings settings;
  MovieContents contents;
  u64 mediaHeader = 0;  // offset of the 16 bytes before the media data
  u64 end = 0;          // where the next byte goes
  u64 chunkBytes = 0;   // of the chunk under way
  u64 chunkTime = 0;    // its duration
  bool finished = false;
};

namespace {

void StartFile(MovieState& state) {
  const TimeBase time = state.settings.time;
  if (time.timescale == 0 || time.frameDuration == 0) {
    throw Problem{"a movie needs a timescale and a frame duration above zero", state.file.name, ""};
  }
  state.contents.timescale = time.timescale;
  state.contents.creationTime = state.settings.creationTime.value_or(MovieTimeOfUnixTime(std::time(nullptr)));
  Bytes bytes;
  const std::size_t type = OpenAtom(bytes, FourCharacterCode("ftyp"));
  Put32(bytes, kQuickTimeBrand);
  Put32(bytes, kBrandVersion);
  Put32(bytes, kQuickTimeBrand);
  CloseAtom(bytes, type);
  state.mediaHeader = bytes.size();
  PutZeros(bytes, kMediaHeaderBytes);
  WriteAt(state.file, 0, bytes.data(), bytes.size());
  state.end = std::max<u64>(bytes.size(), state.settings.mediaOffset);
}

// Media data up to 4 GiB keep a 32-bit size behind a wide atom, which makes room for the 64-bit form.
void WriteMediaHeader(MovieState& state) {
  const u64 total = state.end - state.mediaHeader;
  Bytes bytes;
  if (total - 8 <= kLargest32) {
    CloseAtom(bytes, OpenAtom(bytes, kWide));
    Put32(bytes, static_cast<u32>(total - 8));
    Put32(bytes, kMdat);
  } else {
    Put32(bytes, 1);
    Put32(bytes, kMdat);
    Put64(bytes, total);
  }
  WriteAt(state.file, state.mediaHeader, bytes.data(), bytes.size());
}

void CopyChunk(MovieState& state, CopiedTrack& copy) {
  const Chunk& chunk = copy.chunks[copy.offsets.size()];
  std::vector<u8> buffer(static_cast<std::size_t>(std::min(chunk.bytes, kCopyBufferBytes)));
  copy.offsets.push_back(state.end);
  for (u64 done = 0; done < chunk.bytes;) {
    const u64 step = std::min<u64>(buffer.size(), chunk.bytes - done);
    ReadAt(*copy.movie.file, chunk.offset + done, buffer.data(), static_cast<std::size_t>(step));
    WriteAt(state.file, state.end, buffer.data(), step);
    state.end += step;
    done += step;
  }
}

// Stores the chunks of all copied tracks that begin no later than the video has got to.
void CopyChunksUpTo(MovieState& state, u64 videoTime) {
  for (CopiedTrack& copy : state.contents.copies) {
    const u32 timescale = copy.movie.tracks[copy.track].media.timescale;
    while (copy.offsets.size() < copy.chunks.size()) {
      const u64 start = copy.chunks[copy.offsets.size()].start;
      if (RescaleTime(start, timescale, state.contents.timescale) > videoTime) break;
      CopyChunk(state, copy);
    }
  }
}

// A chunk ends at about 1 MB or one second, where the description changes, and where copied data lie in
// between.
void ContinueOrStartChunk(MovieState& state, u32 description) {
  FrameTable& frames = state.contents.frames;
  const bool full = state.chunkBytes >= kChunkBytes || state.chunkTime >= state.contents.timescale;
  if (!frames.chunks.empty() && !full && frames.chunks.back().description == description) return;
  CopyChunksUpTo(state, frames.duration);
  frames.chunks.push_back({state.end, 0, description});
  state.chunkBytes = 0;
  state.chunkTime = 0;
}

void RequireUnfinished(const MovieState& state) {
  if (state.finished)
    throw Problem{"the movie is finished already; nothing can be added", state.file.name, ""};
}

}  // namespace

MovieWriter::MovieWriter(const std::string& path, const MovieSettings& settings)
    : state(std::make_unique<MovieState>()) {
  state->settings = settings;
  CreateOutputFile(state->file, path, settings.overwrite);
  StartFile(*state);
}

MovieWriter::MovieWriter(int descriptor, const std::string& name, const MovieSettings& settings)
    : state(std::make_unique<MovieState>()) {
  state->settings = settings;
  BorrowOutputFile(state->file, descriptor, name);
  StartFile(*state);
}

MovieWriter::~MovieWriter() = default;

u32 MovieWriter::AddDescription(const SampleDescription& description) {
  RequireUnfinished(*state);
  std::vector<SampleDescription>& known = state->contents.frames.descriptions;
  SampleDescription added = description;
  added.dataRefIndex = 1;  // the only reference there is: this file
  const auto found = std::find(known.begin(), known.end(), added);
  const auto index = static_cast<u32>(found - known.begin());
  if (found == known.end()) known.push_back(std::move(added));
  return index;
}

void MovieWriter::AppendFrame(const u8* bytes, std::size_t count, u32 description) {
  AppendFrame(bytes, count, description, state->settings.time.frameDuration);
}

void MovieWriter::AppendFrame(const u8* bytes, std::size_t count, u32 description, u32 duration) {
  RequireUnfinished(*state);
  FrameTable& frames = state->contents.frames;
  if (description >= frames.descriptions.size()) {
    throw Problem{"frame " + std::to_string(frames.sizes.size()) + " has no sample description",
                  state->file.name, ""};
  }
  if (count > kLargest32 || frames.sizes.size() == kMaxListedSamples) {
    throw Problem{
        "frame " + std::to_string(frames.sizes.size()) + " is too large, or one too many for a movie",
        state->file.name, ""};
  }
  ContinueOrStartChunk(*state, description);
  WriteAt(state->file, state->end, bytes, count);
  state->end += count;
  state->chunkBytes += count;
  state->chunkTime += duration;
  ++frames.chunks.back().frames;
  frames.sizes.push_back(static_cast<u32>(count));
  frames.duration += duration;
  if (frames.durations.empty() || frames.durations.back().duration != duration)
    frames.durations.push_back({0, duration});
  ++frames.durations.back().frames;
}

void MovieWriter::CopyTrack(const Movie& movie, std::size_t track) {
  RequireUnfinished(*state);
  MovieContents& contents = state->contents;
  const u32 id = kVideoTrackId + 1 + static_cast<u32>(contents.copies.size());
  contents.copies.push_back(OpenTrackCopy(movie, track, id));
  contents.ids[{movie.file.get(), movie.tracks[track].header.id}] = id;
}

void MovieWriter::StandFor(const Movie& movie, std::size_t track) {
  RequireUnfinished(*state);
  const u32 replacedId = movie.tracks.at(track).header.id;
  Bytes discarded;
  PutReferences(discarded, movie, track, {});  // what is wrong with them is told now
  state->contents.replaced = ReplacedTrack{movie, track};
  state->contents.ids[{movie.file.get(), replacedId}] = kVideoTrackId;
}

void MovieWriter::CopyMovieData(const Movie& movie) {
  RequireUnfinished(*state);
  constexpr u32 kUdta = FourCharacterCode("udta"), kMeta = FourCharacterCode("meta");
  constexpr u8 kPlaces[] = {'i', 'l', 'o', 'c'};  // metadata that name places in the file, which change
  for (const AtomView& atom : ChildAtoms(movie.atom)) {
    if (atom.type != kUdta && atom.type != kMeta) continue;
    const u8* end = atom.payload + atom.payloadBytes;
    if (std::search(atom.payload, end, std::begin(kPlaces), std::end(kPlaces)) != end) continue;
    PutAtom(state->contents.movieData, atom.type, atom.payload, static_cast<std::size_t>(atom.payloadBytes));
  }
}

void MovieWriter::Finish() {
  RequireUnfinished(*state);
  if (state->contents.frames.descriptions.empty()) {
    throw Problem{"a movie needs at least one sample description", state->file.name, ""};
  }
  CopyChunksUpTo(*state, std::numeric_limits<u64>::max());
  WriteMediaHeader(*state);
  const Bytes header = SerializeMovie(state->contents);
  WriteAt(state->file, state->end, header.data(), header.size());
  state->end += header.size();
  PublishOutputFile(state->file);
  state->finished = true;
}

const std::string& MovieWriter::TemporaryPath() const {
  return state->file.temporaryPath;
}

u64 MovieWriter::Frames() const {
  return state->contents.frames.sizes.size();
}

u64 MovieWriter::FileBytes() const {
  return state->end;
}

}  // namespace vorel::container
