// Processes, pipes and files for tests.
#include "tests/tool/run_vorel.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <thread>

namespace vorel::tool {

namespace {

struct Pipe {
  int ends[2];
  Pipe() { EXPECT_EQ(::pipe2(ends, O_CLOEXEC), 0); }
};

void Feed(int descriptor, const std::string& bytes) {
  std::size_t written = 0;
  while (written < bytes.size()) {
    const ssize_t count = ::write(descriptor, bytes.data() + written, bytes.size() - written);
    if (count <= 0) break;
    written += static_cast<std::size_t>(count);
  }
  ::close(descriptor);
}

void Drain(int descriptor, std::string& bytes) {
  char block[65536];
  for (ssize_t count; (count = ::read(descriptor, block, sizeof block)) > 0;) {
    bytes.append(block, static_cast<std::size_t>(count));
  }
  ::close(descriptor);
}

}  // namespace

TestFolder::TestFolder() {
  std::string pattern = (std::filesystem::temp_directory_path() / "vorel-test-XXXXXX").string();
  EXPECT_NE(::mkdtemp(pattern.data()), nullptr);
  path = pattern;
}

TestFolder::~TestFolder() {
  std::error_code ignored;
  std::filesystem::remove_all(path, ignored);
}

pid_t StartVorel(const TestFolder& folder, const std::vector<std::string>& arguments, int in, int out,
                 int err) {
  std::vector<char*> pointers;
  const std::string program = VOREL_BUILD_FOLDER "/vorel";
  pointers.push_back(const_cast<char*>(program.c_str()));
  for (const std::string& argument : arguments) pointers.push_back(const_cast<char*>(argument.c_str()));
  pointers.push_back(nullptr);
  const pid_t process = ::fork();
  if (process == 0) {
    ::dup2(in, STDIN_FILENO);
    ::dup2(out, STDOUT_FILENO);
    ::dup2(err, STDERR_FILENO);
    if (::chdir(folder.path.c_str()) == 0) ::execv(program.c_str(), pointers.data());
    ::_exit(127);
  }
  return process;
}

int WaitFor(pid_t process) {
  int status = 0;
  ::waitpid(process, &status, 0);
  return WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
}

Outcome RunVorel(const TestFolder& folder, const std::vector<std::string>& arguments,
                 const std::string& input) {
  std::signal(SIGPIPE, SIG_IGN);
  const Pipe in;
  const Pipe out;
  const Pipe err;
  const pid_t process = StartVorel(folder, arguments, in.ends[0], out.ends[1], err.ends[1]);
  ::close(in.ends[0]);
  ::close(out.ends[1]);
  ::close(err.ends[1]);
  Outcome outcome;
  std::thread feeder(Feed, in.ends[1], std::cref(input));
  std::thread errors(Drain, err.ends[0], std::ref(outcome.err));
  Drain(out.ends[0], outcome.out);
  feeder.join();
  errors.join();
  outcome.status = WaitFor(process);
  return outcome;
}

std::string FilesIn(const TestFolder& folder) {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(folder.path)) {
    names.push_back(entry.path().filename().string());
  }
  std::sort(names.begin(), names.end());
  std::string text;
  for (const std::string& name : names) text += (text.empty() ? "" : " ") + name;
  return text;
}

std::string FileBytes(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  EXPECT_TRUE(file) << path;
  return {std::istreambuf_iterator<char>(file), {}};
}

std::string FileBytes(const TestFolder& folder, const std::string& name) {
  return FileBytes(folder.path + "/" + name);
}

void WriteFile(const TestFolder& folder, const std::string& name, const std::string& bytes) {
  std::ofstream file(folder.path + "/" + name, std::ios::binary);
  file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  EXPECT_TRUE(file.flush());
}

std::string SamplePath(const std::string& name) {
  return VOREL_SOURCE_FOLDER "/samples/" + name;
}

std::string Noise(std::size_t size, u32 seed) {
  std::string bytes(size, 0);
  u32 state = seed * 2654435761u + 1;
  for (char& byte : bytes) {
    state = state * 1664525 + 1013904223;
    byte = static_cast<char>(state >> 24);
  }
  return bytes;
}

std::string NoiseClip(const std::string& header, std::size_t pictureBytes, int frames) {
  std::string clip = header + "\n";
  for (int frame = 0; frame < frames; ++frame)
    clip += "FRAME\n" + Noise(pictureBytes, static_cast<u32>(frame));
  return clip;
}

std::string NoiseClip10(const std::string& header, std::size_t pictureSamples, int frames) {
  std::string clip = header + "\n";
  for (int frame = 0; frame < frames; ++frame) {
    std::string words = Noise(2 * pictureSamples, static_cast<u32>(frame));
    for (std::size_t high = 1; high < words.size(); high += 2)
      words[high] = static_cast<char>(words[high] & 3);
    clip += "FRAME\n" + words;
  }
  return clip;
}

}  // namespace vorel::tool
