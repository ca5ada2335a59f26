#include "tests/reference/wide_422.h"

#include <cstdlib>
#include <sstream>

#include "tests/reference/code_lengths.h"

namespace reference {
namespace {

using std::uint32_t;
using std::uint64_t;
using std::uint8_t;

struct CodePair {
  Code luma;
  Code chroma;
};

const CodePair& CodesFor(bool interlaced) {
  static const CodePair progressive = {MakeCode(kWideProgressiveA), MakeCode(kWideProgressiveB)};
  static const CodePair woven = {MakeCode(kWideInterlacedA), MakeCode(kWideInterlacedB)};
  return interlaced ? woven : progressive;
}

// Rounds toward minus infinity.
int FloorDivide(int value, int divisor) {
  return value >= 0 ? value / divisor : -((-value + divisor - 1) / divisor);
}

int SignedByte(int byte) {
  return byte >= 128 ? byte - 256 : byte;
}

bool IsLuma(size_t component) {
  return component == 0 || component == 2;
}

// What a sample is predicted from. `row` is complete up to the sample.
int Predict(const Picture& picture, size_t y, size_t index, bool interlaced) {
  const std::vector<uint8_t>& row = picture[y];
  const size_t component = index % 4;
  const size_t distance = IsLuma(component) ? 2 : 4;  // back to the left neighbour of the same component
  const bool hasLeft = index >= distance;
  const auto value = [&](const std::vector<uint8_t>& from, size_t at) {
    return IsLuma(component) ? static_cast<int>(from[at]) : SignedByte(from[at]);
  };
  if (interlaced || y == 0) {
    if (hasLeft) return value(row, index - distance);
    if (y == 0) return IsLuma(component) ? 128 : 0;
    return value(picture[y - 1], index);
  }
  const std::vector<uint8_t>& above = picture[y - 1];
  const int top = value(above, index);
  if (!hasLeft) return top;
  const int left = value(row, index - distance);
  const int topLeft = value(above, index - distance);
  if (IsLuma(component)) return FloorDivide(3 * (left + top) - 2 * topLeft, 4);
  return top + FloorDivide(left - topLeft, 2);
}

int Byte(int value) {
  return ((value % 256) + 256) % 256;
}

void PutByte(Bits& bits, int value) {
  for (int i = 7; i >= 0; --i) bits.push_back((value >> i & 1) != 0);
}

bool IsPastBound(uint64_t position, uint64_t firstWord, uint64_t boundBytes) {
  const uint64_t offsetOfWord = position / 32 * 4;
  return offsetOfWord + 4 > firstWord * 4 + boundBytes;
}

}  // namespace

Code MakeCode(const std::string& lengths) {
  // Code words ascend as binary fractions: the next one begins where the space of the last one ends.
  Code code;
  std::istringstream list(lengths);
  std::string item;
  uint32_t start = 0;
  while (list >> item) {
    const size_t cross = item.find('x');
    const int length = std::stoi(item.substr(0, cross));
    for (int i = std::stoi(item.substr(cross + 1)); i > 0; --i) {
      std::string word;
      for (int bit = 0; bit < length; ++bit) word += (start >> (15 - bit) & 1) != 0 ? '1' : '0';
      code.words.push_back(word);
      start += 65536u >> length;
    }
  }
  if (start != 65536u) std::abort();
  return code;
}

EncodeResult EncodeWide(const Picture& picture, bool interlaced, uint32_t width, Bits bits,
                        uint64_t firstWord, uint64_t boundBytes) {
  const CodePair& codes = CodesFor(interlaced);
  const uint64_t pairs = (uint64_t{width} + 1) / 2;
  for (size_t y = 0; y < picture.size(); ++y) {
    const size_t rowStart = bits.size();
    bits.push_back(false);
    for (size_t i = 0; i < picture[y].size(); ++i) {
      const int residual = Byte(picture[y][i] - Predict(picture, y, i, interlaced));
      const Code& code = IsLuma(i % 4) ? codes.luma : codes.chroma;
      for (const char bit : code.words[static_cast<size_t>(residual)]) bits.push_back(bit == '1');
    }
    if (bits.size() / 32 - rowStart / 32 > pairs) {
      if (IsPastBound(bits.size(), firstWord, boundBytes)) return {1, bits, true};
      bits.resize(rowStart);
      bits.push_back(true);
      for (const uint8_t sample : picture[y]) PutByte(bits, sample);
    }
    if (IsPastBound(bits.size(), firstWord, boundBytes)) return {1, bits, false};
  }
  return {0, bits, false};
}

DecodeResult DecodeWide(const Bits& bits, uint64_t position, bool interlaced, uint32_t width, uint32_t height,
                        uint64_t firstWord, uint64_t boundBytes) {
  const CodePair& codes = CodesFor(interlaced);
  const auto take = [&] {
    const bool bit = position < bits.size() && bits[position];
    ++position;
    return bit;
  };
  DecodeResult result{};
  for (uint32_t y = 0; y < height; ++y) {
    const bool raw = take();
    result.picture.emplace_back();
    const size_t samples = (size_t{width} + 1) / 2 * 4;
    for (size_t i = 0; i < samples; ++i) {
      int value = 0;
      if (raw) {
        for (int k = 0; k < 8; ++k) value = 2 * value + (take() ? 1 : 0);
      } else {
        const Code& code = IsLuma(i % 4) ? codes.luma : codes.chroma;
        std::string seen;
        size_t symbol = 256;
        while (symbol == 256) {
          seen += take() ? '1' : '0';
          for (size_t s = 0; s < 256 && symbol == 256; ++s) {
            if (code.words[s] == seen) symbol = s;
          }
        }
        value = Byte(Predict(result.picture, y, i, interlaced) + static_cast<int>(symbol));
      }
      result.picture[y].push_back(static_cast<uint8_t>(value));
    }
    if (IsPastBound(position, firstWord, boundBytes)) {
      result.status = 4;
      break;
    }
  }
  result.position = position;
  return result;
}

}  // namespace reference
