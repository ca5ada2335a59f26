#include "component/family_dispatch.h"

#include <array>

namespace vorel::component {

namespace {

using Encode = decltype(VorelRGB8bfEncode);
using StrictDecode = decltype(VorelRGB8bfStrictDecode);

struct FamilyFunctions {
  Encode* encode;  // null for the generic family, whose functions have another shape
  StrictDecode* decode;
};

// By VorelFamily.
constexpr std::array<FamilyFunctions, VOREL_YCBCR_8BW_422 + 1> kFunctions = {{
    {nullptr, nullptr},
    {VorelRGB10bfEncode, VorelRGB10bfStrictDecode},
    {VorelRGB8bfEncode, VorelRGB8bfStrictDecode},
    {VorelYCbCr10bv444Encode, VorelYCbCr10bv444StrictDecode},
    {VorelYCbCr8b444Encode, VorelYCbCr8b444StrictDecode},
    {VorelYCbCr10bv422Encode, VorelYCbCr10bv422StrictDecode},
    {VorelYCbCr8bv422Encode, VorelYCbCr8bv422StrictDecode},
    {VorelYCbCr8bw422Encode, VorelYCbCr8bw422StrictDecode},
}};

}  // namespace

VorelStatus EncodePicture(VorelFamily family, u32 pixelFormat, u32 formatChoice, u32 width, u32 height,
                          i32 rowBytes, const void* base, u32 colourStandard, u32* wordCursor, u32* bitCursor,
                          u32* frame, u32 flags) {
  if (family == VOREL_GENERIC) {
    return VorelGenericEncode(pixelFormat, formatChoice, width, height, rowBytes, base, wordCursor, bitCursor,
                              frame, flags);
  }
  return kFunctions[family].encode(pixelFormat, formatChoice, width, height, rowBytes, base, colourStandard,
                                   wordCursor, bitCursor, frame, flags);
}

VorelStatus DecodeStrictly(VorelFamily family, u32 pixelFormat, u32 formatChoice, u32 width, u32 height,
                           i32 rowBytes, void* base, u32 colourStandard, u32* wordCursor, u32* bitCursor,
                           const u32* frame, u32 flags, void* scratch) {
  if (family == VOREL_GENERIC) {
    return VorelGenericStrictDecode(pixelFormat, formatChoice, width, height, rowBytes, base, wordCursor,
                                    bitCursor, frame, flags, scratch);
  }
  return kFunctions[family].decode(pixelFormat, formatChoice, width, height, rowBytes, base, colourStandard,
                                   wordCursor, bitCursor, frame, flags, scratch);
}

}  // namespace vorel::component
