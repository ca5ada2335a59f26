// The movie header: mvhd, the video track, the copied tracks.
#include "container/movie_header.h"

#include <algorithm>
#include <limits>

#include "container/media_atoms.h"

namespace vorel::container {

namespace {

// Above, 32-bit durations would end too soon: 71 minutes at a million units per second.
constexpr u32 kLargestCommonTimescale = 1'000'000;
constexpr u32 kNormalRate = 0x10000;
constexpr u16 kCopyWithDither = 0x40;  // the customary transfer mode of video
constexpr u16 kHalfGrey = 0x8000;

void PutHandler(Bytes& bytes, const char (&kind)[5], const char (&type)[5], const std::string& name) {
  const std::size_t start = OpenFullAtom(bytes, FourCharacterCode("hdlr"), 0, 0);
  Put32(bytes, FourCharacterCode(kind));
  Put32(bytes, FourCharacterCode(type));
  PutZeros(bytes, 12);  // manufacturer, flags, mask
  PutPascalString(bytes, name);
  CloseAtom(bytes, start);
}

void PutVideoMediaHeader(Bytes& bytes) {
  const std::size_t start = OpenFullAtom(bytes, FourCharacterCode("vmhd"), 0, 1);
  Put16(bytes, kCopyWithDither);
  for (int channel = 0; channel < 3; ++channel) Put16(bytes, kHalfGrey);
  CloseAtom(bytes, start);
}

// One reference, to this file itself.
void PutDataInformation(Bytes& bytes) {
  const std::size_t information = OpenAtom(bytes, kDinf);
  const std::size_t references = OpenFullAtom(bytes, kDref, 0, 0);
  Put32(bytes, 1);
  CloseAtom(bytes, OpenFullAtom(bytes, FourCharacterCode("alis"), 0, 1));
  CloseAtom(bytes, references);
  CloseAtom(bytes, information);
}

void PutDurations(Bytes& bytes, const FrameTable& frames) {
  const std::size_t start = OpenFullAtom(bytes, FourCharacterCode("stts"), 0, 0);
  Put32(bytes, static_cast<u32>(frames.durations.size()));
  for (const DurationRun& run : frames.durations) {
    Put32(bytes, run.frames);
    Put32(bytes, run.duration);
  }
  CloseAtom(bytes, start);
}

// An entry for each chunk that differs from the one before.
void PutChunkRuns(Bytes& bytes, const FrameTable& frames) {
  const std::size_t start = OpenFullAtom(bytes, FourCharacterCode("stsc"), 0, 0);
  const std::size_t countAt = bytes.size();
  Put32(bytes, 0);
  u32 entries = 0;
  for (std::size_t i = 0; i < frames.chunks.size(); ++i) {
    const FrameChunk& chunk = frames.chunks[i];
    if (i > 0 && chunk.frames == frames.chunks[i - 1].frames &&
        chunk.description == frames.chunks[i - 1].description) {
      continue;
    }
    Put32(bytes, static_cast<u32>(i + 1));
    Put32(bytes, chunk.frames);
    Put32(bytes, chunk.description + 1);
    ++entries;
  }
  StoreBig32(bytes.data() + countAt, entries);
  CloseAtom(bytes, start);
}

void PutSizes(Bytes& bytes, const FrameTable& frames) {
  const std::vector<u32>& sizes = frames.sizes;
  const bool equal = std::all_of(sizes.begin(), sizes.end(), [&](u32 size) { return size == sizes.front(); });
  const std::size_t start = OpenFullAtom(bytes, FourCharacterCode("stsz"), 0, 0);
  const u32 constant = !sizes.empty() && equal ? sizes.front() : 0;
  Put32(bytes, constant);
  Put32(bytes, static_cast<u32>(sizes.size()));
  if (constant == 0) {
    for (const u32 size : sizes) Put32(bytes, size);
  }
  CloseAtom(bytes, start);
}

void PutSampleTable(Bytes& bytes, const FrameTable& frames) {
  const std::size_t table = OpenAtom(bytes, kStbl);
  const std::size_t descriptions = OpenFullAtom(bytes, kStsd, 0, 0);
  Put32(bytes, static_cast<u32>(frames.descriptions.size()));
  for (const SampleDescription& description : frames.descriptions) {
    PutBytes(bytes, SerializeSampleDescription(description));
  }
  CloseAtom(bytes, descriptions);
  PutDurations(bytes, frames);
  PutChunkRuns(bytes, frames);
  PutSizes(bytes, frames);
  std::vector<u64> offsets;
  for (const FrameChunk& chunk : frames.chunks) offsets.push_back(chunk.offset);
  PutChunkOffsets(bytes, offsets);
  CloseAtom(bytes, table);
}

// A track is shown as wide as its pixels are at its height.
u32 ShownWidth(const SampleDescription& description) {
  const PixelAspect aspect = FindPixelAspect(description).value_or(PixelAspect{1, 1});
  const u64 width = RescaleTime(u64{description.width} << 16, aspect.vertical, aspect.horizontal);
  return static_cast<u32>(std::min<u64>(width, std::numeric_limits<u32>::max()));
}

std::vector<Edit> VideoEdits(const MovieContents& contents, u32 movieTimescale) {
  if (contents.replaced) {
    const Track& source = contents.replaced->movie.tracks[contents.replaced->track];
    std::vector<Edit> edits =
        RescaledEdits(contents.replaced->movie, contents.replaced->track, movieTimescale);
    for (Edit& edit : edits) {
      if (edit.mediaTime <= 0) continue;
      const u64 time =
          RescaleTime(static_cast<u64>(edit.mediaTime), source.media.timescale, contents.timescale);
      edit.mediaTime = static_cast<i64>(std::min<u64>(time, std::numeric_limits<i64>::max()));
    }
    if (!edits.empty()) return edits;
  }
  return {{RescaleTime(contents.frames.duration, contents.timescale, movieTimescale), 0, kNormalRate}};
}

u64 VideoDuration(const MovieContents& contents, u32 movieTimescale) {
  u64 duration = 0;
  for (const Edit& edit : VideoEdits(contents, movieTimescale)) {
    if (__builtin_add_overflow(duration, edit.duration, &duration)) return std::numeric_limits<u64>::max();
  }
  return duration;
}

void PutVideoTrack(Bytes& bytes, const MovieContents& contents, u32 movieTimescale) {
  const FrameTable& frames = contents.frames;
  const SampleDescription& description = frames.descriptions.front();
  TrackHeader header;
  MediaHeader media;
  header.creationTime = header.modificationTime = contents.creationTime;
  media.creationTime = media.modificationTime = contents.creationTime;
  header.id = kVideoTrackId;
  header.duration = VideoDuration(contents, movieTimescale);
  header.width = ShownWidth(description);
  header.height = u32{description.height} << 16;
  media.timescale = contents.timescale;
  media.duration = frames.duration;
  if (contents.replaced) {
    const Track& source = contents.replaced->movie.tracks[contents.replaced->track];
    header.layer = source.header.layer;
    header.alternateGroup = source.header.alternateGroup;
    header.matrix = source.header.matrix;
    media.language = source.media.language;
  }
  const std::size_t track = OpenAtom(bytes, FourCharacterCode("trak"));
  PutBytes(bytes, SerializeTrackHeader(header));
  const std::size_t edits = OpenAtom(bytes, FourCharacterCode("edts"));
  PutBytes(bytes, SerializeEditList(VideoEdits(contents, movieTimescale)));
  CloseAtom(bytes, edits);
  if (contents.replaced)
    PutReferences(bytes, contents.replaced->movie, contents.replaced->track, contents.ids);
  const std::size_t mediaStart = OpenAtom(bytes, kMdia);
  PutBytes(bytes, SerializeMediaHeader(media));
  PutHandler(bytes, "mhlr", "vide", "Video Media Handler");
  const std::size_t information = OpenAtom(bytes, kMinf);
  PutVideoMediaHeader(bytes);
  PutHandler(bytes, "dhlr", "alis", "Alias Data Handler");
  PutDataInformation(bytes);
  PutSampleTable(bytes, frames);
  CloseAtom(bytes, information);
  CloseAtom(bytes, mediaStart);
  CloseAtom(bytes, track);
}

}  // namespace

u32 MovieTimescale(const MovieContents& contents) {
  u32 scale = contents.timescale;
  const auto join = [&scale](const Movie& movie, std::size_t track) {
    scale = CommonTimescale(scale, movie.tracks[track].media.timescale, kLargestCommonTimescale);
    scale = CommonTimescale(scale, movie.header.timescale, kLargestCommonTimescale);
  };
  for (const CopiedTrack& copy : contents.copies) join(copy.movie, copy.track);
  if (contents.replaced) join(contents.replaced->movie, contents.replaced->track);
  return scale;
}

Bytes SerializeMovie(const MovieContents& contents) {
  const u32 timescale = MovieTimescale(contents);
  MovieHeader header;
  header.creationTime = header.modificationTime = contents.creationTime;
  header.timescale = timescale;
  header.duration = VideoDuration(contents, timescale);
  header.nextTrackId = kVideoTrackId + 1;
  for (const CopiedTrack& copy : contents.copies) {
    header.duration = std::max(header.duration, CopiedDuration(copy.movie, copy.track, timescale));
    header.nextTrackId = std::max(header.nextTrackId, copy.id + 1);
  }
  Bytes bytes;
  const std::size_t start = OpenAtom(bytes, FourCharacterCode("moov"));
  PutBytes(bytes, SerializeMovieHeader(header));
  PutVideoTrack(bytes, contents, timescale);
  for (const CopiedTrack& copy : contents.copies) PutCopiedTrack(bytes, copy, timescale, contents.ids);
  PutBytes(bytes, contents.movieData);
  CloseAtom(bytes, start);
  return bytes;
}

}  // namespace vorel::container
