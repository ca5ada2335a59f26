// Files without a name: where a movie waits that came through a pipe, or that is to go into one, since movies
// are read and written out of order.
#pragma once
#include <string>

#include "base/integers.h"

namespace vorel::tool {

// A descriptor that is closed with the record, if it is owned.
struct Descriptor {
  int value = -1;
  bool owned = true;

  Descriptor() = default;
  Descriptor(int value, bool owned) : value(value), owned(owned) {}
  Descriptor(Descriptor&& other) noexcept;
  Descriptor& operator=(Descriptor&& other) noexcept;
  ~Descriptor();
};

// An empty file in the folder for temporary files ($TMPDIR, else /tmp) that vanishes when it is closed.
Descriptor OpenAnonymousFile();

// Writes all bytes. Throws Problem that calls the descriptor `name`.
void WriteAll(int descriptor, const u8* bytes, std::size_t size, const std::string& name);

// Copies from where `from` stands to its end. Throws Problem.
void CopyAll(int from, const std::string& fromName, int to, const std::string& toName);

}  // namespace vorel::tool
