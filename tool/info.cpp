// vorel info: what a movie says of itself, for people or as JSON.
#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <nlohmann/json.hpp>

#include "tool/clip_description.h"
#include "tool/clips.h"
#include "tool/colour_standard.h"
#include "tool/commands.h"
#include "tool/frame_coder.h"

namespace vorel::tool {

namespace {

using Json = nlohmann::ordered_json;
using container::CodeText;

// What the samples of the video track come to.
struct FrameSizes {
  u64 total = 0;
  u64 smallest = 0;
  u64 mean = 0;
  u64 largest = 0;
  u64 pictureBytes = 0;  // all frames without coding; 0 if their format is unknown
};

FrameSizes MeasureFrames(const MovieClip& clip, u32 tag) {
  const std::vector<container::Sample>& samples = clip.video.samples;
  const container::SampleDescription& description = clip.video.descriptions[0];
  FrameSizes sizes;
  if (samples.empty()) return sizes;
  sizes.smallest = samples[0].bytes;
  for (const container::Sample& sample : samples) {
    sizes.total += sample.bytes;
    sizes.smallest = std::min<u64>(sizes.smallest, sample.bytes);
    sizes.largest = std::max<u64>(sizes.largest, sample.bytes);
  }
  sizes.mean = sizes.total / samples.size();
  sizes.pictureBytes = u64{description.width} * description.height * PixelBitsOfTag(tag) / 8 * samples.size();
  return sizes;
}

const char* ScanText(picture_io::ScanOrder scan) {
  switch (scan) {
    case picture_io::ScanOrder::progressive:
      return "progressive";
    case picture_io::ScanOrder::topFirst:
      return "interlaced, top field first";
    case picture_io::ScanOrder::bottomFirst:
      return "interlaced, bottom field first";
    case picture_io::ScanOrder::interlaced:
      return "interlaced";
    default:
      return "unknown";
  }
}

std::string AspectText(picture_io::Ratio aspect) {
  if (!IsKnown(aspect)) return "unknown";
  return std::to_string(aspect.numerator) + ":" + std::to_string(aspect.denominator);
}

std::string HexText(const std::vector<u8>& bytes) {
  constexpr char kDigits[] = "0123456789abcdef";
  std::string text;
  for (const u8 byte : bytes) text += {kDigits[byte >> 4], kDigits[byte & 15]};
  return text;
}

double Seconds(u64 time, u32 timescale) {
  return timescale == 0 ? 0 : static_cast<double>(time) / timescale;
}

Json DescriptionAsJson(const container::SampleDescription& description) {
  Json extensions = Json::array();
  for (const container::Extension& extension : description.extensions) {
    extensions.push_back({{"type", CodeText(extension.type)}, {"bytes", HexText(extension.bytes)}});
  }
  return {{"codec", CodeText(description.cType)},
          {"name", description.name},
          {"version", description.version},
          {"revision", description.revisionLevel},
          {"vendor", CodeText(description.vendor)},
          {"temporalQuality", description.temporalQuality},
          {"spatialQuality", description.spatialQuality},
          {"width", description.width},
          {"height", description.height},
          {"horizontalResolution", description.hRes / 65536.0},
          {"verticalResolution", description.vRes / 65536.0},
          {"dataSize", description.dataSize},
          {"frameCount", description.frameCount},
          {"depth", description.depth},
          {"clutID", description.clutID},
          {"extensions", std::move(extensions)}};
}

Json VideoAsJson(const MovieClip& clip) {
  const container::SampleDescription& description = clip.video.descriptions[0];
  const picture_io::ClipFormat format = ClipOfDescription(description, clip.video.rate, 0);
  const std::string standard = StandardName(description);
  const u32 tag = TagOfMovie(clip);
  const FrameSizes sizes = MeasureFrames(clip, tag);
  Json descriptions = Json::array();
  for (const container::SampleDescription& one : clip.video.descriptions)
    descriptions.push_back(DescriptionAsJson(one));
  Json video = {{"track", clip.movie.tracks[clip.video.track].header.id},
                {"width", format.width},
                {"height", format.height},
                {"scan", ScanText(format.scan)},
                {"pixelAspect", AspectText(format.aspect)},
                {"colourStandard", standard.empty() ? Json() : Json(standard)},
                {"tag", tag == 0 ? Json() : Json(TagText(tag))},
                {"format", tag == 0 ? Json() : Json(FormatNameOfTag(tag))},
                {"frames", clip.video.samples.size()},
                {"rate", picture_io::RateText(format.rate)},
                {"timescale", clip.video.timescale}};
  video["frameBytes"] = {
      {"total", sizes.total}, {"smallest", sizes.smallest}, {"mean", sizes.mean}, {"largest", sizes.largest}};
  const bool hasRatio = sizes.pictureBytes > 0 && sizes.total > 0;
  video["ratio"] =
      hasRatio ? Json(static_cast<double>(sizes.pictureBytes) / static_cast<double>(sizes.total)) : Json();
  video["descriptions"] = std::move(descriptions);
  return video;
}

Json MovieAsJson(const MovieClip& clip) {
  const container::Movie& movie = clip.movie;
  Json tracks = Json::array();
  for (const container::Track& track : movie.tracks) {
    tracks.push_back({{"id", track.header.id},
                      {"kind", CodeText(track.handler)},
                      {"codec", track.firstFormat == 0 ? Json() : Json(CodeText(track.firstFormat))},
                      {"enabled", (track.header.flags & container::kTrackEnabled) != 0},
                      {"seconds", Seconds(track.header.duration, movie.header.timescale)}});
  }
  return {{"file", clip.name},
          {"bytes", movie.file->bytes},
          {"brand", movie.brand == 0 ? Json() : Json(CodeText(movie.brand))},
          {"timescale", movie.header.timescale},
          {"duration", movie.header.duration},
          {"seconds", Seconds(movie.header.duration, movie.header.timescale)},
          {"tracks", std::move(tracks)},
          {"video", VideoAsJson(clip)}};
}

// A value as it may be shown: names come from the file and may hold anything.
std::string Text(const Json& value) {
  if (!value.is_string()) return value.dump();
  std::string text = value.get<std::string>();
  for (char& character : text) {
    if (static_cast<u8>(character) < ' ' || character == '\x7F') character = '.';
  }
  return text;
}

void PrintDescription(const Json& description) {
  std::printf("  description %s '%s', version %s, revision %s, vendor '%s'\n",
              Text(description["name"]).c_str(), Text(description["codec"]).c_str(),
              Text(description["version"]).c_str(), Text(description["revision"]).c_str(),
              Text(description["vendor"]).c_str());
  std::printf("              depth %s, quality %s spatial %s temporal, %s x %s dpi, data size %s, clut %s\n",
              Text(description["depth"]).c_str(), Text(description["spatialQuality"]).c_str(),
              Text(description["temporalQuality"]).c_str(), Text(description["horizontalResolution"]).c_str(),
              Text(description["verticalResolution"]).c_str(), Text(description["dataSize"]).c_str(),
              Text(description["clutID"]).c_str());
  for (const Json& extension : description["extensions"]) {
    std::printf("  extension   '%s' %s\n", Text(extension["type"]).c_str(), Text(extension["bytes"]).c_str());
  }
}

void PrintMovie(const Json& movie) {
  const Json& video = movie["video"];
  const Json& bytes = video["frameBytes"];
  std::printf("%s\n", Text(movie["file"]).c_str());
  std::printf("  movie       %s, brand '%s', %.3f s, timescale %s\n",
              SizeText(movie["bytes"].get<u64>()).c_str(), Text(movie["brand"]).c_str(),
              movie["seconds"].get<double>(), Text(movie["timescale"]).c_str());
  for (const Json& track : movie["tracks"]) {
    std::printf("  track %-5s '%s', codec '%s', %.3f s%s\n", Text(track["id"]).c_str(),
                Text(track["kind"]).c_str(), Text(track["codec"]).c_str(), track["seconds"].get<double>(),
                track["enabled"].get<bool>() ? "" : ", disabled");
  }
  std::printf("  video       track %s, %s x %s, %s frames, %s frames/s\n", Text(video["track"]).c_str(),
              Text(video["width"]).c_str(), Text(video["height"]).c_str(), Text(video["frames"]).c_str(),
              Text(video["rate"]).c_str());
  std::printf("              scan %s, pixel aspect %s, colour standard %s\n", Text(video["scan"]).c_str(),
              Text(video["pixelAspect"]).c_str(),
              video["colourStandard"].is_null() ? "not said" : Text(video["colourStandard"]).c_str());
  std::printf("  format      %s, tag '%s'\n", Text(video["format"]).c_str(), Text(video["tag"]).c_str());
  for (const Json& description : video["descriptions"]) PrintDescription(description);
  std::printf("  frame bytes %s smallest, %s mean, %s largest\n", Text(bytes["smallest"]).c_str(),
              Text(bytes["mean"]).c_str(), Text(bytes["largest"]).c_str());
  if (video["ratio"].is_number()) std::printf("  ratio       %.2f:1\n", video["ratio"].get<double>());
}

}  // namespace

bool RunInfo(const InfoOptions& options, Console& console) {
  std::vector<Json> movies;
  const bool isGood = ForEachInput(options.inputs, console, [&](std::size_t index) {
    movies.push_back(MovieAsJson(OpenMovieClip(options.inputs[index])));
    return true;
  });
  if (options.json && !movies.empty()) {
    const Json all = options.inputs.size() == 1 ? movies[0] : Json(movies);
    std::printf("%s\n", all.dump(2, ' ', false, Json::error_handler_t::replace).c_str());
  }
  if (!options.json) {
    for (const Json& movie : movies) PrintMovie(movie);
  }
  if (std::fflush(stdout) != 0) {
    Report(console, {std::string("cannot write: ") + std::strerror(errno), "stdout", ""});
    return false;
  }
  return isGood;
}

}  // namespace vorel::tool
