#include "frame/catalogue.h"

#include <array>

#include "frame/frame_tags.h"
#include "frame/member_macros.h"
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
constexpr bool kMatrixM = true;

#define VOREL_ROUTINE(DIRECTION, NAME, K, LAYOUT, SCAN, PIXEL, SCRATCH) \
  FrameRoutine{ReportedName(#NAME),                                     \
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

constexpr FrameRoutine kRoutines[] = {
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

constexpr std::size_t CountRoutines(Direction direction) {
  std::size_t count = 0;
  for (const FrameRoutine& routine : kRoutines) count += routine.direction == direction ? 1 : 0;
  return count;
}
static_assert(CountRoutines(Direction::decode) == 698 && CountRoutines(Direction::encode) == 384);

// The pixel formats of the routines, in the order in which they first appear.
struct PixelFormats {
  std::array<u32, 28> codes;
  std::size_t count;
};

constexpr std::size_t NumberOf(u32 pixelFormat, const PixelFormats& formats) {
  std::size_t number = 0;
  while (number < formats.count && formats.codes[number] != pixelFormat) ++number;
  return number;
}

constexpr PixelFormats kPixelFormats = [] {
  PixelFormats formats{};
  for (const FrameRoutine& routine : kRoutines) {
    const std::size_t number = NumberOf(routine.pixelFormat, formats);
    if (number == formats.count) formats.codes[formats.count++] = routine.pixelFormat;
  }
  return formats;
}();
static_assert(kPixelFormats.count == kPixelFormats.codes.size());

// By tag: addresses are no constants where a sanitizer moves them.
constexpr std::size_t NumberOf(const FrameLayout* layout) {
  std::size_t number = 0;
  while (kFrameLayouts[number]->tags != layout->tags) ++number;
  return number;
}

// Routine numbers by direction, pixel format, layout and scan, from 1 on; 0 where there is none.
using RoutineNumbers = std::array<std::array<std::array<u16, 2>, kFrameLayouts.size()>, 28>;

constexpr std::array<RoutineNumbers, 2> kMatrix = [] {
  std::array<RoutineNumbers, 2> matrix{};
  u16 number = 0;
  for (const FrameRoutine& routine : kRoutines) {
    u16& place =
        matrix[static_cast<std::size_t>(routine.direction)][NumberOf(routine.pixelFormat, kPixelFormats)]
              [NumberOf(routine.layout)][static_cast<std::size_t>(Index(routine.scan))];
    // A pair that stood in two lists would not compile.
    if (place != 0) throw "two routines for one pair";
    place = ++number;
  }
  return matrix;
}();

}  // namespace

std::span<const FrameRoutine> AllRoutines() {
  return kRoutines;
}

const FrameRoutine* FindRoutine(Direction direction, u32 pixelFormat, u32 tag) {
  const std::size_t format = NumberOf(pixelFormat, kPixelFormats);
  const TaggedLayout found = LayoutOfTag(tag);
  if (format == kPixelFormats.count || found.layout == nullptr) return nullptr;
  const u16 number = kMatrix[static_cast<std::size_t>(direction)][format][NumberOf(found.layout)]
                            [static_cast<std::size_t>(Index(found.scan))];
  return number == 0 ? nullptr : &kRoutines[number - 1];
}

}  // namespace vorel
