// The row loop of every encoder: which way a row is coded, and the checks behind it.
#pragma once
#include "base/instructions.h"
#include "entropy/symbol_writer.h"
#include "frame/frame_limits.h"
#include "frame/row_walk.h"

namespace vorel::inline VOREL_INSTRUCTIONS {

using RowWriter = BitWriter<NativeWindow>;

// Codes the rows of a picture. `coder` codes one row of it at a time, from top to bottom:
//
//   PutPredicted(writer, row, rowAbove)   as residuals; rowAbove is null where the row is coded without it
//   PutRaw(writer, row)                   as samples, in place of the former
//   GoOn()                                behind each row
template <const FrameLayout& Layout, Scan FrameScan, typename RowCoder>
Status EncodeRows(const FrameCall& call, RowCoder& coder) {
  const StreamCursor cursor = Fold({*call.wordCursor, *call.bitCursor});
  const u64 limit = FrameLimit<Layout>(call, cursor);
  RowWriter writer = OpenWriter<NativeWindow>(call.frame, cursor, limit);
  RowWalk walk = OpenRowWalk(call.base, call.height, call.rowBytes);
  Status status = Status::complete;
  for (u32 row = 0; row < call.height && status == Status::complete; ++row) {
    const u8* const pixels = CurrentRow(walk);
    const RowWriter rowStart = writer;
    PutBits(writer, NativeWindow{0}, 1);
    coder.PutPredicted(writer, pixels, FrameScan == Scan::p && row != 0 ? pixels - call.rowBytes : nullptr);
    const u64 words = (WrittenBits(writer) >> 5) - (WrittenBits(rowStart) >> 5);
    if (!PredictedRowStays(Layout, words, call.width)) {
      // The bound is tested with the attempted row in place: a frame may end here although the raw row would
      // fit.
      if (IsPastLimit(writer, limit)) {
        status = Status::frameBoundWritten;
        break;
      }
      writer = rowStart;
      PutBits(writer, NativeWindow{1}, 1);
      coder.PutRaw(writer, pixels);
    }
    coder.GoOn();
    if (!StepRow(walk))
      status = Status::rowLeftPictureEncode;
    else if (IsPastLimit(writer, limit))
      status = Status::frameBoundWritten;
  }
  StoreCursors(call, CloseWriter(writer));
  return status;
}

}  // namespace vorel::inline VOREL_INSTRUCTIONS
