// Speed of frame routines beside memcpy, with the core alone: it runs where no benchmark library is, as in 32-bit
// Windows, and the same program elsewhere tells what that system costs.
//
//   vorel-bench-members PICTURES MEMBERS
//
// PICTURES is a file of vorel-bench --dump=PICTURES, MEMBERS a list as vorel-bench --members takes it. The first line
// has nanoseconds a cycle and the instruction set in use; then there is one for each member: its name, nanoseconds a
// pixel of encode, decode and memcpy, bytes a pixel of the pictures and of the frames. Times are the sum of the
// fastest of each picture, on the wall.
#include <algorithm>
#include <cstdio>
#include <cstring>
#include <exception>
#include <fstream>
#include <map>

#include "bench/clock.h"
#include "bench/members.h"
#include "bench/raw_pictures.h"
#include "frame/instruction_set.h"

namespace vorel::bench {
namespace {

constexpr int kRounds = 3;

// Of all pictures so far.
struct Sums {
  double encode = 0;
  double decode = 0;
  double copy = 0;
  double pixels = 0;
  double pictureBytes = 0;
  double frameBytes = 0;
};

template <typename Work>
void KeepFastest(double& fastest, Work work) {
  const double start = WallTime();
  work();
  fastest = std::min(fastest, WallTime() - start);
}

void MeasurePicture(const Member& member, PictureSize size, const std::vector<u8>& picture, Sums& sums) {
  FrameRoom room = RoomFor(member, size);
  sums.frameBytes += static_cast<double>(RecordedBytes(EncodeChecked(member, size, picture, room)));
  const i32 rowBytes = static_cast<i32>(picture.size() / size.height);
  std::vector<u8> target(picture.size());
  double encode = 1e9;
  double decode = 1e9;
  double copy = 1e9;
  for (int round = 0; round < kRounds; ++round) {
    KeepFastest(encode, [&] {
      RunRoutine(*member.encode, size, rowBytes, picture.data(), room.frame.data(), room.scratch.data());
    });
    KeepFastest(decode, [&] {
      RunRoutine(*member.decode, size, rowBytes, target.data(), room.frame.data(), room.scratch.data());
    });
    KeepFastest(copy, [&] {
      std::memcpy(target.data(), picture.data(), picture.size());
      asm volatile("" : : "r"(target.data()) : "memory");
    });
  }
  sums.encode += encode;
  sums.decode += decode;
  sums.copy += copy;
  sums.pixels += static_cast<double>(size.width) * size.height;
  sums.pictureBytes += static_cast<double>(picture.size());
}

int Main(const char* path, const char* list) {
  const std::vector<Member> members = FindMembers(list);
  std::vector<Sums> sums(members.size());
  std::ifstream file(path, std::ios::binary);
  if (!file) {
    std::fprintf(stderr, "vorel-bench-members: %s: cannot be opened; vorel-bench --dump=%s makes it\n", path,
                 path);
    return 1;
  }
  const double cycle = SecondsPerCycle(WallTime);
  for (Sequence sequence; ReadRawPicture(file, sequence);) {
    std::map<std::string, std::vector<u8>> pictures;  // by pixel format
    for (std::size_t i = 0; i < members.size(); ++i) {
      std::vector<u8>& picture = pictures[members[i].pixelName];
      if (picture.empty()) picture = InPixelFormat(sequence, members[i].pixelName)[0];
      MeasurePicture(members[i], {sequence.width, sequence.height}, picture, sums[i]);
    }
  }
  std::printf("cycle %.6f %s\n", std::min(cycle, SecondsPerCycle(WallTime)) * 1e9,
              kInstructionSetNames[static_cast<int>(InstructionSetInUse())]);
  for (std::size_t i = 0; i < members.size(); ++i) {
    const Sums& sum = sums[i];
    std::printf("%s %.4f %.4f %.4f %.6f %.6f\n", members[i].name.c_str(), sum.encode * 1e9 / sum.pixels,
                sum.decode * 1e9 / sum.pixels, sum.copy * 1e9 / sum.pixels, sum.pictureBytes / sum.pixels,
                sum.frameBytes / sum.pixels);
  }
  return 0;
}

}  // namespace
}  // namespace vorel::bench

int main(int count, char** arguments) {
  if (count != 3) {
    std::fprintf(stderr, "usage: vorel-bench-members PICTURES MEMBERS\n");
    return 2;
  }
  try {
    return vorel::bench::Main(arguments[1], arguments[2]);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "vorel-bench-members: %s\n", error.what());
    return 1;
  }
}
