// Build tool: the resources of the components as a fork in a file, as source text, or behind a library.
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <limits>

#include "base/problem.h"
#include "component/resources/resource_tables.h"

namespace {

using namespace vorel;
using namespace vorel::component;

constexpr const char* kUsage =
    "usage: make_resources FORK             write the resource fork\n"
    "       make_resources --cpp FILE       write it as source text\n"
    "       make_resources --append DLL OUT write the library with the fork behind it\n";

Bytes ReadFile(const std::string& name) {
  std::error_code error;
  const std::uintmax_t size = std::filesystem::file_size(name, error);
  if (!error && size <= std::numeric_limits<u32>::max()) {
    Bytes bytes(static_cast<std::size_t>(size));
    std::ifstream file(name, std::ios::binary);
    if (file.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(size))) return bytes;
  }
  throw Problem{"the file cannot be read", name, "Check its name and that it may be read."};
}

// The file gets its name when it is complete.
void WriteFile(const std::string& name, const void* bytes, std::size_t count) {
  const std::string partial = name + ".partial";
  std::ofstream file(partial, std::ios::binary | std::ios::trunc);
  file.write(static_cast<const char*>(bytes), static_cast<std::streamsize>(count));
  file.close();
  std::error_code error;
  if (file) std::filesystem::rename(partial, name, error);
  if (file && !error) return;
  std::filesystem::remove(partial, error);
  throw Problem{"the file cannot be written", name, "Check the folder and the space on the disk."};
}

std::string SourceText(const Bytes& fork) {
  std::string text =
      "// Made by make_resources.\n"
      "#include \"component/resources/embedded_fork.h\"\n\n"
      "namespace vorel::component {\n\n"
      "const unsigned char kResourceFork[] = {";
  for (std::size_t i = 0; i < fork.size(); ++i) {
    text += i % 24 == 0 ? "\n    " : " ";
    text += std::to_string(fork[i]) + ",";
  }
  text +=
      "\n};\n"
      "const std::size_t kResourceForkBytes = sizeof kResourceFork;\n\n"
      "}  // namespace vorel::component\n";
  return text;
}

int Run(const std::vector<std::string>& arguments) {
  const bool wantsAppend = arguments.size() == 3 && arguments[0] == "--append";
  const bool wantsSource = arguments.size() == 2 && arguments[0] == "--cpp";
  const bool wantsFork = arguments.size() == 1 && !arguments[0].starts_with("-");
  if (!wantsAppend && !wantsSource && !wantsFork) {
    std::fputs(kUsage, stderr);
    return 2;
  }
  const Bytes fork = WriteFork(AllResources());
  if (wantsSource) {
    const std::string text = SourceText(fork);
    WriteFile(arguments[1], text.data(), text.size());
    return 0;
  }
  const Bytes bytes = wantsAppend ? AppendFork(ReadFile(arguments[1]), fork, arguments[1]) : fork;
  WriteFile(arguments.back(), bytes.data(), bytes.size());
  return 0;
}

}  // namespace

int main(int count, char** arguments) {
  try {
    return Run({arguments + 1, arguments + count});
  } catch (const vorel::Problem& problem) {
    std::fprintf(stderr, "make_resources: %s: %s\n  %s\n", problem.where.c_str(), problem.what.c_str(),
                 problem.advice.c_str());
    return 1;
  }
}
