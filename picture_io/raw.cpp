// Most raw rows are what a picture's memory holds, so nothing is copied on the way: the two exchange their
// memory. Rows are copied one by one where those of a picture are longer, to be aligned.
#include "picture_io/raw.h"

#include <cstring>
#include <memory>

#include "base/problem.h"
#include "picture_io/row_geometry.h"

namespace vorel::picture_io {

namespace {

struct RawReading {
  ByteInput input;
  std::size_t pictureBytes;
  u64 frame;  // index of the next one
};

bool FetchPicture(RawReading& reading, StoredPicture& stored) {
  const std::string place = FramePlace(reading.input.name, reading.frame, reading.input.position);
  ReadBytes(reading.input, reading.pictureBytes, stored);
  if (stored.empty()) return false;
  if (stored.size() < reading.pictureBytes) {
    throw CutShort(place, reading.pictureBytes, stored.size(),
                   "--size or --pixel-format is not that of its pictures, or the input is not complete");
  }
  ++reading.frame;
  return true;
}

void UnpackPicture(const ClipFormat& format, StoredPicture& stored, Picture& picture) {
  const RowGeometry rows = RowsOf(format.pixelFormat, format.width);
  if (rows.memoryBytes == rows.fileBytes) picture.bytes.swap(stored);
  ShapePicture(format, picture);
  if (rows.memoryBytes == rows.fileBytes) return;
  for (std::size_t row = 0; row < format.height; ++row) {
    std::memcpy(picture.bytes.data() + row * rows.memoryBytes, stored.data() + row * rows.fileBytes,
                rows.fileBytes);
  }
}

void PackPicture(Picture& picture, StoredPicture& stored) {
  const RowGeometry rows = RowsOf(picture.pixelFormat, picture.width);
  const std::size_t padding = rows.fileBytes - rows.pixelBytes;
  for (std::size_t row = 0; padding > 0 && row < picture.height; ++row) {
    std::memset(picture.bytes.data() + row * rows.memoryBytes + rows.pixelBytes, 0, padding);
  }
  if (rows.memoryBytes == rows.fileBytes) {
    picture.bytes.swap(stored);
    return;
  }
  stored.resize(std::size_t{rows.fileBytes} * picture.height);
  for (std::size_t row = 0; row < picture.height; ++row) {
    std::memcpy(stored.data() + row * rows.fileBytes, picture.bytes.data() + row * rows.memoryBytes,
                rows.fileBytes);
  }
}

}  // namespace

PictureSource OpenRawSource(ByteInput input, const ClipFormat& format) {
  PictureSource source;
  source.name = input.name;
  source.format = format;
  const std::size_t pictureBytes = RawPictureBytes(format);
  source.expectedFrames = input.size / pictureBytes;
  source.keepsPadding = true;
  const auto reading = std::make_shared<RawReading>(RawReading{std::move(input), pictureBytes, 0});
  source.fetch = [reading](StoredPicture& stored) { return FetchPicture(*reading, stored); };
  source.unpack = [format](StoredPicture& stored, Picture& picture) {
    UnpackPicture(format, stored, picture);
  };
  return source;
}

PictureSink OpenRawSink(WriteBytes write) {
  PictureSink sink;
  sink.pack = PackPicture;
  sink.store = [write = std::move(write)](const StoredPicture& stored) {
    write(stored.data(), stored.size());
  };
  return sink;
}

}  // namespace vorel::picture_io
