// Figures of a run, each with its unit behind it.
#include "tool/run_report.h"

#include <algorithm>
#include <cstdio>

#include "frame/instruction_set.h"

namespace vorel::tool {

namespace {

constexpr const char* kBoundNames[] = {"reading", "coding", "writing"};

// The clock may not have moved in a run of nothing.
double AtLeastATick(double seconds) {
  return std::max(seconds, 1e-9);
}

std::string Fixed(double value, int digits) {
  char text[64];
  std::snprintf(text, sizeof text, "%.*f", digits, value);
  return text;
}

// "reading 0.125 s (13 %)"
std::string BusyText(const char* name, double busy, double seconds) {
  return std::string(name) + " " + Fixed(busy, 3) + " s (" + Fixed(100 * busy / seconds, 0) + " %)";
}

std::string CountText(u64 count, const char* what) {
  return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
}

std::string MemoryText(const PipelineRun& run, u64 threadBytes) {
  return "memory: jobs " + SizeText(run.jobBytes) + " of " +
         SizeText(run.shape.jobs * run.shape.bytesPerJob) + " allowed for, coders " + SizeText(threadBytes);
}

std::string RateText(const Progress& progress, double seconds) {
  constexpr double kMegabyte = 1e6;
  return CountText(progress.frames, "frame") + " in " + Fixed(seconds, 3) +
         " s: " + Fixed(static_cast<double>(progress.frames) / seconds, 1) + " frames/s, " +
         Fixed(static_cast<double>(progress.pictureBytes) / kMegabyte / seconds, 1) + " MB/s of raw picture";
}

}  // namespace

Bound BoundOf(const PipelineRun& run) {
  const double coding = run.codeSeconds / run.shape.threads;
  if (coding >= run.readSeconds && coding >= run.writeSeconds) return Bound::coding;
  return run.readSeconds >= run.writeSeconds ? Bound::reading : Bound::writing;
}

std::string ReportText(const PipelineRun& run, const Progress& progress, u64 threadBytes) {
  const double seconds = AtLeastATick(run.seconds);
  const auto set = static_cast<std::size_t>(InstructionSetInUse());
  return progress.name + ": " + CountText(run.shape.threads, "thread") + ", " +
         CountText(run.shape.jobs, "job") + " in flight, instructions " + kInstructionSetNames[set] + "\n  " +
         MemoryText(run, threadBytes) + "\n  " + RateText(progress, seconds) +
         "\n  busy: " + BusyText("reading", run.readSeconds, seconds) + ", " +
         BusyText("coding", run.codeSeconds, seconds) + ", " +
         BusyText("writing", run.writeSeconds, seconds) +
         "\n  bound by: " + kBoundNames[static_cast<std::size_t>(BoundOf(run))] + "\n";
}

void ReportRun(const PipelineRun& run, const Progress& progress, u64 threadBytes) {
  if (progress.console->verbose) std::fputs(ReportText(run, progress, threadBytes).c_str(), stderr);
}

}  // namespace vorel::tool
