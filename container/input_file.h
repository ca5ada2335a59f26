// A file that movies are read from: read at given offsets only, so that any number of threads share one.
#pragma once
#include <memory>
#include <string>

#include "base/integers.h"

namespace vorel::container {

/// An open file, its size at the time it was opened, and the name that messages use.
struct InputFile {
  int descriptor;
  u64 bytes;
  std::string name;
  bool owned;  // the descriptor is closed with the record

  InputFile(int descriptor, u64 bytes, std::string name, bool owned);
  InputFile(const InputFile&) = delete;
  InputFile& operator=(const InputFile&) = delete;
  ~InputFile();
};

/// Opens a file for reading. Throws Problem that names the path and the system's reason.
std::shared_ptr<const InputFile> OpenInputFile(const std::string& path);

/// Reads from a descriptor of the caller's, which stays open and stays the caller's; its position is not
/// used. Throws Problem when it cannot seek (a pipe).
std::shared_ptr<const InputFile> BorrowInputFile(int descriptor, const std::string& name);

/// Reads exactly `count` bytes at `offset` into `to`. Thread-safe. Throws Problem when the file ends before
/// or cannot be read.
void ReadAt(const InputFile& file, u64 offset, u8* to, std::size_t count);

}  // namespace vorel::container
