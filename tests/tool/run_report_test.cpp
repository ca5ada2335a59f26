// What --verbose says of a run: that it adds up, and that threads and memory are those asked for.
#include "tool/run_report.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <vector>

#include "frame/instruction_set.h"
#include "tests/tool/movies.h"
#include "tests/tool/run_vorel.h"

namespace vorel::tool {

namespace {

PipelineRun RunOf(u32 threads, double read, double code, double write) {
  PipelineRun run = {{threads, 2 * threads, 1 << 20}};
  run.seconds = 2;
  run.readSeconds = read;
  run.codeSeconds = code;
  run.writeSeconds = write;
  return run;
}

struct Figures {
  unsigned threads, jobs;
  double jobMiB, allowedMiB;
  unsigned frames;
  double seconds, framesPerSecond, megabytesPerSecond;
  double reading, coding, writing;                // seconds
  unsigned readingPart, codingPart, writingPart;  // per cent
  std::string bound;
};

// A number and its unit, as SizeText has them.
struct Size {
  double number;
  char unit[8];
};

double MiBOf(const Size& size) {
  const double scale = size.unit[0] == 'G'   ? 1024
                       : size.unit[0] == 'M' ? 1
                       : size.unit[0] == 'K' ? 1.0 / 1024
                                             : 1.0 / (1 << 20);
  return size.number * scale;
}

// Takes the report behind the clip's name apart.
Figures FiguresOf(const std::string& report) {
  const std::size_t begin = report.rfind(": ", report.find(" in flight"));
  Figures figures = {};
  Size jobs = {}, allowed = {}, coders = {};
  char instructions[16] = "";
  char bound[16] = "";
  if (begin == std::string::npos) {
    ADD_FAILURE() << report;
    return {};
  }
  const int taken = std::sscanf(
      report.c_str() + begin,
      ": %u %*[threads], %u %*[jobs] in flight, instructions %15[a-z0-9]\n"
      "  memory: jobs %lf %7[KMGiB] of %lf %7[KMGiB] allowed for, coders %lf %7[KMGiB]\n"
      "  %u %*[frames] in %lf s: %lf frames/s, %lf MB/s of raw picture\n"
      "  busy: reading %lf s (%u %%), coding %lf s (%u %%), writing %lf s (%u %%)\n"
      "  bound by: %15[a-z]\n",
      &figures.threads, &figures.jobs, instructions, &jobs.number, jobs.unit, &allowed.number, allowed.unit,
      &coders.number, coders.unit, &figures.frames, &figures.seconds, &figures.framesPerSecond,
      &figures.megabytesPerSecond, &figures.reading, &figures.readingPart, &figures.coding,
      &figures.codingPart, &figures.writing, &figures.writingPart, bound);
  EXPECT_EQ(taken, 20) << report;
  figures.jobMiB = MiBOf(jobs);
  figures.allowedMiB = MiBOf(allowed);
  figures.bound = bound;
  EXPECT_TRUE(figures.bound == "reading" || figures.bound == "coding" || figures.bound == "writing")
      << report;
  EXPECT_STREQ(instructions, kInstructionSetNames[static_cast<std::size_t>(InstructionSetInUse())]);
  return figures;
}

// All values that are printed as one figure: half a unit of its last digit to each side.
struct Range {
  double least, most;
};

Range RoundedTo(double figure, double unit) {
  return {std::max(0.0, figure - unit / 2), figure + unit / 2};
}

Range Exactly(double value) {
  constexpr double kLastBits = 1e-9;
  return RoundedTo(value, kLastBits);
}

// Whether a figure is the product of two others, as far as their digits tell: in runs of any length.
void ExpectProduct(const Range& product, const Range& one, const Range& other) {
  EXPECT_LE(one.least * other.least, product.most);
  EXPECT_GE(one.most * other.most, product.least);
}

void ExpectConsistent(const Figures& figures, unsigned threads, unsigned frames, double rawMegabytes) {
  EXPECT_EQ(figures.threads, threads);
  EXPECT_EQ(figures.jobs, 2 * threads);
  EXPECT_EQ(figures.frames, frames);
  EXPECT_GT(figures.jobMiB, 0);
  EXPECT_LE(figures.jobMiB, figures.allowedMiB + 0.1);
  const Range seconds = RoundedTo(figures.seconds, 0.001);
  const Range reading = RoundedTo(figures.reading, 0.001);
  const Range coding = RoundedTo(figures.coding, 0.001);
  const Range writing = RoundedTo(figures.writing, 0.001);
  ExpectProduct(Exactly(frames), RoundedTo(figures.framesPerSecond, 0.1), seconds);
  ExpectProduct(Exactly(rawMegabytes), RoundedTo(figures.megabytesPerSecond, 0.1), seconds);
  ExpectProduct(reading, RoundedTo(figures.readingPart / 100.0, 0.01), seconds);
  ExpectProduct(coding, RoundedTo(figures.codingPart / 100.0, 0.01), seconds);
  ExpectProduct(writing, RoundedTo(figures.writingPart / 100.0, 0.01), seconds);
  EXPECT_GT(figures.coding, 0);
  EXPECT_LE(reading.least, seconds.most);
  EXPECT_LE(writing.least, seconds.most);
  EXPECT_LE(reading.least + coding.least + writing.least, threads * seconds.most);
}

// The most memory that a run ever had, in KiB.
long PeakOf(const TestFolder& folder, const std::vector<std::string>& arguments) {
  const int nothing = ::open("/dev/null", O_RDWR);
  const pid_t process = StartVorel(folder, arguments, nothing, nothing, STDERR_FILENO);
  ::close(nothing);
  int status = 0;
  rusage usage = {};
  EXPECT_EQ(::wait4(process, &status, 0, &usage), process);
  EXPECT_EQ(status, 0);
  return usage.ru_maxrss;
}

constexpr double kBrookMegabytes = 640 * 360 * 2 * 8 / 1e6;

}  // namespace

TEST(RunReport, BoundIsTheWorkNextToItsLimit) {
  EXPECT_EQ(BoundOf(RunOf(1, 0.5, 1.0, 0.5)), Bound::coding);
  EXPECT_EQ(BoundOf(RunOf(1, 1.0, 0.5, 0.5)), Bound::reading);
  EXPECT_EQ(BoundOf(RunOf(1, 0.5, 0.5, 1.0)), Bound::writing);
  // One thread reads: what it does counts in full beside the quarter that each of four threads codes.
  EXPECT_EQ(BoundOf(RunOf(4, 1.8, 5.0, 0.5)), Bound::reading);
  EXPECT_EQ(BoundOf(RunOf(4, 0.5, 5.0, 1.8)), Bound::writing);
  EXPECT_EQ(BoundOf(RunOf(4, 1.2, 5.0, 1.2)), Bound::coding);
}

TEST(RunReport, TextHasEveryFigure) {
  Progress progress = {};
  progress.name = "a.y4m";
  progress.frames = 50;
  progress.pictureBytes = 100'000'000;
  PipelineRun run = RunOf(3, 0.25, 4.5, 1.0);
  run.jobBytes = 3 << 20;
  const std::string text = ReportText(run, progress, 2048);
  EXPECT_TRUE(text.starts_with("a.y4m: 3 threads, 6 jobs in flight, instructions "));
  EXPECT_EQ(text.substr(text.find('\n')),
            "\n  memory: jobs 3.0 MiB of 6.0 MiB allowed for, coders 2.0 KiB"
            "\n  50 frames in 2.000 s: 25.0 frames/s, 50.0 MB/s of raw picture"
            "\n  busy: reading 0.250 s (12 %), coding 4.500 s (225 %), writing 1.000 s (50 %)"
            "\n  bound by: coding\n");
}

TEST(RunReport, EncodeDecodeAndVerifyAddUp) {
  const TestFolder folder;
  for (const unsigned threads : {1u, 2u, 3u}) {
    const std::string option = "-j" + std::to_string(threads);
    const std::vector<std::vector<std::string>> runs = {
        {"encode", "-f", "-v", option, SamplePath("brook_640x360p_8.y4m"), "-o", "brook.mov"},
        {"decode", "-f", "-v", option, "brook.mov", "-o", "back.y4m"},
        {"verify", "-v", option, "brook.mov", "--against", "back.y4m"}};
    for (const std::vector<std::string>& arguments : runs) {
      SCOPED_TRACE(arguments[0] + " " + option);
      const Outcome outcome = RunVorel(folder, arguments);
      ASSERT_EQ(outcome.status, 0) << outcome.err;
      EXPECT_EQ(outcome.out, "");
      ExpectConsistent(FiguresOf(outcome.err), threads, 8, kBrookMegabytes);
    }
  }
}

TEST(RunReport, QuietRunsAndOthersSayNothingOfIt) {
  const TestFolder folder;
  MakeBrook(folder);
  EXPECT_EQ(RunVorel(folder, {"verify", "brook.mov"}).err.find("bound by"), std::string::npos);
  EXPECT_EQ(RunVorel(folder, {"verify", "-q", "-v", "brook.mov"}).status, 2);
}

TEST(RunReport, MemoryDoesNotGrowWithTheClip) {
  // Pictures of 38,400 bytes: 360 of them more are 13.8 MB, if anything kept them.
  constexpr long kAllowedKiB = 4096;
  const std::string header = "YUV4MPEG2 W160 H120 F25:1 Ip A1:1 C422";
  const TestFolder folder;
  WriteFile(folder, "short.y4m", NoiseClip(header, 160 * 120 * 2, 40));
  WriteFile(folder, "long.y4m", NoiseClip(header, 160 * 120 * 2, 400));
  const long encodeShort = PeakOf(folder, {"encode", "-q", "-j2", "short.y4m"});
  const long encodeLong = PeakOf(folder, {"encode", "-q", "-j2", "long.y4m"});
  EXPECT_LT(encodeLong, encodeShort + kAllowedKiB);
  const long decodeShort = PeakOf(folder, {"decode", "-q", "-j2", "short.mov", "-o", "short.raw"});
  const long decodeLong = PeakOf(folder, {"decode", "-q", "-j2", "long.mov", "-o", "long.raw"});
  EXPECT_LT(decodeLong, decodeShort + kAllowedKiB);
}

}  // namespace vorel::tool
