// Sequences of picture files. `unpack` is given nothing but what was fetched, so the number of a file travels
// behind its bytes.
#include "picture_io/picture_file.h"

#include <algorithm>
#include <limits>
#include <memory>

#include "base/bytes.h"
#include "base/problem.h"
#include "picture_io/byte_input.h"
#include "picture_io/dpx.h"
#include "picture_io/png.h"
#include "picture_io/tiff.h"

namespace vorel::picture_io {

namespace {

constexpr const PictureFileKind* kKinds[] = {&kPngFiles, &kTiffFiles, &kDpxFiles};

struct KindText {
  u32 pixelFormat;
  const char* text;
};

constexpr KindText kKindTexts[] = {
    {kRgb8, "8-bit RGB"},   {kRgba8, "8-bit RGB with alpha"},   {kRgb10, "10-bit RGB"},
    {kRgb16, "16-bit RGB"}, {kArgb16, "16-bit RGB with alpha"},
};

// "1920 x 1080, 16-bit RGB".
std::string GeometryText(u32 width, u32 height, u32 pixelFormat) {
  std::string text = std::to_string(width) + " x " + std::to_string(height);
  for (const KindText& kind : kKindTexts) {
    if (kind.pixelFormat == pixelFormat) text.append(", ").append(kind.text);
  }
  return text;
}

struct SequenceReading {
  std::vector<std::string> paths;
  std::size_t next;  // index of the file to fetch
};

void ReadFile(const std::string& path, StoredPicture& file) {
  ByteInput input = OpenByteInput(path);
  const bool isSizeKnown = input.size > 0;
  ReadBytes(input, isSizeKnown ? input.size : std::numeric_limits<std::size_t>::max() / 2, file);
  if (file.empty()) throw Problem{"the file is empty", path, ""};
}

void AppendNumber(StoredPicture& file, u64 number) {
  const std::size_t size = file.size();
  file.resize(size + sizeof number);
  StoreNative(file.data() + size, number);
}

u64 TakeNumber(StoredPicture& file) {
  const std::size_t size = file.size() - sizeof(u64);
  const u64 number = LoadNative<u64>(file.data() + size);
  file.resize(size);
  return number;
}

void CheckAgainstClip(const Picture& picture, const ClipFormat& format, const std::string& path) {
  if (picture.width == format.width && picture.height == format.height &&
      picture.pixelFormat == format.pixelFormat) {
    return;
  }
  throw Problem{"the picture is " + GeometryText(picture.width, picture.height, picture.pixelFormat) +
                    ", but the sequence began with " +
                    GeometryText(format.width, format.height, format.pixelFormat),
                path, "convert it to the size and kind of the others, or part the sequence there"};
}

bool EndsWith(const std::string& path, const std::string& ending) {
  const auto isSame = [](char given, char lower) {
    return (given >= 'A' && given <= 'Z' ? given - 'A' + 'a' : given) == lower;
  };
  return path.size() >= ending.size() &&
         std::equal(ending.rbegin(), ending.rend(), path.rbegin(),
                    [isSame](char lower, char given) { return isSame(given, lower); });
}

}  // namespace

bool Holds(const PictureFileKind& kind, u32 pixelFormat) {
  return std::find(kind.pixelFormats.begin(), kind.pixelFormats.end(), pixelFormat) !=
         kind.pixelFormats.end();
}

const PictureFileKind* FindPictureFileKind(const std::string& path) {
  for (const PictureFileKind* const kind : kKinds) {
    for (const char* const ending : kind->endings) {
      if (EndsWith(path, ending)) return kind;
    }
  }
  return nullptr;
}

PictureSource OpenSequenceSource(const PictureFileKind& kind, PictureFiles files) {
  if (files.paths.empty()) throw Problem{"there are no pictures", files.name, ""};
  StoredPicture first;
  ReadFile(files.paths[0], first);
  const PictureFileHeader header = kind.describe(first, files.paths[0]);
  PictureSource source;
  source.name = files.name;
  source.format = header.format;
  source.unkept = header.unkept;
  source.expectedFrames = files.paths.size();
  const auto reading = std::make_shared<SequenceReading>(SequenceReading{std::move(files.paths), 0});
  source.fetch = [reading](StoredPicture& stored) {
    if (reading->next == reading->paths.size()) return false;
    ReadFile(reading->paths[reading->next], stored);
    AppendNumber(stored, reading->next++);
    return true;
  };
  source.unpack = [reading, &kind, format = header.format](StoredPicture& stored, Picture& picture) {
    const std::string& path = reading->paths[TakeNumber(stored)];
    kind.read(stored, path, picture);
    CheckAgainstClip(picture, format, path);
  };
  return source;
}

PictureSink OpenSequenceSink(const PictureFileKind& kind, const ClipFormat& format,
                             const SequencePattern& pattern, u64 first, WritePictureFile write) {
  if (!Holds(kind, format.pixelFormat)) {
    std::string held;
    for (const KindText& text : kKindTexts) {
      if (Holds(kind, text.pixelFormat)) held.append(held.empty() ? "" : ", ").append(text.text);
    }
    throw Problem{std::string(kind.name) + " files hold no pictures of this pixel format", pattern.text,
                  "those written here hold " + held};
  }
  PictureSink sink;
  sink.pack = [&kind, format](Picture& picture, StoredPicture& stored) {
    kind.write(picture, format, stored);
  };
  const auto next = std::make_shared<u64>(first);
  sink.store = [pattern, write = std::move(write), next](const StoredPicture& stored) {
    write(SequencePath(pattern, (*next)++), stored);
  };
  return sink;
}

void CheckPictureSize(u64 width, u64 height, const std::string& name) {
  if (width >= 1 && width <= kLargestSide && height >= 1 && height <= kLargestSide) return;
  throw Problem{
      "the picture size " + std::to_string(width) + " x " + std::to_string(height) + " is not handled", name,
      "sides are from 1 to " + std::to_string(kLargestSide) + " pixels"};
}

}  // namespace vorel::picture_io
