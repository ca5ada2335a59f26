// Speed of the frame routines, one thread, beside memcpy and other lossless coders in the same run.
//
//   vorel-bench [--corpus=FOLDER] [--members=LIST] [--instructions=NAME] [--dump=FILE]
//               [--converted=LIST] [--rounds=NUMBER] [options of Google Benchmark]
//
// FOLDER holds a folder of PNG files for each kind of picture; without it the clip in samples/ is used. LIST names
// pairs of frame format and pixel format, as "YCbCr8bv422p/2vuy,RGB8bfp/RGB"; without it some of every format run.
// NAME is an instruction set, "baseline" or "avx2"; without it the best one that the processor has is used.
// Members of --converted are measured in turns with that of --members which has the same frame format.
// All that is chosen runs as often as --rounds tells, 1 if it doesn't, and the figures of the last round are those
// of all rounds: neighbours on a shared machine come and go.
// FILE gets the first picture of each folder, for vorel-bench-members; nothing is measured then.
// Figures: MB/s of raw picture, nanoseconds and cycles per pixel, the fastest of each picture in processor
// time, and how many times smaller the frames are. A cycle is one step of a chain of dependent additions,
// timed in this run. Only ratios travel to other machines.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <stdexcept>

#include "bench/components.h"
#include "bench/conversions.h"
#include "bench/frames.h"
#include "bench/peers.h"
#include "bench/picture_files.h"
#include "bench/raw_pictures.h"
#include "bench/turns.h"
#include "frame/instruction_set.h"

namespace vorel::bench {
namespace {

// Some of every frame format, direct and through conversions.
constexpr const char* kDefaultMembers =
    "YCbCr8bw422p/yuvu,YCbCr8bw422i/yuvu,YCbCr8bv422p/2vuy,YCbCr8bv422i/2vuy,YCbCr8bv422p/_RGB,"
    "YCbCr8bv422p/v210,YCbCrA8bv4224p/VUYA,YCbCr10bv422p/v210,YCbCr10bv422i/v210,YCbCrA10bv4224p/AV416,"
    "YCbCr8bv444p/_v408,YCbCrA8bv4444p/Av408,YCbCr8bu444p/_r408,YCbCr10bv444p/v410,YCbCrA10bv4444p/AV416,"
    "RGB8bfp/RGB,RGB8bfi/RGB,RGB8bfp/_RGB,RGBA8bfp/BGRA,RGB10bfp/F10k,RGB10bfi/F10k,RGBA10bfp/b64a";

struct Options {
  std::string corpus;
  std::string members = kDefaultMembers;
  std::string instructions;
  std::string dump;
  std::string converted;
  std::string rounds = "1";
};

// Takes what is ours out of the arguments; returns how many are left.
int ReadOptions(int count, char** arguments, Options& options) {
  struct Place {
    const char* name;
    std::string& value;
  };
  const Place places[] = {{"--corpus=", options.corpus},
                          {"--members=", options.members},
                          {"--instructions=", options.instructions},
                          {"--dump=", options.dump},
                          {"--converted=", options.converted},
                          {"--rounds=", options.rounds}};
  int kept = 1;
  for (int i = 1; i < count; ++i) {
    const std::string argument = arguments[i];
    bool isOurs = false;
    for (const Place& place : places) {
      if (!argument.starts_with(place.name)) continue;
      place.value = argument.substr(std::string(place.name).size());
      isOurs = true;
    }
    if (!isOurs) arguments[kept++] = arguments[i];
  }
  return kept;
}

// Throws std::runtime_error.
void UseInstructions(const std::string& name) {
  for (const InstructionSet set : {InstructionSet::baseline, InstructionSet::avx2}) {
    if (name != kInstructionSetNames[static_cast<int>(set)]) continue;
    if (UseInstructionSet(set)) return;
    throw std::runtime_error("--instructions=" + name + ": this processor doesn't have it");
  }
  throw std::runtime_error("--instructions=" + name + ": unknown; there are baseline and avx2");
}

// Throws std::runtime_error.
int RoundsOf(const std::string& text) {
  int rounds = 0;
  const char* end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, rounds);
  if (error != std::errc{} || stop != end || rounds < 1)
    throw std::runtime_error("--rounds=" + text + ": not a number from 1 on");
  return rounds;
}

// The member without conversions; throws std::runtime_error.
const Member& DirectOf(const Member& converted, const std::vector<Member>& members) {
  for (const Member& member : members) {
    if (member.encode->layout == converted.encode->layout && member.encode->scan == converted.encode->scan)
      return member;
  }
  throw std::runtime_error("--converted: " + converted.name +
                           ": no member of --members has its frame format");
}

// The progressive member beside an interlaced one, if --members names it.
const Member* ProgressiveOf(const Member& member, const std::vector<Member>& members) {
  if (member.encode->scan != Scan::i) return nullptr;
  const auto other = std::find_if(members.begin(), members.end(), [&](const Member& candidate) {
    return candidate.encode->layout == member.encode->layout && candidate.encode->scan == Scan::p &&
           candidate.pixelName == member.pixelName;
  });
  return other == members.end() ? nullptr : &*other;
}

// Pictures that a group of benchmarks runs on.
struct Group {
  std::string name;
  std::vector<const Sequence*> sequences;
};

// All pictures, those that have more than 8 bits where not all do, and each sequence.
std::vector<Group> GroupsOf(const std::vector<Sequence>& sequences) {
  Group all = {"all", {}};
  Group deep = {"deep", {}};
  for (const Sequence& sequence : sequences) {
    all.sequences.push_back(&sequence);
    if (sequence.isDeep) deep.sequences.push_back(&sequence);
  }
  std::vector<Group> groups = {all};
  if (!deep.sequences.empty() && deep.sequences.size() < sequences.size()) groups.push_back(deep);
  if (sequences.size() > 1) {
    for (const Sequence* sequence : all.sequences) groups.push_back({sequence->name, {sequence}});
  }
  return groups;
}

// "pan8 (3 pictures), cg10 (3, more than 8 bits)"
std::string NamesOf(const std::vector<Sequence>& sequences) {
  std::string names;
  for (const Sequence& sequence : sequences) {
    if (!names.empty()) names += ", ";
    names += sequence.name + " (" + std::to_string(sequence.pictures.size()) +
             (names.empty() ? " pictures" : "") + (sequence.isDeep ? ", more than 8 bits)" : ")");
  }
  return names;
}

// The library's default reporters serve one call alone.
void RunRounds(int rounds, bool hasFile) {
  if (rounds == 1) {
    benchmark::RunSpecifiedBenchmarks();
    return;
  }
  for (int round = 0; round < rounds; ++round) {
    benchmark::ConsoleReporter table(benchmark::ConsoleReporter::OO_None);
    benchmark::JSONReporter file;
    benchmark::RunSpecifiedBenchmarks(&table, hasFile ? &file : nullptr);
  }
}

int Main(int count, char** arguments) {
  Options options;
  int kept = ReadOptions(count, arguments, options);
  const bool hasFile = std::any_of(arguments, arguments + kept, [](const char* argument) {
    return std::string(argument).starts_with("--benchmark_out=");
  });
  benchmark::Initialize(&kept, arguments);
  if (benchmark::ReportUnrecognizedArguments(kept, arguments)) return 2;
  if (!options.instructions.empty()) UseInstructions(options.instructions);
  const std::vector<Member> members = FindMembers(options.members);
  const int rounds = RoundsOf(options.rounds);
  std::vector<Sequence> sequences;
  if (options.corpus.empty()) {
    sequences.push_back(LoadSampleClip(VOREL_SOURCE_FOLDER "/samples/brook_640x360p_8.y4m"));
  } else {
    sequences = LoadFolder(options.corpus);
  }
  if (!options.dump.empty()) {
    WriteRawPictures(options.dump, sequences);
    return 0;
  }
  const std::vector<Group> groups = GroupsOf(sequences);
  for (const Member& member : members) {
    for (const Group& group : groups) {
      RegisterFrames(member, group.name, group.sequences);
      RegisterSets(member, group.name, group.sequences);
      if (const Member* const progressive = ProgressiveOf(member, members))
        RegisterBeside("scans", *progressive, member, group.name, group.sequences);
    }
  }
  for (const Member& member : FindMembers(options.converted)) {
    for (const Group& group : groups)
      RegisterBeside("share", DirectOf(member, members), member, group.name, group.sequences);
  }
  for (const Group& group : groups) RegisterPeers(group.name, group.sequences);
  RegisterComponents(groups[0].sequences);
  RegisterConversions();
  benchmark::AddCustomContext("cycle", std::to_string(SecondsPerCycle() * 1e9) + " ns");
  benchmark::AddCustomContext("instructions", kInstructionSetNames[static_cast<int>(InstructionSetInUse())]);
  benchmark::AddCustomContext("peers", PeerVersions());
  benchmark::AddCustomContext("pictures", NamesOf(sequences));
  RunRounds(rounds, hasFile);
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
