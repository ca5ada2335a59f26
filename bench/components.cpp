#include "bench/components.h"

#include <cstring>
#include <memory>

#include "bench/measure.h"
#include "tool/clip_compressors.h"
#include "tool/clip_description.h"

namespace vorel::bench {

namespace {

using tool::DecodedClip;
using tool::FrameBuffer;
using tool::FrameCoding;

constexpr const char* kPixelFormats[] = {"2vuy", "yuvu", "v210", "v410", "24", "BGRA", "F10k"};

// The routines' names of pixel formats without alpha.
std::string RoutineName(const std::string& pixelFormat) {
  return pixelFormat == "24" ? "RGB" : pixelFormat;
}

picture_io::ClipFormat FormatOf(const Sequence& sequence, const std::string& name) {
  picture_io::ClipFormat format;
  format.pixelFormat = *tool::PixelFormatOfName(name);
  format.width = sequence.width;
  format.height = sequence.height;
  format.scan = picture_io::ScanOrder::progressive;
  return format;
}

// One sequence, with everything opened that both ways need.
struct Prepared {
  explicit Prepared(const Sequence& sequence, const std::string& name)
      : format(FormatOf(sequence, name)),
        coding(tool::CodingOfClip(format, VOREL_GENERIC, true, VOREL_COLOUR_709, sequence.name)),
        clip{format, VOREL_COLOUR_709} {
    tool::OpenFrameCompressor(compressor, CompressionOfClip(format, coding, {}), sequence.name);
    for (const std::vector<u8>& bytes : InPixelFormat(sequence, RoutineName(name))) {
      picture_io::Picture& picture = pictures.emplace_back();
      ShapePicture(format, picture);
      picture.bytes = bytes;
      tool::CompressFrame(compressor, coding, picture, buffer, sequence.name);
      std::vector<u8>& frame = frames.emplace_back(buffer.bytes);
      std::memcpy(frame.data(), buffer.words.data(), frame.size());
    }
    const container::SampleDescription description = tool::DescriptionOfHost(compressor.description.get());
    tool::OpenFrameDecompressor(decompressor, description.cType, description, clip, sequence.name);
  }

  picture_io::ClipFormat format;
  FrameCoding coding;
  DecodedClip clip;
  tool::FrameCompressor compressor;
  tool::FrameDecompressor decompressor;
  std::vector<picture_io::Picture> pictures;
  std::vector<std::vector<u8>> frames;
  FrameBuffer buffer;
  FrameBuffer directBuffer;
  picture_io::Picture copy;
  std::vector<u8> scratch;
};

// A frame of a sequence.
struct Place {
  Prepared* clip;
  std::size_t number;
};

template <typename Direct, typename Component>
void TakeTurns(benchmark::State& state, Timings& timings, const std::vector<const Sequence*>& sequences,
               const std::string& name, Direct direct, Component component) {
  const tool::HostSession host;
  std::vector<std::unique_ptr<Prepared>> prepared;
  std::vector<Place> places;
  for (const Sequence* sequence : sequences) {
    prepared.push_back(std::make_unique<Prepared>(*sequence, name));
    for (std::size_t i = 0; i < prepared.back()->frames.size(); ++i)
      places.push_back({prepared.back().get(), i});
  }
  MeasureInTurns(
      state, places.size(), timings, [&](std::size_t i) { direct(*places[i].clip, places[i].number); },
      [&](std::size_t i) { component(*places[i].clip, places[i].number); });
}

void Encode(benchmark::State& state, Timings& timings, const std::vector<const Sequence*>& sequences,
            const std::string& name) {
  TakeTurns(
      state, timings, sequences, name,
      [](Prepared& clip, std::size_t i) {
        tool::EncodeFrame(clip.pictures[i], clip.coding, clip.directBuffer, "");
      },
      [](Prepared& clip, std::size_t i) {
        tool::CompressFrame(clip.compressor, clip.coding, clip.pictures[i], clip.buffer, "");
      });
}

void Decode(benchmark::State& state, Timings& timings, const std::vector<const Sequence*>& sequences,
            const std::string& name) {
  TakeTurns(
      state, timings, sequences, name,
      [](Prepared& clip, std::size_t i) {
        tool::DecodeFrame(clip.frames[i], clip.clip, clip.copy, clip.scratch, "");
      },
      [](Prepared& clip, std::size_t i) {
        tool::DecompressFrame(clip.decompressor, clip.frames[i], clip.clip, clip.copy, "");
      });
}

}  // namespace

void RegisterComponents(const std::vector<const Sequence*>& sequences) {
  for (const std::string name : kPixelFormats) {
    const auto add = [&](const char* operation, auto* run) {
      Register(operation + name,
               [=](benchmark::State& state, Timings& timings) { run(state, timings, sequences, name); });
    };
    add("component/encode/", Encode);
    add("component/decode/", Decode);
  }
}

}  // namespace vorel::bench
