// The arguments of one call of a frame routine, gathered: the exported routines differ in their argument
// lists, the row loops take this record.
#pragma once
#include <limits>

#include "base/integers.h"

namespace vorel {

struct FrameCall {
  u32 width;           // pixels
  u32 height;          // rows
  i32 rowBytes;        // distance of two rows; negative for a bottom-up picture
  u8* base;            // lowest address of the picture; only read by encoders
  u32 colourStandard;  // unused where frame and picture have one colour model
  u32* wordCursor;     // see frame/stream_cursor.h
  u32* bitCursor;
  u8* frame;      // 4-byte aligned; only read by decoders
  void* scratch;  // row buffer of the decoders of progressive frames
  std::size_t readableFrom =
      0;  // which bytes of the frame a decoder may load, as offsets from `frame`; others read as zero
  std::size_t readableTo = std::numeric_limits<std::size_t>::max();
};

}  // namespace vorel
