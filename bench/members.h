// Pairs of frame routines by name, and how they are run on whole pictures.
#pragma once
#include <string>
#include <vector>

#include "base/integers.h"
#include "frame/catalogue.h"

namespace vorel::bench {

// One pair of routines, as --members names it: "YCbCr8bv422p/2vuy".
struct Member {
  std::string name;
  std::string pixelName;
  const FrameRoutine* encode;
  const FrameRoutine* decode;
};

// Throws std::runtime_error.
Member FindMember(const std::string& name);

// The pairs of a list with commas between them.
std::vector<Member> FindMembers(const std::string& list);

// Whether pictures made by InPixelFormat come back as they were.
bool IsExact(const Member& member);

struct PictureSize {
  u32 width;
  u32 height;
};

// What coding one picture works on.
struct FrameRoom {
  std::vector<u32> frame;  // with room for the whole frame bound
  std::vector<u8> scratch;
};

FrameRoom RoomFor(const Member& member, PictureSize size);

struct FrameEnd {
  u32 word;
  u32 bit;
};

// Codes or decodes one frame; ends the program if a routine fails.
FrameEnd RunRoutine(const FrameRoutine& routine, PictureSize size, i32 rowBytes, const u8* picture,
                    const u32* frame, u8* scratch);

// Size of a frame that is recorded in a movie.
constexpr std::size_t RecordedBytes(FrameEnd end) {
  return (std::size_t{end.word} * 32 + 7 + end.bit) / 8;
}

// Codes a picture and decodes it again; ends the program if it does not come back. Every figure rests on such frames.
FrameEnd EncodeChecked(const Member& member, PictureSize size, const std::vector<u8>& picture,
                       FrameRoom& room);

}  // namespace vorel::bench
