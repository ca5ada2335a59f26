// What a frame routine returns: a closed set, in the order of the public constants.
#pragma once
#include "base/integers.h"
#include "vorel/frame_codec.h"

namespace vorel {

enum class Status : u32 {
  complete = VOREL_COMPLETE,
  frameBoundWritten = VOREL_FRAME_BOUND_WRITTEN,
  rowLeftPictureDecode = VOREL_ROW_LEFT_PICTURE_DECODE,
  rowBufferOverrun = VOREL_ROW_BUFFER_OVERRUN,
  frameBoundRead = VOREL_FRAME_BOUND_READ,
  rowLeftPictureEncode = VOREL_ROW_LEFT_PICTURE_ENCODE,
  picturesDiffer = VOREL_PICTURES_DIFFER,
  noRoutine = VOREL_NO_ROUTINE,
  badWidth = VOREL_BAD_WIDTH,
  badHeight = VOREL_BAD_HEIGHT,
  rowTooShort = VOREL_ROW_TOO_SHORT,
  baseMissing = VOREL_BASE_MISSING,
  pictureMisaligned = VOREL_PICTURE_MISALIGNED,
  wordCursorMissing = VOREL_WORD_CURSOR_MISSING,
  wordCursorMisaligned = VOREL_WORD_CURSOR_MISALIGNED,
  bitCursorMissing = VOREL_BIT_CURSOR_MISSING,
  bitCursorMisaligned = VOREL_BIT_CURSOR_MISALIGNED,
  frameMissing = VOREL_FRAME_MISSING,
  frameMisaligned = VOREL_FRAME_MISALIGNED,
  scratchMissing = VOREL_SCRATCH_MISSING,
};

}  // namespace vorel
