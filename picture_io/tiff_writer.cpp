// Writing TIFF files: strips of whole pixels, little-endian, deflate over differences of neighbours.
#include <algorithm>

#include "base/bytes.h"
#include "base/problem.h"
#include "picture_io/tiff.h"
#include "picture_io/tiff_memory.h"

namespace vorel::picture_io {

namespace {

constexpr int kCompressionLevel = 1;
constexpr u32 kStripBytes = 1 << 18;
// Larger pictures could leave the four bytes of an offset: they take files with eight.
constexpr std::size_t kLargestClassic = std::size_t{3} << 30;

struct Shape {
  u32 samples;
  u32 bits;
  bool isAlphaFirst;
};

Shape ShapeOf(u32 pixelFormat) {
  switch (pixelFormat) {
    case kRgba8:
      return {4, 8, false};
    case kRgb16:
      return {3, 16, false};
    case kArgb16:
      return {4, 16, true};
    default:
      return {3, 8, false};
  }
}

bool WriteFields(TIFF* tiff, const Picture& picture, const Shape& shape) {
  const u32 rowBytes = picture.width * shape.samples * shape.bits / 8;
  bool isDone = TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, picture.width) == 1;
  const auto put = [tiff, &isDone](u32 tag, auto value) {
    isDone = isDone && TIFFSetField(tiff, tag, value) == 1;
  };
  put(TIFFTAG_IMAGELENGTH, picture.height);
  put(TIFFTAG_BITSPERSAMPLE, shape.bits);
  put(TIFFTAG_SAMPLESPERPIXEL, shape.samples);
  put(TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_RGB);
  put(TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
  put(TIFFTAG_ORIENTATION, ORIENTATION_TOPLEFT);
  put(TIFFTAG_COMPRESSION, COMPRESSION_ADOBE_DEFLATE);
  put(TIFFTAG_PREDICTOR, PREDICTOR_HORIZONTAL);
  put(TIFFTAG_ZIPQUALITY, kCompressionLevel);
  put(TIFFTAG_ROWSPERSTRIP, std::clamp(kStripBytes / rowBytes, 1u, picture.height));
  u16 straight = EXTRASAMPLE_UNASSALPHA;
  return isDone && (shape.samples == 3 || TIFFSetField(tiff, TIFFTAG_EXTRASAMPLES, 1, &straight) == 1);
}

// A row as libtiff wants it: alpha last, 16 bits as numbers of this machine.
void TurnRow(const u8* from, const Shape& shape, u32 pixels, u8* to) {
  const std::size_t samples = std::size_t{pixels} * shape.samples;
  if (shape.bits == 8) {
    std::memcpy(to, from, samples);
    return;
  }
  const std::size_t first = shape.isAlphaFirst ? 1 : 0;
  for (std::size_t i = 0; i < samples; i += shape.samples) {
    for (std::size_t k = 0; k < shape.samples; ++k) {
      StoreNative<u16>(to + 2 * (i + k), LoadBig16(from + 2 * (i + (k + first) % shape.samples)));
    }
  }
}

bool WriteRows(TIFF* tiff, const Picture& picture, const Shape& shape) {
  std::vector<u8> row(std::size_t{picture.width} * shape.samples * shape.bits / 8);
  for (u32 y = 0; y < picture.height; ++y) {
    TurnRow(picture.bytes.data() + std::size_t{y} * picture.rowBytes, shape, picture.width, row.data());
    if (TIFFWriteScanline(tiff, row.data(), y, 0) != 1) return false;
  }
  return TIFFFlush(tiff) == 1;
}

constexpr u32 kPixelFormats[] = {kRgb8, kRgba8, kRgb16, kArgb16};
constexpr const char* kEndings[] = {".tif", ".tiff"};

}  // namespace

void WriteTiff(const Picture& picture, StoredPicture& file) {
  file.clear();
  TiffMemory memory{&file, &file};
  const TiffHandle tiff = OpenTiff(memory, picture.bytes.size() < kLargestClassic ? "wl" : "wl8");
  const Shape shape = ShapeOf(picture.pixelFormat);
  if (tiff == nullptr || !WriteFields(tiff.get(), picture, shape) || !WriteRows(tiff.get(), picture, shape)) {
    throw Problem{"the picture cannot be written: " + TiffMessage(memory), "TIFF", ""};
  }
}

constinit const PictureFileKind kTiffFiles = {
    .name = "TIFF",
    .pixelFormats = kPixelFormats,
    .endings = kEndings,
    .describe = DescribeTiff,
    .read = ReadTiff,
    .write = [](const Picture& picture, const ClipFormat&, StoredPicture& file) { WriteTiff(picture, file); },
};

}  // namespace vorel::picture_io
