// Which pixel formats each layout is encoded from and decoded to, written out layout by layout. Every entry
// stands for two routines, progressive and interlaced.
#pragma once
#include <cstddef>
#include <span>
#include <string_view>

namespace reference {

// clang-format off
inline constexpr std::string_view kFromRGB8bf[] = {
    "_RGB", "_BGR", "RGB_", "BGR_", "RGB", "BGR", "yuvs", "2vuy", "v210", "Y216", "v216", "_r408", "_v408",
    "v410", "F210", "S10k", "F10k", "b48r", "L64_", "b64_", "_46L", "S210", "_V416", "VUY_", "_VRGB"};
inline constexpr std::string_view kFromRGBA8bf[] = {
    "ARGB", "ABGR", "RGBA", "BGRA", "Ar408", "Av408", "L64A", "b64a", "A46L", "AV416", "VUYA", "AVRGB"};
inline constexpr std::string_view kFromRGB10bf[] = {
    "b64_", "L64_", "b48r", "F10k", "S10k", "F210", "yuvs", "2vuy", "v210", "Y216", "v216", "_r408",
    "_v408", "v410", "_V416", "VUY_", "_46L", "S210"};
inline constexpr std::string_view kFromRGBA10bf[] = {
    "b64a", "L64A", "Ar408", "Av408", "AV416", "VUYA", "A46L"};

// 8bf and 10bf have the same targets.
inline constexpr std::string_view kToRgb[] = {
    "b64_", "L64_", "b48r", "F10k", "S10k", "F210", "_RGB", "_BGR", "RGB_", "BGR_", "RGB", "BGR", "L555",
    "L565", "v410", "_v408", "_r408", "v216", "Y216", "v210", "2vuy", "yuvs", "_46L", "S210", "_VRGB",
    "_V416", "VUY_"};
inline constexpr std::string_view kToRgbWithAlpha[] = {
    "b64a", "L64A", "b48r", "F10k", "S10k", "F210", "ARGB", "ABGR", "RGBA", "BGRA", "RGB", "BGR", "L555",
    "L565", "v410", "Av408", "Ar408", "v216", "Y216", "v210", "2vuy", "yuvs", "A46L", "S210", "AVRGB",
    "AV416", "VUYA"};

// Sources that are video range by nature feed 8bv, full-range RGB and r408 feed 8bu.
inline constexpr std::string_view kFromYCbCr8bv444[] = {
    "S10k", "S210", "_VRGB", "_V416", "v410", "_v408", "VUY_", "v216", "Y216", "v210"};
inline constexpr std::string_view kFromYCbCrA8bv4444[] = {"AVRGB", "AV416", "Av408", "VUYA"};
inline constexpr std::string_view kFromYCbCr8bu444[] = {
    "b64_", "L64_", "_46L", "F10k", "F210", "_RGB", "_BGR", "RGB_", "BGR_", "RGB", "BGR", "_r408"};
inline constexpr std::string_view kFromYCbCrA8bu4444[] = {
    "b64a", "L64A", "A46L", "ARGB", "ABGR", "RGBA", "BGRA", "Ar408"};
inline constexpr std::string_view kFromYCbCr10bv444[] = {
    "b64_", "L64_", "_46L", "F10k", "S10k", "F210", "S210", "_RGB", "_BGR", "RGB_", "BGR_", "_VRGB", "RGB",
    "BGR", "_V416", "v410"};
inline constexpr std::string_view kFromYCbCrA10bv4444[] = {
    "b64a", "L64A", "A46L", "ARGB", "ABGR", "RGBA", "BGRA", "AVRGB", "AV416"};

inline constexpr std::string_view kFromYCbCr8bv422[] = {
    "2vuy", "yuvs", "v216", "Y216", "v210", "v410", "_V416", "_v408", "VUY_", "_r408", "_RGB", "_BGR",
    "RGB_", "BGR_", "RGB", "BGR", "_VRGB", "b64_", "L64_", "_46L", "F10k", "S10k", "F210", "S210"};
inline constexpr std::string_view kFromYCbCrA8bv4224[] = {
    "AV416", "Av408", "VUYA", "Ar408", "ARGB", "ABGR", "RGBA", "BGRA", "AVRGB", "b64a", "L64A", "A46L"};
inline constexpr std::string_view kFromYCbCr10bv422[] = {
    "b64_", "L64_", "_46L", "F10k", "S10k", "F210", "S210", "_RGB", "_BGR", "RGB_", "BGR_", "_VRGB", "RGB",
    "BGR", "_V416", "v410", "_v408", "VUY_", "_r408", "v216", "Y216", "v210"};
inline constexpr std::string_view kFromYCbCrA10bv4224[] = {
    "b64a", "L64A", "A46L", "ARGB", "ABGR", "RGBA", "BGRA", "AVRGB", "AV416", "Av408", "VUYA", "Ar408"};

// All Y'CbCr layouts but 8bw have the same targets.
inline constexpr std::string_view kToYcc[] = {
    "b64_", "L64_", "_46L", "F10k", "S10k", "F210", "S210", "_RGB", "_BGR", "RGB_", "BGR_", "_VRGB", "RGB",
    "BGR", "_V416", "v410", "_v408", "VUY_", "_r408", "v216", "Y216", "v210", "2vuy", "yuvs"};
inline constexpr std::string_view kToYccWithAlpha[] = {
    "b64a", "L64A", "A46L", "F10k", "S10k", "F210", "S210", "ARGB", "ABGR", "RGBA", "BGRA", "AVRGB", "RGB",
    "BGR", "AV416", "v410", "Av408", "VUYA", "Ar408", "v216", "Y216", "v210", "2vuy", "yuvs"};

inline constexpr std::string_view kWithYCbCr8bw422[] = {"yuvu"};

struct LayoutPixels {
  std::string_view layout;
  std::span<const std::string_view> from;  // pixel formats that have an Encode routine
  std::span<const std::string_view> to;    // that have a Decode routine
};

inline constexpr LayoutPixels kLayoutPixels[] = {
    {"RGB8bf",          kFromRGB8bf,         kToRgb},
    {"RGBA8bf",         kFromRGBA8bf,        kToRgbWithAlpha},
    {"RGB10bf",         kFromRGB10bf,        kToRgb},
    {"RGBA10bf",        kFromRGBA10bf,       kToRgbWithAlpha},
    {"YCbCr8bv444",     kFromYCbCr8bv444,    kToYcc},
    {"YCbCrA8bv4444",   kFromYCbCrA8bv4444,  kToYccWithAlpha},
    {"YCbCr8bu444",     kFromYCbCr8bu444,    kToYcc},
    {"YCbCrA8bu4444",   kFromYCbCrA8bu4444,  kToYccWithAlpha},
    {"YCbCr10bv444",    kFromYCbCr10bv444,   kToYcc},
    {"YCbCrA10bv4444",  kFromYCbCrA10bv4444, kToYccWithAlpha},
    {"YCbCr8bv422",     kFromYCbCr8bv422,    kToYcc},
    {"YCbCrA8bv4224",   kFromYCbCrA8bv4224,  kToYccWithAlpha},
    {"YCbCr10bv422",    kFromYCbCr10bv422,   kToYcc},
    {"YCbCrA10bv4224",  kFromYCbCrA10bv4224, kToYccWithAlpha},
    {"YCbCr8bw422",     kWithYCbCr8bw422,    kWithYCbCr8bw422},
};
// clang-format on

constexpr std::size_t CountListed(std::span<const std::string_view> LayoutPixels::*list) {
  std::size_t count = 0;
  for (const LayoutPixels& row : kLayoutPixels) count += 2 * (row.*list).size();
  return count;
}

static_assert(CountListed(&LayoutPixels::from) == 384);
static_assert(CountListed(&LayoutPixels::to) == 698);

}  // namespace reference
