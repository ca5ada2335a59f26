// Reading from files and from memory.
#include "picture_io/byte_input.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <memory>

#include "base/problem.h"

namespace vorel::picture_io {

namespace {

constexpr std::size_t kBufferBytes = 64 * 1024;
constexpr std::size_t kFirstGrowth = std::size_t{8} << 20;

std::size_t ReadSome(int file, const std::string& name, u8* bytes, std::size_t size) {
  for (;;) {
    const ssize_t count = ::read(file, bytes, size);
    if (count >= 0) return static_cast<std::size_t>(count);
    if (errno != EINTR) throw Problem{std::string("cannot read: ") + std::strerror(errno), name, ""};
  }
}

// Hands out what was read ahead.
std::size_t TakeBuffered(ByteInput& input, u8* bytes, std::size_t size) {
  const std::size_t count = std::min(size, input.end - input.begin);
  if (count > 0) std::memcpy(bytes, input.buffer.data() + input.begin, count);
  input.begin += count;
  input.position += count;
  return count;
}

// Room for exactly so many bytes: a vector that grows by itself takes up to twice as much.
void ResizeExactly(std::vector<u8>& bytes, std::size_t size) {
  if (bytes.capacity() < size) bytes.reserve(size);
  bytes.resize(size);
}

bool Refill(ByteInput& input) {
  input.buffer.resize(kBufferBytes);
  input.begin = 0;
  input.end = input.read(input.buffer.data(), input.buffer.size());
  return input.end > 0;
}

}  // namespace

ByteInput OpenByteInput(const std::string& path) {
  const bool standard = path == "-";
  const std::string name = standard ? "stdin" : path;
  const int file = standard ? STDIN_FILENO : ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (file < 0) throw Problem{std::string("cannot open: ") + std::strerror(errno), name, ""};
  const std::shared_ptr<const int> owned(new int(file), [standard](const int* opened) {
    if (!standard) ::close(*opened);
    delete opened;
  });
  struct stat status = {};
  if (::fstat(file, &status) == 0 && S_ISDIR(status.st_mode)) {
    throw Problem{"cannot read: it is a folder", name, "name the files in it"};
  }
  ByteInput input;
  input.name = name;
  input.size = S_ISREG(status.st_mode) ? static_cast<u64>(status.st_size) : 0;
  input.read = [owned, name](u8* bytes, std::size_t size) { return ReadSome(*owned, name, bytes, size); };
  return input;
}

ByteInput ByteInputOf(std::vector<u8> bytes, std::string name) {
  ByteInput input;
  input.name = std::move(name);
  input.read = [bytes = std::move(bytes), taken = std::size_t{0}](u8* out, std::size_t size) mutable {
    const std::size_t count = std::min(size, bytes.size() - taken);
    if (count > 0) std::memcpy(out, bytes.data() + taken, count);
    taken += count;
    return count;
  };
  return input;
}

std::optional<Line> ReadLine(ByteInput& input, std::size_t longest) {
  Line line{"", false};
  bool isAtEnd = true;
  while (!line.complete && line.text.size() < longest) {
    if (input.begin == input.end && !Refill(input)) break;
    isAtEnd = false;
    const u8* const from = input.buffer.data() + input.begin;
    const std::size_t available = std::min(input.end - input.begin, longest - line.text.size());
    const void* const feed = std::memchr(from, '\n', available);
    line.complete = feed != nullptr;
    const std::size_t count =
        line.complete ? static_cast<std::size_t>(static_cast<const u8*>(feed) - from) : available;
    line.text.append(reinterpret_cast<const char*>(from), count);
    const std::size_t taken = count + (line.complete ? 1 : 0);
    input.begin += taken;
    input.position += taken;
  }
  if (isAtEnd) return std::nullopt;
  return line;
}

void ReadBytes(ByteInput& input, std::size_t size, std::vector<u8>& bytes) {
  const bool isThere = input.size > input.position && input.size - input.position >= size;
  std::size_t filled = 0;
  while (filled < size) {
    if (bytes.size() < size)
      ResizeExactly(bytes, isThere ? size : std::min(size, std::max(kFirstGrowth, filled * 2)));
    const std::size_t room = std::min(size, bytes.size()) - filled;
    std::size_t count = TakeBuffered(input, bytes.data() + filled, room);
    if (count == 0) {
      count = input.read(bytes.data() + filled, room);
      input.position += count;
    }
    if (count == 0) break;
    filled += count;
  }
  bytes.resize(filled);
}

}  // namespace vorel::picture_io
