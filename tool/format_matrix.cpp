// Asks for every pair, prints what comes.
#include "tool/format_matrix.h"

#include <cstdio>

#include "frame/catalogue.h"
#include "tool/frame_format.h"

namespace vorel::tool {

namespace {

constexpr const char* kMarks[] = {" .", " D", "E ", "ED"};

const char* MarkOf(const std::vector<FormatPair>& pairs, const VorelPixelFormatInfo& pixels, u32 tag) {
  for (const FormatPair& pair : pairs) {
    if (pair.pixels->code != pixels.code || pair.tag != tag) continue;
    return kMarks[(pair.codecs.empty() ? 0 : 2) + (pair.isDecoded ? 1 : 0)];
  }
  return kMarks[0];
}

// The columns and what they stand for, two to a line.
void PrintLegend(const std::vector<u32>& tags) {
  std::printf(
      "\nE: such pictures are encoded to such frames. D: such frames are decoded to such pictures.\n"
      "Frame formats, and the tag that frames bear:\n");
  for (std::size_t column = 0; column < tags.size(); ++column) {
    const char* const end = column % 2 == 0 && column + 1 < tags.size() ? "  " : "\n";
    std::printf("  %2zu  %-9s %-*s%s", column + 1, TagText(tags[column]).c_str(), column % 2 == 0 ? 24 : 0,
                FormatNameOfTag(tags[column]).c_str(), end);
  }
}

}  // namespace

std::vector<u32> AllFrameTags() {
  std::vector<u32> tags;
  for (const FrameLayout* const layout : kFrameLayouts) {
    tags.insert(tags.end(), layout->tags.begin(), layout->tags.end());
  }
  return tags;
}

std::vector<FormatPair> AllPairs() {
  std::vector<FormatPair> pairs;
  std::size_t count = 0;
  const VorelPixelFormatInfo* const formats = VorelPixelFormatList(&count);
  for (std::size_t i = 0; i < count; ++i) {
    for (const u32 tag : AllFrameTags()) {
      FormatPair pair = {&formats[i], tag, CodecsOfPair(formats[i].code, tag),
                         FindRoutine(Direction::decode, formats[i].code, tag) != nullptr};
      if (pair.isDecoded || !pair.codecs.empty()) pairs.push_back(std::move(pair));
    }
  }
  return pairs;
}

void PrintMatrix() {
  const std::vector<u32> tags = AllFrameTags();
  const std::vector<FormatPair> pairs = AllPairs();
  std::string head = "code";
  for (std::size_t column = 1; column <= tags.size(); ++column)
    head += (column < 10 ? "  " : " ") + std::to_string(column);
  std::printf("%s\n", head.c_str());
  std::size_t count = 0;
  const VorelPixelFormatInfo* const formats = VorelPixelFormatList(&count);
  for (std::size_t i = 0; i < count; ++i) {
    std::string line = formats[i].name;
    line.resize(4, ' ');
    for (const u32 tag : tags) line += std::string(" ") + MarkOf(pairs, formats[i], tag);
    std::printf("%s\n", line.c_str());
  }
  PrintLegend(tags);
}

}  // namespace vorel::tool
