// The decompressors of a clip, one for each thread that comes by.
#pragma once
#include <oneapi/tbb/enumerable_thread_specific.h>

#include "tool/clips.h"
#include "tool/component_coder.h"

namespace vorel::tool {

// Refers to its clip, which outlives it.
struct ClipDecompressors {
  // A decompressor goes with the description of the frames that it was opened for.
  struct OfThread {
    FrameDecompressor decompressor;
    std::optional<u32> description;
  };

  ClipDecompressors(const MovieClip& movieClip, const DecodedClip& decodedClip)
      : clip(movieClip), decoded(decodedClip) {}

  // On any thread: see DecompressFrame.
  FrameEnd Decompress(u64 frame, const std::vector<u8>& bytes, picture_io::Picture& picture);

  // Memory that is kept from frame to frame, on all threads together.
  u64 BytesTaken() const;

  const MovieClip& clip;
  const DecodedClip& decoded;
  tbb::enumerable_thread_specific<OfThread> threads;
};

}  // namespace vorel::tool
