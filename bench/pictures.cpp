#include "bench/pictures.h"

#include <png.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <memory>
#include <sstream>
#include <stdexcept>

#include "pixel/conversion_table.h"

namespace vorel::bench {
namespace {

// 16-bit words A, R, G, B, as 'b64a' has them; 8-bit samples stand in both bytes of a word.
std::vector<u8> ReadPng(const std::string& path, u32& width, u32& height) {
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path.c_str(), "rb"), std::fclose);
  if (file == nullptr) throw std::runtime_error(path + ": cannot be opened");
  const auto fail = [](png_structp, const char* message) { throw std::runtime_error(message); };
  png_structp png = png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, fail, nullptr);
  png_infop info = png_create_info_struct(png);
  png_init_io(png, file.get());
  png_read_info(png, info);
  width = png_get_image_width(png, info);
  height = png_get_image_height(png, info);
  png_set_expand_16(png);
  png_set_gray_to_rgb(png);
  png_set_add_alpha(png, 0xFFFF, PNG_FILLER_BEFORE);
  png_set_swap_alpha(png);
  png_read_update_info(png, info);
  std::vector<u8> picture(std::size_t{width} * height * 8);
  std::vector<png_bytep> rows(height);
  for (std::size_t y = 0; y < height; ++y) rows[y] = &picture[y * width * 8];
  png_read_image(png, rows.data());
  png_destroy_read_struct(&png, &info, nullptr);
  return picture;
}

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

std::vector<Sequence> LoadFolder(const std::string& folder) {
  std::vector<std::filesystem::path> files;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
    if (entry.path().extension() == ".png") files.push_back(entry.path());
  }
  std::sort(files.begin(), files.end());
  std::vector<Sequence> sequences;
  for (const std::filesystem::path& file : files) {
    u32 width = 0;
    u32 height = 0;
    std::vector<u8> picture = ReadPng(file.string(), width, height);
    const std::string name = file.parent_path().filename().string();
    if (sequences.empty() || sequences.back().name != name) sequences.push_back({name, width, height, {}});
    Sequence& sequence = sequences.back();
    if (width != sequence.width || height != sequence.height) {
      throw std::runtime_error(file.string() + ": another size than the pictures before it");
    }
    sequence.pictures.push_back(std::move(picture));
  }
  if (sequences.empty()) throw std::runtime_error(folder + ": no PNG files");
  return sequences;
}

Sequence LoadSampleClip(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  std::string header;
  if (!std::getline(file, header)) throw std::runtime_error(path + ": cannot be read");
  Sequence sequence = {std::filesystem::path(path).stem().string(), 0, 0, {}};
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
