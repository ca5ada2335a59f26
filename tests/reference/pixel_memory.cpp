#include "tests/reference/pixel_memory.h"

#include <stdexcept>
#include <string>

namespace reference {
namespace {

using std::size_t;
using std::uint64_t;
using std::uint8_t;

enum class Order { big, little };

struct Field {
  int at;    // lowest bit
  int bits;  // 0: the layout has no such field
};

// A pixel as one integer. Four little-endian words in memory are a little-endian integer of 64 bits, so word
// n of them stands at bit 16 n; of big-endian words the first stands highest.
struct PixelLayout {
  std::string_view withAlpha;
  std::string_view plain;  // the same bytes, with a filler in place of alpha
  size_t bytes;
  Order order;
  Field first, second, third, alpha;
};

constexpr Field kNone = {0, 0};

constexpr PixelLayout kPixelLayouts[] = {
    //                                        R        G        B        A
    {"ARGB", "_RGB", 4, Order::big, {16, 8}, {8, 8}, {0, 8}, {24, 8}},
    {"ABGR", "_BGR", 4, Order::big, {0, 8}, {8, 8}, {16, 8}, {24, 8}},
    {"RGBA", "RGB_", 4, Order::big, {24, 8}, {16, 8}, {8, 8}, {0, 8}},
    {"BGRA", "BGR_", 4, Order::big, {8, 8}, {16, 8}, {24, 8}, {0, 8}},
    {"RGB", "RGB", 3, Order::big, {16, 8}, {8, 8}, {0, 8}, kNone},
    {"BGR", "BGR", 3, Order::big, {0, 8}, {8, 8}, {16, 8}, kNone},
    {"AVRGB", "_VRGB", 4, Order::big, {16, 8}, {8, 8}, {0, 8}, {24, 8}},
    {"L555", "L555", 2, Order::little, {10, 5}, {5, 5}, {0, 5}, kNone},
    {"L565", "L565", 2, Order::little, {11, 5}, {5, 6}, {0, 5}, kNone},
    {"b64a", "b64_", 8, Order::big, {32, 16}, {16, 16}, {0, 16}, {48, 16}},
    {"L64A", "L64_", 8, Order::little, {16, 16}, {32, 16}, {48, 16}, {0, 16}},
    {"A46L", "_46L", 8, Order::little, {32, 16}, {16, 16}, {0, 16}, {48, 16}},
    {"b48r", "b48r", 6, Order::big, {32, 16}, {16, 16}, {0, 16}, kNone},
    {"F10k", "F10k", 4, Order::big, {22, 10}, {12, 10}, {2, 10}, kNone},
    {"S10k", "S10k", 4, Order::big, {22, 10}, {12, 10}, {2, 10}, kNone},
    {"F210", "F210", 4, Order::big, {20, 10}, {10, 10}, {0, 10}, kNone},
    {"S210", "S210", 4, Order::big, {20, 10}, {10, 10}, {0, 10}, kNone},
    //                                        Y'       Cb       Cr       A
    {"Ar408", "_r408", 4, Order::big, {16, 8}, {8, 8}, {0, 8}, {24, 8}},
    {"Av408", "_v408", 4, Order::big, {16, 8}, {24, 8}, {8, 8}, {0, 8}},
    {"VUYA", "VUY_", 4, Order::big, {8, 8}, {16, 8}, {24, 8}, {0, 8}},
    {"v410", "v410", 4, Order::little, {12, 10}, {2, 10}, {22, 10}, kNone},
    {"AV416", "_V416", 8, Order::little, {32, 16}, {16, 16}, {0, 16}, {48, 16}},
};

// A pair as one integer.
struct PairLayout {
  std::string_view name;
  size_t bytes;
  Field firstLuma, secondLuma, cb, cr;  // little-endian
};

constexpr PairLayout kPairLayouts[] = {
    //          Y'0      Y'1      Cb      Cr
    {"2vuy", 4, {8, 8}, {24, 8}, {0, 8}, {16, 8}},      {"yuvs", 4, {0, 8}, {16, 8}, {8, 8}, {24, 8}},
    {"yuvu", 4, {0, 8}, {16, 8}, {8, 8}, {24, 8}},      {"v216", 8, {16, 16}, {48, 16}, {0, 16}, {32, 16}},
    {"Y216", 8, {16, 16}, {48, 16}, {0, 16}, {32, 16}},
};

const PixelLayout* FindPixelLayout(std::string_view pixel) {
  for (const PixelLayout& layout : kPixelLayouts)
    if (layout.withAlpha == pixel || layout.plain == pixel) return &layout;
  return nullptr;
}

const PairLayout* FindPairLayout(std::string_view pixel) {
  for (const PairLayout& layout : kPairLayouts)
    if (layout.name == pixel) return &layout;
  return nullptr;
}

uint64_t LoadInteger(const uint8_t* from, size_t bytes, Order order) {
  uint64_t value = 0;
  for (size_t i = 0; i < bytes; ++i) {
    const size_t significance = order == Order::little ? i : bytes - 1 - i;
    value |= uint64_t{from[i]} << (8 * significance);
  }
  return value;
}

void StoreInteger(uint8_t* to, size_t bytes, Order order, uint64_t value) {
  for (size_t i = 0; i < bytes; ++i) {
    const size_t significance = order == Order::little ? i : bytes - 1 - i;
    to[i] = static_cast<uint8_t>(value >> (8 * significance));
  }
}

int Extract(uint64_t value, Field field) {
  return static_cast<int>((value >> field.at) & ((uint64_t{1} << field.bits) - 1));
}

uint64_t Place(int code, Field field) {
  if (code < 0 || code >> field.bits != 0) throw std::logic_error("a code does not fit its field");
  return static_cast<uint64_t>(code) << field.at;
}

// The samples of a v210 row in memory order are Cb, Y', Cr, Y' of one pair after the other, three to a word.
// The row ends behind the last of them, wherever that is in its word.
Field FieldOf210(size_t index) {
  return {static_cast<int>(index % 3) * 10, 10};
}

RowSamples Read210(const uint8_t* row, size_t pairs) {
  RowSamples codes;
  const auto code = [row](size_t index) {
    return Extract(LoadInteger(row + index / 3 * 4, 4, Order::little), FieldOf210(index));
  };
  for (size_t k = 0; k < pairs; ++k) {
    codes.second.push_back(code(4 * k));
    codes.first.push_back(code(4 * k + 1));
    codes.third.push_back(code(4 * k + 2));
    codes.first.push_back(code(4 * k + 3));
  }
  return codes;
}

void Write210(const RowSamples& codes, size_t pairs, uint8_t* row) {
  std::vector<uint64_t> words((pairs * 4 + 2) / 3);
  const auto put = [&words](size_t index, int code) { words[index / 3] |= Place(code, FieldOf210(index)); };
  for (size_t k = 0; k < pairs; ++k) {
    put(4 * k, codes.second[k]);
    put(4 * k + 1, codes.first[2 * k]);
    put(4 * k + 2, codes.third[k]);
    put(4 * k + 3, codes.first[2 * k + 1]);
  }
  for (size_t i = 0; i < words.size(); ++i) StoreInteger(row + 4 * i, 4, Order::little, words[i]);
}

RowSamples ReadPairs(const PairLayout& layout, const uint8_t* row, size_t pairs) {
  RowSamples codes;
  for (size_t k = 0; k < pairs; ++k) {
    const uint64_t pair = LoadInteger(row + k * layout.bytes, layout.bytes, Order::little);
    codes.first.push_back(Extract(pair, layout.firstLuma));
    codes.first.push_back(Extract(pair, layout.secondLuma));
    codes.second.push_back(Extract(pair, layout.cb));
    codes.third.push_back(Extract(pair, layout.cr));
  }
  return codes;
}

void WritePairs(const PairLayout& layout, const RowSamples& codes, size_t pairs, uint8_t* row) {
  for (size_t k = 0; k < pairs; ++k) {
    const uint64_t pair = Place(codes.first[2 * k], layout.firstLuma) |
                          Place(codes.first[2 * k + 1], layout.secondLuma) |
                          Place(codes.second[k], layout.cb) | Place(codes.third[k], layout.cr);
    StoreInteger(row + k * layout.bytes, layout.bytes, Order::little, pair);
  }
}

RowSamples ReadPixels(const PixelLayout& layout, const uint8_t* row, size_t width) {
  RowSamples codes;
  for (size_t x = 0; x < width; ++x) {
    const uint64_t pixel = LoadInteger(row + x * layout.bytes, layout.bytes, layout.order);
    codes.first.push_back(Extract(pixel, layout.first));
    codes.second.push_back(Extract(pixel, layout.second));
    codes.third.push_back(Extract(pixel, layout.third));
    if (layout.alpha.bits != 0) codes.alpha.push_back(Extract(pixel, layout.alpha));
  }
  return codes;
}

void WritePixels(const PixelLayout& layout, const RowSamples& codes, size_t width, uint8_t* row) {
  for (size_t x = 0; x < width; ++x) {
    uint64_t pixel = Place(codes.first[x], layout.first) | Place(codes.second[x], layout.second) |
                     Place(codes.third[x], layout.third);
    if (layout.alpha.bits != 0) pixel |= Place(codes.alpha[x], layout.alpha);
    StoreInteger(row + x * layout.bytes, layout.bytes, layout.order, pixel);
  }
}

}  // namespace

Sampling SamplingOf(std::string_view pixel) {
  if (pixel == "v210") return Sampling::group;
  if (FindPairLayout(pixel) != nullptr) return Sampling::pair;
  if (FindPixelLayout(pixel) != nullptr) return Sampling::pixel;
  throw std::invalid_argument("no such pixel format: " + std::string(pixel));
}

bool HasAlphaPosition(std::string_view pixel) {
  const PixelLayout* layout = FindPixelLayout(pixel);
  return layout != nullptr && layout->alpha.bits != 0;
}

size_t RowBytes(std::string_view pixel, size_t width) {
  const size_t pairs = (width + 1) / 2;
  switch (SamplingOf(pixel)) {
    case Sampling::group:
      return (pairs * 4 + 2) / 3 * 4;
    case Sampling::pair:
      return pairs * FindPairLayout(pixel)->bytes;
    case Sampling::pixel:
      return width * FindPixelLayout(pixel)->bytes;
  }
  throw std::logic_error("unreachable");
}

RowSamples ReadCodes(std::string_view pixel, const uint8_t* row, size_t width) {
  const size_t pairs = (width + 1) / 2;
  switch (SamplingOf(pixel)) {
    case Sampling::group:
      return Read210(row, pairs);
    case Sampling::pair:
      return ReadPairs(*FindPairLayout(pixel), row, pairs);
    case Sampling::pixel:
      return ReadPixels(*FindPixelLayout(pixel), row, width);
  }
  throw std::logic_error("unreachable");
}

void WriteCodes(std::string_view pixel, const RowSamples& codes, size_t width, uint8_t* row) {
  const size_t pairs = (width + 1) / 2;
  switch (SamplingOf(pixel)) {
    case Sampling::group:
      return Write210(codes, pairs, row);
    case Sampling::pair:
      return WritePairs(*FindPairLayout(pixel), codes, pairs, row);
    case Sampling::pixel:
      return WritePixels(*FindPixelLayout(pixel), codes, width, row);
  }
}

}  // namespace reference
