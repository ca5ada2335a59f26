// What tests of picture files share: pictures, bytes written by hand, and files that are damaged on purpose.
#pragma once
#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "base/problem.h"
#include "picture_io/picture_file.h"
#include "picture_io/row_geometry.h"
#include "tests/picture_io/problem_text.h"

namespace vorel::picture_io {

// "01 ff 7e" with or without spaces.
inline StoredPicture Bytes(std::string_view hex) {
  StoredPicture bytes;
  int digits = 0;
  for (const char c : hex) {
    if (c == ' ') continue;
    if (digits++ % 2 == 0) bytes.push_back(0);
    const int value = c <= '9' ? c - '0' : c - 'a' + 10;
    bytes.back() = static_cast<u8>(bytes.back() << 4 | value);
  }
  return bytes;
}

inline void Append(StoredPicture& to, const StoredPicture& bytes) {
  to.insert(to.end(), bytes.begin(), bytes.end());
}

// `bytes` bytes of a number, most or least significant one first.
inline StoredPicture Number(u64 value, std::size_t bytes, bool isBig) {
  StoredPicture number(bytes);
  for (std::size_t i = 0; i < bytes; ++i) {
    const std::size_t shift = 8 * (isBig ? bytes - 1 - i : i);
    number[i] = static_cast<u8>(value >> shift);
  }
  return number;
}

struct Noise {
  u64 state;

  u32 operator()() {
    state = state * 6364136223846793005u + 1442695040888963407u;
    return static_cast<u32>(state >> 33);
  }
};

inline Picture NoisePicture(u32 pixelFormat, u32 width, u32 height) {
  ClipFormat format;
  format.pixelFormat = pixelFormat;
  format.width = width;
  format.height = height;
  Picture picture;
  ShapePicture(format, picture);
  Noise noise{width * 1000 + height};
  for (u8& byte : picture.bytes) byte = static_cast<u8>(noise());
  return picture;
}

inline ClipFormat FormatOfPicture(const Picture& picture) {
  ClipFormat format;
  format.pixelFormat = picture.pixelFormat;
  format.width = picture.width;
  format.height = picture.height;
  return format;
}

// The bytes of the pixels, without what fills rows up.
inline StoredPicture PixelsOf(const Picture& picture) {
  const RowGeometry rows = RowsOf(picture.pixelFormat, picture.width);
  EXPECT_EQ(picture.rowBytes, rows.memoryBytes);
  EXPECT_EQ(picture.bytes.size(), std::size_t{rows.memoryBytes} * picture.height);
  StoredPicture pixels;
  for (std::size_t row = 0; row < picture.height; ++row) {
    const u8* const from = picture.bytes.data() + row * picture.rowBytes;
    pixels.insert(pixels.end(), from, from + rows.pixelBytes);
  }
  return pixels;
}

inline Picture ReadPicture(const PictureFileKind& kind, const StoredPicture& file) {
  Picture picture;
  kind.read(file, "a file", picture);
  return picture;
}

// The Problem of the header and that of the picture, which must be the same where both complain.
inline std::string RefusalOf(const PictureFileKind& kind, const StoredPicture& file) {
  const std::string ofHeader = ProblemText([&] { kind.describe(file, "a file"); });
  const std::string ofPicture = ProblemText([&] { ReadPicture(kind, file); });
  if (!ofHeader.empty()) {
    EXPECT_EQ(ofHeader, ofPicture);
  }
  return ofPicture;
}

// Every beginning of a file is refused, by its name.
inline void ExpectBeginningsRefused(const PictureFileKind& kind, const StoredPicture& file) {
  ASSERT_EQ(RefusalOf(kind, file), "");
  for (std::size_t size = 0; size < file.size(); ++size) {
    const StoredPicture beginning(file.begin(), file.begin() + static_cast<std::ptrdiff_t>(size));
    EXPECT_EQ(RefusalOf(kind, beginning).substr(0, 8), "a file: ")
        << size << " of " << file.size() << " bytes";
  }
}

// With bytes changed at random a file is a picture or a Problem; returns how many were refused.
inline int CountRefusedDamages(const PictureFileKind& kind, const StoredPicture& file, int attempts) {
  Noise noise{file.size()};
  int refused = 0;
  Picture picture;
  for (int attempt = 0; attempt < attempts; ++attempt) {
    StoredPicture damaged = file;
    for (u32 changes = 1 + noise() % 4; changes > 0; --changes) {
      damaged[noise() % damaged.size()] = static_cast<u8>(noise());
    }
    const std::string refusal = ProblemText([&] { kind.read(damaged, "a file", picture); });
    if (refusal.empty()) {
      PixelsOf(picture);
    } else {
      EXPECT_EQ(refusal.substr(0, 8), "a file: ");
      ++refused;
    }
  }
  return refused;
}

}  // namespace vorel::picture_io
