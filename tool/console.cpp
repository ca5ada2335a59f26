// Lines on stderr.
#include "tool/console.h"

#include <unistd.h>

#include <cmath>
#include <cstdio>

namespace vorel::tool {

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds kBetweenLines{200};
constexpr const char* kWipe = "\r\033[K";

void WipeLine(Console& console) {
  if (console.hasLine) std::fputs(kWipe, stderr);
  console.hasLine = false;
}

template <typename... Values>
std::string Formatted(const char* format, Values... values) {
  char text[160];
  std::snprintf(text, sizeof text, format, values...);
  return text;
}

double SecondsSince(Clock::time_point start) {
  return std::chrono::duration<double>(Clock::now() - start).count();
}

std::string FramesText(u64 frames) {
  return std::to_string(frames) + (frames == 1 ? " frame" : " frames");
}

// "2:05" or "1:02:05".
std::string TimeText(double seconds) {
  const u64 whole = static_cast<u64>(std::llround(seconds));
  const unsigned hours = static_cast<unsigned>(whole / 3600);
  const unsigned minutes = static_cast<unsigned>(whole / 60 % 60);
  const unsigned rest = static_cast<unsigned>(whole % 60);
  return hours > 0 ? Formatted("%u:%02u:%02u", hours, minutes, rest) : Formatted("%u:%02u", minutes, rest);
}

std::string LineText(const Progress& progress) {
  const double seconds = SecondsSince(progress.start);
  const double rate = static_cast<double>(progress.frames) / seconds;
  std::string text = progress.name + ": " + std::to_string(progress.frames);
  if (progress.expectedFrames > 0) text.append("/").append(std::to_string(progress.expectedFrames));
  text += " frames, " + Formatted("%.1f", rate) + " frames/s, " +
          RatioText(progress.pictureBytes, progress.frameBytes);
  if (progress.expectedFrames > progress.frames) {
    text += ", " + TimeText(static_cast<double>(progress.expectedFrames - progress.frames) / rate) + " left";
  }
  return text;
}

}  // namespace

Console OpenConsole(bool quiet, bool verbose) {
  Console console;
  console.quiet = quiet;
  console.verbose = verbose;
  console.showsProgress = !quiet && ::isatty(STDERR_FILENO) == 1;
  return console;
}

void Report(Console& console, const Problem& problem) {
  WipeLine(console);
  std::string text = "vorel: ";
  if (!problem.where.empty()) text += problem.where + ": ";
  text += problem.what + "\n";
  if (!problem.advice.empty()) text += "       " + problem.advice + "\n";
  std::fputs(text.c_str(), stderr);
}

void Note(Console& console, const std::string& text) {
  if (console.quiet) return;
  WipeLine(console);
  std::fputs(("vorel: note: " + text + "\n").c_str(), stderr);
}

Progress StartProgress(Console& console, const std::string& name, u64 expectedFrames) {
  const Clock::time_point now = Clock::now();
  return {&console, name, expectedFrames, now, now};
}

void Advance(Progress& progress, u64 pictureBytes, u64 frameBytes) {
  ++progress.frames;
  progress.pictureBytes += pictureBytes;
  progress.frameBytes += frameBytes;
  Console& console = *progress.console;
  const Clock::time_point now = Clock::now();
  if (!console.showsProgress || now - progress.shown < kBetweenLines) return;
  progress.shown = now;
  std::fputs((kWipe + LineText(progress)).c_str(), stderr);
  std::fflush(stderr);
  console.hasLine = true;
}

void FinishProgress(Progress& progress, Direction direction) {
  Console& console = *progress.console;
  WipeLine(console);
  if (console.quiet) return;
  const std::string pictures = SizeText(progress.pictureBytes);
  const std::string frames = SizeText(progress.frameBytes);
  const double seconds = SecondsSince(progress.start);
  std::string text = progress.name + ": " + FramesText(progress.frames) + ", ";
  if (direction == Direction::encode) text += pictures + " -> " + frames;
  if (direction == Direction::decode) text += frames + " -> " + pictures;
  if (direction == Direction::verify) text += "all good, " + frames;
  text += " (" + RatioText(progress.pictureBytes, progress.frameBytes) + "), " +
          Formatted("%.0f", static_cast<double>(progress.frames) / seconds) + " frames/s\n";
  std::fputs(text.c_str(), stderr);
}

std::string SizeText(u64 bytes) {
  constexpr const char* kUnits[] = {"KiB", "MiB", "GiB", "TiB"};
  if (bytes < 1024) return std::to_string(bytes) + " B";
  double size = static_cast<double>(bytes) / 1024;
  int unit = 0;
  while (size >= 1024 && unit < 3) {
    size /= 1024;
    ++unit;
  }
  return Formatted("%.1f ", size) + kUnits[unit];
}

std::string RatioText(u64 pictureBytes, u64 frameBytes) {
  if (frameBytes == 0) return "-";
  return Formatted("%.2f:1", static_cast<double>(pictureBytes) / static_cast<double>(frameBytes));
}

}  // namespace vorel::tool
