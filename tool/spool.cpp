// Anonymous files and whole writes.
#include "tool/spool.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <utility>
#include <vector>

#include "base/problem.h"

namespace vorel::tool {

namespace {

constexpr std::size_t kCopyBytes = std::size_t{1} << 20;

std::string TemporaryFolder() {
  const char* const folder = std::getenv("TMPDIR");
  return folder != nullptr && *folder != 0 ? folder : "/tmp";
}

// For file systems that don't know O_TMPFILE: a named file that loses its name at once.
int OpenUnlinked(const std::string& folder) {
  std::string path = folder + "/vorel-XXXXXX";
  const int file = ::mkostemp(path.data(), O_CLOEXEC);
  if (file >= 0) ::unlink(path.c_str());
  return file;
}

}  // namespace

Descriptor::Descriptor(Descriptor&& other) noexcept
    : value(std::exchange(other.value, -1)), owned(other.owned) {}

Descriptor& Descriptor::operator=(Descriptor&& other) noexcept {
  std::swap(value, other.value);
  std::swap(owned, other.owned);
  return *this;
}

Descriptor::~Descriptor() {
  if (owned && value >= 0) ::close(value);
}

Descriptor OpenAnonymousFile() {
  const std::string folder = TemporaryFolder();
  int file = ::open(folder.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, 0600);
  if (file < 0) file = OpenUnlinked(folder);
  if (file < 0) {
    throw Problem{std::string("cannot make a temporary file: ") + std::strerror(errno), folder,
                  "name another folder with TMPDIR"};
  }
  return {file, true};
}

void WriteAll(int descriptor, const u8* bytes, std::size_t size, const std::string& name) {
  while (size > 0) {
    const ssize_t count = ::write(descriptor, bytes, size);
    if (count >= 0) {
      bytes += count;
      size -= static_cast<std::size_t>(count);
    } else if (errno == EPIPE) {
      throw Problem{"cannot write: whoever read from it has gone", name, ""};
    } else if (errno != EINTR) {
      throw Problem{std::string("cannot write: ") + std::strerror(errno), name, ""};
    }
  }
}

void CopyAll(int from, const std::string& fromName, int to, const std::string& toName) {
  std::vector<u8> bytes(kCopyBytes);
  for (;;) {
    const ssize_t count = ::read(from, bytes.data(), bytes.size());
    if (count == 0) return;
    if (count > 0) {
      WriteAll(to, bytes.data(), static_cast<std::size_t>(count), toName);
    } else if (errno != EINTR) {
      throw Problem{std::string("cannot read: ") + std::strerror(errno), fromName, ""};
    }
  }
}

}  // namespace vorel::tool
