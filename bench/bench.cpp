// Speed of the frame routines, one thread, beside memcpy in the same run.
//
//   vorel-bench [--corpus=FOLDER] [options of Google Benchmark]
//
// FOLDER holds a folder of PNG files for each kind of picture; without it the clip in samples/ is used.
// Figures: MB/s of raw picture, nanoseconds and cycles per pixel, the fastest of each picture in processor
// time, and how many times smaller the frames are. A cycle is one step of a chain of dependent additions,
// timed in this run: shared machines change their clock and their neighbours, so only ratios travel.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <limits>

#include "bench/clock.h"
#include "bench/conversions.h"
#include "bench/pictures.h"
#include "vorel/vorel.h"

namespace vorel::bench {
namespace {

constexpr u32 kProgressiveTag = 0x72596259;  // "YbYr"

// Frames of one sequence in one scan.
struct CodedSequence {
  std::vector<std::vector<u32>> frames;  // with room for the whole frame bound
  std::size_t bytes;                     // recorded sizes, summed
};

struct Job {
  const Sequence* sequence;
  bool interlaced;
};

// One step of a chain of dependent additions, the fastest of some runs just now: clocks change.
double SecondsPerCycle() {
  double least = 1;
  for (int run = 0; run < 20; ++run) {
    constexpr int kSteps = 2000000;
    const double start = Now();
    u64 value = 0;
    for (int i = 0; i < kSteps / 8; ++i) {
      asm volatile(
          "add $1,%0\n add $1,%0\n add $1,%0\n add $1,%0\n add $1,%0\n add $1,%0\n add $1,%0\n add $1,%0"
          : "+r"(value));
    }
    least = std::min(least, (Now() - start) / kSteps);
  }
  return least;
}

i32 RowBytes(const Sequence& sequence) {
  return static_cast<i32>((sequence.width + 1) / 2 * 4);
}

void EncodePicture(const Job& job, std::size_t number, std::vector<u32>& frame, u32& word, u32& bit) {
  const Sequence& sequence = *job.sequence;
  word = 5;
  bit = 0;
  const auto routine = job.interlaced ? VorelYCbCr8bw422iFromyuvuEncode : VorelYCbCr8bw422pFromyuvuEncode;
  const u32 status = routine(sequence.width, sequence.height, RowBytes(sequence),
                             sequence.pictures[number].data(), &word, &bit, frame.data());
  if (status != VOREL_COMPLETE) std::abort();
}

void DecodePicture(const Job& job, const std::vector<u32>& frame, u8* picture, std::vector<u8>& scratch,
                   u32& word, u32& bit) {
  const Sequence& sequence = *job.sequence;
  word = 5;
  bit = 0;
  const u32 status = job.interlaced
                         ? VorelYCbCr8bw422iToyuvuDecode(sequence.width, sequence.height, RowBytes(sequence),
                                                         picture, &word, &bit, frame.data())
                         : VorelYCbCr8bw422pToyuvuDecode(sequence.width, sequence.height, RowBytes(sequence),
                                                         picture, &word, &bit, frame.data(), scratch.data());
  if (status != VOREL_COMPLETE) std::abort();
}

CodedSequence Code(const Job& job) {
  const Sequence& sequence = *job.sequence;
  CodedSequence coded = {};
  for (std::size_t i = 0; i < sequence.pictures.size(); ++i) {
    std::vector<u32> frame(VorelMaxFrameBytes(kProgressiveTag, sequence.width, sequence.height) / 4 + 20);
    u32 word = 0;
    u32 bit = 0;
    EncodePicture(job, i, frame, word, bit);
    coded.bytes += (word * 32 + 7 + bit) / 8;
    // Every figure rests on frames that decode to their source.
    std::vector<u8> copy(sequence.pictures[i].size());
    std::vector<u8> scratch(VorelScratchBytes(sequence.width));
    u32 wordAgain = 0;
    u32 bitAgain = 0;
    DecodePicture(job, frame, copy.data(), scratch, wordAgain, bitAgain);
    if (copy != sequence.pictures[i] || wordAgain != word || bitAgain != bit) std::abort();
    coded.frames.push_back(std::move(frame));
  }
  return coded;
}

// Pictures of all jobs, one after another.
struct Item {
  const Job* job;
  std::size_t number;  // of the picture in its sequence
};

std::vector<Item> ItemsOf(const std::vector<Job>& jobs) {
  std::vector<Item> items;
  for (const Job& job : jobs) {
    for (std::size_t i = 0; i < job.sequence->pictures.size(); ++i) items.push_back({&job, i});
  }
  return items;
}

// Runs `once` on every picture until the benchmark has had enough, and reports the sum of the fastest time of
// each.
template <typename Once>
void Measure(benchmark::State& state, const std::vector<Item>& items, std::size_t codedBytes, Once once) {
  std::vector<double> fastest(items.size(), std::numeric_limits<double>::max());
  double cycle = SecondsPerCycle();
  for (auto unused : state) {
    for (std::size_t i = 0; i < items.size(); ++i) {
      const double start = Now();
      once(i);
      benchmark::ClobberMemory();
      fastest[i] = std::min(fastest[i], Now() - start);
    }
  }
  cycle = std::min(cycle, SecondsPerCycle());
  double seconds = 0;
  double pixels = 0;
  double bytes = 0;
  for (std::size_t i = 0; i < items.size(); ++i) {
    const Sequence& sequence = *items[i].job->sequence;
    seconds += fastest[i];
    pixels += static_cast<double>(sequence.width) * sequence.height;
    bytes += static_cast<double>(sequence.pictures[items[i].number].size());
  }
  state.counters["MB/s"] = bytes / 1e6 / seconds;
  state.counters["ns/px"] = seconds * 1e9 / pixels;
  state.counters["cycles/px"] = seconds / cycle / pixels;
  if (codedBytes > 0) state.counters["ratio"] = bytes / static_cast<double>(codedBytes);
}

void Copy(benchmark::State& state, const std::vector<Job>& jobs) {
  const std::vector<Item> items = ItemsOf(jobs);
  std::vector<u8> target;
  for (const Item& item : items)
    target.resize(std::max(target.size(), item.job->sequence->pictures[item.number].size()));
  Measure(state, items, 0, [&](std::size_t i) {
    const std::vector<u8>& picture = items[i].job->sequence->pictures[items[i].number];
    std::memcpy(target.data(), picture.data(), picture.size());
    benchmark::DoNotOptimize(target.data());
  });
}

void Encode(benchmark::State& state, const std::vector<Job>& jobs) {
  std::size_t coded = 0;
  std::size_t longest = 0;
  for (const Job& job : jobs) {
    const CodedSequence sequence = Code(job);
    coded += sequence.bytes;
    longest = std::max(longest, sequence.frames[0].size());
  }
  const std::vector<Item> items = ItemsOf(jobs);
  std::vector<u32> frame(longest);
  u32 word = 0;
  u32 bit = 0;
  Measure(state, items, coded,
          [&](std::size_t i) { EncodePicture(*items[i].job, items[i].number, frame, word, bit); });
}

void Decode(benchmark::State& state, const std::vector<Job>& jobs) {
  std::vector<std::vector<u32>> frames;
  std::size_t coded = 0;
  std::size_t pictureBytes = 0;
  u32 widest = 0;
  for (const Job& job : jobs) {
    CodedSequence sequence = Code(job);
    coded += sequence.bytes;
    pictureBytes = std::max(pictureBytes, job.sequence->pictures[0].size());
    widest = std::max(widest, job.sequence->width);
    std::move(sequence.frames.begin(), sequence.frames.end(), std::back_inserter(frames));
  }
  const std::vector<Item> items = ItemsOf(jobs);
  std::vector<u8> picture(pictureBytes);
  std::vector<u8> scratch(VorelScratchBytes(widest));
  u32 word = 0;
  u32 bit = 0;
  Measure(state, items, coded, [&](std::size_t i) {
    DecodePicture(*items[i].job, frames[i], picture.data(), scratch, word, bit);
  });
}

using Run = void(benchmark::State&, const std::vector<Job>&);

void Register(const std::string& name, const std::vector<Job>& jobs) {
  std::vector<Job> interlaced = jobs;
  for (Job& job : interlaced) job.interlaced = true;
  const auto add = [&](const std::string& operation, Run* run, const std::vector<Job>& work) {
    benchmark::RegisterBenchmark((operation + '/' + name).c_str(), run, work)->Unit(benchmark::kMillisecond);
  };
  add("memcpy", Copy, jobs);
  add("encode/yuvu/8bw-p", Encode, jobs);
  add("encode/yuvu/8bw-i", Encode, interlaced);
  add("decode/yuvu/8bw-p", Decode, jobs);
  add("decode/yuvu/8bw-i", Decode, interlaced);
}

int Main(int count, char** arguments) {
  std::string corpus;
  int kept = 1;
  for (int i = 1; i < count; ++i) {
    const std::string argument = arguments[i];
    if (argument.starts_with("--corpus=")) {
      corpus = argument.substr(9);
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
  std::vector<Job> all;
  for (const Sequence& sequence : sequences) {
    all.push_back({&sequence, false});
    if (sequences.size() > 1) Register(sequence.name, {{&sequence, false}});
  }
  Register("all", all);
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
