// What is known of a clip beyond its pictures: their pixel format and size, the frame rate, how the rows were
// scanned and the shape of a pixel. Readers fill it in, writers and movies are made from it.
#pragma once
#include <string>
#include <string_view>

#include "base/bytes.h"

namespace vorel::picture_io {

// How the rows of a frame were taken. An unknown scan is coded as a progressive one and comes back as
// unknown; `interlaced` is for two fields of which it is not known which came first.
enum class ScanOrder : u8 { unknown, progressive, topFirst, bottomFirst, interlaced };

// A frame rate in frames per second, or the width of a pixel to its height; 0:0 where it is not known.
struct Ratio {
  u32 numerator = 0;
  u32 denominator = 0;

  bool operator==(const Ratio&) const = default;
};

struct ClipFormat {
  u32 pixelFormat = 0;  // code of one of the core's pixel formats
  u32 width = 0;        // 1..kLargestSide
  u32 height = 0;
  Ratio rate;
  ScanOrder scan = ScanOrder::unknown;
  Ratio aspect;
  // The place that the pixel format has for alpha, if any, holds nothing but opaque values: alpha is not
  // coded, and picture files without it lose nothing.
  bool isOpaque = false;

  bool operator==(const ClipFormat&) const = default;
};

// The pixel formats that files have an opinion on: those that YUV4MPEG2 goes by, and the one whose rows are
// longer in raw files.
inline constexpr u32 kYuvu = FourCharacterCode("yuvu");
inline constexpr u32 k2vuy = FourCharacterCode("2vuy");
inline constexpr u32 kV216 = FourCharacterCode("v216");
inline constexpr u32 kV408 = FourCharacterCode("v408");
inline constexpr u32 kV410 = FourCharacterCode("v410");
inline constexpr u32 kV210 = FourCharacterCode("v210");

// Movies hold width and height in signed fields of 16 bits, and terms of ratios in signed fields of 32.
inline constexpr u32 kLargestSide = 32767;
inline constexpr u32 kLargestTerm = 0x7FFFFFFF;

constexpr bool IsInterlaced(ScanOrder scan) {
  return scan != ScanOrder::unknown && scan != ScanOrder::progressive;
}
constexpr bool IsKnown(Ratio ratio) {
  return ratio.numerator != 0 && ratio.denominator != 0;
}
constexpr double Value(Ratio ratio) {
  return static_cast<double>(ratio.numerator) / ratio.denominator;
}

// Reads decimal digits, all of them, up to `largest`. False for anything else.
bool ReadNumber(std::string_view text, u32 largest, u32& number);

// Reads "a<separator>b" as it stands, both terms at most kLargestTerm. False if it isn't that.
bool ReadRatio(std::string_view text, char separator, Ratio& ratio);

// Reads a rate as people write it: "25", "24000/1001", "12.5", and the rounded "23.976", "29.97", "59.94" and
// their like, which stand for multiples of 1000/1001. False for anything else and for 0.
bool ReadRate(std::string_view text, Ratio& rate);

// Reads "1920x1080", sides within the limits. False for anything else.
bool ReadSize(std::string_view text, u32& width, u32& height);

// "25" or "24000/1001".
std::string RateText(Ratio rate);

}  // namespace vorel::picture_io
