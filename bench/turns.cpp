#include "bench/turns.h"

#include <algorithm>
#include <memory>

#include "bench/coded_frames.h"
#include "frame/instruction_set.h"

namespace vorel::bench {
namespace {

// A member with its pictures, coded.
struct Prepared {
  Prepared(const Member& pair, const std::vector<const Sequence*>& sequences)
      : member(pair),
        jobs(MakeJobs(sequences, pair.pixelName)),
        items(ItemsOf(jobs)),
        coded(CodeAll(member, items)),
        room(DecodeRoomFor(member, items)) {}

  void Encode(std::size_t i) { EncodeOne(member, items[i], coded.frames[i]); }
  void Decode(std::size_t i) { DecodeOne(member, items[i], coded.frames[i], room); }

  Member member;
  std::vector<Job> jobs;
  std::vector<Item> items;
  CodedFrames coded;
  DecodeRoom room;
};

// Both directions of a member follow each other, and share what was coded. There is a slot for each of two ways.
Prepared& PreparedIn(std::unique_ptr<Prepared>& slot, const Member& member,
                     const std::vector<const Sequence*>& sequences) {
  const auto isThatOf = [&](const Prepared& last) {
    return last.member.name == member.name &&
           std::equal(last.jobs.begin(), last.jobs.end(), sequences.begin(), sequences.end(),
                      [](const Job& job, const Sequence* sequence) { return job.sequence == sequence; });
  };
  if (slot && isThatOf(*slot)) return *slot;
  slot.reset();
  slot = std::make_unique<Prepared>(member, sequences);
  return *slot;
}

Prepared& PreparedFirst(const Member& member, const std::vector<const Sequence*>& sequences) {
  static std::unique_ptr<Prepared> slot;
  return PreparedIn(slot, member, sequences);
}

Prepared& PreparedSecond(const Member& member, const std::vector<const Sequence*>& sequences) {
  static std::unique_ptr<Prepared> slot;
  return PreparedIn(slot, member, sequences);
}

using Direction = void (Prepared::*)(std::size_t);

void TakeTurnsOfSets(benchmark::State& state, Timings& timings, Prepared& pictures, Direction code) {
  const InstructionSet before = InstructionSetInUse();
  const auto on = [&](InstructionSet set) {
    return [&pictures, code, set](std::size_t i) {
      UseInstructionSet(set);
      (pictures.*code)(i);
    };
  };
  MeasureInTurns(state, pictures.items.size(), timings, on(InstructionSet::baseline),
                 on(InstructionSet::avx2));
  UseInstructionSet(before);
}

}  // namespace

void RegisterSets(const Member& member, const std::string& group,
                  const std::vector<const Sequence*>& sequences) {
  if (BestInstructionSet() == InstructionSet::baseline) return;
  const auto add = [&](const char* operation, Direction code) {
    Register(operation + member.name + '/' + group, [=](benchmark::State& state, Timings& timings) {
      TakeTurnsOfSets(state, timings, PreparedFirst(member, sequences), code);
    });
  };
  add("sets/encode/", &Prepared::Encode);
  add("sets/decode/", &Prepared::Decode);
}

void RegisterBeside(const std::string& kind, const Member& other, const Member& member,
                    const std::string& group, const std::vector<const Sequence*>& sequences) {
  const auto add = [&](const char* operation, Direction code) {
    Register(kind + operation + member.name + '/' + group, [=](benchmark::State& state, Timings& timings) {
      Prepared& first = PreparedFirst(other, sequences);
      Prepared& second = PreparedSecond(member, sequences);
      MeasureInTurns(
          state, first.items.size(), timings, [&](std::size_t i) { (first.*code)(i); },
          [&](std::size_t i) { (second.*code)(i); });
    });
  };
  add("/encode/", &Prepared::Encode);
  add("/decode/", &Prepared::Decode);
}

}  // namespace vorel::bench
