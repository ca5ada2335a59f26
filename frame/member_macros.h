// How a row of the catalogue becomes routines: VOREL_DEFINE_MEMBERS(layout) defines every exported routine of
// a layout, and beside each the form that the dispatch calls, which takes one record.
//
// A file that uses it provides EncodeFrame<Layout, Scan, Pixel> and DecodeFrame<Layout, Scan, Pixel> in
// namespace vorel, both from (const FrameCall&, const char* routineName) to Status.
#pragma once
#include <string_view>

#include "frame/frame_call.h"
#include "frame/instruction_set.h"
#include "frame/status.h"
#include "vorel/frame_routines.h"

namespace vorel {

// The source of an encoder and the frame of a decoder are only read, but the record of a call serves both
// directions.
template <typename To>
To* Writable(const void* pointer) {
  return static_cast<To*>(const_cast<void*>(pointer));
}

// The name that a routine goes by in the table and in its argument check: its own, but for one that has borne its
// neighbour's from the beginning.
constexpr const char* ReportedName(const char* name) {
  return std::string_view(name) == "VorelYCbCr8bv444pToBGRDecode" ? "VorelYCbCr8bv444pToRGBDecode" : name;
}

}  // namespace vorel

#define VOREL_COLOUR_PARAMETER_S
#define VOREL_COLOUR_PARAMETER_M uint32_t colourStandard,
#define VOREL_COLOUR_VALUE_S 0
#define VOREL_COLOUR_VALUE_M colourStandard

#define VOREL_GATHER_CALL(K, SCRATCH)                                                              \
  {                                                                                                \
    width, height, rowBytes, vorel::Writable<vorel::u8>(base), VOREL_COLOUR_VALUE_##K, wordCursor, \
        bitCursor, vorel::Writable<vorel::u8>(frame), SCRATCH                                      \
  }

// The routine as it is compiled for one instruction set, and the choice between them.
#define VOREL_DEFINE_BODY(DIRECTION, NAME, LAYOUT, SCAN, PIXEL)          \
  namespace vorel::inline VOREL_INSTRUCTIONS {                           \
  Status NAME##Body(const FrameCall& call) {                             \
    constexpr const char* kName = ReportedName(#NAME);                   \
    return DIRECTION##Frame<LAYOUT, Scan::SCAN, Px##PIXEL>(call, kName); \
  }                                                                      \
  }
#ifdef VOREL_WITH_AVX2
#define VOREL_DEFINE_RUN(NAME)                                                         \
  namespace vorel {                                                                    \
  namespace avx2 {                                                                     \
  Status NAME##Body(const FrameCall& call);                                            \
  }                                                                                    \
  Status NAME##Run(const FrameCall& call) {                                            \
    return InstructionSetInUse() == InstructionSet::avx2 ? avx2::NAME##Body(call)      \
                                                         : baseline::NAME##Body(call); \
  }                                                                                    \
  }
#else
#define VOREL_DEFINE_RUN(NAME)              \
  namespace vorel {                         \
  Status NAME##Run(const FrameCall& call) { \
    return baseline::NAME##Body(call);      \
  }                                         \
  }
#endif

#define VOREL_DEFINE_ENCODE(K, LAYOUT, SCAN, PIXEL)                                            \
  VOREL_DEFINE_BODY(Encode, Vorel##LAYOUT##SCAN##From##PIXEL##Encode, LAYOUT, SCAN, PIXEL)     \
  VOREL_DEFINE_RUN(Vorel##LAYOUT##SCAN##From##PIXEL##Encode)                                   \
  extern "C" VorelStatus Vorel##LAYOUT##SCAN##From##PIXEL##Encode(                             \
      uint32_t width, uint32_t height, int32_t rowBytes, const void* base,                     \
      VOREL_COLOUR_PARAMETER_##K uint32_t* wordCursor, uint32_t* bitCursor, uint32_t* frame) { \
    const vorel::FrameCall call = VOREL_GATHER_CALL(K, nullptr);                               \
    return static_cast<VorelStatus>(vorel::Vorel##LAYOUT##SCAN##From##PIXEL##EncodeRun(call)); \
  }

#define VOREL_DEFINE_DECODE(K, LAYOUT, SCAN, PIXEL, SCRATCH_PARAMETER, SCRATCH)              \
  VOREL_DEFINE_BODY(Decode, Vorel##LAYOUT##SCAN##To##PIXEL##Decode, LAYOUT, SCAN, PIXEL)     \
  VOREL_DEFINE_RUN(Vorel##LAYOUT##SCAN##To##PIXEL##Decode)                                   \
  extern "C" VorelStatus Vorel##LAYOUT##SCAN##To##PIXEL##Decode(                             \
      uint32_t width, uint32_t height, int32_t rowBytes, void* base,                         \
      VOREL_COLOUR_PARAMETER_##K uint32_t* wordCursor, uint32_t* bitCursor,                  \
      const uint32_t* frame SCRATCH_PARAMETER) {                                             \
    const vorel::FrameCall call = VOREL_GATHER_CALL(K, SCRATCH);                             \
    return static_cast<VorelStatus>(vorel::Vorel##LAYOUT##SCAN##To##PIXEL##DecodeRun(call)); \
  }
#define VOREL_SCRATCH_PARAMETER , void* scratch
#define VOREL_DEFINE_DECODE_P(K, LAYOUT, SCAN, PIXEL) \
  VOREL_DEFINE_DECODE(K, LAYOUT, SCAN, PIXEL, VOREL_SCRATCH_PARAMETER, scratch)
#define VOREL_DEFINE_DECODE_I(K, LAYOUT, SCAN, PIXEL) VOREL_DEFINE_DECODE(K, LAYOUT, SCAN, PIXEL, , nullptr)

#ifdef VOREL_IS_BASELINE
#define VOREL_DEFINE_MEMBERS(LAYOUT)                                                              \
  VOREL_ENCODERS_##LAYOUT(VOREL_DEFINE_ENCODE, p) VOREL_ENCODERS_##LAYOUT(VOREL_DEFINE_ENCODE, i) \
      VOREL_DECODERS_##LAYOUT(VOREL_DEFINE_DECODE_P, p) VOREL_DECODERS_##LAYOUT(VOREL_DEFINE_DECODE_I, i)
#else
// For another instruction set: the bodies alone.
#define VOREL_DEFINE_ENCODE_BODY(K, LAYOUT, SCAN, PIXEL) \
  VOREL_DEFINE_BODY(Encode, Vorel##LAYOUT##SCAN##From##PIXEL##Encode, LAYOUT, SCAN, PIXEL)
#define VOREL_DEFINE_DECODE_BODY(K, LAYOUT, SCAN, PIXEL) \
  VOREL_DEFINE_BODY(Decode, Vorel##LAYOUT##SCAN##To##PIXEL##Decode, LAYOUT, SCAN, PIXEL)
#define VOREL_DEFINE_MEMBERS(LAYOUT)                                                                        \
  VOREL_ENCODERS_##LAYOUT(VOREL_DEFINE_ENCODE_BODY, p) VOREL_ENCODERS_##LAYOUT(VOREL_DEFINE_ENCODE_BODY, i) \
      VOREL_DECODERS_##LAYOUT(VOREL_DEFINE_DECODE_BODY, p)                                                  \
          VOREL_DECODERS_##LAYOUT(VOREL_DEFINE_DECODE_BODY, i)
#endif
