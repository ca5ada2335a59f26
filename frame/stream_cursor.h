// Position in a frame: whole 32-bit words from the start of the frame, and bits used of the word there, most
// significant first. A routine may be handed any bit count; Fold brings it back to 0..31.
#pragma once
#include "base/integers.h"

namespace vorel {

struct StreamCursor {
  u32 word;
  u32 bit;
};

constexpr StreamCursor Fold(StreamCursor cursor) {
  return {cursor.word + (cursor.bit >> 5), cursor.bit & 31};
}

// Bits from the start of the frame to the cursor.
constexpr u64 BitPosition(StreamCursor cursor) {
  return u64{cursor.word} * 32 + cursor.bit;
}

// What a routine hands back after it has stopped at a bit: the word cursor on entry is counted once more.
// Recorded frame sizes and the comparison of encoder and decoder rest on this sum.
constexpr StreamCursor ReturnedCursor(u32 wordOnEntry, u64 bitPosition) {
  return {wordOnEntry + static_cast<u32>(bitPosition >> 5), static_cast<u32>(bitPosition & 31)};
}

// Size of a frame in bytes as its container records it, from the cursors that its encoder returned. 32-bit
// arithmetic.
constexpr u32 RecordedFrameBytes(StreamCursor returned) {
  return (returned.word * 32 + 7 + returned.bit) / 8;
}

static_assert(Fold({5, 37}).word == 6 && Fold({5, 37}).bit == 5);
static_assert(ReturnedCursor(5, 5 * 32 + 14).word == 10 && ReturnedCursor(5, 5 * 32 + 14).bit == 14);
static_assert(RecordedFrameBytes({5, 1}) == 21 && RecordedFrameBytes({10, 14}) == 42);

}  // namespace vorel
