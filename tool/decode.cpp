// vorel decode: a movie to pictures.
#include "picture_io/planar_rows.h"
#include "picture_io/raw.h"
#include "picture_io/y4m.h"
#include "tool/alpha_detour.h"
#include "tool/clip_decompressors.h"
#include "tool/clips.h"
#include "tool/commands.h"
#include "tool/fidelity.h"
#include "tool/file_kinds.h"
#include "tool/frame_coder.h"
#include "tool/pipeline.h"
#include "tool/result_names.h"
#include "tool/run_report.h"
#include "tool/sequence_target.h"
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
};

u64 BytesTaken(const DecodeJob& job) {
  return job.bytes.capacity() + job.picture.bytes.capacity() + job.stored.capacity();
}

// The option goes before the output's name, and that before what a pixel format lets expect.
PictureFile FileFor(const DecodeOptions& options) {
  if (options.format) return *options.format;
  if (const std::optional<PictureFile> told = PictureFileOfPath(options.output)) return *told;
  return options.pixelFormat ? PictureFile::raw : PictureFile::y4m;
}

std::string EndingFor(const DecodeOptions& options) {
  const PictureFile file = FileFor(options);
  return file == PictureFile::raw && options.pixelFormat ? ".raw" : EndingOfResult(file);
}

void CheckPixelFormat(PictureFile file, u32 pixelFormat) {
  if (file == PictureFile::y4m && picture_io::PlaneBits(pixelFormat) == 0) {
    throw UsageError{
        "YUV4MPEG2 files hold 2vuy, yuvu and v408 pictures (8 bits), v216 and v410 pictures (10 bits), not " +
        PixelFormatName(pixelFormat) + ": give --format raw with it"};
  }
  const picture_io::PictureFileKind* const kind = SinglePictures(file);
  if (kind == nullptr || Holds(*kind, pixelFormat)) return;
  std::string held;
  for (const u32 one : kind->pixelFormats) held += (held.empty() ? "" : ", ") + PixelFormatName(one);
  throw UsageError{std::string(kind->name) + " files are written from pictures of pixel format " + held +
                   ", not " + PixelFormatName(pixelFormat) +
                   ": leave --pixel-format out, or give --format raw"};
}

void CheckOptions(const DecodeOptions& options) {
  const PictureFile file = FileFor(options);
  if (options.pixelFormat) CheckPixelFormat(file, *options.pixelFormat);
  const bool isPattern = picture_io::LooksLikeSequence(options.output);
  const picture_io::PictureFileKind* const kind = SinglePictures(file);
  if (kind == nullptr) {
    if (options.start)
      throw UsageError{"--start is for sequences: give a name such as shot.%05d.png with -o"};
    if (isPattern && !options.format && !PictureFileOfPath(options.output)) {
      throw UsageError{options.output +
                       ": a sequence is called .png, .tif, .tiff or .dpx at its end, or give --format"};
    }
    return;
  }
  if (options.output == "-")
    throw UsageError{std::string(kind->name) +
                     " files are not written to stdout: name one, or a sequence of them"};
  if (isPattern) PatternOf(options.output);
  if (options.start && !options.output.empty() && !isPattern)
    throw UsageError{"--start is for sequences, and " + options.output + " is the name of one picture"};
}

u32 PictureFormatFor(const MovieClip& clip, const picture_io::PictureFileKind& kind) {
  const u32 tag = TagOfMovie(clip);
  const u32 pixelFormat = PictureFormatOfTag(tag, kind.pixelFormats);
  if (tag != 0 && !ComesAs(tag, pixelFormat)) {
    throw Problem{std::string(kind.name) + " files hold R'G'B', and frames of format " +
                      FormatNameOfTag(tag) + " don't come as that",
                  clip.name, "give --format y4m or raw"};
  }
  return pixelFormat;
}

u32 PixelFormatFor(const MovieClip& clip, const DecodeOptions& options) {
  if (options.pixelFormat) return *options.pixelFormat;
  const PictureFile file = FileFor(options);
  if (const picture_io::PictureFileKind* const kind = SinglePictures(file))
    return PictureFormatFor(clip, *kind);
  const u32 tag = TagOfMovie(clip);
  if (file == PictureFile::raw) return PixelFormatOfEnding(options.output).value_or(RawFormatOfTag(tag));
  const u32 pixelFormat = Y4mFormatOfTag(tag);
  if (pixelFormat == 0) {
    throw Problem{"YUV4MPEG2 files don't hold pictures of format " + FormatNameOfTag(tag), clip.name,
                  "give --format raw, or a pixel format with --pixel-format"};
  }
  return pixelFormat;
}

// Pictures in the making: in one file, or in one for each.
struct Output {
  PictureTarget file;
  std::optional<SequenceTarget> sequence;
  picture_io::PictureSink sink;
};

void OpenOutput(Output& output, const std::string& path, const ClipFormat& format, u64 frames,
                const DecodeOptions& options, Console& console) {
  const PictureFile file = FileFor(options);
  if (const picture_io::PictureFileKind* const kind = SinglePictures(file)) {
    output.sequence = OpenSequenceTarget(path, options.start.value_or(0), frames, options.force, console);
    output.sink = OpenSequenceSink(*kind, format, output.sequence->pattern, output.sequence->first,
                                   WriterOf(*output.sequence));
    return;
  }
  OpenPictureTarget(output.file, path, options.force);
  output.sink = file == PictureFile::raw ? picture_io::OpenRawSink(WriterOf(output.file))
                                         : picture_io::OpenY4mSink(format, WriterOf(output.file));
}

void NoteUnkept(const MovieClip& clip, const ClipFormat& format, Console& console) {
  if (const std::string unkept = UnkeptOfMovie(clip); !unkept.empty())
    Note(console, clip.name + ": " + unkept);
  if (const std::string unkept = UnkeptOfFrames(TagOfMovie(clip), format.pixelFormat); !unkept.empty())
    Note(console, clip.name + ": the pictures do not keep " + unkept);
}

void NoteSuspects(const MovieClip& clip, u64 suspects, Console& console) {
  if (suspects == 0) return;
  const std::string which =
      suspects == 1 ? " frame is not as long as its bits say" : " frames are not as long as their bits say";
  Note(console, clip.name + ": " + std::to_string(suspects) + which + "; vorel verify tells more");
}

struct DecodeRun {
  PipelineRun pipeline;
  u64 coderBytes;  // that decompressors kept
  u64 suspects;
};

// Decodes all frames into the sink.
DecodeRun DecodeFrames(const MovieClip& clip, const DecodedClip& decoded, const picture_io::PictureSink& sink,
                       bool leavesOutAlpha, u32 threads, Progress& progress) {
  const u64 pictureBytes = RawPictureBytes(decoded.format);
  const u64 largestFrame = LargestFrame(clip);
  ClipDecompressors decompressors(clip, decoded);
  u64 next = 0;
  u64 suspects = 0;
  const PipelineRun run = RunPipeline<DecodeJob>(
      ShapePipeline(threads, 2 * pictureBytes + largestFrame),
      [&](DecodeJob& job) {
        if (next == clip.video.samples.size()) return false;
        job.frame = next++;
        job.bytes.reserve(largestFrame);
        // A sink that takes the picture over as its bytes gives the memory back.
        if (job.picture.bytes.capacity() == 0) job.picture.bytes.swap(job.stored);
        container::ReadSample(clip.movie, clip.video.samples[job.frame], job.bytes);
        return true;
      },
      [&](DecodeJob& job) {
        const FrameEnd end = decompressors.Decompress(job.frame, job.bytes, job.picture);
        job.isSuspect = end.recordedBytes != job.bytes.size();
        if (leavesOutAlpha) LeaveOutAlpha(job.picture);
        sink.pack(job.picture, job.stored);
      },
      [&](DecodeJob& job) {
        sink.store(job.stored);
        suspects += job.isSuspect ? 1 : 0;
        Advance(progress, pictureBytes, job.bytes.size());
      });
  return {run, decompressors.BytesTaken(), suspects};
}

bool DecodeClip(const std::string& input, const std::string& path, const DecodeOptions& options,
                Console& console) {
  const MovieClip clip = OpenMovieClip(input);
  const u32 pixelFormat = PixelFormatFor(clip, options);
  const DecodedClip decoded = ClipToDecode(clip, DecodedFormatFor(TagOfMovie(clip), pixelFormat));
  ClipFormat format = decoded.format;
  format.pixelFormat = pixelFormat;
  const u64 frames = clip.video.samples.size();
  Output output;
  OpenOutput(output, path, format, frames, options, console);
  NoteUnkept(clip, format, console);

  Progress progress = StartProgress(console, clip.name, frames);
  DecodeRun run = {};
  try {
    run = DecodeFrames(clip, decoded, output.sink, pixelFormat != decoded.format.pixelFormat, options.threads,
                       progress);
  } catch (...) {
    if (output.sequence && progress.frames > 0)
      Note(console, clip.name + ": written are " + WrittenText(*output.sequence, progress.frames));
    throw;
  }
  FinishRun(run.pipeline, [&] { FinishPictureTarget(output.file); });
  NoteSuspects(clip, run.suspects, console);
  FinishProgress(progress, Direction::decode);
  ReportRun(run.pipeline, progress, run.coderBytes);
  return true;
}

}  // namespace

bool RunDecode(const DecodeOptions& options, Console& console) {
  const HostSession host;
  CheckOptions(options);
  const std::vector<std::string> outputs = NameResults(options.inputs, options.output, EndingFor(options));
  return ForEachInput(options.inputs, console, [&](std::size_t index) {
    return DecodeClip(options.inputs[index], outputs[index], options, console);
  });
}

}  // namespace vorel::tool
