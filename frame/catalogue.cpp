#include "frame/catalogue.h"

#include "frame/frame_tags.h"
#include "pixel/pixel_layout.h"
#include "vorel/frame_routines.h"

namespace vorel {

#define VOREL_DECLARE_ENCODE_RUN(K, LAYOUT, SCAN, PIXEL) \
  Status Vorel##LAYOUT##SCAN##From##PIXEL##EncodeRun(const FrameCall&);
#define VOREL_DECLARE_DECODE_RUN(K, LAYOUT, SCAN, PIXEL) \
  Status Vorel##LAYOUT##SCAN##To##PIXEL##DecodeRun(const FrameCall&);
VOREL_ENCODERS(VOREL_DECLARE_ENCODE_RUN, p)
VOREL_ENCODERS(VOREL_DECLARE_ENCODE_RUN, i)
VOREL_DECODERS(VOREL_DECLARE_DECODE_RUN, p)
VOREL_DECODERS(VOREL_DECLARE_DECODE_RUN, i)
#undef VOREL_DECLARE_ENCODE_RUN
#undef VOREL_DECLARE_DECODE_RUN

namespace {

// Whether a routine of a list takes a colour standard, by the letter of the list.
constexpr bool kMatrixS = false;
[[maybe_unused]] constexpr bool kMatrixM = true;

#define VOREL_ROUTINE(DIRECTION, NAME, K, LAYOUT, SCAN, PIXEL, SCRATCH) \
  FrameRoutine{#NAME,                                                   \
               Direction::DIRECTION,                                    \
               &LAYOUT,                                                 \
               Scan::SCAN,                                              \
               Px##PIXEL.code,                                          \
               kMatrix##K,                                              \
               SCRATCH,                                                 \
               NAME##Run,                                               \
               NAME},
#define VOREL_ENCODE_ROUTINE(K, LAYOUT, SCAN, PIXEL) \
  VOREL_ROUTINE(encode, Vorel##LAYOUT##SCAN##From##PIXEL##Encode, K, LAYOUT, SCAN, PIXEL, false)
#define VOREL_DECODE_ROUTINE(K, LAYOUT, SCAN, PIXEL) \
  VOREL_ROUTINE(decode, Vorel##LAYOUT##SCAN##To##PIXEL##Decode, K, LAYOUT, SCAN, PIXEL, Scan::SCAN == Scan::p)

constinit const FrameRoutine kRoutines[] = {
    // clang-format off
    VOREL_ENCODERS(VOREL_ENCODE_ROUTINE, p)
    VOREL_ENCODERS(VOREL_ENCODE_ROUTINE, i)
    VOREL_DECODERS(VOREL_DECODE_ROUTINE, p)
    VOREL_DECODERS(VOREL_DECODE_ROUTINE, i)
    // clang-format on
};
#undef VOREL_ROUTINE
#undef VOREL_ENCODE_ROUTINE
#undef VOREL_DECODE_ROUTINE

#define VOREL_COUNT_ONE(K, LAYOUT, SCAN, PIXEL) +1
static_assert((0 VOREL_ENCODERS(VOREL_COUNT_ONE, p) VOREL_ENCODERS(VOREL_COUNT_ONE, i)) == 2);
static_assert((0 VOREL_DECODERS(VOREL_COUNT_ONE, p) VOREL_DECODERS(VOREL_COUNT_ONE, i)) == 2);
#undef VOREL_COUNT_ONE

}  // namespace

std::span<const FrameRoutine> AllRoutines() {
  return kRoutines;
}

const FrameRoutine* FindRoutine(Direction direction, u32 pixelFormat, u32 tag) {
  for (const FrameRoutine& routine : kRoutines) {
    if (routine.direction == direction && routine.pixelFormat == pixelFormat &&
        routine.layout->tags[static_cast<std::size_t>(Index(routine.scan))] == tag) {
      return &routine;
    }
  }
  return nullptr;
}

}  // namespace vorel
