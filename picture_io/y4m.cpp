// Pictures of a YUV4MPEG2 stream. What a FRAME line carries behind the word is of use for 4:2:0 alone and is
// passed over.
#include "picture_io/y4m.h"

#include <memory>

#include "base/bytes.h"
#include "base/problem.h"
#include "picture_io/planar_rows.h"
#include "picture_io/y4m_header.h"

namespace vorel::picture_io {

namespace {

constexpr std::size_t kLongestLine = 4096;
constexpr std::string_view kFrame = "FRAME";

struct Y4mReading {
  ByteInput input;
  u32 planeBits;
  std::size_t pictureBytes;
  u64 frame;  // index of the next one
};

// Words of 16 bits can hold more than their sample has, and nothing must be cut off without a word.
void CheckWords(const StoredPicture& stored, u32 planeBits, const std::string& place) {
  const u8* const bytes = stored.data();
  const std::size_t words = stored.size() / 2;
  u16 all = 0;  // as wide as the words, so that the loop vectorises well
  for (std::size_t i = 0; i < words; ++i) all = static_cast<u16>(all | LoadNative<u16>(bytes + 2 * i));
  if (all >> planeBits != 0) {
    throw Problem{"samples have more than " + std::to_string(planeBits) + " bits", place,
                  "the stream is damaged, or tag C of its header is wrong"};
  }
}

bool FetchFrame(Y4mReading& reading, StoredPicture& stored) {
  const std::string place = FramePlace(reading.input.name, reading.frame, reading.input.position);
  const std::optional<Line> line = ReadLine(reading.input, kLongestLine);
  if (!line) return false;
  const std::string& text = line->text;
  const bool isCutWord = !line->complete && kFrame.starts_with(text);
  const bool isFrame = (text == kFrame || text.starts_with("FRAME ")) && text.size() < kLongestLine;
  if (!isFrame && !isCutWord) {
    throw Problem{"no FRAME line where one must stand", place,
                  "the stream is damaged here, or the picture size in its header is wrong"};
  }
  ReadBytes(reading.input, line->complete ? reading.pictureBytes : 0, stored);
  if (stored.size() < reading.pictureBytes) {
    throw CutShort(place, reading.pictureBytes, stored.size(), "fetch or make the stream again");
  }
  if (reading.planeBits > 8) CheckWords(stored, reading.planeBits, place);
  ++reading.frame;
  return true;
}

}  // namespace

PictureSource OpenY4mSource(ByteInput input, u32 eightBits) {
  const std::optional<Line> line = ReadLine(input, kLongestLine);
  if (!line) throw Problem{"nothing to read: the input is empty", input.name, ""};
  const Y4mHeader header = ReadY4mHeader(line->text, input.name);
  if (!line->complete) {
    throw Problem{"the stream ends within its header", input.name, "fetch or make the stream again"};
  }
  PictureSource source;
  source.name = input.name;
  source.format = header.format;
  if (source.format.pixelFormat == k2vuy) source.format.pixelFormat = eightBits;
  source.unkept = header.comments;
  const ClipFormat format = source.format;
  const PlaneShape shape = PlanesOf(format);
  const std::size_t pictureBytes = PlanarBytes(shape, format.width, format.height);
  if (input.size > input.position) {
    source.expectedFrames = (input.size - input.position) / (kFrame.size() + 1 + pictureBytes);
  }
  const auto reading =
      std::make_shared<Y4mReading>(Y4mReading{std::move(input), shape.bits, pictureBytes, 0});
  source.fetch = [reading](StoredPicture& stored) { return FetchFrame(*reading, stored); };
  source.unpack = [format](StoredPicture& stored, Picture& picture) {
    ShapePicture(format, picture);
    RowsFromPlanes(format, stored.data(), picture.bytes.data());
  };
  return source;
}

PictureSink OpenY4mSink(const ClipFormat& format, WriteBytes write) {
  const std::string header = Y4mHeaderLine(format);
  write(reinterpret_cast<const u8*>(header.data()), header.size());
  PictureSink sink;
  // The FRAME line travels with the planes, so that a picture is one write.
  sink.pack = [format](Picture& picture, StoredPicture& stored) {
    constexpr std::size_t kLineBytes = kFrame.size() + 1;
    stored.resize(kLineBytes + PlanarBytes(PlanesOf(format), format.width, format.height));
    kFrame.copy(reinterpret_cast<char*>(stored.data()), kFrame.size());
    stored[kFrame.size()] = '\n';
    PlanesFromRows(format, picture.bytes.data(), stored.data() + kLineBytes);
  };
  sink.store = [write = std::move(write)](const StoredPicture& stored) {
    write(stored.data(), stored.size());
  };
  return sink;
}

}  // namespace vorel::picture_io
