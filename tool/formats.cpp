// vorel formats: the pixel formats that pictures may have, for people or as JSON.
#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <nlohmann/json.hpp>

#include "tool/commands.h"
#include "vorel/pixel_formats.h"

namespace vorel::tool {

namespace {

using Json = nlohmann::ordered_json;

std::vector<VorelPixelFormatInfo> AllFormats() {
  std::size_t count = 0;
  const VorelPixelFormatInfo* const formats = VorelPixelFormatList(&count);
  return {formats, formats + count};
}

Json FormatsAsJson() {
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
  } else {
    PrintFormats();
  }
  if (std::fflush(stdout) == 0) return true;
  Report(console, {std::string("cannot write: ") + std::strerror(errno), "stdout", ""});
  return false;
}

}  // namespace vorel::tool
