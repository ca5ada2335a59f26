// The table of kinds.
#include "tool/file_kinds.h"

#include <filesystem>

#include "picture_io/dpx.h"
#include "picture_io/png.h"
#include "picture_io/tiff.h"
#include "tool/frame_format.h"

namespace vorel::tool {

namespace {

struct KindRow {
  PictureFile file;
  const char* name;
  const char* ending;  // of results
  const picture_io::PictureFileKind* pictures;
};

// Files are read in either byte order, so an ending tells the first row of its kind.
constexpr KindRow kKinds[] = {
    {PictureFile::y4m, "y4m", ".y4m", nullptr},
    {PictureFile::raw, "raw", ".yuv", nullptr},
    {PictureFile::png, "png", ".%05d.png", &picture_io::kPngFiles},
    {PictureFile::tiff, "tiff", ".%05d.tif", &picture_io::kTiffFiles},
    {PictureFile::dpx, "dpx", ".%05d.dpx", &picture_io::kDpxFiles},
    {PictureFile::littleEndianDpx, "dpx-le", ".%05d.dpx", &picture_io::kLittleEndianDpxFiles},
};

const KindRow& RowOf(PictureFile file) {
  for (const KindRow& row : kKinds) {
    if (row.file == file) return row;
  }
  return kKinds[0];
}

}  // namespace

std::optional<PictureFile> PictureFileOfName(const std::string& name) {
  for (const KindRow& row : kKinds) {
    if (name == row.name) return row.file;
  }
  return std::nullopt;
}

std::string PictureFileNames() {
  std::string names;
  for (const KindRow& row : kKinds) names.append(names.empty() ? "" : ", ").append(row.name);
  return names;
}

std::optional<PictureFile> PictureFileOfPath(const std::string& path) {
  const std::string ending = std::filesystem::path(path).extension().string();
  if (ending == ".y4m") return PictureFile::y4m;
  if (ending == ".yuv" || ending == ".raw" || PixelFormatOfEnding(path)) return PictureFile::raw;
  const picture_io::PictureFileKind* const pictures = picture_io::FindPictureFileKind(path);
  if (pictures == nullptr) return std::nullopt;
  for (const KindRow& row : kKinds) {
    if (row.pictures == pictures) return row.file;
  }
  return std::nullopt;
}

const picture_io::PictureFileKind* SinglePictures(PictureFile file) {
  return RowOf(file).pictures;
}

std::string EndingOfResult(PictureFile file) {
  return RowOf(file).ending;
}

bool IsSequence(const std::string& path) {
  std::error_code ignored;
  return picture_io::LooksLikeSequence(path) && picture_io::FindPictureFileKind(path) != nullptr &&
         !std::filesystem::exists(path, ignored);
}

picture_io::SequencePattern PatternOf(const std::string& path) {
  try {
    return picture_io::ReadSequencePattern(path);
  } catch (const Problem& problem) {
    throw UsageError{problem.where + ": " + problem.what + "; " + problem.advice};
  }
}

}  // namespace vorel::tool
