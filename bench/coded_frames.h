// Pictures coded by a member, and both directions of one of them.
#pragma once
#include <vector>

#include "bench/measure.h"
#include "bench/members.h"

namespace vorel::bench {

// All pictures of the jobs as frames.
struct CodedFrames {
  std::vector<std::vector<u32>> frames;
  std::size_t bytes = 0;  // recorded sizes, summed
};

// Ends the program if a picture does not come back.
CodedFrames CodeAll(const Member& member, const std::vector<Item>& items);

// Room for any of the pictures.
std::vector<u8> RoomForAnyPicture(const std::vector<Item>& items);

void EncodeOne(const Member& member, const Item& item, std::vector<u32>& frame);

// What a decoder works on besides the frame.
struct DecodeRoom {
  std::vector<u8> picture;
  std::vector<u8> scratch;
};

DecodeRoom DecodeRoomFor(const Member& member, const std::vector<Item>& items);

void DecodeOne(const Member& member, const Item& item, const std::vector<u32>& frame, DecodeRoom& room);

}  // namespace vorel::bench
