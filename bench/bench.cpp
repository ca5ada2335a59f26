// Speed of the frame routines, one thread, beside memcpy and other lossless formats in the same run.
//
//   vorel-bench [--corpus=FOLDER] [--members=LIST] [options of Google Benchmark]
//
// FOLDER holds a folder of PNG files for each kind of picture; without it the clip in samples/ is used. LIST names
// pairs of frame format and pixel format, as "YCbCr8bv422p/2vuy,RGB8bfp/RGB"; without it some of every format run.
// Figures: MB/s of raw picture, nanoseconds and cycles per pixel, the fastest of each picture in processor
// time, and how many times smaller the frames are. A cycle is one step of a chain of dependent additions,
// timed in this run: shared machines change their clock and their neighbours, so only ratios travel.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <sstream>
#include <stdexcept>

#include "bench/components.h"
#include "bench/conversions.h"
#include "bench/measure.h"
#include "bench/peers.h"
#include "frame/catalogue.h"
#include "frame/frame_bounds.h"
#include "pixel/conversion_table.h"
#include "vorel/vorel.h"

namespace vorel::bench {
namespace {

// One pair of routines, as --members names it: "YCbCr8bv422p/2vuy".
struct Member {
  std::string name;
  std::string pixelName;
  const FrameRoutine* encode;
  const FrameRoutine* decode;
};

// Some of every frame format, direct and through conversions.
constexpr const char* kDefaultMembers =
    "YCbCr8bw422p/yuvu,YCbCr8bw422i/yuvu,YCbCr8bv422p/2vuy,YCbCr8bv422i/2vuy,YCbCr8bv422p/_RGB,"
    "YCbCr8bv422p/v210,YCbCrA8bv4224p/VUYA,YCbCr10bv422p/v210,YCbCr10bv422i/v210,YCbCrA10bv4224p/AV416,"
    "YCbCr8bv444p/_v408,YCbCrA8bv4444p/Av408,YCbCr8bu444p/_r408,YCbCr10bv444p/v410,YCbCrA10bv4444p/AV416,"
    "RGB8bfp/RGB,RGB8bfi/RGB,RGB8bfp/_RGB,RGBA8bfp/BGRA,RGB10bfp/F10k,RGB10bfi/F10k,RGBA10bfp/b64a";

Member FindMember(const std::string& name) {
  const std::size_t slash = name.find('/');
  if (slash == std::string::npos) throw std::runtime_error(name + ": a member is LAYOUTscan/PIXEL");
  const std::string frame = name.substr(0, slash);
  const std::string pixel = name.substr(slash + 1);
  Member member = {name, pixel, nullptr, nullptr};
  for (const FrameRoutine& routine : AllRoutines()) {
    if (routine.name == "Vorel" + frame + "From" + pixel + "Encode") member.encode = &routine;
    if (routine.name == "Vorel" + frame + "To" + pixel + "Decode") member.decode = &routine;
  }
  if (member.encode == nullptr || member.decode == nullptr)
    throw std::runtime_error(name + ": not a frame format and a pixel format that go both ways");
  return member;
}

// Frames of one sequence.
struct CodedSequence {
  std::vector<std::vector<u32>> frames;  // with room for the whole frame bound
  std::size_t bytes;                     // recorded sizes, summed
};

void Run(const FrameRoutine& routine, const Job& job, const u8* picture, const std::vector<u32>& frame,
         std::vector<u8>& scratch, u32& word, u32& bit) {
  word = 5;
  bit = 0;
  const FrameCall call = {job.sequence->width,
                          job.sequence->height,
                          job.rowBytes,
                          const_cast<u8*>(picture),
                          1,
                          &word,
                          &bit,
                          reinterpret_cast<u8*>(const_cast<u32*>(frame.data())),
                          scratch.data()};
  if (routine.run(call) != Status::complete) std::abort();
}

// Whether any picture comes back as it was.
bool IsExact(const Member& member) {
  const SampleDomain& frame = member.encode->layout->samples;
  for (const Conversion<FillFunction>& row : kFills) {
    const PixelLayout& pixel = *row.pixel;
    if (row.pixelName == member.pixelName) {
      return frame.model == pixel.model && frame.unit == pixel.unit && frame.range == pixel.range &&
             pixel.sampleBits <= frame.bits;
    }
  }
  return false;
}

CodedSequence Code(const Member& member, const Job& job) {
  CodedSequence coded = {};
  const Sequence& sequence = *job.sequence;
  for (const std::vector<u8>& picture : job.pictures) {
    std::vector<u32> frame(MaxFrameBytes(*member.encode->layout, sequence.width, sequence.height) / 4 + 20);
    std::vector<u8> scratch(VorelScratchBytes(sequence.width));
    u32 word = 0;
    u32 bit = 0;
    Run(*member.encode, job, picture.data(), frame, scratch, word, bit);
    coded.bytes += (word * 32 + 7 + bit) / 8;
    // Every figure rests on frames that decode to their source, where the pair keeps it bit for bit.
    std::vector<u8> copy = picture;
    u32 wordAgain = 0;
    u32 bitAgain = 0;
    Run(*member.decode, job, copy.data(), frame, scratch, wordAgain, bitAgain);
    if (wordAgain != word || bitAgain != bit || (IsExact(member) && copy != picture)) std::abort();
    coded.frames.push_back(std::move(frame));
  }
  return coded;
}

void Copy(benchmark::State& state, const Member& member, const std::vector<const Sequence*>& sequences) {
  const std::vector<Job>& jobs = JobsOf(sequences, member.pixelName);
  const std::vector<Item> items = ItemsOf(jobs);
  std::vector<u8> target;
  for (const Item& item : items) target.resize(std::max(target.size(), PictureOf(item).size()));
  Measure(state, items, 0, [&](std::size_t i) {
    const std::vector<u8>& picture = PictureOf(items[i]);
    std::memcpy(target.data(), picture.data(), picture.size());
    benchmark::DoNotOptimize(target.data());
  });
}

// All frames of the sequences, in the order of the items.
std::vector<std::vector<u32>> CodeAll(const Member& member, const std::vector<Job>& jobs,
                                      std::size_t& bytes) {
  std::vector<std::vector<u32>> frames;
  for (const Job& job : jobs) {
    CodedSequence coded = Code(member, job);
    bytes += coded.bytes;
    std::move(coded.frames.begin(), coded.frames.end(), std::back_inserter(frames));
  }
  return frames;
}

void Encode(benchmark::State& state, const Member& member, const std::vector<const Sequence*>& sequences) {
  const std::vector<Job>& jobs = JobsOf(sequences, member.pixelName);
  std::size_t coded = 0;
  std::vector<std::vector<u32>> frames = CodeAll(member, jobs, coded);
  const std::vector<Item> items = ItemsOf(jobs);
  std::vector<u8> scratch;
  u32 word = 0;
  u32 bit = 0;
  Measure(state, items, coded, [&](std::size_t i) {
    Run(*member.encode, *items[i].job, PictureOf(items[i]).data(), frames[i], scratch, word, bit);
  });
}

void Decode(benchmark::State& state, const Member& member, const std::vector<const Sequence*>& sequences) {
  const std::vector<Job>& jobs = JobsOf(sequences, member.pixelName);
  std::size_t coded = 0;
  const std::vector<std::vector<u32>> frames = CodeAll(member, jobs, coded);
  const std::vector<Item> items = ItemsOf(jobs);
  std::vector<u8> picture;
  u32 widest = 0;
  for (const Job& job : jobs) {
    picture.resize(std::max(picture.size(), job.pictures[0].size()));
    widest = std::max(widest, job.sequence->width);
  }
  std::vector<u8> scratch(VorelScratchBytes(widest));
  u32 word = 0;
  u32 bit = 0;
  Measure(state, items, coded, [&](std::size_t i) {
    Run(*member.decode, *items[i].job, picture.data(), frames[i], scratch, word, bit);
  });
}

using RunMember = void(benchmark::State&, const Member&, const std::vector<const Sequence*>&);

void Register(const Member& member, const std::string& name, const std::vector<const Sequence*>& sequences) {
  const auto add = [&](const char* operation, RunMember* run) {
    benchmark::RegisterBenchmark((std::string(operation) + '/' + member.name + '/' + name).c_str(), run,
                                 member, sequences)
        ->Unit(benchmark::kMillisecond);
  };
  add("memcpy", Copy);
  add("encode", Encode);
  add("decode", Decode);
}

int Main(int count, char** arguments) {
  std::string corpus;
  std::string members = kDefaultMembers;
  int kept = 1;
  for (int i = 1; i < count; ++i) {
    const std::string argument = arguments[i];
    if (argument.starts_with("--corpus=")) {
      corpus = argument.substr(9);
    } else if (argument.starts_with("--members=")) {
      members = argument.substr(10);
    } else {
      arguments[kept++] = arguments[i];
    }
  }
  benchmark::Initialize(&kept, arguments);
  if (benchmark::ReportUnrecognizedArguments(kept, arguments)) return 2;
  std::vector<Sequence> sequences;
  if (corpus.empty()) {
    sequences.push_back(LoadSampleClip(VOREL_SOURCE_FOLDER "/samples/brook_640x360p_8.y4m"));
  } else {
    sequences = LoadFolder(corpus);
  }
  std::vector<const Sequence*> all;
  for (const Sequence& sequence : sequences) all.push_back(&sequence);
  std::istringstream list(members);
  for (std::string name; std::getline(list, name, ',');) {
    const Member member = FindMember(name);
    Register(member, "all", all);
    for (const Sequence* sequence : all) {
      if (all.size() > 1) Register(member, sequence->name, {sequence});
    }
  }
  RegisterPeers("all", all);
  RegisterComponents(all);
  RegisterConversions();
  benchmark::AddCustomContext("cycle", std::to_string(SecondsPerCycle() * 1e9) + " ns");
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}

}  // namespace
}  // namespace vorel::bench

int main(int count, char** arguments) {
  try {
    return vorel::bench::Main(count, arguments);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "vorel-bench: %s\n", error.what());
    return 1;
  }
}
