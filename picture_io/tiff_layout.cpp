// Every field that could make the samples of a file something else than expected is looked at.
#include "picture_io/tiff_layout.h"

#include <algorithm>
#include <iterator>
#include <span>

#include "base/problem.h"
#include "picture_io/picture_file.h"

namespace vorel::picture_io {

namespace {

constexpr const char* kHandled =
    "TIFF files are read with 8 or 16 bits a sample, grey or RGB, plain or lossless";

struct CodeText {
  u16 code;
  const char* text;
};

constexpr CodeText kCompressions[] = {
    {COMPRESSION_NONE, "none"},         {COMPRESSION_LZW, "LZW"},
    {COMPRESSION_PACKBITS, "PackBits"}, {COMPRESSION_ADOBE_DEFLATE, "deflate"},
    {COMPRESSION_DEFLATE, "deflate"},   {COMPRESSION_LZMA, "LZMA"},
    {COMPRESSION_ZSTD, "Zstandard"},
};

constexpr CodeText kOtherPhotometrics[] = {
    {PHOTOMETRIC_PALETTE, "a palette"}, {PHOTOMETRIC_MASK, "a mask"},     {PHOTOMETRIC_SEPARATED, "CMYK"},
    {PHOTOMETRIC_YCBCR, "Y'CbCr"},      {PHOTOMETRIC_CIELAB, "L*a*b*"},   {PHOTOMETRIC_ICCLAB, "L*a*b*"},
    {PHOTOMETRIC_ITULAB, "L*a*b*"},     {PHOTOMETRIC_CFA, "sensor data"}, {PHOTOMETRIC_LOGLUV, "LogLuv"},
};

[[noreturn]] void Refuse(const std::string& what, const std::string& name,
                         const std::string& advice = kHandled) {
  throw Problem{what, name, advice};
}

u16 FieldOf(TIFF* tiff, u32 tag) {
  u16 value = 0;
  TIFFGetFieldDefaulted(tiff, tag, &value);
  return value;
}

std::string TextOf(std::span<const CodeText> texts, u16 code) {
  const auto found =
      std::find_if(texts.begin(), texts.end(), [code](const CodeText& text) { return text.code == code; });
  return found == texts.end() ? "kind " + std::to_string(code) : found->text;
}

void CheckCompression(TIFF* tiff, const std::string& name) {
  const u16 compression = FieldOf(tiff, TIFFTAG_COMPRESSION);
  const bool isHandled =
      std::any_of(std::begin(kCompressions), std::end(kCompressions),
                  [compression](const CodeText& text) { return text.code == compression; });
  if (!isHandled) {
    Refuse("the picture is compressed by kind " + std::to_string(compression) + ", which is not handled",
           name);
  }
  if (TIFFIsCODECConfigured(compression) == 0) {
    Refuse("libtiff is built without " + TextOf(kCompressions, compression), name);
  }
}

// Whether the samples beyond `colours` are one of straight alpha. Refuses any others.
bool ReadAlpha(TIFF* tiff, u32 samples, u32 colours, const std::string& name) {
  if (samples == colours) return false;
  u16 count = 0;
  u16* kinds = nullptr;
  TIFFGetFieldDefaulted(tiff, TIFFTAG_EXTRASAMPLES, &count, &kinds);
  if (samples != colours + 1 || count != 1 || kinds == nullptr) {
    Refuse("pixels have " + std::to_string(samples) + " samples, " + std::to_string(count) +
               " of them marked as extra ones",
           name);
  }
  if (kinds[0] == EXTRASAMPLE_ASSOCALPHA) {
    Refuse("its colours are multiplied by alpha already", name,
           "pictures hold straight alpha here, and dividing would not give the same samples back; save it "
           "with unassociated alpha");
  }
  if (kinds[0] != EXTRASAMPLE_UNASSALPHA) Refuse("its last sample is not said to be alpha", name);
  return true;
}

}  // namespace

TiffLayout ReadTiffLayout(TIFF* tiff, const std::string& name) {
  TiffLayout layout = {};
  TIFFGetField(tiff, TIFFTAG_IMAGEWIDTH, &layout.width);
  TIFFGetField(tiff, TIFFTAG_IMAGELENGTH, &layout.height);
  CheckPictureSize(layout.width, layout.height, name);
  u16 photometric = 0;
  if (TIFFGetField(tiff, TIFFTAG_PHOTOMETRIC, &photometric) == 0) Refuse("its colours are not said", name);
  layout.isWhite0 = photometric == PHOTOMETRIC_MINISWHITE;
  layout.isGrey = layout.isWhite0 || photometric == PHOTOMETRIC_MINISBLACK;
  if (!layout.isGrey && photometric != PHOTOMETRIC_RGB) {
    Refuse("its colours are " + TextOf(kOtherPhotometrics, photometric), name);
  }
  const u16 bits = FieldOf(tiff, TIFFTAG_BITSPERSAMPLE);
  if (bits != 8 && bits != 16) Refuse("samples have " + std::to_string(bits) + " bits", name);
  if (const u16 format = FieldOf(tiff, TIFFTAG_SAMPLEFORMAT); format != SAMPLEFORMAT_UINT) {
    Refuse(format == SAMPLEFORMAT_INT ? "samples have a sign" : "samples are not whole numbers", name);
  }
  if (const u16 orientation = FieldOf(tiff, TIFFTAG_ORIENTATION); orientation != ORIENTATION_TOPLEFT) {
    Refuse("rows don't go from left to right and from top to bottom (orientation " +
               std::to_string(orientation) + ")",
           name, "turn the picture with the program that made it");
  }
  CheckCompression(tiff, name);
  layout.samples = FieldOf(tiff, TIFFTAG_SAMPLESPERPIXEL);
  layout.isDeep = bits == 16;
  layout.hasAlpha = ReadAlpha(tiff, layout.samples, layout.isGrey ? 1 : 3, name);
  layout.isPlanar = FieldOf(tiff, TIFFTAG_PLANARCONFIG) == PLANARCONFIG_SEPARATE && layout.samples > 1;
  return layout;
}

}  // namespace vorel::picture_io
