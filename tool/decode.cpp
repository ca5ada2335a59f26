// vorel decode: a movie to pictures.
#include <filesystem>

#include "picture_io/planar_rows.h"
#include "picture_io/raw.h"
#include "picture_io/y4m.h"
#include "tool/clips.h"
#include "tool/commands.h"
#include "tool/fidelity.h"
#include "tool/frame_coder.h"
#include "tool/pipeline.h"
#include "tool/targets.h"

namespace vorel::tool {

namespace {

using picture_io::ClipFormat;

struct DecodeJob {
  u64 frame = 0;
  std::vector<u8> bytes;
  bool isSuspect = false;  // decoded, but its size is not the one that frames are recorded with
  picture_io::Picture picture;
  picture_io::StoredPicture stored;
  std::vector<u8> scratch;
};

// The option goes before the output's name, and that before what a pixel format lets expect.
PictureFile FileFor(const DecodeOptions& options) {
  if (options.format) return *options.format;
  const std::string ending = std::filesystem::path(options.output).extension().string();
  if (ending == ".yuv" || ending == ".raw" || PixelFormatOfEnding(options.output)) return PictureFile::raw;
  return options.pixelFormat && ending != ".y4m" ? PictureFile::raw : PictureFile::y4m;
}

std::string EndingFor(const DecodeOptions& options) {
  if (FileFor(options) == PictureFile::y4m) return ".y4m";
  return options.pixelFormat ? ".raw" : ".yuv";
}

void CheckOptions(const DecodeOptions& options) {
  const bool isY4m = FileFor(options) == PictureFile::y4m;
  if (isY4m && options.pixelFormat && picture_io::PlaneBits(*options.pixelFormat) == 0) {
    throw UsageError{
        "YUV4MPEG2 files hold 2vuy, yuvu and v408 pictures (8 bits), v216 and v410 pictures (10 bits), not " +
        PixelFormatName(*options.pixelFormat) + ": give --format raw with it"};
  }
}

u32 PixelFormatFor(const MovieClip& clip, const DecodeOptions& options) {
  if (options.pixelFormat) return *options.pixelFormat;
  const u32 tag = TagOfMovie(clip);
  if (FileFor(options) == PictureFile::raw)
    return PixelFormatOfEnding(options.output).value_or(RawFormatOfTag(tag));
  const u32 pixelFormat = Y4mFormatOfTag(tag);
  if (pixelFormat == 0) {
    throw Problem{"YUV4MPEG2 files don't hold pictures of format " + FormatNameOfTag(tag), clip.name,
                  "give --format raw, or a pixel format with --pixel-format"};
  }
  return pixelFormat;
}

bool DecodeClip(const std::string& input, const std::string& output, const DecodeOptions& options,
                Console& console) {
  const MovieClip clip = OpenMovieClip(input);
  const DecodedClip decoded = ClipToDecode(clip, PixelFormatFor(clip, options));
  const ClipFormat& format = decoded.format;
  const PictureFile file = FileFor(options);
  PictureTarget target;
  OpenPictureTarget(target, output, options.force);
  if (const std::string unkept = UnkeptOfMovie(clip); !unkept.empty())
    Note(console, clip.name + ": " + unkept);
  if (const std::string unkept = UnkeptOfFrames(TagOfMovie(clip), format.pixelFormat); !unkept.empty())
    Note(console, clip.name + ": the pictures do not keep " + unkept);
  const picture_io::PictureSink sink = file == PictureFile::raw
                                           ? picture_io::OpenRawSink(WriterOf(target))
                                           : picture_io::OpenY4mSink(format, WriterOf(target));

  const u64 pictureBytes = RawPictureBytes(format);
  Progress progress = StartProgress(console, clip.name, clip.video.samples.size());
  u64 next = 0;
  u64 suspects = 0;
  RunPipeline<DecodeJob>(
      ShapePipeline(options.threads, 2 * pictureBytes + LargestFrame(clip)),
      [&](DecodeJob& job) {
        if (next == clip.video.samples.size()) return false;
        job.frame = next++;
        container::ReadSample(clip.movie, clip.video.samples[job.frame], job.bytes);
        return true;
      },
      [&](DecodeJob& job) {
        const FrameEnd end =
            DecodeFrame(job.bytes, decoded, job.picture, job.scratch, PlaceOfFrame(clip, job.frame));
        job.isSuspect = end.recordedBytes != job.bytes.size();
        sink.pack(job.picture, job.stored);
      },
      [&](DecodeJob& job) {
        sink.store(job.stored);
        suspects += job.isSuspect ? 1 : 0;
        Advance(progress, pictureBytes, job.bytes.size());
      });
  FinishPictureTarget(target);
  if (suspects > 0) {
    const std::string which =
        suspects == 1 ? " frame is not as long as its bits say" : " frames are not as long as their bits say";
    Note(console, clip.name + ": " + std::to_string(suspects) + which + "; vorel verify tells more");
  }
  FinishProgress(progress, Direction::decode);
  return true;
}

}  // namespace

bool RunDecode(const DecodeOptions& options, Console& console) {
  CheckOptions(options);
  const std::vector<std::string> outputs = NameResults(options.inputs, options.output, EndingFor(options));
  return ForEachInput(options.inputs, console, [&](std::size_t index) {
    return DecodeClip(options.inputs[index], outputs[index], options, console);
  });
}

}  // namespace vorel::tool
