// vorel formats: the formats of pictures and frames, and what goes into what, for people or as JSON.
#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <nlohmann/json.hpp>

#include "container/atoms.h"
#include "tool/commands.h"
#include "tool/format_matrix.h"
#include "tool/frame_format.h"
#include "vorel/pixel_formats.h"

namespace vorel::tool {

namespace {

using Json = nlohmann::ordered_json;

std::vector<VorelPixelFormatInfo> AllFormats() {
  std::size_t count = 0;
  const VorelPixelFormatInfo* const formats = VorelPixelFormatList(&count);
  return {formats, formats + count};
}

Json PixelFormatsAsJson() {
  Json all = Json::array();
  for (const VorelPixelFormatInfo& format : AllFormats()) {
    all.push_back({{"name", format.name},
                   {"code", format.code},
                   {"unitBytes", format.unitBytes},
                   {"unitPixels", format.unitPixels},
                   {"sampleBits", format.sampleBits},
                   {"range", format.range},
                   {"alpha", format.hasAlpha != 0},
                   {"layout", format.layout}});
  }
  return all;
}

Json FrameFormatsAsJson() {
  Json all = Json::array();
  for (const u32 tag : AllFrameTags()) {
    all.push_back({{"tag", TagText(tag)},
                   {"word", tag},
                   {"name", FormatNameOfTag(tag)},
                   {"codec", container::CodeText(CodecOfTag(tag))},
                   {"alpha", TagHasAlpha(tag)},
                   {"pixelBits", PixelBitsOfTag(tag)}});
  }
  return all;
}

Json PairsAsJson() {
  Json all = Json::array();
  for (const FormatPair& pair : AllPairs()) {
    all.push_back({{"pixelFormat", pair.pixels->name},
                   {"tag", TagText(pair.tag)},
                   {"encode", !pair.codecs.empty()},
                   {"decode", pair.isDecoded},
                   {"codecs", pair.codecs}});
  }
  return all;
}

Json FormatsAsJson() {
  return {{"pixelFormats", PixelFormatsAsJson()},
          {"frameFormats", FrameFormatsAsJson()},
          {"pairs", PairsAsJson()}};
}

// "4", "4 for 2" pixels.
std::string BytesText(const VorelPixelFormatInfo& format) {
  const std::string bytes = std::to_string(format.unitBytes);
  return format.unitPixels == 1 ? bytes : bytes + " for " + std::to_string(format.unitPixels);
}

using Row = std::vector<std::string>;

// Each column as wide as its widest text, but for the last.
void PrintTable(const std::vector<Row>& rows) {
  for (const Row& row : rows) {
    std::string line;
    for (std::size_t column = 0; column + 1 < row.size(); ++column) {
      std::size_t width = 0;
      for (const Row& other : rows) width = std::max(width, other[column].size());
      line += row[column] + std::string(width - row[column].size() + 2, ' ');
    }
    std::printf("%s%s\n", line.c_str(), row.back().c_str());
  }
}

void PrintFormats() {
  std::vector<Row> rows = {{"code", "bytes", "depth", "alpha", "range", "layout"}};
  for (const VorelPixelFormatInfo& format : AllFormats()) {
    rows.push_back({format.name, BytesText(format), std::to_string(format.sampleBits),
                    format.hasAlpha != 0 ? "yes" : "no", format.range, format.layout});
  }
  PrintTable(rows);
}

}  // namespace

bool RunFormats(const FormatsOptions& options, Console& console) {
  if (options.json) {
    std::printf("%s\n", FormatsAsJson().dump(2).c_str());
  } else if (options.matrix) {
    PrintMatrix();
  } else {
    PrintFormats();
  }
  if (std::fflush(stdout) == 0) return true;
  Report(console, {std::string("cannot write: ") + std::strerror(errno), "stdout", ""});
  return false;
}

}  // namespace vorel::tool
