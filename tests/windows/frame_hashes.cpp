// A line for each frame routine: its name, its pixel format and a hash of all that it makes of a fixed run of
// pictures. Built for two systems, it shows that both make the same.
// frame_hashes INSTRUCTIONS     exit status 3: this processor doesn't have them
#include <cstdio>
#include <cstring>
#include <map>
#include <vector>

#include "frame/instruction_set.h"
#include "tests/core/member_call.h"
#include "vorel/vorel.h"

namespace {

using namespace vorel;

struct PictureSize {
  u32 width;
  u32 height;
};

// Around strips and pieces of them, one row that is coded in several, and rows that are decoded from two places where
// registers have 64 bits.
constexpr PictureSize kSizes[] = {{1, 1}, {2, 3}, {7, 2}, {37, 5}, {67, 4}, {130, 9}, {4200, 3}, {1300, 24}};
constexpr int kPaints = 3;
constexpr u32 kMostPixelBytes = 8;
constexpr u32 kHeaderWords = VOREL_FRAME_HEADER_WORDS;

u64 Mix(u64 hash, const u8* bytes, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) hash = (hash ^ bytes[i]) * 1099511628211u;
  return hash;
}

struct Random {
  u32 state;
};

u8 Next(Random& random) {
  random.state = random.state * 1664525 + 1013904223;
  return static_cast<u8>(random.state >> 24);
}

// Noise, slow changes, and large steps between flat stretches.
std::vector<u8> Paint(int paint, u32 rowBytes, u32 height) {
  std::vector<u8> picture(std::size_t{rowBytes} * height);
  Random random = {height * 977 + rowBytes};
  u8 level = 0x40;
  for (std::size_t i = 0; i < picture.size(); ++i) {
    const u8 any = Next(random);
    if (paint == 2 && any < 8) level = Next(random);
    picture[i] = paint == 0   ? any
                 : paint == 1 ? static_cast<u8>(100 + i % rowBytes / 16 + i / rowBytes + any % 4)
                              : level;
  }
  return picture;
}

// Frames of the run, by layout and scan, made by the first encoder of each.
using Frames = std::map<std::pair<const FrameLayout*, Scan>, std::vector<std::vector<u8>>>;

struct Run {
  PictureSize size;
  u32 rowBytes;
  int paint;
};

std::vector<Run> AllRuns() {
  std::vector<Run> runs;
  for (const PictureSize size : kSizes) {
    // Enough for every format, v210 with its blocks of 48 pixels included.
    const u32 rowBytes = (size.width + 47) / 48 * 48 * kMostPixelBytes;
    for (int paint = 0; paint < kPaints; ++paint) runs.push_back({size, rowBytes, paint});
  }
  return runs;
}

Arguments ArgumentsOf(const Run& run, u32 turn) {
  const i32 rowBytes = static_cast<i32>(run.rowBytes);
  return {run.size.width, run.size.height, turn % 2 == 0 ? rowBytes : -rowBytes, turn % 3, kHeaderWords, 0};
}

u64 HashEncoder(const FrameRoutine& routine, const std::vector<Run>& runs, Frames& frames) {
  u64 hash = 14695981039346656037u;
  std::vector<std::vector<u8>>& kept = frames[{routine.layout, routine.scan}];
  const bool keeps = kept.empty();
  for (u32 turn = 0; turn < runs.size(); ++turn) {
    const Run& run = runs[turn];
    const std::vector<u8> picture = Paint(run.paint, run.rowBytes, run.size.height);
    std::vector<u8> frame(std::size_t{run.rowBytes} * run.size.height * 2 + 4096);
    Arguments arguments = ArgumentsOf(run, turn);
    const u32 status = CallEncoder(routine, arguments, picture.data(), frame.data());
    const u32 told[] = {status, arguments.word, arguments.bit};
    hash = Mix(hash, reinterpret_cast<const u8*>(told), sizeof told);
    // Up to the end of the last word that holds bits. The cursors count the header twice, and behind the frame an
    // encoder leaves what it tried.
    const std::size_t words = arguments.word - kHeaderWords + (arguments.bit != 0 ? 1 : 0);
    hash = Mix(hash, frame.data(), words * 4);
    if (keeps) kept.push_back(frame);
  }
  return hash;
}

u64 HashDecoder(const FrameRoutine& routine, const std::vector<Run>& runs, const Frames& frames) {
  u64 hash = 14695981039346656037u;
  const std::vector<std::vector<u8>>& given = frames.at({routine.layout, routine.scan});
  for (u32 turn = 0; turn < runs.size(); ++turn) {
    const Run& run = runs[turn];
    std::vector<u8> picture(std::size_t{run.rowBytes} * run.size.height, 0xA5);
    std::vector<u64> scratch(VorelScratchBytes(run.size.width) / sizeof(u64) + 2);
    Arguments arguments = ArgumentsOf(run, turn);
    const u32 status = CallDecoder(routine, arguments, picture.data(), given[turn].data(),
                                   reinterpret_cast<u8*>(scratch.data()));
    const u32 told[] = {status, arguments.word, arguments.bit};
    hash = Mix(hash, reinterpret_cast<const u8*>(told), sizeof told);
    hash = Mix(hash, picture.data(), picture.size());
  }
  return hash;
}

}  // namespace

int main(int count, char** arguments) {
  const InstructionSet set =
      count > 1 && std::strcmp(arguments[1], "avx2") == 0 ? InstructionSet::avx2 : InstructionSet::baseline;
  if (!UseInstructionSet(set)) return 3;
  const std::vector<Run> runs = AllRuns();
  Frames frames;
  for (const FrameRoutine& routine : AllRoutines()) {  // encoders come first
    const u64 hash = routine.direction == Direction::encode ? HashEncoder(routine, runs, frames)
                                                            : HashDecoder(routine, runs, frames);
    std::printf("%s %08x %08x%08x\n", routine.name, routine.pixelFormat, static_cast<u32>(hash >> 32),
                static_cast<u32>(hash));
  }
  return 0;
}
