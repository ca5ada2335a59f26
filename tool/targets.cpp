// Files and streams as targets.
#include "tool/targets.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <limits>

#include "base/problem.h"
#include "tool/interruption.h"
#include "tool/options.h"

namespace vorel::tool {

namespace {

bool IsStream(const std::string& path) {
  if (path == "-") return true;
  struct stat status = {};
  if (::stat(path.c_str(), &status) != 0) return false;
  return S_ISFIFO(status.st_mode) || S_ISCHR(status.st_mode) || S_ISSOCK(status.st_mode);
}

Descriptor OpenStream(const std::string& path) {
  if (path == "-") return {STDOUT_FILENO, false};
  const int file = ::open(path.c_str(), O_WRONLY | O_CLOEXEC);
  if (file < 0) throw Problem{std::string("cannot open: ") + std::strerror(errno), path, ""};
  return {file, true};
}

std::string NameOf(const std::string& path) {
  return path == "-" ? "stdout" : path;
}

}  // namespace

void RefuseTerminal(const std::string& path) {
  if (!IsStream(path)) return;
  const Descriptor stream = OpenStream(path);
  if (::isatty(stream.value) == 1) {
    throw UsageError{NameOf(path) + " is a terminal: pictures and movies are not written to one"};
  }
}

void OpenPictureTarget(PictureTarget& target, const std::string& path, bool force) {
  target.name = NameOf(path);
  if (IsStream(path)) {
    target.stream = OpenStream(path);
    return;
  }
  const InterruptionHold hold;
  container::CreateOutputFile(target.file, path, force);
  GuardTemporary(target.file.temporaryPath);
}

picture_io::WriteBytes WriterOf(PictureTarget& target) {
  return [&target](const u8* bytes, std::size_t size) {
    if (target.stream.value >= 0) {
      WriteAll(target.stream.value, bytes, size, target.name);
    } else {
      container::WriteAt(target.file, target.bytes, bytes, size);
    }
    target.bytes += size;
  };
}

void FinishPictureTarget(PictureTarget& target) {
  if (target.stream.value >= 0) return;
  container::PublishOutputFile(target.file);
  GuardTemporary("");
}

void OpenMovieTarget(MovieTarget& target, const std::string& path, const container::MovieSettings& settings) {
  target.name = NameOf(path);
  if (IsStream(path)) {
    target.stream = OpenStream(path);
    target.anonymous = OpenAnonymousFile();
    target.writer.emplace(target.anonymous.value, target.name, settings);
    return;
  }
  const InterruptionHold hold;
  target.writer.emplace(path, settings);
  GuardTemporary(target.writer->TemporaryPath());
}

void FinishMovieTarget(MovieTarget& target) {
  target.writer->Finish();
  GuardTemporary("");
  if (target.stream.value < 0) return;
  if (::lseek(target.anonymous.value, 0, SEEK_SET) != 0) {
    throw Problem{std::string("cannot read the movie back: ") + std::strerror(errno), target.name, ""};
  }
  CopyAll(target.anonymous.value, target.name, target.stream.value, target.name);
}

std::optional<u64> CreationTime() {
  const char* const text = std::getenv("SOURCE_DATE_EPOCH");
  u32 seconds = 0;
  if (text == nullptr || !picture_io::ReadNumber(text, std::numeric_limits<u32>::max(), seconds)) return {};
  return container::MovieTimeOfUnixTime(seconds);
}

}  // namespace vorel::tool
