// What happens on SIGINT, SIGTERM and SIGHUP: the file in the making is removed, then the signal takes its
// ordinary effect.
#pragma once
#include <string>

namespace vorel::tool {

// Takes over the three signals, except where they are ignored, and makes a broken pipe an error of write.
void CatchInterruptions();

// From here until its end no signal takes effect: for the moment between making a file and naming it to
// GuardTemporary.
struct InterruptionHold {
  InterruptionHold();
  ~InterruptionHold();
  InterruptionHold(const InterruptionHold&) = delete;
  InterruptionHold& operator=(const InterruptionHold&) = delete;
};

// Names the one file that a signal removes, in place of any named before; an empty path names none.
void GuardTemporary(const std::string& path);

}  // namespace vorel::tool
