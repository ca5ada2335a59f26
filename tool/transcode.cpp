// vorel transcode: a movie of uncompressed samples to a movie of frames, everything else in it as it is.
#include <oneapi/tbb/enumerable_thread_specific.h>

#include "component/component_table.h"
#include "component/host_errors.h"
#include "component/selectors.h"
#include "tool/clips.h"
#include "tool/commands.h"
#include "tool/component_host.h"
#include "tool/pipeline.h"
#include "tool/result_names.h"
#include "tool/run_report.h"
#include "tool/targets.h"

namespace vorel::tool {

namespace {

namespace embedded = component::embedded;
using component::Host;

struct TranscodeJob {
  u64 frame = 0;
  std::vector<u8> sample;
  std::vector<u8> bytes;                     // of the frame
  container::SampleDescription description;  // of the frames; from the first one under a source description
};

u64 BytesTaken(const TranscodeJob& job) {
  return job.sample.capacity() + job.bytes.capacity();
}

// What transcoders are told process-wide before a sequence begins.
void PublishChoices(bool selfCheck) {
  // The transcoders count the scan from 1 and look their tag up from 0: this one leads to a tag, and it is the
  // interlaced one.
  constexpr i32 kScanWithTag = 1;
  Host->SetGestaltValue(FourCharacterCode("Scan"), kScanWithTag);
  Host->SetGestaltValue(FourCharacterCode("Vorl"), selfCheck ? 1 : 0);
}

// The family whose frames a transcoder makes of such samples.
const component::ComponentRow& TranscoderOf(u32 codec, const std::string& name) {
  if (const component::ComponentRow* row = component::FindComponent(component::kTranscoderType, codec))
    return *row;
  std::string codecs;
  for (const component::ComponentRow& row : component::kComponents) {
    if (row.type != component::kTranscoderType || row.manufacturer == component::kGenericSubtype) continue;
    codecs += (codecs.empty() ? "'" : ", '") + container::CodeText(row.subtype) + "'";
  }
  throw Problem{"the video is of codec '" + container::CodeText(codec) + "', and no transcoder reads it",
                name, "movies of these codecs are transcoded: " + codecs};
}

// A transcoder in the middle of a sequence.
struct FrameTranscoder {
  std::optional<u32> source;  // index of the description that it was opened for
  OwnedDescription sourceDescription;
  OwnedDescription description;  // of the frames
  OwnedInstance instance;
};

void BeginSequence(FrameTranscoder& transcoder, const MovieClip& clip, const TranscodeOptions& options,
                   const TranscodeJob& job) {
  const u32 index = clip.video.samples[job.frame].description;
  const container::SampleDescription& source = clip.video.descriptions[index];
  const std::string place = PlaceOfFrame(clip, job.frame);
  const component::ComponentRow& row = TranscoderOf(source.cType, clip.name);
  transcoder = {};
  transcoder.instance =
      OpenInstance(component::kTranscoderType, source.cType,
                   options.isGeneric ? component::kGenericSubtype : row.manufacturer, clip.name);
  transcoder.sourceDescription = DescriptionForHost(source);
  component::ImageDescriptionHandle description = nullptr;
  const component::ComponentResult result =
      embedded::CallSelector(transcoder.instance.get(), component::kImageTranscoderBeginSequenceSelect,
                             transcoder.sourceDescription.get(), &description, job.sample.data(),
                             static_cast<i32>(job.sample.size()));
  if (result == component::paramErr) {
    throw Problem{"the sample has " + std::to_string(job.sample.size()) + " bytes, and '" +
                      container::CodeText(source.cType) + "' samples of " + std::to_string(source.width) +
                      " x " + std::to_string(source.height) + " pixels have another size",
                  place, "the movie is damaged, or its rows are laid out in another way"};
  }
  if (result != component::noErr)
    throw Problem{"the transcoder does not take the movie: " + ResultText(result), place, ""};
  transcoder.description.reset(description);
  transcoder.source = index;
}

void TranscodeFrame(FrameTranscoder& transcoder, const MovieClip& clip, const TranscodeOptions& options,
                    TranscodeJob& job) {
  if (transcoder.source != clip.video.samples[job.frame].description)
    BeginSequence(transcoder, clip, options, job);
  const component::ComponentInstance instance = transcoder.instance.get();
  void* frame = nullptr;
  i32 size = 0;
  const component::ComponentResult result =
      embedded::CallSelector(instance, component::kImageTranscoderConvertSelect, job.sample.data(),
                             static_cast<i32>(job.sample.size()), &frame, &size);
  if (result != component::noErr)
    throw Problem{"cannot transcode: " + ResultText(result), PlaceOfFrame(clip, job.frame), ""};
  const u8* const bytes = static_cast<const u8*>(frame);
  job.bytes.assign(bytes, bytes + size);
  embedded::CallSelector(instance, component::kImageTranscoderDisposeDataSelect, frame);
  job.description = DescriptionOfHost(transcoder.description.get());
  if (options.isGeneric) job.description.cType = component::kGenericSubtype;
}

// Frames lie under the description of their source's. Its size of a frame is that of the first.
struct TranscodedMovie {
  container::MovieWriter& writer;
  std::vector<std::optional<u32>> descriptions;  // by the source's
};

void AppendFrame(TranscodedMovie& movie, const container::Sample& source, const TranscodeJob& job) {
  std::optional<u32>& description = movie.descriptions[source.description];
  if (!description) description = movie.writer.AddDescription(job.description);
  movie.writer.AppendFrame(job.bytes.data(), job.bytes.size(), *description, source.duration);
}

container::MovieSettings SettingsFor(const MovieClip& clip, bool force) {
  container::MovieSettings settings;
  settings.time = {clip.video.timescale, clip.video.samples[0].duration};
  settings.overwrite = force;
  settings.creationTime = CreationTime();
  return settings;
}

void CopyOthers(const MovieClip& clip, container::MovieWriter& writer) {
  for (std::size_t track = 0; track < clip.movie.tracks.size(); ++track) {
    if (track != clip.video.track) writer.CopyTrack(clip.movie, track);
  }
  writer.StandFor(clip.movie, clip.video.track);
  writer.CopyMovieData(clip.movie);
}

bool TranscodeClip(const std::string& input, const std::string& output, const TranscodeOptions& options,
                   Console& console) {
  const MovieClip clip = OpenMovieClip(input);
  if (clip.video.samples.empty()) throw Problem{"the video track has no frames", clip.name, ""};
  for (const container::SampleDescription& description : clip.video.descriptions)
    TranscoderOf(description.cType, clip.name);
  PublishChoices(options.selfCheck);
  MovieTarget target;
  OpenMovieTarget(target, output, SettingsFor(clip, options.force));
  CopyOthers(clip, *target.writer);
  Progress progress = StartProgress(console, clip.name, clip.video.samples.size());
  TranscodedMovie movie = {*target.writer, std::vector<std::optional<u32>>(clip.video.descriptions.size())};
  tbb::enumerable_thread_specific<FrameTranscoder> transcoders;
  const u64 largestSample = LargestFrame(clip);
  u64 next = 0;
  PipelineRun run = RunPipeline<TranscodeJob>(
      ShapePipeline(options.threads, 2 * largestSample),
      [&](TranscodeJob& job) {
        if (next == clip.video.samples.size()) return false;
        job.frame = next++;
        job.sample.reserve(largestSample);
        job.bytes.reserve(largestSample);
        container::ReadSample(clip.movie, clip.video.samples[job.frame], job.sample);
        return true;
      },
      [&](TranscodeJob& job) { TranscodeFrame(transcoders.local(), clip, options, job); },
      [&](TranscodeJob& job) {
        AppendFrame(movie, clip.video.samples[job.frame], job);
        Advance(progress, job.sample.size(), job.bytes.size());
      });
  FinishRun(run, [&] { FinishMovieTarget(target); });
  FinishProgress(progress, Direction::encode);
  ReportRun(run, progress, ComponentBytes());
  return true;
}

}  // namespace

bool RunTranscode(const TranscodeOptions& options, Console& console) {
  const HostSession host;
  const std::vector<std::string> outputs = NameResults(options.inputs, options.output, ".vorel.mov");
  return ForEachInput(options.inputs, console, [&](std::size_t index) {
    return TranscodeClip(options.inputs[index], outputs[index], options, console);
  });
}

}  // namespace vorel::tool
