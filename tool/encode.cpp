// vorel encode: pictures to a movie.
#include "picture_io/planar_rows.h"
#include "tool/clip_compressors.h"
#include "tool/clips.h"
#include "tool/colour_standard.h"
#include "tool/commands.h"
#include "tool/fidelity.h"
#include "tool/file_kinds.h"
#include "tool/frame_coder.h"
#include "tool/pipeline.h"
#include "tool/result_names.h"
#include "tool/run_report.h"
#include "tool/settings_record.h"
#include "tool/targets.h"
#include "vorel/pixel_formats.h"

namespace vorel::tool {

namespace {

using picture_io::ClipFormat;
using picture_io::PictureSource;

struct EncodeJob {
  u64 frame = 0;
  picture_io::StoredPicture stored;
  picture_io::Picture picture;
  FrameBuffer buffer;
  container::SampleDescription description;  // of the first frame
};

u64 BytesTaken(const EncodeJob& job) {
  return job.stored.capacity() + job.picture.bytes.capacity() + job.buffer.words.capacity() * sizeof(u32);
}

container::MovieSettings SettingsFor(const PictureSource& source, bool force) {
  if (!IsKnown(source.format.rate)) {
    throw Problem{"the frame rate is not known", source.name, "give it with --rate"};
  }
  container::MovieSettings settings;
  settings.time = container::TimeBaseOfRate({source.format.rate.numerator, source.format.rate.denominator});
  settings.overwrite = force;
  settings.creationTime = CreationTime();
  return settings;
}

// Files with a picture each seldom tell a rate, or not at all. A still lasts as long as any frame.
void SupplyRate(PictureSource& source, const std::string& input, Console& console) {
  constexpr picture_io::Ratio kUsualRate = {24, 1};
  if (IsKnown(source.format.rate) || picture_io::FindPictureFileKind(input) == nullptr) return;
  source.format.rate = kUsualRate;
  if (IsSequence(input)) Note(console, source.name + ": taken as 24 frames per second; --rate gives another");
}

// Samples of YUV4MPEG2 have fewer bits than the words that they stand in.
u32 SampleBitsOf(const PictureSource& source, const EncodeOptions& options) {
  const u32 planeBits = picture_io::PlaneBits(source.format.pixelFormat);
  return options.source.pixelFormat || planeBits == 0
             ? VorelFindPixelFormat(source.format.pixelFormat)->sampleBits
             : planeBits;
}

void RefuseLosses(const PictureSource& source, u32 sampleBits, const FrameCoding& coding) {
  if (HoldsPictures(source.format, sampleBits, coding.tag)) return;
  throw Problem{"frames of format " + FormatNameOfTag(coding.tag) + " do not keep " +
                    UnkeptOfPictures(source.format, sampleBits, coding.tag) +
                    ", and --conversion perfect allows no loss",
                source.name, WayToHoldPictures(source.format, sampleBits, coding)};
}

// What the movie won't hold of its source: from the header, and from the pictures.
std::string UnkeptOfSource(const PictureSource& source, u32 sampleBits, u32 tag) {
  const std::string ofPictures = UnkeptOfPictures(source.format, sampleBits, tag);
  return source.unkept + (source.unkept.empty() || ofPictures.empty() ? "" : ", ") + ofPictures;
}

// Frames go into the movie under one description, which says how large the first of them is.
struct MovieFrames {
  container::MovieWriter& writer;
  std::optional<u32> description;
};

void AppendFrame(MovieFrames& frames, const EncodeJob& job) {
  if (!frames.description) frames.description = frames.writer.AddDescription(job.description);
  frames.writer.AppendFrame(reinterpret_cast<const u8*>(job.buffer.words.data()), job.buffer.bytes,
                            *frames.description);
}

bool EncodeClip(const std::string& input, const std::string& output, const EncodeOptions& options,
                Console& console) {
  const u32 eightBits = options.family == VOREL_YCBCR_8BW_422 ? picture_io::kYuvu : picture_io::k2vuy;
  PictureSource source = OpenPictures(input, options.source, eightBits);
  const ClipFormat& format = source.format;
  const u32 standard = options.colourStandard.value_or(StandardForHeight(format.height));
  FrameCoding coding = CodingOfClip(format, options.family, options.keepAlpha, standard, source.name);
  const u32 sampleBits = SampleBitsOf(source, options);
  if (options.conversion == Conversion::perfect) RefuseLosses(source, sampleBits, coding);
  const MovieChoice choice = {options.isGeneric, options.selfCheck};
  if (choice.selfCheck) AllowSelfCheck(coding, format, sampleBits, choice, source.name);
  SupplyRate(source, input, console);
  MovieTarget target;
  OpenMovieTarget(target, output, SettingsFor(source, options.force));
  if (const std::string unkept = UnkeptOfSource(source, sampleBits, coding.tag); !unkept.empty())
    Note(console, source.name + ": the movie does not keep " + unkept);

  const u64 pictureBytes = RawPictureBytes(format);
  const u64 jobBytes = 2 * pictureBytes + FrameBufferBytes(coding.tag, format.width, format.height);
  Progress progress = StartProgress(console, source.name, source.expectedFrames);
  MovieFrames frames{*target.writer, {}};
  ClipCompressors compressors = {source.name, coding, CompressionOfClip(format, coding, choice)};
  u64 fetched = 0;
  PipelineRun run = RunPipeline<EncodeJob>(
      ShapePipeline(options.threads, jobBytes),
      [&](EncodeJob& job) {
        job.frame = fetched++;
        // A source that hands its bytes over as the picture gets their memory back.
        if (job.stored.capacity() == 0) job.stored.swap(job.picture.bytes);
        return source.fetch(job.stored);
      },
      [&](EncodeJob& job) {
        source.unpack(job.stored, job.picture);
        compressors.Compress(job.frame, job.picture, job.buffer, job.description);
      },
      [&](EncodeJob& job) {
        AppendFrame(frames, job);
        Advance(progress, pictureBytes, job.buffer.bytes);
      });
  if (progress.frames == 0)
    throw Problem{"no pictures follow the header", source.name, "there is nothing to encode"};
  FinishRun(run, [&] { FinishMovieTarget(target); });
  FinishProgress(progress, Direction::encode);
  ReportRun(run, progress, ComponentBytes());
  return true;
}

}  // namespace

bool RunEncode(const EncodeOptions& said, Console& console) {
  const HostSession host;
  EncodeOptions options = said;
  try {
    ApplyRecord(options);
  } catch (const Problem& problem) {
    Report(console, problem);
    return false;
  }
  const std::vector<std::string> outputs = NameResults(options.inputs, options.output, ".mov");
  return ForEachInput(options.inputs, console, [&](std::size_t index) {
    return EncodeClip(options.inputs[index], outputs[index], options, console);
  });
}

}  // namespace vorel::tool
