#include "bench/coded_frames.h"

#include <algorithm>

namespace vorel::bench {
namespace {

PictureSize SizeOf(const Item& item) {
  return {item.job->sequence->width, item.job->sequence->height};
}

}  // namespace

CodedFrames CodeAll(const Member& member, const std::vector<Item>& items) {
  CodedFrames coded;
  for (const Item& item : items) {
    FrameRoom room = RoomFor(member, SizeOf(item));
    coded.bytes += RecordedBytes(EncodeChecked(member, SizeOf(item), PictureOf(item), room));
    coded.frames.push_back(std::move(room.frame));
  }
  return coded;
}

std::vector<u8> RoomForAnyPicture(const std::vector<Item>& items) {
  std::vector<u8> picture;
  for (const Item& item : items) picture.resize(std::max(picture.size(), PictureOf(item).size()));
  return picture;
}

void EncodeOne(const Member& member, const Item& item, std::vector<u32>& frame) {
  RunRoutine(*member.encode, SizeOf(item), item.job->rowBytes, PictureOf(item).data(), frame.data(), nullptr);
}

DecodeRoom DecodeRoomFor(const Member& member, const std::vector<Item>& items) {
  u32 widest = 0;
  for (const Item& item : items) widest = std::max(widest, SizeOf(item).width);
  return {RoomForAnyPicture(items), RoomFor(member, {widest, 1}).scratch};
}

void DecodeOne(const Member& member, const Item& item, const std::vector<u32>& frame, DecodeRoom& room) {
  RunRoutine(*member.decode, SizeOf(item), item.job->rowBytes, room.picture.data(), frame.data(),
             room.scratch.data());
}

}  // namespace vorel::bench
