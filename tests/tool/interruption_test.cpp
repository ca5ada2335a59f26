// Signals, readers that go away, and terminals.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <thread>

#include "picture_io/png.h"
#include "tests/tool/movies.h"
#include "tests/tool/picture_clips.h"
#include "tests/tool/run_vorel.h"

namespace vorel::tool {

namespace {

// Waits until the folder holds more than it did, for ten seconds at most.
void AwaitMoreThan(const TestFolder& folder, const std::string& files) {
  for (int i = 0; i < 1000 && FilesIn(folder) == files; ++i) {
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
}

int NullDevice() {
  return ::open("/dev/null", O_RDWR | O_CLOEXEC);
}

}  // namespace

TEST(Interruption, SignalRemovesTheMovieInTheMaking) {
  for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
    const TestFolder folder;
    int feed[2];
    ASSERT_EQ(::pipe2(feed, O_CLOEXEC), 0);
    const int null = NullDevice();
    const pid_t process = StartVorel(folder, {"encode", "-", "-o", "a.mov"}, feed[0], null, null);
    const std::string header = "YUV4MPEG2 W64 H2 F25:1 C422\nFRAME\n";
    ASSERT_EQ(::write(feed[1], header.data(), header.size()), static_cast<ssize_t>(header.size()));
    AwaitMoreThan(folder, "");
    EXPECT_NE(FilesIn(folder), "") << "no file in the making";
    ::kill(process, number);
    EXPECT_EQ(WaitFor(process), 128 + number);
    EXPECT_EQ(FilesIn(folder), "");
    ::close(feed[0]);
    ::close(feed[1]);
    ::close(null);
  }
}

TEST(Interruption, SignalLeavesWholePicturesAndNoTemporaryFile) {
  const TestFolder folder;
  const TestFolder source;
  constexpr u32 kPictures = 60;
  for (u32 number = 0; number < kPictures; ++number) {
    WritePicture(source, "a." + std::to_string(number) + ".png", picture_io::kPngFiles,
                 NoisePicture(24, 256, 256, number));
  }
  ASSERT_EQ(RunVorel(folder, {"encode", "-q", source.path + "/a.%d.png", "-o", "a.mov"}).status, 0);
  const int null = NullDevice();
  for (int run = 0; run < 10; ++run) {
    const std::string pattern = std::to_string(run) + ".%03d.png";
    const std::string before = FilesIn(folder);
    const pid_t process = StartVorel(folder, {"decode", "a.mov", "-o", pattern}, null, null, null);
    AwaitMoreThan(folder, before);
    std::this_thread::sleep_for(std::chrono::milliseconds(run));
    ::kill(process, SIGTERM);
    EXPECT_EQ(WaitFor(process), 128 + SIGTERM);
    EXPECT_EQ(FilesIn(folder).find(".part"), std::string::npos) << FilesIn(folder);
    const std::vector<u64> numbers =
        picture_io::NumbersInFolder(picture_io::ReadSequencePattern(folder.path + "/" + pattern));
    EXPECT_LT(numbers.size(), kPictures);
    for (u32 number = 0; number < numbers.size(); ++number) {
      const std::string name = SequencePath(picture_io::ReadSequencePattern(pattern), number);
      EXPECT_TRUE(IsSame(PictureIn(folder, name), NoisePicture(24, 256, 256, number))) << name;
    }
  }
  ::close(null);
}

TEST(Interruption, ReaderThatGoesAwayIsAnError) {
  const TestFolder folder;
  MakeBrook(folder);
  int out[2];
  int err[2];
  ASSERT_EQ(::pipe2(out, O_CLOEXEC), 0);
  ASSERT_EQ(::pipe2(err, O_CLOEXEC), 0);
  ::close(out[0]);
  const int null = NullDevice();
  const pid_t process = StartVorel(folder, {"decode", "brook.mov", "-o", "-"}, null, out[1], err[1]);
  EXPECT_EQ(WaitFor(process), 1);
  char text[400] = {};
  EXPECT_GT(::read(err[0], text, sizeof text - 1), 0);
  EXPECT_STREQ(text, "vorel: stdout: cannot write: whoever read from it has gone\n");
  for (const int descriptor : {out[1], err[0], err[1], null}) ::close(descriptor);
}

TEST(Interruption, FullDeviceIsAnError) {
  const TestFolder folder;
  MakeBrook(folder);
  const Outcome outcome = RunVorel(folder, {"decode", "brook.mov", "-o", "/dev/full"});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.err, "vorel: /dev/full: cannot write: No space left on device\n");
}

TEST(Interruption, NothingIsWrittenToATerminal) {
  const TestFolder folder;
  MakeBrook(folder);
  const int master = ::posix_openpt(O_RDWR | O_NOCTTY);
  ASSERT_GE(master, 0);
  ASSERT_EQ(::grantpt(master), 0);
  ASSERT_EQ(::unlockpt(master), 0);
  const int terminal = ::open(::ptsname(master), O_RDWR | O_NOCTTY | O_CLOEXEC);
  ASSERT_GE(terminal, 0);
  const int null = NullDevice();
  const std::string clip = SamplePath("brook_640x360p_8.y4m");
  EXPECT_EQ(WaitFor(StartVorel(folder, {"decode", "brook.mov", "-o", "-"}, null, terminal, null)), 2);
  EXPECT_EQ(WaitFor(StartVorel(folder, {"encode", clip, "-o", "-"}, null, terminal, null)), 2);
  for (const int descriptor : {master, terminal, null}) ::close(descriptor);
}

TEST(Interruption, ProgressIsShownOnATerminalAndNotWhenQuiet) {
  const TestFolder folder;
  const int master = ::posix_openpt(O_RDWR | O_NOCTTY);
  ASSERT_EQ(::grantpt(master), 0);
  ASSERT_EQ(::unlockpt(master), 0);
  const int terminal = ::open(::ptsname(master), O_RDWR | O_NOCTTY | O_CLOEXEC);
  int feed[2];
  ASSERT_EQ(::pipe2(feed, O_CLOEXEC), 0);
  const int null = NullDevice();
  const pid_t process =
      StartVorel(folder, {"encode", "-", "-o", "a.mov", "-j", "1"}, feed[0], null, terminal);
  ::close(feed[0]);
  const std::string frame = "FRAME\n" + Noise(256, 1);
  std::string clip = "YUV4MPEG2 W64 H2 F25:1 C422\n";
  for (int i = 0; i < 6; ++i) {
    clip += frame;
    ASSERT_EQ(::write(feed[1], clip.data(), clip.size()), static_cast<ssize_t>(clip.size()));
    clip.clear();
    if (i == 0) AwaitMoreThan(folder, "");  // the first picture is there; a start may take longer than a line
    std::this_thread::sleep_for(std::chrono::milliseconds(250));
  }
  ::close(feed[1]);
  EXPECT_EQ(WaitFor(process), 0);
  char text[4000] = {};
  EXPECT_GT(::read(master, text, sizeof text - 1), 0);
  EXPECT_NE(std::string(text).find("\r\033[Kstdin: 2 frames, "), std::string::npos) << text;
  EXPECT_NE(std::string(text).find(" frames/s, "), std::string::npos) << text;
  for (const int descriptor : {master, terminal, null}) ::close(descriptor);
}

}  // namespace vorel::tool
