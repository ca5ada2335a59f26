// libpng at compression level 1. It has no Y'CbCr.
#include <png.h>

#include <cstring>
#include <stdexcept>

#include "bench/peer.h"

namespace vorel::bench {
namespace {

Arrangement ArrangementOf(const SampleShape& shape) {
  return shape.model == ColourModel::rgb ? Arrangement::topWords : Arrangement::none;
}

std::string Version() {
  return "libpng " PNG_LIBPNG_VER_STRING;
}

[[noreturn]] void Fail(png_structp, const char* message) {
  throw std::runtime_error(message);
}

std::size_t RowBytes(const SampleShape& shape) {
  return std::size_t{shape.width} * shape.components * BytesOfSample(shape);
}

void Append(png_structp writing, png_bytep bytes, png_size_t size) {
  CodedPart& part = *static_cast<CodedPart*>(png_get_io_ptr(writing));
  Reserve(part, part.bytes + size);
  std::memcpy(&part.room[part.bytes], bytes, size);
  part.bytes += size;
}

void Encode(const Samples& picture, CodedParts& parts, Results) {
  const SampleShape& shape = picture.shape;
  parts.resize(1);
  parts[0].bytes = 0;
  Reserve(parts[0], picture.bytes.size());
  png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, Fail, nullptr);
  png_infop info = png_create_info_struct(png);
  png_set_write_fn(png, parts.data(), Append, nullptr);
  png_set_compression_level(png, 1);
  png_set_IHDR(png, info, shape.width, shape.height, shape.bits > 8 ? 16 : 8,
               shape.components == 4 ? PNG_COLOR_TYPE_RGB_ALPHA : PNG_COLOR_TYPE_RGB, PNG_INTERLACE_NONE,
               PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
  png_write_info(png, info);
  for (u32 row = 0; row < shape.height; ++row) png_write_row(png, &picture.bytes[row * RowBytes(shape)]);
  png_write_end(png, nullptr);
  png_destroy_write_struct(&png, &info);
}

void Decode(const CodedParts& parts, Samples& picture, Results) {
  const u8* next = parts[0].room.data();
  png_structp png = png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, Fail, nullptr);
  png_infop info = png_create_info_struct(png);
  png_set_read_fn(png, &next, [](png_structp reading, png_bytep bytes, png_size_t size) {
    const u8*& from = *static_cast<const u8**>(png_get_io_ptr(reading));
    std::memcpy(bytes, from, size);
    from += size;
  });
  png_read_info(png, info);
  const std::size_t rowBytes = RowBytes(picture.shape);
  for (u32 row = 0; row < picture.shape.height; ++row)
    png_read_row(png, &picture.bytes[row * rowBytes], nullptr);
  png_destroy_read_struct(&png, &info, nullptr);
}

}  // namespace

const Peer kPng = {"png1", Version, ArrangementOf, Encode, Decode};

}  // namespace vorel::bench
