#include "bench/members.h"

#include <cstdio>
#include <cstdlib>
#include <sstream>
#include <stdexcept>

#include "frame/frame_bounds.h"
#include "pixel/conversion_table.h"
#include "vorel/vorel.h"

namespace vorel::bench {

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

std::vector<Member> FindMembers(const std::string& list) {
  std::vector<Member> members;
  std::istringstream names(list);
  for (std::string name; std::getline(names, name, ',');) members.push_back(FindMember(name));
  return members;
}

// Pictures in deeper formats have no more than 10 significant bits where no matrix made them.
bool IsExact(const Member& member) {
  const SampleDomain& frame = member.encode->layout->samples;
  for (const Conversion<FillFunction>& row : kFills) {
    const PixelLayout& pixel = *row.pixel;
    if (row.pixelName == member.pixelName) {
      const int bits = pixel.model == ColourModel::rgb && pixel.sampleBits > 10 ? 10 : pixel.sampleBits;
      return frame.model == pixel.model && frame.unit == pixel.unit && frame.range == pixel.range &&
             bits <= frame.bits;
    }
  }
  return false;
}

FrameRoom RoomFor(const Member& member, PictureSize size) {
  return {std::vector<u32>(MaxFrameBytes(*member.encode->layout, size.width, size.height) / 4 + 20),
          std::vector<u8>(VorelScratchBytes(size.width))};
}

FrameEnd RunRoutine(const FrameRoutine& routine, PictureSize size, i32 rowBytes, const u8* picture,
                    const u32* frame, u8* scratch) {
  FrameEnd end = {5, 0};
  const FrameCall call = {size.width, size.height, rowBytes, const_cast<u8*>(picture),
                          1,          &end.word,   &end.bit, reinterpret_cast<u8*>(const_cast<u32*>(frame)),
                          scratch};
  if (routine.run(call) != Status::complete) {
    std::fprintf(stderr, "%s: fails\n", routine.name);
    std::abort();
  }
  return end;
}

FrameEnd EncodeChecked(const Member& member, PictureSize size, const std::vector<u8>& picture,
                       FrameRoom& room) {
  const i32 rowBytes = static_cast<i32>(picture.size() / size.height);
  const FrameEnd end =
      RunRoutine(*member.encode, size, rowBytes, picture.data(), room.frame.data(), room.scratch.data());
  std::vector<u8> copy = picture;  // bytes that no sample lies in stay
  const FrameEnd again =
      RunRoutine(*member.decode, size, rowBytes, copy.data(), room.frame.data(), room.scratch.data());
  if (again.word != end.word || again.bit != end.bit || (IsExact(member) && copy != picture)) {
    std::fprintf(stderr, "%s: a picture does not come back\n", member.name.c_str());
    std::abort();
  }
  return end;
}

}  // namespace vorel::bench
