// Any bytes as a resource fork and as a file that carries one: they are read whole or refused. What is read is
// written and read again unchanged, and found again behind a file.
#include "component/resources/resource_fork.h"

#include <cstdlib>

#include "base/problem.h"

namespace {

using namespace vorel;
using namespace vorel::component;

void ReadAndWrite(const u8* data, std::size_t size) {
  const std::vector<Resource> resources = ReadFork(data, size, "fuzz");
  const Bytes written = WriteFork(resources);
  if (ReadFork(written.data(), written.size(), "written") != resources) std::abort();
  const Bytes image(size % 600, 0x90);
  const Bytes file = AppendFork(image, written, "image");
  const ForkPlace place = FindFork(file.data(), file.size(), "file");
  if (place.offset != image.size() || place.bytes != written.size() || file.size() % 512 != 0) std::abort();
}

void FindAndRead(const u8* data, std::size_t size) {
  const ForkPlace place = FindFork(data, size, "fuzz");
  ReadAndWrite(data + place.offset, place.bytes);
}

template <typename Function>
void WithoutProblem(Function read, const u8* data, std::size_t size) {
  try {
    read(data, size);
  } catch (const Problem& problem) {
    if (problem.what.empty() || problem.advice.empty()) std::abort();
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const vorel::u8* data, std::size_t size) {
  WithoutProblem(ReadAndWrite, data, size);
  WithoutProblem(FindAndRead, data, size);
  return 0;
}
