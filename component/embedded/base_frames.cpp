// Frames are begun and ended here, one at a time; how they are drawn in between is the queue's matter.
#include "component/embedded/base_frames.h"

#include <optional>

#include "component/embedded/embedded_host.h"
#include "component/embedded/operations.h"
#include "component/embedded/pixel_formats.h"
#include "component/host_errors.h"
#include "component/selectors.h"

namespace vorel::component::embedded {

namespace {

constexpr i16 kSourceAndDestinationDone = 3;

void FreeFrame(FramePointer frame) {
  Free(frame->userRecord);
}

// Null without memory.
FramePointer TakeFrame(BaseDecompressor& base) {
  if (!base.idle.empty()) {
    FramePointer frame = std::move(base.idle.back());
    base.idle.pop_back();
    return frame;
  }
  auto frame = std::make_unique<BaseFrame>();
  if (base.userRecordBytes == 0) return frame;
  frame->userRecord = Allocate(base.userRecordBytes);
  return frame->userRecord == nullptr ? nullptr : std::move(frame);
}

// --- Ending frames ---

ComponentResult EndBand(const BaseDecompressor& base, BaseFrame& frame) {
  const ComponentResult ended =
      CallSelector(base.target, kImageCodecEndBandSelect, &frame.record, static_cast<OSErr>(frame.result), 0);
  return frame.result != noErr ? frame.result : ended;
}

// The frame may serve again while its completion procedure runs.
ComponentResult EndFrame(BaseDecompressor& base, FramePointer frame) {
  const ComponentResult result = EndBand(base, *frame);
  const ICMCompletionProcRecord completion = frame->completion;
  base.idle.push_back(std::move(frame));
  if (completion.completionProc == nullptr) return result;
  completion.completionProc(static_cast<OSErr>(result), kSourceAndDestinationDone,
                            completion.completionRefCon);
  return noErr;
}

void EndFirst(BaseDecompressor& base) {
  FramePointer frame = std::move(base.busy.front());
  base.busy.pop_front();
  EndFrame(base, std::move(frame));
}

void EndDone(BaseDecompressor& base) {
  while (!base.busy.empty() && IsDone(*base.busy.front())) EndFirst(base);
}

void StartQueue(BaseDecompressor& base) {
  if (base.queueRuns) return;
  base.queueRuns = true;
  CallSelector(base.target, kImageCodecQueueStartingSelect);
}

void StopQueueIfIdle(BaseDecompressor& base) {
  if (!base.queueRuns || !base.busy.empty() || base.beginning > 0) return;
  base.queueRuns = false;
  CallSelector(base.target, kImageCodecQueueStoppingSelect);
}

// --- Beginning frames ---

// Whether the whole picture lies inside the map when its first pixel is at (left, top) of it: the target draws
// all of it.
bool Fits(const CodecDecompressParams& parameters, i32 left, i32 top) {
  const Rect& bounds = parameters.dstPixMap.bounds;
  if (left < 0 || top < 0) return false;
  if (parameters.imageDescription == nullptr) return true;  // the target refuses the call
  const ImageDescription& description = **parameters.imageDescription;
  return left + description.width <= bounds.right - bounds.left &&
         top + description.height <= bounds.bottom - bounds.top;
}

// First pixel of the destination: that of the destination rectangle, or of the map if the rectangle is empty.
// None if the picture does not fit there, or if no pixel can start there alone.
std::optional<Ptr> DestinationStart(const CodecDecompressParams& parameters, i32 rowBytes) {
  const PixMap& map = parameters.dstPixMap;
  const Rect& rect = parameters.dstRect;
  const bool wholeMap = rect.right <= rect.left || rect.bottom <= rect.top;
  const i32 left = wholeMap ? 0 : rect.left - map.bounds.left;
  const i32 top = wholeMap ? 0 : rect.top - map.bounds.top;
  if (!Fits(parameters, left, top)) return std::nullopt;
  const OSType format = map.pixelFormat != 0 ? map.pixelFormat : static_cast<OSType>(map.pixelSize);
  const std::optional<i64> bytesInRow = BytesToPixel(format, left);
  if (!bytesInRow) return std::nullopt;
  if (map.baseAddr == nullptr) return map.baseAddr;  // the target refuses it
  return map.baseAddr + i64{top} * rowBytes + *bytesInRow;
}

bool FillRecord(CodecDecompressParams& parameters, BaseFrame& frame) {
  const i32 rowBytes = QTGetPixMapPtrRowBytes(&parameters.dstPixMap);
  const std::optional<Ptr> start = DestinationStart(parameters, rowBytes);
  if (!start) return false;
  frame.record = {};
  frame.record.baseAddr = *start;
  frame.record.rowBytes = rowBytes;
  frame.record.codecData = parameters.data;
  frame.record.progressProcRecord = parameters.progressProcRecord;
  frame.record.dataProcRecord = parameters.dataProcRecord;
  frame.record.userDecompressRecord = frame.userRecord;
  return true;
}

// Frames in flight hold what a target runs out of: while there are any, the oldest one is waited for.
ComponentResult BeginBand(BaseDecompressor& base, CodecDecompressParams& parameters, BaseFrame& frame) {
  while (true) {
    if (!FillRecord(parameters, frame)) return paramErr;
    const ComponentResult result =
        CallSelector(base.target, kImageCodecBeginBandSelect, &parameters, &frame.record, 0);
    if (result != codecNoMemoryPleaseWaitErr || base.busy.empty()) return result;
    WaitUntilDone(*base.busy.front());
    EndFirst(base);
  }
}

ComponentResult BeginFrame(BaseDecompressor& base, CodecDecompressParams& parameters, FramePointer& frame) {
  frame = TakeFrame(base);
  if (frame == nullptr) return memFullErr;
  frame->completion = parameters.completionProcRecord;
  frame->target = base.target;
  frame->draw = base.draw;
  frame->drawRefCon = base.drawRefCon;
  frame->base = &base;
  ++base.beginning;
  const ComponentResult result = BeginBand(base, parameters, *frame);
  --base.beginning;
  if (result != noErr) base.idle.push_back(std::move(frame));
  return result;
}

}  // namespace

void FreeIdleFrames(BaseDecompressor& base) {
  for (FramePointer& frame : base.idle) FreeFrame(std::move(frame));
  base.idle.clear();
}

void EndDoneFrames(BaseDecompressor& base) {
  EndDone(base);
  StopQueueIfIdle(base);
}

void EndAllFrames(BaseDecompressor& base) {
  while (!base.busy.empty()) {
    WaitUntilDone(*base.busy.front());
    EndFirst(base);
  }
  StopQueueIfIdle(base);
}

ComponentResult DecompressNow(BaseDecompressor& base, CodecDecompressParams& parameters) {
  EndAllFrames(base);
  FramePointer frame;
  if (const ComponentResult result = BeginFrame(base, parameters, frame); result != noErr) return result;
  DrawNow(*frame);
  return EndFrame(base, std::move(frame));
}

ComponentResult DecompressLater(BaseDecompressor& base, CodecDecompressParams& parameters) {
  EndDone(base);  // the queue goes on
  StartQueue(base);
  FramePointer frame;
  if (const ComponentResult result = BeginFrame(base, parameters, frame); result != noErr) {
    StopQueueIfIdle(base);
    return result;
  }
  BaseFrame& begun = *frame;
  base.busy.push_back(std::move(frame));
  if (begun.record.inhibitMP != 0) {
    DrawNow(begun);
  } else {
    StartDrawing(begun);
  }
  return noErr;
}

}  // namespace vorel::component::embedded
