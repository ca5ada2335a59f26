// What a person sees on stderr: problems, notes, and while frames run a line that is written over itself.
#pragma once
#include <chrono>
#include <string>

#include "base/integers.h"
#include "base/problem.h"

namespace vorel::tool {

struct Console {
  bool quiet = false;          // problems only
  bool verbose = false;        // what a run took, too
  bool showsProgress = false;  // stderr is a terminal
  bool hasLine = false;        // a progress line stands there, to be wiped before anything else
};

// A console on stderr.
Console OpenConsole(bool quiet, bool verbose);

// "vorel: where: what", and the advice below it.
void Report(Console& console, const Problem& problem);

// "vorel: note: text", unless quiet.
void Note(Console& console, const std::string& text);

// The way of one clip through a command. Advanced and finished by one thread at a time.
struct Progress {
  Console* console;
  std::string name;
  u64 expectedFrames;  // 0 for unknown
  std::chrono::steady_clock::time_point start;
  std::chrono::steady_clock::time_point shown;  // when the line was last written
  u64 frames = 0;
  u64 pictureBytes = 0;  // of the pictures as they are without coding
  u64 frameBytes = 0;
};

Progress StartProgress(Console& console, const std::string& name, u64 expectedFrames);

// One frame more; the line is brought up to date a few times a second.
void Advance(Progress& progress, u64 pictureBytes, u64 frameBytes);

// Which way the bytes went, for the closing line.
enum class Direction : u8 { encode, decode, verify };

// Wipes the line and, unless quiet, says what was done:
// "brook.y4m: 8 frames, 3.5 MiB -> 2.1 MiB (1.70:1), 123 frames/s".
void FinishProgress(Progress& progress, Direction direction);

// "3.5 MiB".
std::string SizeText(u64 bytes);

// "1.70:1", or "-" when there are no coded bytes.
std::string RatioText(u64 pictureBytes, u64 frameBytes);

}  // namespace vorel::tool
