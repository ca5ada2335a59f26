#include "bench/pictures.h"

#include <png.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <stdexcept>

namespace vorel::bench {
namespace {

struct RgbPicture {
  u32 width;
  u32 height;
  std::vector<u8> samples;  // R, G, B of each pixel
};

RgbPicture ReadPng(const std::string& path) {
  png_image image{};
  image.version = PNG_IMAGE_VERSION;
  if (png_image_begin_read_from_file(&image, path.c_str()) == 0)
    throw std::runtime_error(path + ": " + image.message);
  image.format = PNG_FORMAT_RGB;
  RgbPicture picture = {image.width, image.height, std::vector<u8>(PNG_IMAGE_SIZE(image))};
  const png_color black = {0, 0, 0};  // behind transparent pixels
  if (png_image_finish_read(&image, &black, picture.samples.data(), 0, nullptr) == 0) {
    throw std::runtime_error(path + ": " + image.message);
  }
  return picture;
}

u8 ToByte(float value) {
  return static_cast<u8>(std::clamp(std::lround(value), 1L, 254L));
}

std::vector<u8> ToYuvu(const RgbPicture& picture) {
  const std::size_t width = picture.width;
  const std::size_t pairs = (width + 1) / 2;
  std::vector<u8> out(pairs * 4 * picture.height);
  std::vector<float> luma(width);
  std::vector<float> cb(width);
  std::vector<float> cr(width);
  for (std::size_t y = 0; y < picture.height; ++y) {
    for (std::size_t x = 0; x < width; ++x) {
      const u8* rgb = &picture.samples[(y * width + x) * 3];
      const float r = static_cast<float>(rgb[0]) / 255;
      const float g = static_cast<float>(rgb[1]) / 255;
      const float b = static_cast<float>(rgb[2]) / 255;
      luma[x] = 0.2126F * r + 0.7152F * g + 0.0722F * b;
      cb[x] = (b - luma[x]) / 1.8556F;
      cr[x] = (r - luma[x]) / 1.5748F;
    }
    const auto filtered = [&](const std::vector<float>& c, std::size_t x) {
      const float left = c[x == 0 ? 0 : x - 1];
      const float right = c[std::min(x + 1, width - 1)];
      return static_cast<u8>(ToByte(128 + 224 * (left + 2 * c[x] + right) / 4) - 128);
    };
    u8* row = &out[y * pairs * 4];
    for (std::size_t k = 0; k < pairs; ++k) {
      row[4 * k] = ToByte(16 + 219 * luma[2 * k]);
      row[4 * k + 1] = filtered(cb, 2 * k);
      row[4 * k + 2] = ToByte(16 + 219 * luma[std::min(2 * k + 1, width - 1)]);
      row[4 * k + 3] = filtered(cr, 2 * k);
    }
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
    const RgbPicture picture = ReadPng(file.string());
    const std::string name = file.parent_path().filename().string();
    if (sequences.empty() || sequences.back().name != name)
      sequences.push_back({name, picture.width, picture.height, {}});
    Sequence& sequence = sequences.back();
    if (picture.width != sequence.width || picture.height != sequence.height) {
      throw std::runtime_error(file.string() + ": another size than the pictures before it");
    }
    sequence.pictures.push_back(ToYuvu(picture));
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
      picture[2 * i] = static_cast<u8>(planes[i]);
      picture[2 * i + 1] = static_cast<u8>(static_cast<u8>(chroma) - 128);
    }
    sequence.pictures.push_back(std::move(picture));
  }
  return sequence;
}

}  // namespace vorel::bench
