// Frames on their way through the base image decompressor, and the threads that draw them. The threads serve all
// base decompressors of the host and start with the first frame.
#pragma once
#include <optional>

#include "component/host_types.h"

namespace vorel::component::embedded {

enum class FrameState { waiting, drawing, done };

// State and result belong to the queue's lock from StartDrawing on, until the frame is done.
struct BaseFrame {
  ImageSubCodecDecompressRecord record;
  void* userRecord;  // kept from frame to frame as it is
  ICMCompletionProcRecord completion;
  ComponentInstance target;
  ImageCodecMPDrawBand draw;  // null: the target's DrawBand is called
  void* drawRefCon;
  const void* base;  // whose frame it is
  FrameState state;
  ComponentResult result;  // of drawing
};

/// Draws a frame in the calling thread; it is done then.
void DrawNow(BaseFrame& frame);

/// Lets one of the threads draw the frame, which stays where it is until it is done.
void StartDrawing(BaseFrame& frame);

bool IsDone(const BaseFrame& frame);
void WaitUntilDone(const BaseFrame& frame);

/// Draws the first waiting frame of a base decompressor in the calling thread. False if none waits.
bool DrawWaitingFrame(const void* base);

u32 BaseThreads();
void SetBaseThreads(std::optional<u32> count);  // none: one a processor

/// Ends the threads. Frames that are being drawn are drawn to their end, others are forgotten.
void StopBaseThreads();

}  // namespace vorel::component::embedded
