// The frames of one base image decompressor, from the call for a band to the completion procedure.
#pragma once
#include <deque>
#include <memory>
#include <mutex>
#include <vector>

#include "component/embedded/base_queue.h"

namespace vorel::component::embedded {

using FramePointer = std::unique_ptr<BaseFrame>;

struct BaseDecompressor {
  // Calls from several threads come one after the other; a completion procedure may call again.
  std::recursive_mutex calls;
  ComponentInstance target;
  bool initialized;
  bool canAsync;
  std::size_t userRecordBytes;
  ImageCodecMPDrawBand draw;  // from the target's request for a work function
  void* drawRefCon;
  bool queueRuns;                 // the target knows that frames are in flight
  i32 beginning;                  // frames whose BeginBand is not over
  std::deque<FramePointer> busy;  // begun, in order
  std::vector<FramePointer> idle;
};

/// Begins a frame, draws it in the calling thread and ends it, after all frames before it.
ComponentResult DecompressNow(BaseDecompressor& base, CodecDecompressParams& parameters);

/// Begins a frame and leaves it to the threads.
ComponentResult DecompressLater(BaseDecompressor& base, CodecDecompressParams& parameters);

/// Ends the frames that are done, up to the first that is not.
void EndDoneFrames(BaseDecompressor& base);

/// Waits for every frame and ends it.
void EndAllFrames(BaseDecompressor& base);

/// Frees the memory of frames that are not in flight.
void FreeIdleFrames(BaseDecompressor& base);

}  // namespace vorel::component::embedded
