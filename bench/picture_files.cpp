#include "bench/picture_files.h"

#include <png.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <stdexcept>

namespace vorel::bench {
namespace {

// Pictures are 16-bit words A, R, G, B, as 'b64a' has them; 8-bit samples stand in both bytes of a word. Fills in size and
// depth.
std::vector<u8> ReadPng(const std::string& path, Sequence& shape) {
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path.c_str(), "rb"), std::fclose);
  if (file == nullptr) throw std::runtime_error(path + ": cannot be opened");
  const auto fail = [](png_structp, const char* message) { throw std::runtime_error(message); };
  png_structp png = png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, fail, nullptr);
  png_infop info = png_create_info_struct(png);
  png_init_io(png, file.get());
  png_read_info(png, info);
  shape.width = png_get_image_width(png, info);
  shape.height = png_get_image_height(png, info);
  shape.isDeep = png_get_bit_depth(png, info) > 8;
  png_set_expand_16(png);
  png_set_gray_to_rgb(png);
  png_set_add_alpha(png, 0xFFFF, PNG_FILLER_BEFORE);
  png_set_swap_alpha(png);
  png_read_update_info(png, info);
  std::vector<u8> picture(std::size_t{shape.width} * shape.height * 8);
  std::vector<png_bytep> rows(shape.height);
  for (std::size_t y = 0; y < shape.height; ++y) rows[y] = &picture[y * shape.width * 8];
  png_read_image(png, rows.data());
  png_destroy_read_struct(&png, &info, nullptr);
  return picture;
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
    Sequence shape = {};
    std::vector<u8> picture = ReadPng(file.string(), shape);
    const std::string name = file.parent_path().filename().string();
    if (sequences.empty() || sequences.back().name != name) {
      shape.name = name;
      sequences.push_back(shape);
    }
    Sequence& sequence = sequences.back();
    if (shape.width != sequence.width || shape.height != sequence.height) {
      throw std::runtime_error(file.string() + ": another size than the pictures before it");
    }
    sequence.isDeep = sequence.isDeep && shape.isDeep;
    sequence.pictures.push_back(std::move(picture));
  }
  if (sequences.empty()) throw std::runtime_error(folder + ": no PNG files");
  return sequences;
}

}  // namespace vorel::bench
