#include "tests/reference/pixel_model.h"

#include <stdexcept>
#include <string>

#include "tests/reference/pixel_alpha.h"
#include "tests/reference/pixel_matrix.h"
#include "tests/reference/pixel_ranges.h"

namespace reference {
namespace {

using std::size_t;

struct Layout {
  std::string_view name;
  Range range;
  bool paired;  // 4:2:2
  bool hasAlpha;
};

constexpr Layout kLayouts[] = {
    {"RGB8bf", Range::f8, false, false},        {"RGBA8bf", Range::f8, false, true},
    {"RGB10bf", Range::f10, false, false},      {"RGBA10bf", Range::f10, false, true},
    {"YCbCr8bv444", Range::v8, false, false},   {"YCbCrA8bv4444", Range::v8, false, true},
    {"YCbCr8bu444", Range::u8, false, false},   {"YCbCrA8bu4444", Range::u8, false, true},
    {"YCbCr10bv444", Range::v10, false, false}, {"YCbCrA10bv4444", Range::v10, false, true},
    {"YCbCr8bv422", Range::v8, true, false},    {"YCbCrA8bv4224", Range::v8, true, true},
    {"YCbCr10bv422", Range::v10, true, false},  {"YCbCrA10bv4224", Range::v10, true, true},
    {"YCbCr8bw422", Range::w8, true, false},
};

const Layout& FindLayout(std::string_view name) {
  for (const Layout& layout : kLayouts)
    if (layout.name == name) return layout;
  throw std::invalid_argument("no such layout: " + std::string(name));
}

// Samples on their way, of any depth and sign.
using Line = std::vector<Wide>;

struct Lines {
  Line first, second, third, alpha;
};

Line Widened(const std::vector<int>& samples) {
  return {samples.begin(), samples.end()};
}

Lines Widened(const RowSamples& samples) {
  return {Widened(samples.first), Widened(samples.second), Widened(samples.third), Widened(samples.alpha)};
}

std::vector<int> Narrowed(const Line& line) {
  std::vector<int> samples;
  for (const Wide value : line) samples.push_back(static_cast<int>(value));
  return samples;
}

RowSamples Narrowed(const Lines& lines) {
  return {Narrowed(lines.first), Narrowed(lines.second), Narrowed(lines.third), Narrowed(lines.alpha)};
}

template <typename Map>
void MapLine(Line& line, Map map) {
  for (Wide& value : line) value = map(value);
}

template <typename Map>
void MapColour(Lines& lines, Map map) {
  MapLine(lines.first, [&map](Wide value) { return map(Component::first, value); });
  MapLine(lines.second, [&map](Wide value) { return map(Component::second, value); });
  MapLine(lines.third, [&map](Wide value) { return map(Component::third, value); });
}

template <typename Map>
void MapPixels(Lines& lines, Map map) {
  for (size_t x = 0; x < lines.first.size(); ++x) {
    const Triple result = map(Triple{lines.first[x], lines.second[x], lines.third[x]});
    lines.first[x] = result.first;
    lines.second[x] = result.second;
    lines.third[x] = result.third;
  }
}

// Three taps around the first pixel of each pair. The missing pixel of an odd width is its left neighbour
// again, as is the one before the row. The sum of 10-bit chroma that goes to 8 bits is cut only here.
enum class Tap { sameDepth, twoBitsLess };

Line Filtered(const Line& chroma, Tap tap) {
  Line result;
  for (size_t p = 0; p < chroma.size(); p += 2) {
    const Wide before = p == 0 ? chroma[p] : chroma[p - 1];
    const Wide after = p + 1 == chroma.size() ? chroma[p] : chroma[p + 1];
    const Wide sum = before + 2 * chroma[p] + after;
    result.push_back(tap == Tap::sameDepth ? (sum + 2) >> 2 : (sum + 8) >> 4);
  }
  return result;
}

// Odd pixels lie half way between their own pair and the next.
Line Interpolated(const Line& chroma, size_t width) {
  Line result;
  for (size_t x = 0; x < width; ++x) {
    const size_t k = x / 2;
    const bool isBetween = x % 2 == 1 && k + 1 < chroma.size();
    result.push_back(isBetween ? (chroma[k] + chroma[k + 1] + 1) >> 1 : chroma[k]);
  }
  return result;
}

void CompleteLastPair(Line& line) {
  if (line.size() % 2 == 1) line.push_back(line.back());
}

void ToPairs(Lines& lines, Tap tap) {
  CompleteLastPair(lines.first);
  CompleteLastPair(lines.alpha);
  lines.second = Filtered(lines.second, tap);
  lines.third = Filtered(lines.third, tap);
}

void ToPixels(Lines& lines, size_t width) {
  lines.first.resize(width);
  if (!lines.alpha.empty()) lines.alpha.resize(width);
  lines.second = Interpolated(lines.second, width);
  lines.third = Interpolated(lines.third, width);
}

Wide SpanOf(Range yccFrame) {
  return yccFrame == Range::v10 ? 876 : 219;
}

Wide OffsetOf(Range yccFrame) {
  return yccFrame == Range::u8 ? 0 : ScaleOf(SpanOf(yccFrame)).offset;
}

int VideoBits(Kind kind) {
  return kind == Kind::vrgb ? 8 : 10;
}

bool IsVideoRgb(Kind kind) {
  return kind == Kind::vrgb || kind == Kind::video10;
}

// Y'CbCr codes, in `lines`, to the samples of an RGB frame.
void YccToRgbFrame(Lines& lines, Kind kind, bool sourcePaired, bool isV416, Range frame, int colourStandard,
                   size_t width) {
  const Scale scale = ScaleOf(SpanWithRgbFrame(kind, frame));
  const Weights weights = WeightsOf(colourStandard, scale.span);
  const Wide offset = kind == Kind::r408 ? 0 : scale.offset;
  const Wide white = frame == Range::f8 ? 255 : 1023;
  const Products products = isV416 && frame == Range::f10 ? Products::wrapAt32Bits : Products::exact;
  MapColour(lines, [&](Component, Wide code) { return CodeToScale(kind, scale.span, code); });
  if (sourcePaired) ToPixels(lines, width);
  MapPixels(lines, [&](Triple ycc) { return YccToFullRgb(ycc, white, weights, scale, offset, products); });
}

// Samples of an RGB frame to Y'CbCr codes.
void RgbFrameToYcc(Lines& lines, Kind kind, bool targetPaired, Range frame, int colourStandard) {
  const Scale scale = ScaleOf(SpanWithRgbFrame(kind, frame));
  const Weights weights = WeightsOf(colourStandard, scale.span);
  const Wide offset = kind == Kind::r408 ? 0 : scale.offset;
  const Wide white = frame == Range::f8 ? 255 : 1023;
  MapPixels(lines, [&](Triple rgb) { return FullRgbToYcc(rgb, white, weights, scale, offset); });
  if (targetPaired) ToPairs(lines, Tap::sameDepth);
  MapColour(lines, [&](Component, Wide value) { return ScaleToCode(kind, scale.span, value); });
}

// RGB codes to the samples of a Y'CbCr frame, before they are wrapped.
void RgbToYccFrame(Lines& lines, Kind kind, const Layout& layout, int colourStandard) {
  const Scale scale = ScaleOf(SpanOf(layout.range));
  const Weights weights = WeightsOf(colourStandard, scale.span);
  const Wide offset = OffsetOf(layout.range);
  if (IsVideoRgb(kind)) {
    MapPixels(lines, [&](Triple rgb) { return VideoRgbToYcc(rgb, VideoBits(kind), weights, scale, offset); });
  } else {
    const RgbDepth depth = FullRgbDepth(kind, layout.range);
    MapColour(lines, [&](Component, Wide code) { return code >> depth.shift; });
    MapPixels(lines, [&](Triple rgb) { return FullRgbToYcc(rgb, depth.white, weights, scale, offset); });
  }
  if (layout.paired) ToPairs(lines, Tap::sameDepth);
}

void YccFrameToRgb(Lines& lines, Kind kind, const Layout& layout, int colourStandard, size_t width) {
  const Scale scale = ScaleOf(SpanOf(layout.range));
  const Weights weights = WeightsOf(colourStandard, scale.span);
  const Wide offset = OffsetOf(layout.range);
  if (layout.paired) ToPixels(lines, width);
  if (IsVideoRgb(kind)) {
    MapPixels(lines, [&](Triple ycc) { return YccToVideoRgb(ycc, VideoBits(kind), weights, scale, offset); });
  } else {
    const RgbDepth depth = FullRgbDepth(kind, layout.range);
    MapPixels(lines, [&](Triple ycc) {
      return YccToFullRgb(ycc, depth.white, weights, scale, offset, Products::exact);
    });
    MapColour(lines, [&](Component, Wide sample) { return sample << depth.shift; });
  }
}

// Y'CbCr codes to the samples of a Y'CbCr frame, before they are wrapped. 4:4:4 chroma of 10 bits keeps them
// up to the filter of an 8-bit 4:2:2 frame; 4:2:2 chroma is cut before it is interpolated.
void YccToYccFrame(Lines& lines, Kind kind, bool sourcePaired, const Layout& layout, size_t width) {
  const bool filters = layout.paired && !sourcePaired;
  const bool filtersWideChroma =
      filters && layout.range == Range::v8 && (kind == Kind::ycc10 || kind == Kind::v216);
  MapColour(lines, [&](Component component, Wide code) {
    const bool isWide = filtersWideChroma && component != Component::first;
    return YccIntoYccFrame(kind, isWide ? Range::v10 : layout.range, component, code);
  });
  if (filters) ToPairs(lines, filtersWideChroma ? Tap::twoBitsLess : Tap::sameDepth);
  if (!layout.paired && sourcePaired) ToPixels(lines, width);
}

// Samples of a Y'CbCr frame to Y'CbCr codes. Chroma is interpolated in the depth of the frame and filtered in
// the depth of the target.
void YccFrameToYcc(Lines& lines, Kind kind, bool targetPaired, const Layout& layout, size_t width) {
  if (layout.paired && !targetPaired) ToPixels(lines, width);
  MapColour(lines, [&](Component component, Wide sample) {
    return YccToTargetDepth(kind, layout.range, component, sample);
  });
  if (!layout.paired && targetPaired) ToPairs(lines, Tap::sameDepth);
  MapColour(lines, [&](Component, Wide value) { return TargetDepthToCode(kind, layout.range, value); });
}

}  // namespace

RowSamples FetchRow(std::string_view layoutName, std::string_view pixel, int colourStandard,
                    const std::uint8_t* row, size_t width) {
  const Layout& layout = FindLayout(layoutName);
  const Kind kind = KindOf(pixel);
  const bool sourcePaired = SamplingOf(pixel) != Sampling::pixel;
  Lines lines = Widened(ReadCodes(pixel, row, width));

  if (!layout.hasAlpha) {
    lines.alpha.clear();
  } else {
    const AlphaKind alphaKind = AlphaKindOf(pixel);
    MapLine(lines.alpha, [&](Wide code) { return AlphaIntoFrame(alphaKind, layout.range, code); });
  }

  if (IsRgb(layout.range) && IsRgb(kind)) {
    MapColour(lines, [&](Component, Wide code) { return RgbIntoRgbFrame(kind, layout.range, code); });
  } else if (IsRgb(layout.range)) {
    const bool isV416 = kind == Kind::v216 && !sourcePaired;
    YccToRgbFrame(lines, kind, sourcePaired, isV416, layout.range, colourStandard, width);
  } else if (IsRgb(kind)) {
    RgbToYccFrame(lines, kind, layout, colourStandard);
  } else {
    YccToYccFrame(lines, kind, sourcePaired, layout, width);
  }

  const Wide mask = (Wide{1} << DepthOf(layout.range)) - 1;
  MapColour(lines, [mask](Component, Wide value) { return value & mask; });
  MapLine(lines.alpha, [mask](Wide value) { return value & mask; });
  return Narrowed(lines);
}

void StoreRow(std::string_view layoutName, std::string_view pixel, int colourStandard,
              const RowSamples& samples, size_t width, std::uint8_t* row) {
  const Layout& layout = FindLayout(layoutName);
  const Kind kind = KindOf(pixel);
  const bool targetPaired = SamplingOf(pixel) != Sampling::pixel;
  Lines lines = Widened(samples);

  if (IsRgb(layout.range) && IsRgb(kind)) {
    MapColour(lines, [&](Component component, Wide sample) {
      return RgbFromRgbFrame(kind, layout.range, component, sample);
    });
  } else if (IsRgb(layout.range)) {
    RgbFrameToYcc(lines, kind, targetPaired, layout.range, colourStandard);
  } else if (IsRgb(kind)) {
    YccFrameToRgb(lines, kind, layout, colourStandard, width);
  } else {
    YccFrameToYcc(lines, kind, targetPaired, layout, width);
  }

  if (!HasAlphaPosition(pixel)) {
    lines.alpha.clear();
  } else {
    const AlphaKind alphaKind = AlphaKindOf(pixel);
    if (!layout.hasAlpha)
      lines.alpha.assign(width, OpaqueCode(alphaKind, layout.range));
    else
      MapLine(lines.alpha, [&](Wide sample) { return AlphaFromFrame(alphaKind, layout.range, sample); });
  }
  WriteCodes(pixel, Narrowed(lines), width, row);
}

}  // namespace reference
