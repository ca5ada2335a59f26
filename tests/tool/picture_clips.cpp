// Noise through the functions that read and write single files.
#include "tests/tool/picture_clips.h"

#include <gtest/gtest.h>

#include <cstring>

#include "base/bytes.h"
#include "base/problem.h"
#include "picture_io/row_geometry.h"

namespace vorel::tool {

using picture_io::ClipFormat;
using picture_io::Picture;
using picture_io::PictureFileKind;
using picture_io::SequencePath;
using picture_io::StoredPicture;

namespace {

constexpr u32 kWidth = 50;
constexpr u32 kHeight = 18;

ClipFormat FormatOf(const Picture& picture) {
  ClipFormat format;
  format.pixelFormat = picture.pixelFormat;
  format.width = picture.width;
  format.height = picture.height;
  return format;
}

}  // namespace

Picture NoisePicture(u32 pixelFormat, u32 width, u32 height, u32 seed) {
  ClipFormat format;
  format.pixelFormat = pixelFormat;
  format.width = width;
  format.height = height;
  Picture picture;
  ShapePicture(format, picture);
  const std::string noise = Noise(picture.bytes.size(), seed);
  std::memcpy(picture.bytes.data(), noise.data(), noise.size());
  const bool isDeep = pixelFormat == picture_io::kRgb16 || pixelFormat == picture_io::kArgb16;
  const std::size_t step = pixelFormat == picture_io::kRgb10 ? 4 : 2;
  const u8 kept = pixelFormat == picture_io::kRgb10 ? 0xFC : 0xC0;
  for (std::size_t i = step - 1; (isDeep || step == 4) && i < picture.bytes.size(); i += step)
    picture.bytes[i] &= kept;
  return picture;
}

void WritePicture(const TestFolder& folder, const std::string& name, const PictureFileKind& kind,
                  const Picture& picture) {
  StoredPicture file;
  kind.write(picture, FormatOf(picture), file);
  WriteFile(folder, name, {file.begin(), file.end()});
}

void WriteSequence(const TestFolder& folder, const std::string& pattern, const PictureFileKind& kind,
                   u32 pixelFormat, u32 first, u32 count) {
  for (u32 number = first; number < first + count; ++number) {
    WritePicture(folder, SequencePath(picture_io::ReadSequencePattern(pattern), number), kind,
                 NoisePicture(pixelFormat, kWidth, kHeight, number));
  }
}

Picture PictureIn(const TestFolder& folder, const std::string& name) {
  Picture picture;
  try {
    const std::string bytes = FileBytes(folder, name);
    picture_io::FindPictureFileKind(name)->read({bytes.begin(), bytes.end()}, name, picture);
  } catch (const Problem& problem) {
    ADD_FAILURE() << problem.where << ": " << problem.what;
  }
  return picture;
}

bool IsSame(const Picture& first, const Picture& second) {
  if (FormatOf(first) != FormatOf(second)) return false;
  const std::size_t rowBytes = picture_io::RowsOf(first.pixelFormat, first.width).pixelBytes;
  for (std::size_t row = 0; row < first.height; ++row) {
    if (std::memcmp(first.bytes.data() + row * first.rowBytes, second.bytes.data() + row * second.rowBytes,
                    rowBytes) != 0) {
      return false;
    }
  }
  return true;
}

void ExpectSequence(const TestFolder& folder, const std::string& pattern, u32 pixelFormat, u32 first,
                    u32 count, u32 seed) {
  for (u32 i = 0; i < count; ++i) {
    const std::string name = SequencePath(picture_io::ReadSequencePattern(pattern), first + i);
    EXPECT_TRUE(IsSame(PictureIn(folder, name), NoisePicture(pixelFormat, kWidth, kHeight, seed + i)))
        << name;
  }
}

}  // namespace vorel::tool
