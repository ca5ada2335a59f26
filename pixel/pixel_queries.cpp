// What a pixel format code tells without a picture. The answers describe families of formats and are rounder
// than the layouts: bytes of a pixel that shares a pair, bits of a word and not of its sample.
#include "base/bytes.h"
#include "vorel/pixel_formats.h"

namespace vorel {
namespace {

struct QueryRow {
  u32 code;
  u8 bytesPerPixel;
  u8 chromaKind;
  u8 componentCount;  // 4 says that there is a place for alpha
  u8 significantBits;
};

constexpr u32 kCode(const char (&text)[5]) {
  return FourCharacterCode(text);
}

constexpr u8 kPixel = VOREL_CHROMA_EVERY_PIXEL;
constexpr u8 kPair = VOREL_CHROMA_EVERY_PAIR;

// 'S210' is missing on purpose, unlike its twin 'F210': it answers as a code that is not known. 'R10k',
// 'r210' and 'V210' are here although no frame routine takes them.
constexpr QueryRow kRows[] = {
    // code       bytes chroma  components bits
    {32, 4, kPixel, 4, 8},
    {kCode("ABGR"), 4, kPixel, 4, 8},
    {kCode("RGBA"), 4, kPixel, 4, 8},
    {kCode("BGRA"), 4, kPixel, 4, 8},
    {kCode("VRGB"), 4, kPixel, 4, 8},
    {24, 3, kPixel, 3, 8},
    {kCode("24BG"), 3, kPixel, 3, 8},
    {kCode("L555"), 2, kPixel, 3, 5},
    {kCode("L565"), 2, kPixel, 3, 5},
    {kCode("b64a"), 8, kPixel, 4, 16},
    {kCode("L64A"), 8, kPixel, 4, 16},
    {kCode("A46L"), 8, kPixel, 4, 16},
    {kCode("b48r"), 6, kPixel, 3, 16},
    {kCode("R10k"), 4, kPixel, 3, 10},
    {kCode("F10k"), 4, kPixel, 3, 10},
    {kCode("S10k"), 4, kPixel, 3, 10},
    {kCode("r210"), 4, kPixel, 3, 10},
    {kCode("F210"), 4, kPixel, 3, 10},
    {kCode("r408"), 4, kPixel, 4, 8},
    {kCode("v408"), 4, kPixel, 4, 8},
    {kCode("VUYA"), 4, kPixel, 4, 8},
    {kCode("v410"), 4, kPixel, 3, 10},
    {kCode("V416"), 8, kPixel, 4, 16},
    {kCode("2vuy"), 2, kPair, 2, 8},
    {kCode("yuvs"), 2, kPair, 2, 8},
    {kCode("yuvu"), 2, kPair, 2, 8},
    {kCode("v216"), 4, kPair, 2, 16},
    {kCode("Y216"), 4, kPair, 2, 16},
    {kCode("v210"), 3, kPair, 2, 10},
    {kCode("V210"), 3, kPair, 2, 10},
};

constexpr QueryRow kUnknown = {0, 0, VOREL_CHROMA_UNKNOWN, 1, 0};

// An alias of '2vuy' or 'yuvs' stands for that name. No other alias does: 'R10k' and 'r210' have rows of
// their own, and the host's 'yuv2' is not known here.
u32 NameOf(u32 code) {
  const u32 name = VorelNormalizePixelFormat(0, code, 0, 0, 0, VOREL_RGB_RANGE_AUTOMATIC);
  return name == kCode("2vuy") || name == kCode("yuvs") ? name : code;
}

const QueryRow& Answers(u32 code) {
  const u32 name = NameOf(code);
  for (const QueryRow& row : kRows) {
    if (row.code == name) return row;
  }
  return kUnknown;
}

}  // namespace
}  // namespace vorel

extern "C" uint32_t VorelBytesPerPixel(uint32_t code) {
  return vorel::Answers(code).bytesPerPixel;
}

extern "C" uint32_t VorelChromaKind(uint32_t code) {
  return vorel::Answers(code).chromaKind;
}

extern "C" uint32_t VorelComponentCount(uint32_t code) {
  return vorel::Answers(code).componentCount;
}

extern "C" int VorelHasAlpha(uint32_t code) {
  return vorel::Answers(code).componentCount == 4 ? 1 : 0;
}

extern "C" uint32_t VorelSignificantBits(uint32_t code) {
  return vorel::Answers(code).significantBits;
}
