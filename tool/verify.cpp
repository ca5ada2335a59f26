// vorel verify: decodes every frame, and compares with the pictures that a movie was made from.
#include "picture_io/planar_rows.h"
#include "tool/clip_decompressors.h"
#include "tool/clips.h"
#include "tool/commands.h"
#include "tool/frame_coder.h"
#include "tool/picture_compare.h"
#include "tool/pipeline.h"
#include "tool/run_report.h"

namespace vorel::tool {

namespace {

using picture_io::ClipFormat;
using picture_io::PictureSource;

constexpr u64 kMostReported = 10;

struct VerifyJob {
  u64 frame = 0;
  std::vector<u8> bytes;
  picture_io::Picture decoded;
  bool hasSource = false;
  picture_io::StoredPicture stored;
  picture_io::Picture source;
  std::optional<Problem> damage;
  std::optional<Difference> difference;
};

u64 BytesTaken(const VerifyJob& job) {
  return job.bytes.capacity() + job.decoded.bytes.capacity() + job.stored.capacity() +
         job.source.bytes.capacity();
}

struct Findings {
  u64 damaged = 0;
  u64 compared = 0;
  u64 different = 0;
};

void CheckFrame(VerifyJob& job, ClipDecompressors& decompressors, const std::string& place) {
  try {
    const FrameEnd end = decompressors.Decompress(job.frame, job.bytes, job.decoded);
    if (end.recordedBytes == job.bytes.size()) return;
    job.damage = Problem{"the frame's bits call for a size of " + std::to_string(end.recordedBytes) +
                             " bytes, it has " + std::to_string(job.bytes.size()),
                         place, "the frame is damaged; fetch or make the movie again"};
  } catch (const Problem& problem) {
    job.damage = problem;
  }
}

Problem Differing(const VerifyJob& job, const std::string& place, const std::string& against) {
  const Difference& difference = *job.difference;
  return {std::string("differs from ") + against + ": row " + std::to_string(difference.row) + ", pixel " +
              std::to_string(difference.pixel) + ", " + difference.component + " is " +
              std::to_string(difference.first) + ", there " + std::to_string(difference.second),
          place, ""};
}

void Record(const VerifyJob& job, const std::string& place, const std::string& against, Findings& findings,
            Console& console) {
  if (job.damage) {
    if (++findings.damaged <= kMostReported) Report(console, *job.damage);
    return;
  }
  findings.compared += job.hasSource ? 1 : 0;
  if (job.difference && ++findings.different == 1) Report(console, Differing(job, place, against));
}

void CheckSize(const ClipFormat& movie, const PictureSource& source, const std::string& name) {
  if (movie.width == source.format.width && movie.height == source.format.height) return;
  const auto text = [](const ClipFormat& format) {
    return std::to_string(format.width) + " x " + std::to_string(format.height);
  };
  throw Problem{
      "pictures differ in size: " + text(movie) + " here, " + text(source.format) + " in " + source.name,
      name, ""};
}

// Pictures that the source has beyond the movie's last frame.
u64 CountRest(const PictureSource& source) {
  picture_io::StoredPicture stored;
  u64 rest = 0;
  while (source.fetch(stored)) ++rest;
  return rest;
}

// What the frame keeps and the source has. YUV4MPEG2 pictures have fewer bits in a sample than 'v216' has.
Compared ComparedParts(const VerifyJob& job, const PictureSource& source, const VerifyOptions& options) {
  constexpr u32 kWordBits = 16;
  const u32 pixelFormat = source.format.pixelFormat;
  const bool isLifted = !options.source.pixelFormat && pixelFormat == picture_io::kV216;
  return {source.keepsPadding, !source.format.isOpaque && TagHasAlpha(TagOfFrame(job.bytes)),
          isLifted ? kWordBits - picture_io::PlaneBits(pixelFormat) : 0};
}

// Says what was found in the end; true if all is well.
bool Conclude(const MovieClip& clip, const PictureSource* source, u64 sourceFrames, const Findings& findings,
              Progress& progress, Console& console) {
  const std::string all = std::to_string(clip.video.samples.size());
  bool isGood = true;
  const auto complain = [&](const std::string& what) {
    Report(console, {what, clip.name, ""});
    isGood = false;
  };
  if (findings.damaged > 0) complain(std::to_string(findings.damaged) + " of " + all + " frames are damaged");
  if (findings.different > 0) {
    complain(std::to_string(findings.different) + " of " + std::to_string(findings.compared) +
             " frames compared differ from " + source->name);
  }
  if (source != nullptr && sourceFrames != clip.video.samples.size()) {
    complain("the number of frames differs: " + all + " here, " + std::to_string(sourceFrames) + " in " +
             source->name);
  }
  if (isGood) FinishProgress(progress, Direction::verify);
  return isGood;
}

bool VerifyClip(const std::string& input, const VerifyOptions& options, Console& console) {
  const MovieClip clip = OpenMovieClip(input);
  const u32 tag = TagOfMovie(clip);
  std::optional<PictureSource> source;
  if (!options.against.empty())
    source = OpenPictures(options.against, options.source, EightBitFormatOfTag(tag));
  const DecodedClip decoded = ClipToDecode(clip, source ? source->format.pixelFormat : RawFormatOfTag(tag));
  if (source) CheckSize(decoded.format, *source, clip.name);
  const u64 pictureBytes = RawPictureBytes(decoded.format);
  Progress progress = StartProgress(console, clip.name, clip.video.samples.size());
  Findings findings;
  const u64 largestFrame = LargestFrame(clip);
  ClipDecompressors decompressors(clip, decoded);
  u64 next = 0;
  u64 sourceFrames = 0;
  const PipelineRun run = RunPipeline<VerifyJob>(
      ShapePipeline(options.threads, 3 * pictureBytes + largestFrame),
      [&](VerifyJob& job) {
        if (next == clip.video.samples.size()) return false;
        job.frame = next++;
        job.bytes.reserve(largestFrame);
        container::ReadSample(clip.movie, clip.video.samples[job.frame], job.bytes);
        if (job.stored.capacity() == 0) job.stored.swap(job.source.bytes);
        job.hasSource = source && sourceFrames == job.frame && source->fetch(job.stored);
        sourceFrames += job.hasSource ? 1 : 0;
        return true;
      },
      [&](VerifyJob& job) {
        job.damage.reset();
        job.difference.reset();
        CheckFrame(job, decompressors, PlaceOfFrame(clip, job.frame));
        if (!job.hasSource || job.damage) return;
        source->unpack(job.stored, job.source);
        job.difference = FindDifference(job.decoded, job.source, ComparedParts(job, *source, options));
      },
      [&](VerifyJob& job) {
        Record(job, PlaceOfFrame(clip, job.frame), options.against, findings, console);
        Advance(progress, pictureBytes, job.bytes.size());
      });
  if (source && sourceFrames == clip.video.samples.size()) sourceFrames += CountRest(*source);
  const bool isGood = Conclude(clip, source ? &*source : nullptr, sourceFrames, findings, progress, console);
  ReportRun(run, progress, decompressors.BytesTaken());
  return isGood;
}

}  // namespace

bool RunVerify(const VerifyOptions& options, Console& console) {
  if (!options.against.empty() && options.inputs.size() != 1) {
    throw UsageError{"--against compares one movie: give one input with it"};
  }
  if (options.against == "-" && options.inputs[0] == "-")
    throw UsageError{"only one of the two can come from stdin"};
  const HostSession host;
  return ForEachInput(options.inputs, console,
                      [&](std::size_t index) { return VerifyClip(options.inputs[index], options, console); });
}

}  // namespace vorel::tool
