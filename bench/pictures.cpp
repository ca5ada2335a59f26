#include "bench/pictures.h"

#include <array>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

#include "pixel/conversion_table.h"

namespace vorel::bench {
namespace {

template <typename Function, std::size_t Count>
const Conversion<Function>& Find(const std::array<Conversion<Function>, Count>& table,
                                 const std::string& layout, const std::string& pixel) {
  for (const Conversion<Function>& row : table) {
    if (layout == row.layout && pixel == row.pixelName) return row;
  }
  throw std::runtime_error("no conversion between " + layout + " and " + pixel);
}

std::size_t AlignedRow(const PixelLayout& pixel, u32 width) {
  return (BytesOfPixels(pixel, width) + 3) & ~std::size_t{3};
}

// Row by row through the samples of a frame.
std::vector<u8> Convert(const std::vector<u8>& picture, u32 width, u32 height,
                        const Conversion<FillFunction>& from, const Conversion<DrainFunction>& to) {
  const std::size_t rowFrom = AlignedRow(*from.pixel, width);
  const std::size_t rowTo = AlignedRow(*to.pixel, width);
  std::vector<u8> out(rowTo * height);
  for (std::size_t y = 0; y < height; ++y) {
    ChromaCarry carryFrom = {};
    ChromaCarry carryTo = {};
    // A strip behind another: chroma of pairs looks ahead.
    std::vector<SampleStrip> strips((width + kStripPixels - 1) / kStripPixels);
    for (u32 i = 0; i < strips.size(); ++i) {
      from.run(&picture[y * rowFrom], {i * kStripPixels, width}, from.weights(1), carryFrom, strips[i]);
      if (i > 0) {
        Cells(strips[i - 1].second)[kStripPairs] = Cells(strips[i].second)[0];
        Cells(strips[i - 1].third)[kStripPairs] = Cells(strips[i].third)[0];
      }
    }
    for (u32 i = 0; i < strips.size(); ++i)
      to.run(strips[i], {i * kStripPixels, width}, to.weights(1), carryTo, &out[y * rowTo]);
  }
  return out;
}

}  // namespace

Sequence LoadSampleClip(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  std::string header;
  if (!std::getline(file, header)) throw std::runtime_error(path + ": cannot be read");
  Sequence sequence = {std::filesystem::path(path).stem().string(), 0, 0, false, {}};
  std::istringstream words(header);
  for (std::string word; words >> word;) {
    if (word[0] == 'W') sequence.width = static_cast<u32>(std::stoul(word.substr(1)));
    if (word[0] == 'H') sequence.height = static_cast<u32>(std::stoul(word.substr(1)));
  }
  const std::size_t lumaBytes = std::size_t{sequence.width} * sequence.height;
  std::vector<char> planes(2 * lumaBytes);
  for (std::string line; std::getline(file, line);) {
    if (!file.read(planes.data(), static_cast<std::streamsize>(planes.size()))) break;
    std::vector<u8> picture(2 * lumaBytes);
    for (std::size_t i = 0; i < lumaBytes; ++i) {
      const char chroma = planes[lumaBytes + i % 2 * (lumaBytes / 2) + i / 2];
      picture[2 * i] = static_cast<u8>(chroma);
      picture[2 * i + 1] = static_cast<u8>(planes[i]);
    }
    sequence.pictures.push_back(Convert(picture, sequence.width, sequence.height,
                                        Find(kFills, "YCbCr8bv422", "2vuy"),
                                        Find(kDrains, "YCbCr8bv422", "b64_")));
  }
  return sequence;
}

std::vector<std::vector<u8>> InPixelFormat(const Sequence& sequence, const std::string& pixelName) {
  const bool isWide = pixelName == "yuvu";
  const std::string target = isWide ? "yuvs" : pixelName;
  const PixelLayout* pixel = nullptr;
  bool alpha = false;
  for (const Conversion<DrainFunction>& row : kDrains) {
    if (target == row.pixelName && row.frame->model == ColourModel::rgb) {
      pixel = row.pixel;
      alpha = row.frame->alpha;
      break;
    }
  }
  if (pixel == nullptr) throw std::runtime_error(pixelName + ": no such pixel format");
  const std::string layout = std::string(alpha ? "RGBA" : "RGB") + (pixel->sampleBits == 8 ? "8bf" : "10bf");
  std::vector<std::vector<u8>> pictures;
  for (const std::vector<u8>& source : sequence.pictures) {
    std::vector<u8> picture =
        Convert(source, sequence.width, sequence.height, Find(kFills, layout, alpha ? "b64a" : "b64_"),
                Find(kDrains, layout, target));
    if (isWide) {
      for (std::size_t i = 1; i < picture.size(); i += 2) picture[i] = static_cast<u8>(picture[i] - 128);
    }
    pictures.push_back(std::move(picture));
  }
  return pictures;
}

}  // namespace vorel::bench
