// The compressors of a clip, one for each thread that comes by, and what they are told.
#pragma once
#include <oneapi/tbb/enumerable_thread_specific.h>

#include "tool/component_coder.h"

namespace vorel::tool {

// What a clip's movie is to be, beyond the coding of its frames.
struct MovieChoice {
  bool isGeneric = false;  // its compression type is the generic one, not that of the frames' family
  bool selfCheck = false;
};

// Changes a coding so that its compressor can check its frames, where another one makes the same frames. Throws
// Problem that names `name` and says why if none can, or if no check can pass because frames don't hold the
// pictures whole.
void AllowSelfCheck(FrameCoding& coding, const picture_io::ClipFormat& format, u32 sampleBits,
                    const MovieChoice& choice, const std::string& name);

Compression CompressionOfClip(const picture_io::ClipFormat& format, const FrameCoding& coding,
                              const MovieChoice& choice);

struct ClipCompressors {
  // On any thread: see CompressFrame. Stores the description that the frame's compressor has completed.
  void Compress(u64 frame, picture_io::Picture& picture, FrameBuffer& buffer,
                container::SampleDescription& description);

  std::string name;  // of the clip, for people
  FrameCoding coding;
  Compression compression;
  tbb::enumerable_thread_specific<FrameCompressor> threads = {};
};

}  // namespace vorel::tool
