// Writing DPX files. What is not known of a picture is marked as unknown.
#include <bit>
#include <cstring>
#include <string_view>

#include "picture_io/dpx.h"
#include "picture_io/dpx_fields.h"

namespace vorel::picture_io {

using namespace dpx;

namespace {

constexpr std::string_view kVersionText = "V1.0";
constexpr std::string_view kCreatorText = "VorelVideo";

struct HeaderInTheMaking {
  u8* bytes;
  DpxOrder order;
};

void Put16(const HeaderInTheMaking& header, std::size_t at, u16 value) {
  StoreBig16(header.bytes + at, header.order == DpxOrder::bigEndian ? value : SwapBytes(value));
}
void Put32(const HeaderInTheMaking& header, std::size_t at, u32 value) {
  StoreBig32(header.bytes + at, header.order == DpxOrder::bigEndian ? value : SwapBytes(value));
}
void PutText(const HeaderInTheMaking& header, std::size_t at, std::string_view text) {
  std::memcpy(header.bytes + at, text.data(), text.size());
}

u8 InterlaceOf(ScanOrder scan) {
  if (scan == ScanOrder::unknown) return kUnknown8;
  return IsInterlaced(scan) ? kTwoFields : 0;
}

void PutFile(const HeaderInTheMaking& header, u32 fileBytes) {
  Put32(header, 0, kSignature);
  Put32(header, kImageOffset, kHeaderBytes);
  PutText(header, kVersion, kVersionText);
  Put32(header, kFileSize, fileBytes);
  Put32(header, kGenericSize, kGenericBytes);
  Put32(header, kIndustrySize, kHeaderBytes - kGenericBytes);
  Put32(header, kUserSize, 0);
  PutText(header, kCreator, kCreatorText);
}

void PutPicture(const HeaderInTheMaking& header, const Picture& picture) {
  Put16(header, kOrientation, 0);
  Put16(header, kElements, 1);
  Put32(header, kWidth, picture.width);
  Put32(header, kHeight, picture.height);
  Put32(header, kSign, 0);
  Put32(header, kLowData, 0);
  Put32(header, kHighData, (1u << kTenBits) - 1);
  header.bytes[kDescriptor] = kDescriptorRgb;
  header.bytes[kTransfer] = 0;  // defined by the user
  header.bytes[kColorimetric] = 0;
  header.bytes[kBitDepth] = kTenBits;
  Put16(header, kPacking, kFilledUpperBits);
  Put16(header, kEncoding, 0);
  Put32(header, kDataOffset, kHeaderBytes);
  Put32(header, kRowPadding, 0);
  Put32(header, kPicturePadding, 0);
}

void PutClip(const HeaderInTheMaking& header, const ClipFormat& format) {
  if (IsKnown(format.aspect)) {
    Put32(header, kAspect, format.aspect.numerator);
    Put32(header, kAspect + sizeof(u32), format.aspect.denominator);
  }
  if (IsKnown(format.rate)) {
    const u32 rate = std::bit_cast<u32>(static_cast<float>(Value(format.rate)));
    Put32(header, kFilmRate, rate);
    Put32(header, kVideoRate, rate);
  }
  header.bytes[kInterlace] = InterlaceOf(format.scan);
}

void WriteRow(const u8* from, u8* to, u32 pixels, DpxOrder order) {
  for (std::size_t i = 0; i < pixels; ++i) {
    const u32 word = LoadBig32(from + sizeof word * i) & kSampleBits;
    StoreBig32(to + sizeof word * i, order == DpxOrder::bigEndian ? word : SwapBytes(word));
  }
}

}  // namespace

void WriteDpx(const Picture& picture, const ClipFormat& format, DpxOrder order, StoredPicture& file) {
  const std::size_t rowBytes = std::size_t{picture.width} * sizeof(u32);
  const std::size_t fileBytes = kHeaderBytes + rowBytes * picture.height;  // at most 4294707204
  file.resize(fileBytes);
  std::memset(file.data(), kUnknown8, kHeaderBytes);
  for (const FieldRun& text : kTexts) std::memset(file.data() + text.first, 0, text.bytes);
  const HeaderInTheMaking header{file.data(), order};
  PutFile(header, static_cast<u32>(fileBytes));
  PutPicture(header, picture);
  PutClip(header, format);
  for (std::size_t row = 0; row < picture.height; ++row) {
    WriteRow(picture.bytes.data() + row * picture.rowBytes, file.data() + kHeaderBytes + row * rowBytes,
             picture.width, order);
  }
}

namespace {

constexpr u32 kPixelFormats[] = {kRgb10};
constexpr const char* kEndings[] = {".dpx"};

template <DpxOrder Order>
void Write(const Picture& picture, const ClipFormat& format, StoredPicture& file) {
  WriteDpx(picture, format, Order, file);
}

}  // namespace

constinit const PictureFileKind kDpxFiles = {
    .name = "DPX",
    .pixelFormats = kPixelFormats,
    .endings = kEndings,
    .describe = DescribeDpx,
    .read = ReadDpx,
    .write = Write<DpxOrder::bigEndian>,
};

constinit const PictureFileKind kLittleEndianDpxFiles = {
    .name = "DPX",
    .pixelFormats = kPixelFormats,
    .endings = kEndings,
    .describe = DescribeDpx,
    .read = ReadDpx,
    .write = Write<DpxOrder::littleEndian>,
};

}  // namespace vorel::picture_io
