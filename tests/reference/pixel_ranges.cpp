#include "tests/reference/pixel_ranges.h"

#include <stdexcept>
#include <string>

namespace reference {
namespace {

[[noreturn]] void NoSuchRule() {
  throw std::invalid_argument("no rule for this frame and pixel format");
}

struct KindRow {
  std::string_view pixel;
  Kind kind;
};

constexpr KindRow kKinds[] = {
    {"ARGB", Kind::rgb8},   {"_RGB", Kind::rgb8},    {"ABGR", Kind::rgb8},    {"_BGR", Kind::rgb8},
    {"RGBA", Kind::rgb8},   {"RGB_", Kind::rgb8},    {"BGRA", Kind::rgb8},    {"BGR_", Kind::rgb8},
    {"RGB", Kind::rgb8},    {"BGR", Kind::rgb8},     {"AVRGB", Kind::vrgb},   {"_VRGB", Kind::vrgb},
    {"b64a", Kind::deep},   {"b64_", Kind::deep},    {"L64A", Kind::deep},    {"L64_", Kind::deep},
    {"A46L", Kind::deep},   {"_46L", Kind::deep},    {"b48r", Kind::deep},    {"F10k", Kind::full10},
    {"F210", Kind::full10}, {"S10k", Kind::video10}, {"S210", Kind::video10}, {"L555", Kind::l555},
    {"L565", Kind::l565},   {"2vuy", Kind::ycc8},    {"yuvs", Kind::ycc8},    {"Av408", Kind::ycc8},
    {"_v408", Kind::ycc8},  {"VUYA", Kind::ycc8},    {"VUY_", Kind::ycc8},    {"Ar408", Kind::r408},
    {"_r408", Kind::r408},  {"v410", Kind::ycc10},   {"v210", Kind::ycc10},   {"v216", Kind::v216},
    {"AV416", Kind::v216},  {"_V416", Kind::v216},   {"Y216", Kind::Y216},    {"yuvu", Kind::yuvu},
};

// Y' of an 8bu frame on the way to a video-range format.
Wide LumaWithOffset(Wide sample) {
  return sample > 238 ? 254 : sample + 16;
}

// Y' of a video-range frame, at 8 bits, on the way to r408.
Wide LumaWithoutOffset(Wide sample) {
  return sample - 16 < 1 ? 0 : sample - 16;
}

}  // namespace

Kind KindOf(std::string_view pixel) {
  for (const KindRow& row : kKinds)
    if (row.pixel == pixel) return row.kind;
  throw std::invalid_argument("no such pixel format: " + std::string(pixel));
}

bool IsRgb(Kind kind) {
  return kind == Kind::rgb8 || kind == Kind::vrgb || kind == Kind::deep || kind == Kind::full10 ||
         kind == Kind::video10 || kind == Kind::l555 || kind == Kind::l565;
}

bool IsRgb(Range range) {
  return range == Range::f8 || range == Range::f10;
}

int DepthOf(Range range) {
  return range == Range::f10 || range == Range::v10 ? 10 : 8;
}

Wide RgbIntoRgbFrame(Kind source, Range frame, Wide x) {
  const bool f8 = frame == Range::f8;
  switch (source) {
    case Kind::rgb8:
      return f8 ? x : throw std::invalid_argument("no 8-bit RGB into 10bf");
    case Kind::deep:
      return f8 ? x >> 8 : x >> 6;
    case Kind::full10:
      return f8 ? x >> 2 : x;
    case Kind::video10:
      if (f8) return Limit((x * 255 - 15882) / 876, 0, 255);
      return Limit(((x - 64) * 306133 + 131072) >> 18, 0, 1023);
    case Kind::vrgb:
      if (f8) return Limit((x * 255 - 3971) / 219, 0, 255);
      NoSuchRule();
    default:
      NoSuchRule();
  }
}

Wide RgbFromRgbFrame(Kind target, Range frame, Component component, Wide x) {
  const bool f8 = frame == Range::f8;
  switch (target) {
    case Kind::rgb8:
      return f8 ? x : x >> 2;
    case Kind::deep:
      return f8 ? x << 8 : x << 6;
    case Kind::full10:
      return f8 ? x << 2 : x;
    case Kind::video10:
      return f8 ? (x * 876 + 127) / 255 + 64 : ((x * 224475 + 131072) >> 18) + 64;
    case Kind::vrgb:
      return f8 ? (x * 219 + 127) / 255 + 16 : ((x * 56118 + 131072) >> 18) + 16;
    case Kind::l555:
      return f8 ? x >> 3 : x >> 5;
    case Kind::l565:
      if (component == Component::second) return f8 ? x >> 2 : x >> 4;
      return f8 ? x >> 3 : x >> 5;
    default:
      NoSuchRule();
  }
}

RgbDepth FullRgbDepth(Kind kind, Range frame) {
  const bool v10 = frame == Range::v10;
  switch (kind) {
    case Kind::rgb8:
      return {255, 0};
    case Kind::full10:
      return v10 ? RgbDepth{1023, 0} : RgbDepth{511, 1};
    case Kind::deep:
      return v10 ? RgbDepth{4095, 4} : RgbDepth{511, 7};
    default:
      NoSuchRule();
  }
}

Wide SpanWithRgbFrame(Kind kind, Range frame) {
  switch (kind) {
    case Kind::ycc8:
    case Kind::r408:
      return 219;
    case Kind::ycc10:
      return 876;
    case Kind::v216:
    case Kind::Y216:
      return frame == Range::f8 ? 876 : 3504;
    default:
      NoSuchRule();
  }
}

Wide CodeToScale(Kind source, Wide span, Wide x) {
  switch (source) {
    case Kind::v216:
      return span == 876 ? x >> 6 : x >> 4;
    case Kind::Y216:
      return span == 876 ? Limit(x >> 4, 4, 1019) : Limit(x >> 2, 16, 4079);
    default:
      return x;
  }
}

Wide ScaleToCode(Kind target, Wide span, Wide x) {
  switch (target) {
    case Kind::v216:
      return span == 876 ? x << 6 : x << 4;
    case Kind::Y216:
      return span == 876 ? x << 4 : x << 2;
    default:
      return x;
  }
}

Wide YccIntoYccFrame(Kind source, Range frame, Component component, Wide x) {
  const bool isLuma = component == Component::first;
  if (frame == Range::u8 && source != Kind::r408) NoSuchRule();
  if ((frame == Range::w8) != (source == Kind::yuvu)) NoSuchRule();
  const bool v10 = frame == Range::v10;
  switch (source) {
    case Kind::yuvu:
      return x;
    case Kind::ycc8:
      return v10 ? x << 2 : x;
    case Kind::r408:
      if (frame == Range::u8) return x;
      if (!isLuma) return v10 ? x << 2 : x;
      return v10 ? Limit(4 * x + 64, 0, 1019) : Limit(x + 16, 0, 254);
    case Kind::ycc10:
      return v10 ? x : x >> 2;
    case Kind::v216:
      return v10 ? x >> 6 : x >> 8;
    case Kind::Y216:
      return v10 ? Limit(x >> 4, 4, 1019) : Limit(x >> 6, 1, 254);
    default:
      NoSuchRule();
  }
}

Wide YccToTargetDepth(Kind target, Range frame, Component component, Wide x) {
  const bool isLuma = component == Component::first;
  if ((frame == Range::w8) != (target == Kind::yuvu)) NoSuchRule();
  if (target == Kind::yuvu) return x;
  if (target == Kind::r408) {
    if (frame == Range::u8) return x;
    const Wide cut = frame == Range::v10 ? x >> 2 : x;
    return isLuma ? LumaWithoutOffset(cut) : cut;
  }
  const Wide video = frame == Range::u8 && isLuma ? LumaWithOffset(x) : x;
  switch (target) {
    case Kind::ycc8:
      return frame == Range::v10 ? video >> 2 : video;
    case Kind::ycc10:
      return frame == Range::v10 ? video : video << 2;
    case Kind::v216:
    case Kind::Y216:
      return video;  // as many bits as the frame has
    default:
      NoSuchRule();
  }
}

Wide TargetDepthToCode(Kind target, Range frame, Wide x) {
  switch (target) {
    case Kind::v216:
      return frame == Range::v10 ? x << 6 : x << 8;
    case Kind::Y216:
      return frame == Range::v10 ? x << 4 : x << 6;
    default:
      return x;
  }
}

}  // namespace reference
