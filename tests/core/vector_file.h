// Reads the files of recorded calls in tests/vectors: cases of fields, or lines of words.
#pragma once
#include <fstream>
#include <map>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "base/integers.h"

namespace vorel {

using VectorCase = std::map<std::string, std::string>;

inline std::ifstream OpenVectors(const std::string& name) {
  std::ifstream file(std::string(VOREL_SOURCE_FOLDER) + "/tests/vectors/" + name);
  if (!file) throw std::runtime_error("no file of vectors: " + name);
  return file;
}

inline std::vector<VectorCase> LoadCases(const std::string& name) {
  std::ifstream file = OpenVectors(name);
  std::vector<VectorCase> cases;
  std::string line;
  while (std::getline(file, line)) {
    if (line.empty() || line[0] == '#') continue;
    const std::size_t space = line.find(' ');
    const std::string field = line.substr(0, space);
    if (field == "case") cases.emplace_back();
    cases.back()[field] = space == std::string::npos ? "" : line.substr(space + 1);
  }
  return cases;
}

// Lines of functions.txt that begin with a name, split into words.
inline std::vector<std::vector<std::string>> LoadLines(const std::string& name, const std::string& function) {
  std::ifstream file = OpenVectors(name);
  std::vector<std::vector<std::string>> lines;
  std::string line;
  while (std::getline(file, line)) {
    std::istringstream words(line);
    std::vector<std::string> split;
    for (std::string word; words >> word;) split.push_back(word);
    if (!split.empty() && split[0] == function) lines.push_back(split);
  }
  return lines;
}

inline std::vector<u8> FromHex(const std::string& text) {
  std::vector<u8> bytes;
  for (std::size_t i = 0; i + 1 < text.size(); i += 2) {
    bytes.push_back(static_cast<u8>(std::stoul(text.substr(i, 2), nullptr, 16)));
  }
  return bytes;
}

inline u32 Number(const VectorCase& fields, const std::string& name) {
  return static_cast<u32>(std::stoull(fields.at(name)));
}

// A tag or a pixel format: four bytes in hexadecimal, in frame order, as a little-endian number.
inline u32 TagFromHex(const std::string& text) {
  const std::vector<u8> bytes = FromHex(text);
  return bytes[0] | u32{bytes[1]} << 8 | u32{bytes[2]} << 16 | u32{bytes[3]} << 24;
}

// Four characters, or a number.
inline u32 PixelFormatFromText(const std::string& text) {
  if (text == "32" || text == "24") return static_cast<u32>(std::stoul(text));
  return u32{static_cast<u8>(text[0])} << 24 | u32{static_cast<u8>(text[1])} << 16 |
         u32{static_cast<u8>(text[2])} << 8 | static_cast<u8>(text[3]);
}

}  // namespace vorel
