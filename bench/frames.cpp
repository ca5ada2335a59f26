#include "bench/frames.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "frame/instruction_set.h"

namespace vorel::bench {
namespace {

// All pictures of the jobs as frames.
struct CodedFrames {
  std::vector<std::vector<u32>> frames;
  std::size_t bytes = 0;  // recorded sizes, summed
};

PictureSize SizeOf(const Item& item) {
  return {item.job->sequence->width, item.job->sequence->height};
}

std::vector<u8> RoomForAnyPicture(const std::vector<Item>& items) {
  std::vector<u8> picture;
  for (const Item& item : items) picture.resize(std::max(picture.size(), PictureOf(item).size()));
  return picture;
}

CodedFrames CodeAll(const Member& member, const std::vector<Item>& items) {
  CodedFrames coded;
  for (const Item& item : items) {
    FrameRoom room = RoomFor(member, SizeOf(item));
    coded.bytes += RecordedBytes(EncodeChecked(member, SizeOf(item), PictureOf(item), room));
    coded.frames.push_back(std::move(room.frame));
  }
  return coded;
}

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

void Copy(benchmark::State& state, const Member& member, const std::vector<const Sequence*>& sequences) {
  const std::vector<Item> items = ItemsOf(JobsOf(sequences, member.pixelName));
  std::vector<u8> target = RoomForAnyPicture(items);
  Measure(state, items, 0, [&](std::size_t i) {
    const std::vector<u8>& picture = PictureOf(items[i]);
    std::memcpy(target.data(), picture.data(), picture.size());
    benchmark::DoNotOptimize(target.data());
  });
}

void EncodeOne(const Member& member, const Item& item, std::vector<u32>& frame) {
  RunRoutine(*member.encode, SizeOf(item), item.job->rowBytes, PictureOf(item).data(), frame.data(), nullptr);
}

void Encode(benchmark::State& state, const Member& member, const std::vector<const Sequence*>& sequences) {
  const std::vector<Item> items = ItemsOf(JobsOf(sequences, member.pixelName));
  CodedFrames& coded = Coded(member, items);
  Measure(state, items, coded.bytes, [&](std::size_t i) { EncodeOne(member, items[i], coded.frames[i]); });
}

// What a decoder works on besides the frame.
struct DecodeRoom {
  std::vector<u8> picture;
  std::vector<u8> scratch;
};

DecodeRoom DecodeRoomFor(const Member& member, const std::vector<Item>& items) {
  u32 widest = 0;
  for (const Item& item : items) widest = std::max(widest, SizeOf(item).width);
  return {RoomForAnyPicture(items), RoomFor(member, {widest, 1}).scratch};
}

void DecodeOne(const Member& member, const Item& item, const std::vector<u32>& frame, DecodeRoom& room) {
  RunRoutine(*member.decode, SizeOf(item), item.job->rowBytes, room.picture.data(), frame.data(),
             room.scratch.data());
}

void Decode(benchmark::State& state, const Member& member, const std::vector<const Sequence*>& sequences) {
  const std::vector<Item> items = ItemsOf(JobsOf(sequences, member.pixelName));
  const CodedFrames& coded = Coded(member, items);
  DecodeRoom room = DecodeRoomFor(member, items);
  Measure(state, items, coded.bytes,
          [&](std::size_t i) { DecodeOne(member, items[i], coded.frames[i], room); });
}

// Runs `once` with the number of every item on both instruction sets, one right after the other. Reports how many times
// as fast the second set is, the middle of all items: what slows both down does not count.
template <typename Once>
void MeasureSets(benchmark::State& state, const std::vector<Item>& items, Once once) {
  constexpr std::array kSets = {InstructionSet::baseline, InstructionSet::avx2};
  const InstructionSet before = InstructionSetInUse();
  std::vector<double> gains;
  for (auto unused : state) {
    for (std::size_t i = 0; i < items.size(); ++i) {
      std::array<double, kSets.size()> times;
      for (std::size_t set = 0; set < kSets.size(); ++set) {
        UseInstructionSet(kSets[set]);
        const double start = Now();
        once(i);
        benchmark::ClobberMemory();
        times[set] = Now() - start;
      }
      gains.push_back(times[0] / times[1]);
    }
  }
  UseInstructionSet(before);
  const auto middle = gains.begin() + static_cast<std::ptrdiff_t>(gains.size() / 2);
  std::nth_element(gains.begin(), middle, gains.end());
  state.counters["gain"] = *middle;
}

void EncodeOnSets(benchmark::State& state, const Member& member,
                  const std::vector<const Sequence*>& sequences) {
  const std::vector<Item> items = ItemsOf(JobsOf(sequences, member.pixelName));
  CodedFrames& coded = Coded(member, items);
  MeasureSets(state, items, [&](std::size_t i) { EncodeOne(member, items[i], coded.frames[i]); });
}

void DecodeOnSets(benchmark::State& state, const Member& member,
                  const std::vector<const Sequence*>& sequences) {
  const std::vector<Item> items = ItemsOf(JobsOf(sequences, member.pixelName));
  const CodedFrames& coded = Coded(member, items);
  DecodeRoom room = DecodeRoomFor(member, items);
  MeasureSets(state, items, [&](std::size_t i) { DecodeOne(member, items[i], coded.frames[i], room); });
}

}  // namespace

void RegisterFrames(const Member& member, const std::string& group,
                    const std::vector<const Sequence*>& sequences) {
  const auto add = [&](const char* operation, auto* run) {
    benchmark::RegisterBenchmark((std::string(operation) + '/' + member.name + '/' + group).c_str(), run,
                                 member, sequences)
        ->Unit(benchmark::kMillisecond);
  };
  add("memcpy", Copy);
  add("encode", Encode);
  add("decode", Decode);
  if (BestInstructionSet() == InstructionSet::baseline) return;
  add("sets/encode", EncodeOnSets);
  add("sets/decode", DecodeOnSets);
}

}  // namespace vorel::bench
