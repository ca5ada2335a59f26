// Temporary names, complete writes, and the one step by which a finished file takes its target's name.
#include "container/output_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <random>

#include "base/problem.h"

namespace vorel::container {

namespace {

constexpr int kNameAttempts = 100;
constexpr std::size_t kLongestVisibleName = 200;  // of 255 bytes that file systems allow
constexpr std::size_t kLargestTransfer = std::size_t{1} << 30;
constexpr u64 kWritebackBytes = u64{8} << 20;

Problem SystemProblem(const std::string& what, const std::string& name, int error) {
  const char* advice = error == ENOSPC || error == EDQUOT ? "make room on the disk, or write elsewhere" : "";
  return {what + ": " + strerror(error), name, advice};
}

Problem ExistsProblem(const std::string& name) {
  return {"the file exists already", name, "choose another name, or allow it to be overwritten"};
}

// "folder/" and "name"; the folder is empty for a bare name.
std::string FolderOf(const std::string& path) {
  return path.substr(0, path.rfind('/') + 1);
}
std::string NameOf(const std::string& path) {
  return path.substr(path.rfind('/') + 1);
}

// What stands under the target's name already, as far as it matters: nothing, or a file that may be replaced.
bool TargetExists(const std::string& target, bool overwrite) {
  struct stat status;
  if (stat(target.c_str(), &status) != 0) {
    if (errno != ENOENT) throw SystemProblem("cannot be written", target, errno);
    if (lstat(target.c_str(), &status) != 0) return false;
    throw Problem{"is a symbolic link that leads nowhere", target, "remove the link, or choose another name"};
  }
  if (!S_ISREG(status.st_mode)) throw Problem{"is not a regular file and cannot be replaced", target, ""};
  if (!overwrite) throw ExistsProblem(target);
  return true;
}

std::string FollowLinks(const std::string& path) {
  char* resolved = realpath(path.c_str(), nullptr);
  if (resolved == nullptr) throw SystemProblem("cannot be written", path, errno);
  std::string result = resolved;
  std::free(resolved);
  return result;
}

void CreateTemporary(OutputFile& file) {
  std::random_device random;
  const std::string stem =
      FolderOf(file.targetPath) + "." + NameOf(file.targetPath).substr(0, kLongestVisibleName) + ".";
  for (int attempt = 0; attempt < kNameAttempts; ++attempt) {
    char digits[9];
    std::snprintf(digits, sizeof digits, "%08x", static_cast<unsigned>(random()));
    const std::string path = stem + digits + ".part";
    // The mode of any new file: what the user's mask leaves.
    file.descriptor = open(path.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (file.descriptor >= 0) {
      file.temporaryPath = path;
      return;
    }
    if (errno != EEXIST) break;
  }
  throw SystemProblem("a temporary file cannot be created beside the target", file.name, errno);
}

// The system's own step first; file systems that lack it have hard links, whose creation fails as well when
// the name is taken.
void RenameWithoutReplacing(const OutputFile& file) {
  const char* from = file.temporaryPath.c_str();
  const char* to = file.targetPath.c_str();
  if (renameat2(AT_FDCWD, from, AT_FDCWD, to, RENAME_NOREPLACE) == 0) return;
  if (errno == EINVAL || errno == ENOSYS) {
    if (link(from, to) == 0) {
      unlink(from);
      return;
    }
  }
  if (errno == EEXIST) throw ExistsProblem(file.name);
  throw SystemProblem("the finished file cannot be given its name", file.name, errno);
}

// Most bytes come one behind the other; those few that don't are left to the sync. What goes wrong on the way to the
// disk is told by the sync too.
void StartWriteback(OutputFile& file) {
#ifdef SYNC_FILE_RANGE_WRITE
  if (file.temporaryPath.empty() || file.written - file.started < kWritebackBytes) return;
  sync_file_range(file.descriptor, static_cast<off_t>(file.started),
                  static_cast<off_t>(file.written - file.started), SYNC_FILE_RANGE_WRITE);
  file.started = file.written;
#endif
}

void SyncFolder(const std::string& folder) {
  // Some file systems cannot sync a folder; the file itself is on disk then.
  const int descriptor = open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (descriptor < 0) return;
  fsync(descriptor);
  close(descriptor);
}

}  // namespace

OutputFile::~OutputFile() {
  if (temporaryPath.empty()) return;
  if (descriptor >= 0) close(descriptor);
  unlink(temporaryPath.c_str());
}

void CreateOutputFile(OutputFile& file, const std::string& target, bool overwrite) {
  file.name = target;
  file.overwrite = overwrite;
  if (NameOf(target).empty()) throw Problem{"is not the name of a file", target, ""};
  file.targetPath = TargetExists(target, overwrite) ? FollowLinks(target) : target;
  CreateTemporary(file);
}

void BorrowOutputFile(OutputFile& file, int descriptor, const std::string& name) {
  file.name = name;
  file.descriptor = descriptor;
}

void WriteAt(OutputFile& file, u64 offset, const u8* bytes, u64 count) {
  while (count > 0) {
    const std::size_t step = static_cast<std::size_t>(std::min<u64>(count, kLargestTransfer));
    const ssize_t written = pwrite(file.descriptor, bytes, step, static_cast<off_t>(offset));
    if (written < 0) {
      if (errno == EINTR) continue;
      throw SystemProblem("cannot be written", file.name, errno);
    }
    bytes += written;
    offset += static_cast<u64>(written);
    count -= static_cast<u64>(written);
  }
  file.written = std::max(file.written, offset);
  StartWriteback(file);
}

void PublishOutputFile(OutputFile& file) {
  if (file.temporaryPath.empty()) return;
  if (fsync(file.descriptor) != 0) throw SystemProblem("cannot be written", file.name, errno);
  const int descriptor = file.descriptor;
  file.descriptor = -1;
  if (close(descriptor) != 0) throw SystemProblem("cannot be written", file.name, errno);
  if (!file.overwrite) {
    RenameWithoutReplacing(file);
  } else if (std::rename(file.temporaryPath.c_str(), file.targetPath.c_str()) != 0) {
    throw SystemProblem("the finished file cannot be given its name", file.name, errno);
  }
  file.temporaryPath.clear();
  SyncFolder(FolderOf(file.targetPath));
}

}  // namespace vorel::container
