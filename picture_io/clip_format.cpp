// Reading and writing the numbers that describe a clip.
#include "picture_io/clip_format.h"

#include <charconv>
#include <numeric>

namespace vorel::picture_io {

namespace {

struct RoundedRate {
  std::string_view text;
  Ratio rate;
};

constexpr RoundedRate kRoundedRates[] = {
    {"23.976", {24000, 1001}},  {"23.98", {24000, 1001}},  {"29.97", {30000, 1001}},
    {"47.952", {48000, 1001}},  {"47.95", {48000, 1001}},  {"59.94", {60000, 1001}},
    {"71.928", {72000, 1001}},  {"95.904", {96000, 1001}}, {"119.88", {120000, 1001}},
    {"239.76", {240000, 1001}},
};

constexpr std::size_t kMostDecimals = 6;

}  // namespace

bool ReadNumber(std::string_view text, u32 largest, u32& number) {
  u32 value = 0;
  const char* const end = text.data() + text.size();
  const std::from_chars_result result = std::from_chars(text.data(), end, value);
  if (text.empty() || result.ec != std::errc{} || result.ptr != end || value > largest) return false;
  number = value;
  return true;
}

bool ReadRatio(std::string_view text, char separator, Ratio& ratio) {
  const std::size_t middle = text.find(separator);
  if (middle == std::string_view::npos) return false;
  Ratio read;
  if (!ReadNumber(text.substr(0, middle), kLargestTerm, read.numerator)) return false;
  if (!ReadNumber(text.substr(middle + 1), kLargestTerm, read.denominator)) return false;
  ratio = read;
  return true;
}

bool ReadRate(std::string_view text, Ratio& rate) {
  for (const RoundedRate& rounded : kRoundedRates) {
    if (text == rounded.text) {
      rate = rounded.rate;
      return true;
    }
  }
  Ratio read{0, 1};
  if (text.find('/') != std::string_view::npos) {
    if (!ReadRatio(text, '/', read)) return false;
  } else if (const std::size_t point = text.find('.'); point != std::string_view::npos) {
    const std::string_view decimals = text.substr(point + 1);
    if (decimals.size() > kMostDecimals) return false;
    for (std::size_t i = 0; i < decimals.size(); ++i) read.denominator *= 10;
    if (!ReadNumber(std::string(text.substr(0, point)) + std::string(decimals), kLargestTerm,
                    read.numerator)) {
      return false;
    }
    const u32 divisor = std::gcd(read.numerator, read.denominator);
    read = {read.numerator / divisor, read.denominator / divisor};
  } else if (!ReadNumber(text, kLargestTerm, read.numerator)) {
    return false;
  }
  if (!IsKnown(read)) return false;
  rate = read;
  return true;
}

bool ReadSize(std::string_view text, u32& width, u32& height) {
  const std::size_t middle = text.find('x');
  if (middle == std::string_view::npos) return false;
  u32 sides[2] = {};
  if (!ReadNumber(text.substr(0, middle), kLargestSide, sides[0])) return false;
  if (!ReadNumber(text.substr(middle + 1), kLargestSide, sides[1])) return false;
  if (sides[0] == 0 || sides[1] == 0) return false;
  width = sides[0];
  height = sides[1];
  return true;
}

std::string RateText(Ratio rate) {
  std::string text = std::to_string(rate.numerator);
  if (rate.denominator != 1) text.append("/").append(std::to_string(rate.denominator));
  return text;
}

}  // namespace vorel::picture_io
