// Raw rows are what a picture's memory holds, so nothing is copied on the way: the two exchange their memory.
#include "picture_io/raw.h"

#include <memory>

#include "base/problem.h"

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

}  // namespace

PictureSource OpenRawSource(ByteInput input, const ClipFormat& format) {
  PictureSource source;
  source.name = input.name;
  source.format = format;
  const std::size_t pictureBytes = std::size_t{YuvuRowBytes(format.width)} * format.height;
  source.expectedFrames = input.size / pictureBytes;
  source.keepsPadding = true;
  const auto reading = std::make_shared<RawReading>(RawReading{std::move(input), pictureBytes, 0});
  source.fetch = [reading](StoredPicture& stored) { return FetchPicture(*reading, stored); };
  source.unpack = [format](StoredPicture& stored, Picture& picture) {
    picture.bytes.swap(stored);
    ShapePicture(format, picture);
  };
  return source;
}

PictureSink OpenRawSink(WriteBytes write) {
  PictureSink sink;
  sink.pack = [](Picture& picture, StoredPicture& stored) { picture.bytes.swap(stored); };
  sink.store = [write = std::move(write)](const StoredPicture& stored) {
    write(stored.data(), stored.size());
  };
  return sink;
}

}  // namespace vorel::picture_io
