// The proof of a frame: it is decoded again and compared with its picture.
#pragma once
#include "component/compressor.h"

namespace vorel::component {

// A picture and the frame that was made of it.
struct CheckedFrame {
  OSType hostFormat;  // the comparison goes by it where it knows it, else by pixelFormat
  u32 pixelFormat;    // that it is coded as
  u32 formatChoice;   // VOREL_KEEP_ALPHA, VOREL_INTERLACED
  u32 width;
  u32 height;
  i32 rowBytes;
  const u8* base;
  u32 colourStandard;
  const u32* frame;
  u32 wordCursor;  // where the encoder has stopped
  u32 bitCursor;
  u32 flags;
};

// codecConditionErr if the frame can't be decoded or the pixel format not be compared, codecBadDataErr if
// anything differs, memFullErr.
OSErr CheckFrame(Compressor& instance, const CheckedFrame& checked);

}  // namespace vorel::component
