// Runs a fuzz target once on every file of the folders named on the command line: how seeds and past findings
// are replayed as an ordinary test.
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

#include "base/integers.h"

extern "C" int LLVMFuzzerTestOneInput(const vorel::u8* data, std::size_t size);

int main(int count, char** arguments) {
  int files = 0;
  for (int i = 1; i < count; ++i) {
    for (const auto& entry : std::filesystem::recursive_directory_iterator(arguments[i])) {
      if (!entry.is_regular_file()) continue;
      std::ifstream file(entry.path(), std::ios::binary);
      const std::vector<char> bytes{std::istreambuf_iterator<char>(file), {}};
      LLVMFuzzerTestOneInput(reinterpret_cast<const vorel::u8*>(bytes.data()), bytes.size());
      ++files;
    }
  }
  std::printf("%d inputs replayed\n", files);
  return files > 0 ? 0 : 1;
}
