// libpng reports failures by longjmp. Every step of it therefore runs inside Attempt, and the functions that
// are left that way, from Attempt on downwards, hold nothing that a destructor would have to clean up.
#include "picture_io/png.h"

#include <png.h>

#include <algorithm>
#include <csetjmp>
#include <cstdio>
#include <cstring>
#include <exception>

#include "base/problem.h"

namespace vorel::picture_io {

namespace {

constexpr std::size_t kLongestMessage = 200;
constexpr int kCompressionLevel = 1;
// The quickest filter, in files within 5 % of the smallest at this level.
constexpr int kFilter = PNG_FILTER_SUB;
constexpr std::size_t kChunkBytes = std::size_t{1} << 16;
// deflate never makes more of a byte.
constexpr u64 kMostFromOneByte = 1032;

struct PngFailure {
  char message[kLongestMessage];
};

extern "C" void OnPngError(png_structp png, png_const_charp message) {
  PngFailure* const failure = static_cast<PngFailure*>(png_get_error_ptr(png));
  std::snprintf(failure->message, sizeof failure->message, "%s", message);
  png_longjmp(png, 1);
}

extern "C" void OnPngWarning(png_structp, png_const_charp) {}

// Runs step(state), a function of libpng's calls. False if it failed.
template <typename State>
bool Attempt(png_structp png, void (*step)(State&), State& state) {
  if (setjmp(png_jmpbuf(png)) != 0) return false;
  step(state);
  return true;
}

struct PngReading {
  const StoredPicture& file;
  png_structp png = nullptr;
  png_infop info = nullptr;
  std::size_t taken = 0;
  PngFailure failure = {};
  u32 width = 0;
  u32 height = 0;
  u64 storedBytes = 0;  // of the rows before compression
  bool hasAlpha = false;
  bool isDeep = false;
  bool hasProfile = false;
  bool hasSrgb = false;
  bool hasGamma = false;
  bool hasPrimaries = false;
  int passes = 1;
  u8* rows = nullptr;
  std::size_t rowBytes = 0;

  explicit PngReading(const StoredPicture& file) : file(file) {}
  PngReading(const PngReading&) = delete;
  PngReading& operator=(const PngReading&) = delete;
  ~PngReading() { png_destroy_read_struct(&png, &info, nullptr); }
};

extern "C" void TakePngBytes(png_structp png, png_bytep bytes, std::size_t size) {
  PngReading& reading = *static_cast<PngReading*>(png_get_io_ptr(png));
  if (size > reading.file.size() - reading.taken) png_error(png, "the file ends too early");
  std::memcpy(bytes, reading.file.data() + reading.taken, size);
  reading.taken += size;
}

void ReadHeader(PngReading& reading) {
  png_set_read_fn(reading.png, &reading, TakePngBytes);
  png_read_info(reading.png, reading.info);
  const int colour = png_get_color_type(reading.png, reading.info);
  const bool isTransparent = png_get_valid(reading.png, reading.info, PNG_INFO_tRNS) != 0;
  reading.width = png_get_image_width(reading.png, reading.info);
  reading.height = png_get_image_height(reading.png, reading.info);
  reading.storedBytes = u64{png_get_rowbytes(reading.png, reading.info)} * reading.height;
  reading.hasAlpha = (colour & PNG_COLOR_MASK_ALPHA) != 0 || isTransparent;
  reading.isDeep = png_get_bit_depth(reading.png, reading.info) == 16;
  const auto has = [&reading](u32 chunk) { return png_get_valid(reading.png, reading.info, chunk) != 0; };
  reading.hasProfile = has(PNG_INFO_iCCP);
  reading.hasSrgb = has(PNG_INFO_sRGB);
  reading.hasGamma = has(PNG_INFO_gAMA);
  reading.hasPrimaries = has(PNG_INFO_cHRM);
  png_set_expand(reading.png);
  if ((colour & PNG_COLOR_MASK_COLOR) == 0) png_set_gray_to_rgb(reading.png);
  if (reading.isDeep && reading.hasAlpha) png_set_swap_alpha(reading.png);
  reading.passes = png_set_interlace_handling(reading.png);
  png_read_update_info(reading.png, reading.info);
}

void ReadRows(PngReading& reading) {
  for (int pass = 0; pass < reading.passes; ++pass) {
    for (std::size_t row = 0; row < reading.height; ++row) {
      png_read_row(reading.png, reading.rows + row * reading.rowBytes, nullptr);
    }
  }
  png_read_end(reading.png, nullptr);
}

[[noreturn]] void ThrowUnreadable(const PngReading& reading, const std::string& name) {
  throw Problem{std::string("the PNG file cannot be read: ") + reading.failure.message, name,
                "the file is damaged or not complete"};
}

// What a file says of its colours. A profile, and sRGB, stand for gamma and primaries too.
std::string ColourText(const PngReading& reading) {
  if (reading.hasProfile) return "the colour profile";
  if (reading.hasSrgb) return "that colours are sRGB";
  if (reading.hasGamma && reading.hasPrimaries) return "gamma and primaries";
  if (reading.hasGamma) return "gamma";
  return reading.hasPrimaries ? "primaries" : "";
}

ClipFormat OpenPng(PngReading& reading, const std::string& name) {
  if (png_sig_cmp(reading.file.data(), 0, std::min<std::size_t>(reading.file.size(), 8)) != 0) {
    throw Problem{"not a PNG file: it does not begin like one", name, ""};
  }
  reading.png = png_create_read_struct(PNG_LIBPNG_VER_STRING, &reading.failure, OnPngError, OnPngWarning);
  if (reading.png != nullptr) reading.info = png_create_info_struct(reading.png);
  if (reading.info == nullptr) throw Problem{"libpng cannot be used", name, ""};
  if (!Attempt(reading.png, ReadHeader, reading)) ThrowUnreadable(reading, name);
  CheckPictureSize(reading.width, reading.height, name);
  ClipFormat format;
  format.pixelFormat = ChunkyPixelFormat(reading.isDeep, reading.hasAlpha);
  format.width = reading.width;
  format.height = reading.height;
  return format;
}

struct PngWriting {
  const Picture& picture;
  StoredPicture& file;
  png_structp png = nullptr;
  png_infop info = nullptr;
  PngFailure failure = {};

  PngWriting(const Picture& picture, StoredPicture& file) : picture(picture), file(file) {}
  PngWriting(const PngWriting&) = delete;
  PngWriting& operator=(const PngWriting&) = delete;
  ~PngWriting() { png_destroy_write_struct(&png, &info); }
};

// False without memory.
bool Append(StoredPicture& file, const u8* bytes, std::size_t size) noexcept {
  try {
    file.insert(file.end(), bytes, bytes + size);
  } catch (const std::exception&) {
    return false;
  }
  return true;
}

extern "C" void PutPngBytes(png_structp png, png_bytep bytes, std::size_t size) {
  PngWriting& writing = *static_cast<PngWriting*>(png_get_io_ptr(png));
  if (!Append(writing.file, bytes, size)) png_error(png, "out of memory");
}

extern "C" void FlushPngBytes(png_structp) {}

void WriteAll(PngWriting& writing) {
  const Picture& picture = writing.picture;
  const bool hasAlpha = picture.pixelFormat == kRgba8 || picture.pixelFormat == kArgb16;
  const bool isDeep = picture.pixelFormat == kRgb16 || picture.pixelFormat == kArgb16;
  png_set_write_fn(writing.png, &writing, PutPngBytes, FlushPngBytes);
  png_set_compression_level(writing.png, kCompressionLevel);
  png_set_filter(writing.png, PNG_FILTER_TYPE_BASE, kFilter);
  png_set_compression_buffer_size(writing.png, kChunkBytes);
  png_set_IHDR(writing.png, writing.info, picture.width, picture.height, isDeep ? 16 : 8,
               hasAlpha ? PNG_COLOR_TYPE_RGB_ALPHA : PNG_COLOR_TYPE_RGB, PNG_INTERLACE_NONE,
               PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
  png_write_info(writing.png, writing.info);
  if (picture.pixelFormat == kArgb16) png_set_swap_alpha(writing.png);
  for (std::size_t row = 0; row < picture.height; ++row) {
    png_write_row(writing.png, picture.bytes.data() + row * picture.rowBytes);
  }
  png_write_end(writing.png, writing.info);
}

constexpr u32 kPixelFormats[] = {kRgb8, kRgba8, kRgb16, kArgb16};
constexpr const char* kEndings[] = {".png"};

}  // namespace

PictureFileHeader DescribePng(const StoredPicture& file, const std::string& name) {
  PngReading reading(file);
  PictureFileHeader header;
  header.format = OpenPng(reading, name);
  header.unkept = ColourText(reading);
  return header;
}

void ReadPng(const StoredPicture& file, const std::string& name, Picture& picture) {
  PngReading reading(file);
  const ClipFormat format = OpenPng(reading, name);
  if (reading.storedBytes / kMostFromOneByte > file.size()) {
    throw Problem{"the file is too short for its picture of " + std::to_string(format.width) + " x " +
                      std::to_string(format.height),
                  name, "the file is damaged or not complete"};
  }
  ShapePicture(format, picture);
  reading.rows = picture.bytes.data();
  reading.rowBytes = picture.rowBytes;
  if (!Attempt(reading.png, ReadRows, reading)) ThrowUnreadable(reading, name);
}

void WritePng(const Picture& picture, StoredPicture& file) {
  file.clear();
  PngWriting writing(picture, file);
  writing.png = png_create_write_struct(PNG_LIBPNG_VER_STRING, &writing.failure, OnPngError, OnPngWarning);
  if (writing.png != nullptr) writing.info = png_create_info_struct(writing.png);
  if (writing.info == nullptr) throw Problem{"libpng cannot be used", "PNG", ""};
  if (!Attempt(writing.png, WriteAll, writing)) {
    throw Problem{std::string("the picture cannot be written: ") + writing.failure.message, "PNG", ""};
  }
}

constinit const PictureFileKind kPngFiles = {
    .name = "PNG",
    .pixelFormats = kPixelFormats,
    .endings = kEndings,
    .describe = DescribePng,
    .read = ReadPng,
    .write = [](const Picture& picture, const ClipFormat&, StoredPicture& file) { WritePng(picture, file); },
};

}  // namespace vorel::picture_io
