#include "frame/tag_rules.h"

namespace vorel {
namespace {

// A cell of a rule: the layout without alpha and, where the pixel format has a channel for it, the layout
// with alpha.
struct Choice {
  const FrameLayout* plain = nullptr;
  const FrameLayout* alpha = nullptr;
};

constexpr Choice kNone = {};
constexpr Choice kR10 = {&RGB10bf, nullptr};
constexpr Choice kR10a = {&RGB10bf, &RGBA10bf};
constexpr Choice kR8 = {&RGB8bf, nullptr};
constexpr Choice kR8a = {&RGB8bf, &RGBA8bf};
constexpr Choice kY10Full = {&YCbCr10bv444, nullptr};
constexpr Choice kY10FullA = {&YCbCr10bv444, &YCbCrA10bv4444};
constexpr Choice kY8vFull = {&YCbCr8bv444, nullptr};
constexpr Choice kY8vFullA = {&YCbCr8bv444, &YCbCrA8bv4444};
constexpr Choice kY8uFull = {&YCbCr8bu444, nullptr};
constexpr Choice kY8uFullA = {&YCbCr8bu444, &YCbCrA8bu4444};
constexpr Choice kY10Half = {&YCbCr10bv422, nullptr};
constexpr Choice kY10HalfA = {&YCbCr10bv422, &YCbCrA10bv4224};
constexpr Choice kY8Half = {&YCbCr8bv422, nullptr};
constexpr Choice kY8HalfA = {&YCbCr8bv422, &YCbCrA8bv4224};
constexpr Choice kY8w = {&YCbCr8bw422, nullptr};

struct RuleRow {
  u32 pixelFormat;
  std::array<Choice, 8> choices;  // by VorelFamily
};

constexpr u32 kCode(const char (&text)[5]) {
  return FourCharacterCode(text);
}

// A cell that names a foreign family is a decision of its own: a compressor for 8-bit 4:4:4 that is handed
// 'yuvs' makes an 8bv 4:2:2 frame, one for deep RGB that is handed 'v210' an RGB frame. clang-format off
constexpr RuleRow kRules[] = {
    // pixel format      generic    RGB 10bf RGB 8bf 10bv 4:4:4  8b 4:4:4   10bv 4:2:2  8bv 4:2:2  8bw
    {kCode("b64a"), {kR10a, kR10a, kR8a, kY10FullA, kY8uFullA, kY10HalfA, kY8HalfA, kNone}},
    {kCode("L64A"), {kR10a, kR10a, kR8a, kY10FullA, kY8uFullA, kY10HalfA, kY8HalfA, kNone}},
    {kCode("A46L"), {kR10a, kR10a, kR8a, kY10FullA, kY8uFullA, kNone, kY8HalfA, kNone}},
    {kCode("R10k"), {kR10, kR10, kR8, kY10Full, kY8uFull, kY10Half, kY8Half, kNone}},
    {kCode("F10k"), {kR10, kR10, kR8, kY10Full, kY8uFull, kY10Half, kY8Half, kNone}},
    {kCode("F210"), {kR10, kR10, kR8, kY10Full, kY8uFull, kY10Half, kY8Half, kNone}},
    {kCode("S10k"), {kR10, kR10, kR8, kY10Full, kY8vFull, kY10Half, kY8Half, kNone}},
    {kCode("S210"), {kR10, kR10, kR8, kY10Full, kY8vFull, kY10Half, kY8Half, kNone}},
    {kCode("r210"), {kR10, kR10, kR8, kY10Full, kY8vFull, kY10Half, kY8Half, kNone}},
    {kCode("b48r"), {kR10, kR10, kR8, kNone, kNone, kNone, kNone, kNone}},
    {32, {kR8a, kR8a, kR8a, kY10FullA, kY8uFullA, kY10HalfA, kY8HalfA, kNone}},
    {kCode("RGBA"), {kR8a, kR8a, kR8a, kY10FullA, kY8uFullA, kY10HalfA, kY8HalfA, kNone}},
    {kCode("ABGR"), {kR8a, kR8a, kR8a, kY10FullA, kY8uFullA, kY10HalfA, kY8HalfA, kNone}},
    {kCode("BGRA"), {kR8a, kR8a, kR8a, kY10FullA, kY8uFullA, kY10HalfA, kY8HalfA, kNone}},
    {kCode("VRGB"), {kR8a, kR8a, kR8a, kY10FullA, kY8vFullA, kY10HalfA, kY8HalfA, kNone}},
    {24, {kR8, kR8, kR8, kY10Full, kY8uFull, kY10Half, kY8Half, kNone}},
    {kCode("24BG"), {kR8, kR8, kR8, kY10Full, kY8uFull, kY10Half, kY8Half, kNone}},
    {kCode("V416"), {kY10FullA, kR10a, kR8a, kY10FullA, kY8vFullA, kY10HalfA, kY8HalfA, kNone}},
    {kCode("v410"), {kY10Full, kR10, kR8, kY10Full, kY8vFull, kY10Half, kY8Half, kNone}},
    // The generic rule leaves 'VUYA' out.
    {kCode("VUYA"), {kNone, kR10a, kR8a, kY8vFullA, kY8vFullA, kY10HalfA, kY8HalfA, kNone}},
    {kCode("v408"), {kY8vFullA, kR10a, kR8a, kY8vFullA, kY8vFullA, kY10HalfA, kY8HalfA, kNone}},
    {kCode("r408"), {kY8uFullA, kR10a, kR8a, kY8uFullA, kY8uFullA, kY10HalfA, kY8HalfA, kNone}},
    {kCode("Y216"), {kY10Half, kR10, kR8, kY10Half, kY8vFull, kY10Half, kY8Half, kNone}},
    {kCode("v210"), {kY10Half, kR10, kR8, kY10Half, kY8vFull, kY10Half, kY8Half, kNone}},
    {kCode("v216"), {kY10Half, kR10, kR8, kY10Half, kY8vFull, kY10Half, kY8Half, kNone}},
    {kCode("2vuy"), {kY8Half, kR10, kR8, kY8Half, kY8Half, kY8Half, kY8Half, kNone}},
    {kCode("yuvs"), {kY8Half, kR10, kR8, kY8Half, kY8Half, kY8Half, kY8Half, kNone}},
    {kCode("yuvu"), {kY8w, kNone, kNone, kNone, kNone, kNone, kNone, kY8w}},
};
// clang-format on

}  // namespace

u32 ChooseTag(VorelFamily family, u32 pixelFormat, u32 formatChoice) {
  if (family > VOREL_YCBCR_8BW_422) return 0;
  for (const RuleRow& row : kRules) {
    if (row.pixelFormat != pixelFormat) continue;
    const Choice& choice = row.choices[family];
    const bool keepAlpha = (formatChoice & VOREL_KEEP_ALPHA) != 0 && choice.alpha != nullptr;
    const FrameLayout* layout = keepAlpha ? choice.alpha : choice.plain;
    return layout == nullptr ? 0 : layout->tags[(formatChoice & VOREL_INTERLACED) != 0 ? 1 : 0];
  }
  return 0;
}

}  // namespace vorel
