#include "bench/components.h"

#include <algorithm>
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

double Median(std::vector<double> values) {
  std::nth_element(values.begin(), values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2),
                   values.end());
  return values[values.size() / 2];
}

template <typename Work>
double TimeOf(Work work) {
  const double start = Now();
  work();
  benchmark::ClobberMemory();
  return Now() - start;
}

// Which goes first changes with every pair.
template <typename Direct, typename Component>
void Pair(benchmark::State& state, const std::vector<const Sequence*>& sequences, const std::string& name,
          Direct direct, Component component) {
  const tool::HostSession host;
  std::vector<std::unique_ptr<Prepared>> prepared;
  for (const Sequence* sequence : sequences) prepared.push_back(std::make_unique<Prepared>(*sequence, name));
  std::vector<double> directTimes;
  std::vector<double> componentTimes;
  std::vector<double> ratios;
  bool isDirectFirst = true;
  for (auto unused : state) {
    for (const auto& clip : prepared) {
      for (std::size_t i = 0; i < clip->frames.size(); ++i) {
        double times[2];
        for (int turn = 0; turn < 2; ++turn) {
          const bool isDirect = isDirectFirst == (turn == 0);
          times[isDirect ? 0 : 1] =
              isDirect ? TimeOf([&] { direct(*clip, i); }) : TimeOf([&] { component(*clip, i); });
        }
        isDirectFirst = !isDirectFirst;
        const double area = double(clip->format.width) * clip->format.height;
        directTimes.push_back(times[0] / area);
        componentTimes.push_back(times[1] / area);
        ratios.push_back(times[1] / times[0]);
      }
    }
  }
  state.counters["direct ns/px"] = Median(directTimes) * 1e9;
  state.counters["component ns/px"] = Median(componentTimes) * 1e9;
  state.counters["ratio"] = Median(ratios);
  state.counters["pairs"] = double(ratios.size());
}

void Encode(benchmark::State& state, const std::vector<const Sequence*>& sequences, const std::string& name) {
  Pair(
      state, sequences, name,
      [](Prepared& clip, std::size_t i) {
        tool::EncodeFrame(clip.pictures[i], clip.coding, clip.directBuffer, "");
      },
      [](Prepared& clip, std::size_t i) {
        tool::CompressFrame(clip.compressor, clip.coding, clip.pictures[i], clip.buffer, "");
      });
}

void Decode(benchmark::State& state, const std::vector<const Sequence*>& sequences, const std::string& name) {
  Pair(
      state, sequences, name,
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
    benchmark::RegisterBenchmark(("component/encode/" + name).c_str(), Encode, sequences, name)
        ->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark(("component/decode/" + name).c_str(), Decode, sequences, name)
        ->Unit(benchmark::kMillisecond);
  }
}

}  // namespace vorel::bench
