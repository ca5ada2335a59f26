// Where a frame ends at the latest, and how a routine tells its caller where it stopped.
#pragma once
#include "base/instructions.h"
#include "frame/frame_bounds.h"
#include "frame/frame_call.h"
#include "frame/stream_cursor.h"

namespace vorel::inline VOREL_INSTRUCTIONS {

// Offset in bytes from the start of the frame.
template <const FrameLayout& Layout>
u64 FrameLimit(const FrameCall& call, StreamCursor cursor) {
  return u64{cursor.word} * 4 + MaxFrameBytes(Layout, call.width, call.height);
}

inline void StoreCursors(const FrameCall& call, u64 bitPosition) {
  const StreamCursor returned = ReturnedCursor(*call.wordCursor, bitPosition);
  *call.wordCursor = returned.word;
  *call.bitCursor = returned.bit;
}

}  // namespace vorel::inline VOREL_INSTRUCTIONS
