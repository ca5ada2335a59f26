// Bytes that arrive one after the other, from a file, a pipe or memory, with a small buffer for text lines;
// pictures are read past it, straight to where they go.
#pragma once
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "base/integers.h"

namespace vorel::picture_io {

struct ByteInput {
  std::string name;  // for people: a file name, or "stdin"
  // Puts up to `size` bytes at `bytes` and returns how many; 0 only at the end. Throws Problem.
  std::function<std::size_t(u8* bytes, std::size_t size)> read;
  std::vector<u8> buffer;  // bytes read ahead: begin..end of it are still to be handed out
  std::size_t begin = 0;
  std::size_t end = 0;
  u64 size = 0;      // of the whole input where that is known, else 0: it may have changed since
  u64 position = 0;  // of the next byte to be handed out, from the start of the input
};

// The file at `path`, or standard input for "-". Throws Problem if it can't be opened or is a folder.
ByteInput OpenByteInput(const std::string& path);

// The bytes themselves, for tests.
ByteInput ByteInputOf(std::vector<u8> bytes, std::string name);

// The bytes up to the next line feed, which is taken but not given. Nothing at the end of the input. A line
// that the end of the input or `longest` cuts off comes with `complete` false.
struct Line {
  std::string text;
  bool complete;
};
std::optional<Line> ReadLine(ByteInput& input, std::size_t longest);

// Makes `bytes` the next `size` bytes of the input, fewer only at its end. The vector grows as bytes arrive
// unless a file of that size is there, so a false claim of size costs no memory; it takes no more than it holds.
void ReadBytes(ByteInput& input, std::size_t size, std::vector<u8>& bytes);

}  // namespace vorel::picture_io
