#include "bench/raw_pictures.h"

#include <cstdio>
#include <fstream>
#include <stdexcept>

namespace vorel::bench {
namespace {

// A picture of more pixels than that is no picture of ours.
constexpr u64 kMostPixels = u64{1} << 26;

std::streamsize Signed(std::size_t bytes) {
  return static_cast<std::streamsize>(bytes);
}

}  // namespace

void WriteRawPictures(const std::string& path, const std::vector<Sequence>& sequences) {
  const std::string partial = path + ".partial";
  std::ofstream file(partial, std::ios::binary);
  for (const Sequence& sequence : sequences) {
    const u32 size[] = {sequence.width, sequence.height};
    const std::vector<u8>& picture = sequence.pictures.at(0);
    file.write(reinterpret_cast<const char*>(size), sizeof size);
    file.write(reinterpret_cast<const char*>(picture.data()), Signed(picture.size()));
  }
  file.close();
  if (!file || std::rename(partial.c_str(), path.c_str()) != 0)
    throw std::runtime_error(path + ": cannot be written; is there room for it?");
}

bool ReadRawPicture(std::istream& file, Sequence& sequence) {
  u32 size[2];
  if (!file.read(reinterpret_cast<char*>(size), sizeof size)) {
    if (file.gcount() == 0) return false;
    throw std::runtime_error("pictures: the file ends in a picture's size");
  }
  const u64 pixels = u64{size[0]} * size[1];
  if (pixels == 0 || pixels > kMostPixels)
    throw std::runtime_error("pictures: no size of a picture; write the file with vorel-bench --dump");
  sequence = {"picture", size[0], size[1], true, {std::vector<u8>(static_cast<std::size_t>(pixels * 8))}};
  std::vector<u8>& picture = sequence.pictures[0];
  if (!file.read(reinterpret_cast<char*>(picture.data()), Signed(picture.size())))
    throw std::runtime_error("pictures: the file ends in a picture");
  return true;
}

}  // namespace vorel::bench
