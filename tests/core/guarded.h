// Buffers of the tests: pictures and frames with bytes around them that must not change, and memory that ends
// at a page that cannot be touched.
#pragma once
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <random>
#include <stdexcept>
#include <vector>

#include "base/integers.h"
#include "tests/reference/wide_422.h"

namespace vorel {

// `size` bytes, 16-byte aligned, between two runs of marks.
class Guarded {
 public:
  Guarded(std::size_t size, u8 fill) : size_(size), bytes_(size + 2 * kMark + 16, kSign) {
    offset_ = kMark + (16 - (reinterpret_cast<std::uintptr_t>(bytes_.data()) + kMark) % 16) % 16;
    for (std::size_t i = 0; i < size; ++i) bytes_[offset_ + i] = fill;
  }
  u8* data() { return bytes_.data() + offset_; }
  std::size_t size() const { return size_; }
  bool MarksIntact() const {
    for (std::size_t i = 0; i < bytes_.size(); ++i) {
      if ((i < offset_ || i >= offset_ + size_) && bytes_[i] != kSign) return false;
    }
    return true;
  }

 private:
  static constexpr std::size_t kMark = 256;
  static constexpr u8 kSign = 0xC3;
  std::size_t size_;
  std::vector<u8> bytes_;
  std::size_t offset_;
};

// Bytes whose last one lies before, and whose first page lies behind, memory that faults when it is touched.
class Fenced {
 public:
  explicit Fenced(const std::vector<u8>& bytes, std::size_t endAlignment = 1) : size_(bytes.size()) {
    const std::size_t page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    const std::size_t used = (size_ + endAlignment - 1) / endAlignment * endAlignment;
    const std::size_t pages = std::max<std::size_t>(1, (used + page - 1) / page);
    length_ = (pages + 2) * page;
    void* block = mmap(nullptr, length_, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (block == MAP_FAILED) throw std::runtime_error("no memory");
    block_ = static_cast<u8*>(block);
    data_ = block_ + (pages + 1) * page - used;
    std::copy(bytes.begin(), bytes.end(), data_);
    if (mprotect(block_, page, PROT_NONE) != 0 ||
        mprotect(block_ + (pages + 1) * page, page, PROT_NONE) != 0) {
      throw std::runtime_error("no fence");
    }
  }
  ~Fenced() { munmap(block_, length_); }
  Fenced(const Fenced&) = delete;
  Fenced& operator=(const Fenced&) = delete;
  u8* data() { return data_; }
  std::size_t size() const { return size_; }

 private:
  std::size_t size_;
  std::size_t length_;
  u8* block_;
  u8* data_;
};

// ---- Between pictures in memory and the rows of the reference coder

inline std::vector<u8> RowsToBytes(const reference::Picture& rows, i32 rowBytes, u8 fill) {
  const std::size_t length = static_cast<std::size_t>(rowBytes < 0 ? -rowBytes : rowBytes);
  std::vector<u8> bytes(length * rows.size(), fill);
  for (std::size_t y = 0; y < rows.size(); ++y) {
    const std::size_t line = rowBytes < 0 ? rows.size() - 1 - y : y;
    std::copy(rows[y].begin(), rows[y].end(), bytes.begin() + static_cast<std::ptrdiff_t>(line * length));
  }
  return bytes;
}

enum class Kind { flat, ramp, photo, noise, edges };

inline reference::Picture MakePicture(Kind kind, u32 width, u32 height, u32 seed) {
  std::mt19937 random(seed);
  const std::size_t samples = std::size_t{(width + 1) / 2} * 4;
  reference::Picture picture(height, std::vector<std::uint8_t>(samples));
  const u8 level = static_cast<u8>(random());
  for (std::size_t y = 0; y < height; ++y) {
    for (std::size_t i = 0; i < samples; ++i) {
      int value = 0;
      switch (kind) {
        case Kind::flat:
          value = level;
          break;
        case Kind::ramp:
          value = static_cast<int>(3 * i + 5 * y);
          break;
        case Kind::photo:
          value = (i % 2 == 0 ? 100 : 3) + static_cast<int>(i / 4 + y) + static_cast<int>(random() % 7);
          break;
        case Kind::noise:
          value = static_cast<int>(random());
          break;
        case Kind::edges:
          value = random() % 5 == 0 ? (random() % 2 == 0 ? 255 : 0) : (y > 0 ? picture[y - 1][i] : 127);
          break;
      }
      picture[y][i] = static_cast<std::uint8_t>(value);
    }
  }
  return picture;
}

inline reference::Bits BytesToBits(const std::vector<u8>& bytes) {
  reference::Bits bits;
  for (const u8 byte : bytes) {
    for (int i = 7; i >= 0; --i) bits.push_back((byte >> i & 1) != 0);
  }
  return bits;
}

// Whole words, filled up with zeros; the last word is there also if it holds no bit.
inline std::vector<u8> BitsToWords(const reference::Bits& bits) {
  std::vector<u8> bytes((bits.size() / 32 + 1) * 4, 0);
  for (std::size_t i = 0; i < bits.size(); ++i) {
    if (bits[i]) bytes[i / 8] = static_cast<u8>(bytes[i / 8] | 0x80u >> (i % 8));
  }
  return bytes;
}

}  // namespace vorel
