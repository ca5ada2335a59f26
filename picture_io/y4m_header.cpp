// Tags are read strictly: a tag given twice or with a value that isn't one is refused, since guessing would
// show only in the pictures.
#include "picture_io/y4m_header.h"

#include <string_view>

#include "base/problem.h"
#include "picture_io/planar_rows.h"

namespace vorel::picture_io {

namespace {

constexpr std::string_view kMagic = "YUV4MPEG2";
constexpr std::string_view kTags = "WHFIAC";

struct ScanLetter {
  char letter;
  ScanOrder scan;
};

constexpr ScanLetter kScanLetters[] = {{'p', ScanOrder::progressive},
                                       {'t', ScanOrder::topFirst},
                                       {'b', ScanOrder::bottomFirst},
                                       {'?', ScanOrder::unknown}};

struct ChromaRow {
  std::string_view value;  // of tag C
  std::string_view older;  // the same in an older way of writing, often beside it
  PlaneShape shape;
  u32 pixelFormat;  // of pictures that are read
  bool isOpaque;    // see ClipFormat
};

constexpr ChromaRow kChromas[] = {{"422", "XYSCSS=422", {8, 3, true}, k2vuy, false},
                                  {"422p10", "XYSCSS=422P10", {10, 3, true}, kV216, false},
                                  {"444", "XYSCSS=444", {8, 3, false}, kV408, true},
                                  {"444p10", "XYSCSS=444P10", {10, 3, false}, kV410, false},
                                  {"444alpha", "XYSCSS=444", {8, 4, false}, kV408, false}};

// Where the tags of a header go, and what every message about them begins with.
struct HeaderReading {
  Y4mHeader header;
  std::string seen;    // letters of kTags met so far
  std::string chroma;  // value of C
  std::string where;
};

// Header bytes as they may be shown in a message, whatever kind of file they come from.
std::string Shown(std::string_view text) {
  constexpr std::size_t kMost = 40;
  std::string shown;
  for (const char character : text.substr(0, kMost)) {
    shown += character >= ' ' && character <= '~' ? character : '.';
  }
  return text.size() > kMost ? shown + "..." : shown;
}

[[noreturn]] void Refuse(const HeaderReading& reading, std::string_view tag, const std::string& advice) {
  throw Problem{"the header's tag " + Shown(tag) + " is not valid", reading.where, advice};
}

void ReadSide(const HeaderReading& reading, std::string_view tag, u32& side) {
  if (!ReadNumber(tag.substr(1), kLargestSide, side) || side == 0) {
    Refuse(reading, tag, "width and height are whole numbers from 1 to " + std::to_string(kLargestSide));
  }
}

void ReadTerms(const HeaderReading& reading, std::string_view tag, Ratio& ratio) {
  const bool isRatio = ReadRatio(tag.substr(1), ':', ratio);
  if (!isRatio || (ratio.numerator == 0) != (ratio.denominator == 0)) {
    Refuse(reading, tag, "a ratio is two whole numbers with a colon, or 0:0 for unknown");
  }
}

void ReadScan(const HeaderReading& reading, std::string_view tag, ScanOrder& scan) {
  if (tag == "Im") {
    throw Problem{"mixed interlacing (tag Im) is not handled", reading.where,
                  "make the clip progressive, or interlaced throughout"};
  }
  for (const ScanLetter& row : kScanLetters) {
    if (tag.size() == 2 && tag[1] == row.letter) {
      scan = row.scan;
      return;
    }
  }
  Refuse(reading, tag, "interlacing is one of Ip, It, Ib and I?");
}

void ReadTag(HeaderReading& reading, std::string_view tag) {
  ClipFormat& format = reading.header.format;
  for (const ChromaRow& row : kChromas) {
    if (tag == row.older) return;
  }
  if (kTags.find(tag[0]) == std::string_view::npos) {
    if (!reading.header.comments.empty()) reading.header.comments += ' ';
    reading.header.comments += Shown(tag);
    return;
  }
  if (reading.seen.find(tag[0]) != std::string::npos) {
    throw Problem{std::string("the header gives tag ") + tag[0] + " twice", reading.where,
                  "keep one of them"};
  }
  reading.seen += tag[0];
  switch (tag[0]) {
    case 'W':
      return ReadSide(reading, tag, format.width);
    case 'H':
      return ReadSide(reading, tag, format.height);
    case 'F':
      return ReadTerms(reading, tag, format.rate);
    case 'A':
      return ReadTerms(reading, tag, format.aspect);
    case 'I':
      return ReadScan(reading, tag, format.scan);
    default:
      reading.chroma = Shown(tag.substr(1));
      return;
  }
}

const ChromaRow& RowOfChroma(const HeaderReading& reading) {
  const std::string advice =
      "4:2:2 and 4:4:4 with 8 or 10 bits are handled (C422, C422p10, C444, C444p10, C444alpha); convert the "
      "clip to one of them";
  if (reading.seen.find('C') == std::string::npos) {
    throw Problem{"the header has no tag C, which means chroma 4:2:0", reading.where, advice};
  }
  for (const ChromaRow& row : kChromas) {
    if (reading.chroma == row.value) return row;
  }
  throw Problem{"chroma C" + reading.chroma + " is not handled", reading.where, advice};
}

}  // namespace

Y4mHeader ReadY4mHeader(const std::string& line, const std::string& name) {
  HeaderReading reading;
  reading.where = name + ": header";
  if (!line.starts_with(kMagic) || (line.size() > kMagic.size() && line[kMagic.size()] != ' ')) {
    throw Problem{"not a YUV4MPEG2 stream: it begins with \"" + Shown(line).substr(0, 12) + "\"", name,
                  "raw pictures need --pixel-format, --size and --rate"};
  }
  const std::string_view tags = std::string_view(line).substr(kMagic.size());
  for (std::size_t at = 0; at < tags.size();) {
    const std::size_t end = std::min(tags.find(' ', at), tags.size());
    if (end > at) ReadTag(reading, tags.substr(at, end - at));
    at = end + 1;
  }
  for (const char needed : {'W', 'H'}) {
    if (reading.seen.find(needed) == std::string::npos) {
      throw Problem{std::string("the header has no tag ") + needed, reading.where,
                    "the picture size must be known"};
    }
  }
  const ChromaRow& chroma = RowOfChroma(reading);
  reading.header.format.pixelFormat = chroma.pixelFormat;
  reading.header.format.isOpaque = chroma.isOpaque;
  return reading.header;
}

std::string Y4mHeaderLine(const ClipFormat& format) {
  char scan = '?';
  for (const ScanLetter& row : kScanLetters) {
    if (row.scan == format.scan) scan = row.letter;
  }
  std::string chroma;
  for (const ChromaRow& row : kChromas) {
    if (row.shape == PlanesOf(format)) chroma = row.value;
  }
  const auto terms = [](Ratio ratio) {
    return std::to_string(ratio.numerator) + ":" + std::to_string(ratio.denominator);
  };
  return std::string(kMagic) + " W" + std::to_string(format.width) + " H" + std::to_string(format.height) +
         " F" + terms(format.rate) + " I" + scan + " A" + terms(format.aspect) + " C" + chroma + "\n";
}

}  // namespace vorel::picture_io
