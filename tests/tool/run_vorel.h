// Runs the built command in a folder of the test's own, and looks at what it leaves there.
#pragma once
#include <sys/types.h>

#include <string>
#include <vector>

#include "base/integers.h"

namespace vorel::tool {

// A fresh folder, removed with all it holds.
struct TestFolder {
  std::string path;

  TestFolder();
  ~TestFolder();
  TestFolder(const TestFolder&) = delete;
  TestFolder& operator=(const TestFolder&) = delete;
};

struct Outcome {
  int status;       // exit status, or 128 and the signal's number
  std::string out;  // what came on stdout
  std::string err;
};

// Runs vorel in the folder with `input` on stdin through a pipe, and waits for its end.
Outcome RunVorel(const TestFolder& folder, const std::vector<std::string>& arguments,
                 const std::string& input = "");

// Starts vorel with these descriptors as stdin, stdout and stderr.
pid_t StartVorel(const TestFolder& folder, const std::vector<std::string>& arguments, int in, int out,
                 int err);

// Waits for a started one; its status as above.
int WaitFor(pid_t process);

// Names in the folder, sorted, hidden ones too, with a blank between.
std::string FilesIn(const TestFolder& folder);

std::string FileBytes(const std::string& path);
std::string FileBytes(const TestFolder& folder, const std::string& name);
void WriteFile(const TestFolder& folder, const std::string& name, const std::string& bytes);

// The clips that come with the source.
std::string SamplePath(const std::string& name);

// Bytes that don't compress, from a number.
std::string Noise(std::size_t size, u32 seed);

// A clip of noise with this header line and picture size in bytes.
std::string NoiseClip(const std::string& header, std::size_t pictureBytes, int frames);

// A clip of noise whose samples have 10 bits in words of 16.
std::string NoiseClip10(const std::string& header, std::size_t pictureSamples, int frames);

}  // namespace vorel::tool
