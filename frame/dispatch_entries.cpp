// The exported functions that are not frame routines: eight each of lenient decode, encode and strict decode,
// the bounded decode, sizes, tags and headers.
#include "frame/dispatch.h"
#include "frame/frame_bounds.h"
#include "frame/frame_tags.h"
#include "frame/member_macros.h"
#include "frame/tag_rules.h"
#include "vorel/pixel_formats.h"

namespace {

using vorel::FrameCall;
using vorel::Writable;

constexpr std::size_t kNoEnd = std::numeric_limits<std::size_t>::max();

VorelStatus DecodeAny(VorelFamily family, vorel::u32 pixelFormat, vorel::u32 width, vorel::u32 height,
                      vorel::i32 rowBytes, void* base, vorel::u32 colourStandard, vorel::u32* wordCursor,
                      vorel::u32* bitCursor, const void* frame, std::size_t readableBytes, vorel::u32 flags,
                      void* scratch) {
  const FrameCall call = {width,          height,     rowBytes,  Writable<vorel::u8>(base),
                          colourStandard, wordCursor, bitCursor, Writable<vorel::u8>(frame),
                          scratch};
  return static_cast<VorelStatus>(vorel::DecodeLenient(family, pixelFormat, call, readableBytes, flags));
}

}  // namespace

extern "C" {

VorelStatus VorelDecodeBounded(VorelFamily family, uint32_t pixelFormat, uint32_t width, uint32_t height,
                               int32_t rowBytes, void* base, uint32_t colourStandard, uint32_t* wordCursor,
                               uint32_t* bitCursor, const void* frame, size_t readableBytes, uint32_t flags,
                               void* scratch) {
  // The argument check multiplies in 32 bits; up to this width its products are true.
  if (width > VOREL_MOST_BOUNDED_WIDTH) return VOREL_BAD_WIDTH;
  // It counts significant bits besides, of which a pixel may have fewer than bits that are stored.
  const vorel::i64 distance = rowBytes;
  if (static_cast<vorel::u64>(distance < 0 ? -distance : distance) < VorelRowBytes(pixelFormat, width))
    return VOREL_ROW_TOO_SHORT;
  return DecodeAny(family, pixelFormat, width, height, rowBytes, base, colourStandard, wordCursor, bitCursor,
                   frame, readableBytes, flags, scratch);
}

#define VOREL_FAMILY_ENTRIES(FAMILY, NUMBER, COLOUR_PARAMETER, COLOUR)                                       \
  VorelStatus Vorel##FAMILY##LenientDecode(uint32_t pixelFormat, uint32_t width, uint32_t height,            \
                                           int32_t rowBytes, void* base, uint32_t colourStandard,            \
                                           uint32_t* wordCursor, uint32_t* bitCursor, const uint32_t* frame, \
                                           uint32_t flags, void* scratch) {                                  \
    return DecodeAny(NUMBER, pixelFormat, width, height, rowBytes, base, colourStandard, wordCursor,         \
                     bitCursor, frame, kNoEnd, flags, scratch);                                              \
  }                                                                                                          \
  VorelStatus Vorel##FAMILY##Encode(uint32_t pixelFormat, uint32_t formatChoice, uint32_t width,             \
                                    uint32_t height, int32_t rowBytes, const void* base COLOUR_PARAMETER,    \
                                    uint32_t* wordCursor, uint32_t* bitCursor, uint32_t* frame,              \
                                    uint32_t flags) {                                                        \
    const FrameCall call = {width,  height,     rowBytes,  Writable<vorel::u8>(base),                        \
                            COLOUR, wordCursor, bitCursor, Writable<vorel::u8>(frame),                       \
                            nullptr};                                                                        \
    return static_cast<VorelStatus>(vorel::Encode(NUMBER, pixelFormat, formatChoice, call, flags));          \
  }                                                                                                          \
  VorelStatus Vorel##FAMILY##StrictDecode(uint32_t pixelFormat, uint32_t formatChoice, uint32_t width,       \
                                          uint32_t height, int32_t rowBytes, void* base COLOUR_PARAMETER,    \
                                          uint32_t* wordCursor, uint32_t* bitCursor, const uint32_t* frame,  \
                                          uint32_t flags, void* scratch) {                                   \
    const FrameCall call = {width,  height,     rowBytes,  Writable<vorel::u8>(base),                        \
                            COLOUR, wordCursor, bitCursor, Writable<vorel::u8>(frame),                       \
                            scratch};                                                                        \
    return static_cast<VorelStatus>(vorel::DecodeStrict(NUMBER, pixelFormat, formatChoice, call, flags));    \
  }
#define VOREL_COLOUR_PARAMETER , uint32_t colourStandard

VOREL_FAMILY_ENTRIES(Generic, VOREL_GENERIC, , 0)
VOREL_FAMILY_ENTRIES(RGB10bf, VOREL_RGB_10BF, VOREL_COLOUR_PARAMETER, colourStandard)
VOREL_FAMILY_ENTRIES(RGB8bf, VOREL_RGB_8BF, VOREL_COLOUR_PARAMETER, colourStandard)
VOREL_FAMILY_ENTRIES(YCbCr10bv444, VOREL_YCBCR_10BV_444, VOREL_COLOUR_PARAMETER, colourStandard)
VOREL_FAMILY_ENTRIES(YCbCr8b444, VOREL_YCBCR_8B_444, VOREL_COLOUR_PARAMETER, colourStandard)
VOREL_FAMILY_ENTRIES(YCbCr10bv422, VOREL_YCBCR_10BV_422, VOREL_COLOUR_PARAMETER, colourStandard)
VOREL_FAMILY_ENTRIES(YCbCr8bv422, VOREL_YCBCR_8BV_422, VOREL_COLOUR_PARAMETER, colourStandard)
VOREL_FAMILY_ENTRIES(YCbCr8bw422, VOREL_YCBCR_8BW_422, VOREL_COLOUR_PARAMETER, colourStandard)
#undef VOREL_FAMILY_ENTRIES
#undef VOREL_COLOUR_PARAMETER

uint32_t VorelMaxFrameBytes(uint32_t tag, uint32_t width, uint32_t height) {
  return vorel::MaxFrameBytesOfTag(tag, width, height);
}

uint32_t VorelNormalizeFormatTag(uint32_t word) {
  return vorel::NormalizeFormatTag(word);
}

uint32_t VorelChooseFormatTag(VorelFamily family, uint32_t pixelFormat, uint32_t formatChoice) {
  return vorel::ChooseTag(family, pixelFormat, formatChoice);
}

uint32_t VorelSubtypeOfTag(uint32_t tag) {
  return vorel::FamilyOfTag(tag);
}

int VorelHasFrameSignature(VorelFamily family, const void* frame, size_t readableBytes) {
  return vorel::HasSignature(family, Writable<vorel::u8>(frame), readableBytes) ? 1 : 0;
}

void VorelWriteFrameHeader(uint32_t tag, void* frame) {
  vorel::WriteHeader(tag, Writable<vorel::u8>(frame));
}

uint32_t VorelScratchBytes(uint32_t width) {
  return vorel::RowStoreBytes(width);
}

uint32_t VorelRowStoreBytes(uint32_t tag, uint32_t width) {
  return vorel::RowStoreBytesOfTag(tag, width);
}

}  // extern "C"
