#include "bench/frames.h"

#include <cstring>

#include "bench/coded_frames.h"

namespace vorel::bench {
namespace {

using Sequences = std::vector<const Sequence*>;

// Both directions of a member follow each other, and share what was coded.
CodedFrames& Coded(const Member& member, const std::vector<Item>& items) {
  static CodedFrames coded;
  static std::string made;
  const std::string key =
      member.name + '/' + items[0].job->sequence->name + '/' + std::to_string(items.size());
  if (made != key) {
    coded = {};
    coded = CodeAll(member, items);
    made = key;
  }
  return coded;
}

void Copy(benchmark::State& state, Timings& timings, const Member& member, const Sequences& sequences) {
  const std::vector<Item> items = ItemsOf(JobsOf(sequences, member.pixelName));
  std::vector<u8> target = RoomForAnyPicture(items);
  Measure(state, items, 0, timings, [&](std::size_t i) {
    const std::vector<u8>& picture = PictureOf(items[i]);
    std::memcpy(target.data(), picture.data(), picture.size());
    benchmark::DoNotOptimize(target.data());
  });
}

void Encode(benchmark::State& state, Timings& timings, const Member& member, const Sequences& sequences) {
  const std::vector<Item> items = ItemsOf(JobsOf(sequences, member.pixelName));
  CodedFrames& coded = Coded(member, items);
  Measure(state, items, coded.bytes, timings,
          [&](std::size_t i) { EncodeOne(member, items[i], coded.frames[i]); });
}

void Decode(benchmark::State& state, Timings& timings, const Member& member, const Sequences& sequences) {
  const std::vector<Item> items = ItemsOf(JobsOf(sequences, member.pixelName));
  const CodedFrames& coded = Coded(member, items);
  DecodeRoom room = DecodeRoomFor(member, items);
  Measure(state, items, coded.bytes, timings,
          [&](std::size_t i) { DecodeOne(member, items[i], coded.frames[i], room); });
}

}  // namespace

void RegisterFrames(const Member& member, const std::string& group, const Sequences& sequences) {
  const auto add = [&](const char* operation, auto* run) {
    Register(operation + member.name + '/' + group,
             [=](benchmark::State& state, Timings& timings) { run(state, timings, member, sequences); });
  };
  add("memcpy/", Copy);
  add("encode/", Encode);
  add("decode/", Decode);
}

}  // namespace vorel::bench
