// Opening clips.
#include "tool/clips.h"

#include <unistd.h>

#include <algorithm>
#include <filesystem>

#include "base/problem.h"
#include "component/component_table.h"
#include "picture_io/picture_file.h"
#include "picture_io/raw.h"
#include "picture_io/y4m.h"
#include "tool/clip_description.h"
#include "tool/colour_standard.h"
#include "tool/file_kinds.h"

namespace vorel::tool {

namespace {

container::Movie OpenMovieOnStdin(Descriptor& spooled) {
  constexpr const char* kName = "stdin";
  if (::isatty(STDIN_FILENO) == 1) throw UsageError{"stdin is a terminal: name a movie, or send one"};
  if (::lseek(STDIN_FILENO, 0, SEEK_CUR) >= 0) return container::OpenMovie(STDIN_FILENO, kName);
  spooled = OpenAnonymousFile();
  CopyAll(STDIN_FILENO, kName, spooled.value, "temporary file");
  return container::OpenMovie(spooled.value, kName);
}

void CheckCodec(const MovieClip& clip, u32 codec) {
  if (IsVorelCodec(codec)) return;
  throw Problem{"the video is of codec '" + container::CodeText(codec) + "', not VorelVideo", clip.name,
                "convert it to YUV4MPEG2 first, with a program that reads it"};
}

// A scan that the command line says. Interlaced pictures keep the order of their fields where it is known.
void ReplaceScan(picture_io::ScanOrder& scan, picture_io::ScanOrder said) {
  if (said == picture_io::ScanOrder::interlaced && IsInterlaced(scan)) return;
  scan = said;
}

picture_io::ByteInput OpenClipFile(const std::string& path) {
  std::error_code ignored;
  if (picture_io::LooksLikeSequence(path) && !std::filesystem::exists(path, ignored)) {
    throw Problem{"there is no such file, and its ending is that of no kind of sequence", path,
                  "sequences are read from .png, .tif, .tiff and .dpx files"};
  }
  return picture_io::OpenByteInput(path);
}

picture_io::PictureSource OpenRaw(const std::string& path, const SourceOptions& options) {
  picture_io::ClipFormat format;
  format.pixelFormat = *options.pixelFormat;
  format.width = options.width;
  format.height = options.height;
  format.scan = picture_io::ScanOrder::progressive;
  return OpenRawSource(OpenClipFile(path), format);
}

// A sequence, or one file as a clip of one picture. What doesn't say how it was scanned is progressive.
picture_io::PictureSource OpenPictureFiles(const std::string& path, const picture_io::PictureFileKind& kind,
                                           std::optional<u64> start) {
  picture_io::PictureSource source = OpenSequenceSource(
      kind, IsSequence(path) ? FindSequence(PatternOf(path), start) : picture_io::PictureFiles{path, {path}});
  if (source.format.scan == picture_io::ScanOrder::unknown)
    source.format.scan = picture_io::ScanOrder::progressive;
  return source;
}

// What there is of the first frame's header.
std::vector<u8> FirstHeader(const MovieClip& clip) {
  if (clip.video.samples.empty()) return {};
  const container::Sample& sample = clip.video.samples[0];
  std::vector<u8> header(std::min<u32>(sample.bytes, VOREL_FRAME_HEADER_BYTES));
  container::ReadAt(*clip.movie.file, sample.offset, header.data(), header.size());
  return header;
}

}  // namespace

picture_io::PictureSource OpenPictures(const std::string& path, const SourceOptions& options, u32 eightBits) {
  if (path == "-" && ::isatty(STDIN_FILENO) == 1) {
    throw UsageError{"stdin is a terminal: name a file, or send pictures"};
  }
  const picture_io::PictureFileKind* const kind = picture_io::FindPictureFileKind(path);
  if (kind != nullptr && options.pixelFormat) {
    throw UsageError{path + ": --pixel-format and --size are for raw pictures, a " + kind->name +
                     " file says itself what it holds"};
  }
  if (options.start && (kind == nullptr || !IsSequence(path)))
    throw UsageError{path + ": --start is for sequences, such as shot.%05d.png"};
  picture_io::PictureSource source = options.pixelFormat ? OpenRaw(path, options)
                                     : kind != nullptr   ? OpenPictureFiles(path, *kind, options.start)
                                                         : OpenY4mSource(OpenClipFile(path), eightBits);
  if (options.rate) source.format.rate = *options.rate;
  if (options.scan) ReplaceScan(source.format.scan, *options.scan);
  return source;
}

MovieClip OpenMovieClip(const std::string& path) {
  MovieClip clip;
  clip.name = path == "-" ? "stdin" : path;
  clip.movie = path == "-" ? OpenMovieOnStdin(clip.spooled) : container::OpenMovie(path);
  clip.video = container::ReadVideoTrack(clip.movie, container::ChooseVideoTrack(clip.movie));
  return clip;
}

u32 TagOfMovie(const MovieClip& clip) {
  const u32 tag = TagOfFrame(FirstHeader(clip));
  return FormatNameOfTag(tag).empty() ? TagOfDescription(clip.video.descriptions[0]) : tag;
}

u32 DecompressorOfMovie(const MovieClip& clip, const container::SampleDescription& description) {
  const std::vector<u8> header = FirstHeader(clip);
  const VorelFamily family = component::CompressorOf(description.cType).family;
  const bool isKnown = VorelSubtypeOfTag(TagOfFrame(header)) == description.cType &&
                       VorelHasFrameSignature(family, header.data(), header.size()) != 0;
  return isKnown ? description.cType : component::kGenericSubtype;
}

DecodedClip ClipToDecode(const MovieClip& clip, u32 pixelFormat) {
  if (clip.video.samples.empty()) throw Problem{"the video track has no frames", clip.name, ""};
  const container::SampleDescription& first = clip.video.descriptions[clip.video.samples[0].description];
  for (std::size_t i = 0; i < clip.video.samples.size(); ++i) {
    const container::SampleDescription& description =
        clip.video.descriptions[clip.video.samples[i].description];
    CheckCodec(clip, description.cType);
    if (description.width != first.width || description.height != first.height) {
      throw Problem{"pictures change their size from " + std::to_string(first.width) + " x " +
                        std::to_string(first.height) + " to " + std::to_string(description.width) + " x " +
                        std::to_string(description.height),
                    PlaceOfFrame(clip, i), "split the movie there"};
    }
  }
  picture_io::ClipFormat format = ClipOfDescription(first, clip.video.rate, pixelFormat);
  format.isOpaque = !TagHasAlpha(TagOfMovie(clip));
  const u32 largest = picture_io::kLargestSide;
  if (format.width == 0 || format.height == 0 || format.width > largest || format.height > largest) {
    throw Problem{"the picture size " + std::to_string(format.width) + " x " + std::to_string(format.height) +
                      " is not valid",
                  clip.name,
                  "sides are from 1 to " + std::to_string(largest) + " pixels; the movie is damaged"};
  }
  return {format, StandardOfDescription(first)};
}

container::SampleDescription DescriptionOfFrame(const MovieClip& clip, u64 frame) {
  container::SampleDescription description = clip.video.descriptions[clip.video.samples[frame].description];
  if (TagOfDescription(description) == 0) {
    std::vector<u8> tag(4);
    StoreLittle32(tag.data(), TagOfMovie(clip));
    SetExtension(description, {kFormatTagExtension, tag});
  }
  if (const auto colour = container::FindColour(description))
    SetExtension(description, container::MakeColour(*colour));
  return description;
}

std::string PlaceOfFrame(const MovieClip& clip, u64 frame) {
  return picture_io::FramePlace(clip.name, frame, clip.video.samples[frame].offset);
}

u64 LargestFrame(const MovieClip& clip) {
  u64 largest = 0;
  for (const container::Sample& sample : clip.video.samples) largest = std::max<u64>(largest, sample.bytes);
  return largest;
}

std::string UnkeptOfMovie(const MovieClip& clip) {
  const container::Track& track = clip.movie.tracks[clip.video.track];
  std::string unkept;
  const auto add = [&unkept](const std::string& text) { unkept += (unkept.empty() ? "" : ", ") + text; };
  const u32 duration = clip.video.samples.empty() ? 0 : clip.video.samples[0].duration;
  const bool isSteady =
      std::all_of(clip.video.samples.begin(), clip.video.samples.end(),
                  [duration](const container::Sample& sample) { return sample.duration == duration; });
  if (!isSteady) add("frames last unequally, the mean rate is given");
  if (track.edits.size() > 1 || (track.edits.size() == 1 && track.edits[0].mediaTime != 0)) {
    add("the edit list is not applied, all frames of the media are given");
  }
  if (clip.movie.tracks.size() > 1) {
    add("of " + std::to_string(clip.movie.tracks.size()) + " tracks only the video is given");
  }
  return unkept;
}

}  // namespace vorel::tool
