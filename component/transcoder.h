// Transcoders: samples of uncompressed video become frames, without a compression sequence of the host. The five
// differ in the pixel formats that they read; the frames are of the family for which the pixel format is made.
#pragma once
#include "component/compressor.h"

namespace vorel::component {

struct Transcoder {
  ComponentInstance self;
  ComponentInstance target;
  HostFacts host;
  u32 fields;                          // 1 or 2
  u32 pixelFormat;                     // of the samples
  u32 mode;                            // kModeOneWay, or self-check
  ImageDescriptionHandle description;  // of the frames; the caller's between the sequence's begin and end
  u32 width;
  u32 height;
  u32 frames;
  WorkMemory picture;  // of the self-check
  WorkMemory rowStore;
  u32 tag;  // 0 for none
  bool keepsAlpha;
  const ComponentRow* row;
};

// Functions of the selectors. A null instance gives paramErr, but for Close.
ComponentResult OpenTranscoder(ComponentInstance self, const ComponentRow& row);
ComponentResult CloseTranscoder(Transcoder* instance, ComponentInstance self);
ComponentResult SetTranscoderTarget(Transcoder* instance, ComponentInstance target);
ComponentResult BeginTranscoding(Transcoder* instance, ImageDescriptionHandle source,
                                 ImageDescriptionHandle* result, void* data, i32 dataSize);
ComponentResult Transcode(Transcoder* instance, void* data, i32 dataSize, void** frame, i32* frameSize);
ComponentResult DisposeFrame(Transcoder* instance, void* frame);
ComponentResult EndTranscoding(Transcoder* instance);

// Bytes between two rows of an uncompressed sample, and 0 for a pixel format that no transcoder reads.
u32 SampleRowBytes(u32 pixelFormat, u32 width);

}  // namespace vorel::component
