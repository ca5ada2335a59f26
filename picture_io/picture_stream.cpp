// The shape of pictures, and what readers say of incomplete ones.
#include "picture_io/picture_stream.h"

#include "picture_io/row_geometry.h"

namespace vorel::picture_io {

std::string FramePlace(const std::string& name, u64 frame, u64 position) {
  return name + ": frame " + std::to_string(frame) + " at byte " + std::to_string(position);
}

Problem CutShort(const std::string& place, std::size_t expected, std::size_t found,
                 const std::string& advice) {
  return {"the input ends within a picture: " + std::to_string(expected) + " bytes expected, " +
              std::to_string(found) + " found",
          place, advice};
}

u64 RawPictureBytes(const ClipFormat& format) {
  return u64{RowsOf(format.pixelFormat, format.width).fileBytes} * format.height;
}

void ShapePicture(const ClipFormat& format, Picture& picture) {
  picture.pixelFormat = format.pixelFormat;
  picture.width = format.width;
  picture.height = format.height;
  picture.rowBytes = RowsOf(format.pixelFormat, format.width).memoryBytes;
  picture.bytes.resize(std::size_t{picture.rowBytes} * format.height);
}

}  // namespace vorel::picture_io
