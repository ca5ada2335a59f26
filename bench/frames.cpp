#include "bench/frames.h"

#include <cstring>

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

void Encode(benchmark::State& state, const Member& member, const std::vector<const Sequence*>& sequences) {
  const std::vector<Item> items = ItemsOf(JobsOf(sequences, member.pixelName));
  CodedFrames& coded = Coded(member, items);
  Measure(state, items, coded.bytes, [&](std::size_t i) {
    RunRoutine(*member.encode, SizeOf(items[i]), items[i].job->rowBytes, PictureOf(items[i]).data(),
               coded.frames[i].data(), nullptr);
  });
}

void Decode(benchmark::State& state, const Member& member, const std::vector<const Sequence*>& sequences) {
  const std::vector<Item> items = ItemsOf(JobsOf(sequences, member.pixelName));
  const CodedFrames& coded = Coded(member, items);
  std::vector<u8> picture = RoomForAnyPicture(items);
  u32 widest = 0;
  for (const Item& item : items) widest = std::max(widest, SizeOf(item).width);
  std::vector<u8> scratch(RoomFor(member, {widest, 1}).scratch);
  Measure(state, items, coded.bytes, [&](std::size_t i) {
    RunRoutine(*member.decode, SizeOf(items[i]), items[i].job->rowBytes, picture.data(),
               coded.frames[i].data(), scratch.data());
  });
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
}

}  // namespace vorel::bench
