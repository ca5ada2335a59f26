// Reading at offsets with pread, which leaves the descriptor's position alone.
#include "container/input_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <utility>

#include "base/problem.h"

namespace vorel::container {

namespace {

// One call moves at most this much: the system's own limit lies just below 2 GiB.
constexpr std::size_t kLargestTransfer = std::size_t{1} << 30;

Problem ReadProblem(const std::string& name, int error) {
  return {"cannot be read: " + std::string(strerror(error)), name, ""};
}

u64 SizeOf(int descriptor, const std::string& name) {
  struct stat status;
  if (fstat(descriptor, &status) != 0) throw ReadProblem(name, errno);
  if (S_ISREG(status.st_mode)) return static_cast<u64>(status.st_size);
  if (S_ISDIR(status.st_mode)) throw ReadProblem(name, EISDIR);
  const off_t end = lseek(descriptor, 0, SEEK_END);
  if (end < 0) {
    throw Problem{"is a pipe or a terminal; a movie is read here and there, not from front to back", name,
                  "store the movie in a file first"};
  }
  return static_cast<u64>(end);
}

}  // namespace

InputFile::InputFile(int descriptor_, u64 bytes_, std::string name_, bool owned_)
    : descriptor(descriptor_), bytes(bytes_), name(std::move(name_)), owned(owned_) {}

InputFile::~InputFile() {
  if (owned) close(descriptor);
}

std::shared_ptr<const InputFile> OpenInputFile(const std::string& path) {
  const int descriptor = open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (descriptor < 0) throw Problem{"cannot be opened: " + std::string(strerror(errno)), path, ""};
  try {
    return std::make_shared<const InputFile>(descriptor, SizeOf(descriptor, path), path, true);
  } catch (...) {
    close(descriptor);
    throw;
  }
}

std::shared_ptr<const InputFile> BorrowInputFile(int descriptor, const std::string& name) {
  return std::make_shared<const InputFile>(descriptor, SizeOf(descriptor, name), name, false);
}

void ReadAt(const InputFile& file, u64 offset, u8* to, std::size_t count) {
  while (count > 0) {
    const ssize_t got =
        pread(file.descriptor, to, std::min(count, kLargestTransfer), static_cast<off_t>(offset));
    if (got < 0) {
      if (errno == EINTR) continue;
      throw ReadProblem(file.name, errno);
    }
    if (got == 0) {
      throw Problem{"the file ends at " + std::to_string(offset) + ", before data that should be there",
                    file.name, "the file has become shorter since it was opened"};
    }
    to += got;
    offset += static_cast<u64>(got);
    count -= static_cast<std::size_t>(got);
  }
}

}  // namespace vorel::container
