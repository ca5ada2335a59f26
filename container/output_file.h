// A file that is written under a hidden temporary name beside its target and gets the target's name when it
// is complete.
#pragma once
#include <string>

#include "base/integers.h"

namespace vorel::container {

struct OutputFile {
  int descriptor = -1;
  std::string name;           // of the target, for messages
  std::string temporaryPath;  // empty when the descriptor is the caller's, and once the file has its name
  std::string targetPath;     // where it goes: the target with symbolic links followed
  bool overwrite = false;
  u64 written = 0;  // end of all that was written,
  u64 started = 0;  // and of what is on its way to the disk

  OutputFile() = default;
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;
  ~OutputFile();  // closes and removes an unpublished temporary file
};

/// Creates the temporary file. Throws Problem when the target exists and `overwrite` is false, when it is no
/// regular file, or when the folder cannot be written.
void CreateOutputFile(OutputFile& file, const std::string& target, bool overwrite);

/// Writes to a descriptor of the caller's, which stays open.
void BorrowOutputFile(OutputFile& file, int descriptor, const std::string& name);

/// Writes all bytes at an offset. From time to time it starts their way to the disk, so that little is left for the
/// sync at the end. Throws Problem with the system's reason.
void WriteAt(OutputFile& file, u64 offset, const u8* bytes, u64 count);

/// Syncs the file, gives it the target's name in one step, and syncs the folder. Without `overwrite` an
/// existing target is never replaced. Nothing to do for a borrowed descriptor.
void PublishOutputFile(OutputFile& file);

}  // namespace vorel::container
