// Reading DPX files. Everything a file claims is held against its size before it is used.
#include "picture_io/dpx.h"

#include <bit>
#include <cmath>

#include "base/bytes.h"
#include "base/problem.h"
#include "picture_io/dpx_fields.h"

namespace vorel::picture_io {

using namespace dpx;

namespace {

struct Header {
  const StoredPicture& file;
  const std::string& name;
  DpxOrder order;
};

u8 Get8(const Header& header, std::size_t at) {
  return header.file[at];
}
u16 Get16(const Header& header, std::size_t at) {
  const u16 value = LoadBig16(header.file.data() + at);
  return header.order == DpxOrder::bigEndian ? value : SwapBytes(value);
}
u32 Get32(const Header& header, std::size_t at) {
  const u32 value = LoadBig32(header.file.data() + at);
  return header.order == DpxOrder::bigEndian ? value : SwapBytes(value);
}

Header OpenHeader(const StoredPicture& file, const std::string& name) {
  const u32 signature = file.size() >= sizeof(u32) ? LoadBig32(file.data()) : 0;
  if (signature != kSignature && signature != SwapBytes(kSignature)) {
    throw Problem{"not a DPX file: it begins with neither SDPX nor XPDS", name, ""};
  }
  if (file.size() < kGenericBytes) {
    throw Problem{"the file ends within its header, after " + std::to_string(file.size()) + " bytes", name,
                  "fetch or make it again"};
  }
  return {file, name, signature == kSignature ? DpxOrder::bigEndian : DpxOrder::littleEndian};
}

const char* DescriptorText(u8 descriptor) {
  switch (descriptor) {
    case 1:
    case 2:
    case 3:
      return "one of R, G and B";
    case 4:
      return "alpha";
    case 6:
      return "luma";
    case 7:
      return "colour differences";
    case 51:
      return "RGB with alpha";
    case 52:
      return "alpha with BGR";
    case 100:
    case 101:
      return "Y'CbCr 4:2:2";
    case 102:
    case 103:
      return "Y'CbCr 4:4:4";
    default:
      return "of no kind known here";
  }
}

const char* PackingText(u16 packing) {
  if (packing == 0) return "packed without gaps";
  return packing == 2 ? "in the lower bits of words" : "packed in no way known here";
}

[[noreturn]] void Refuse(const Header& header, const std::string& what) {
  throw Problem{what, header.name,
                "DPX files are read with one element of 10-bit RGB, three samples to a word"};
}

void CheckKind(const Header& header) {
  const u32 key = Get32(header, kEncryptionKey);
  if (key != kUnknown32 && key != 0) Refuse(header, "the picture is encrypted");
  const u16 elements = Get16(header, kElements);
  if (elements != 1) Refuse(header, "the picture has " + std::to_string(elements) + " elements");
  const u8 descriptor = Get8(header, kDescriptor);
  if (descriptor != kDescriptorRgb) {
    Refuse(header, std::string("the picture is ") + DescriptorText(descriptor) + " (descriptor " +
                       std::to_string(descriptor) + ")");
  }
  const u8 depth = Get8(header, kBitDepth);
  if (depth != kTenBits) Refuse(header, "samples have " + std::to_string(depth) + " bits");
  const u16 packing = Get16(header, kPacking);
  if (packing != kFilledUpperBits) {
    Refuse(header,
           std::string("samples are ") + PackingText(packing) + " (packing " + std::to_string(packing) + ")");
  }
  const u16 encoding = Get16(header, kEncoding);
  if (encoding != 0 && encoding != kUnknown16) Refuse(header, "the picture is run-length coded");
  if (Get32(header, kSign) == 1) Refuse(header, "samples have a sign");
  if (const u16 orientation = Get16(header, kOrientation); orientation != 0) {
    throw Problem{"rows don't go from left to right and from top to bottom (orientation " +
                      std::to_string(orientation) + ")",
                  header.name, "turn the picture with the program that made it"};
  }
}

// Where rows lie in the file.
struct DpxRows {
  u64 offset;
  u64 distance;
};

DpxRows FindRows(const Header& header, const ClipFormat& format) {
  const u32 ofElement = Get32(header, kDataOffset);
  const bool isUnknown = ofElement == 0 || ofElement == kUnknown32;
  const u64 offset = isUnknown ? Get32(header, kImageOffset) : ofElement;
  const u32 padding = Get32(header, kRowPadding);
  const u64 rowBytes = u64{format.width} * sizeof(u32);
  const u64 distance = rowBytes + (padding == kUnknown32 ? 0 : padding);
  if (offset < kGenericBytes) {
    throw Problem{"samples begin at byte " + std::to_string(offset) + ", within the header", header.name,
                  "the file is damaged"};
  }
  const u64 end = offset + (format.height - 1) * distance + rowBytes;  // below 2 ^ 48
  if (end > header.file.size()) {
    throw Problem{"the file ends within its picture: " + std::to_string(end) + " bytes expected, " +
                      std::to_string(header.file.size()) + " found",
                  header.name, "fetch or make it again"};
  }
  return {offset, distance};
}

// A rate is a float. Whole rates and those of 1000/1001 are told from its neighbours.
Ratio RateOf(float stored) {
  constexpr double kTolerance = 1e-4;
  const double rate = stored;
  if (!(rate > 0.5 && rate < 10000)) return {};
  const double whole = std::round(rate);
  if (std::abs(rate - whole) < whole * kTolerance) return {static_cast<u32>(whole), 1};
  const double above = std::ceil(rate);
  if (std::abs(rate - above * 1000 / 1001) < above * kTolerance)
    return {static_cast<u32>(above) * 1000, 1001};
  return {};
}

void DescribeClip(const Header& header, u64 offset, PictureFileHeader& described) {
  const Ratio aspect = {Get32(header, kAspect), Get32(header, kAspect + 4)};
  const bool isAspect = aspect.numerator <= kLargestTerm && aspect.denominator <= kLargestTerm;
  if (isAspect && IsKnown(aspect)) described.format.aspect = aspect;
  const u8 transfer = Get8(header, kTransfer);
  if (transfer == 1) described.unkept = "that samples are printing densities";
  if (transfer == 3) described.unkept = "that samples are logarithmic";
  if (header.file.size() < kHeaderBytes || offset < kHeaderBytes) return;
  described.format.rate = RateOf(std::bit_cast<float>(Get32(header, kVideoRate)));
  if (!IsKnown(described.format.rate)) {
    described.format.rate = RateOf(std::bit_cast<float>(Get32(header, kFilmRate)));
  }
  if (Get8(header, kInterlace) == 1) described.format.scan = ScanOrder::interlaced;
}

// The size of the picture, after all else is found to be readable.
ClipFormat FormatOf(const Header& header) {
  CheckKind(header);
  CheckPictureSize(Get32(header, kWidth), Get32(header, kHeight), header.name);
  ClipFormat format;
  format.pixelFormat = kRgb10;
  format.width = Get32(header, kWidth);
  format.height = Get32(header, kHeight);
  return format;
}

void ReadRow(const u8* from, u8* to, u32 pixels, DpxOrder order) {
  for (std::size_t i = 0; i < pixels; ++i) {
    const u32 stored = LoadBig32(from + sizeof stored * i);
    const u32 word = order == DpxOrder::bigEndian ? stored : SwapBytes(stored);
    StoreBig32(to + sizeof word * i, word & kSampleBits);
  }
}

}  // namespace

PictureFileHeader DescribeDpx(const StoredPicture& file, const std::string& name) {
  const Header header = OpenHeader(file, name);
  PictureFileHeader described;
  described.format = FormatOf(header);
  DescribeClip(header, FindRows(header, described.format).offset, described);
  return described;
}

void ReadDpx(const StoredPicture& file, const std::string& name, Picture& picture) {
  const Header header = OpenHeader(file, name);
  const ClipFormat format = FormatOf(header);
  const DpxRows rows = FindRows(header, format);
  ShapePicture(format, picture);
  for (std::size_t row = 0; row < format.height; ++row) {
    ReadRow(file.data() + rows.offset + row * rows.distance, picture.bytes.data() + row * picture.rowBytes,
            format.width, header.order);
  }
}

}  // namespace vorel::picture_io
