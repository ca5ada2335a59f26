// Takes bits out of a frame. The position is a bit number from the start of the frame; a window of 32 bits at
// it is formed from the bytes, most significant bit first.
//
// Only bytes from `readableFrom` up to `readableTo` are ever loaded, others read as zero. A routine whose
// caller promises a whole frame bound has no end; then at most two words behind the last coded bit of a whole
// frame are loaded.
#pragma once
#include "base/bytes.h"
#include "base/instructions.h"
#include "entropy/window.h"
#include "frame/stream_cursor.h"

namespace vorel::inline VOREL_INSTRUCTIONS {

struct BitReader {
  const u8* frame;
  u64 position;              // of the next unread bit
  std::size_t readableFrom;  // offsets in bytes from `frame`
  std::size_t readableTo;
};

inline BitReader OpenReader(const u8* frame, StreamCursor cursor, std::size_t readableFrom,
                            std::size_t readableTo) {
  return {frame, BitPosition(cursor), readableFrom, readableTo};
}

// Whether `bytes` bytes from `offset` on may be loaded.
inline bool IsReadable(const BitReader& reader, u64 offset, std::size_t bytes) {
  return offset >= reader.readableFrom && reader.readableTo >= bytes && offset <= reader.readableTo - bytes;
}

// Eight bytes as a big-endian number; what must not be loaded reads as zero.
[[gnu::noinline, gnu::cold]] inline u64 LoadWindowAtEnd(const BitReader& reader, u64 offset) {
  u64 window = 0;
  for (u64 i = 0; i < 8; ++i) {
    window = window << 8 | (IsReadable(reader, offset + i, 1) ? reader.frame[offset + i] : 0u);
  }
  return window;
}
inline u64 LoadWindow(const BitReader& reader, u64 offset) {
  if (IsReadable(reader, offset, 8)) [[likely]]
    return LoadBig64(reader.frame + offset);
  return LoadWindowAtEnd(reader, offset);
}

// Whether nothing but zeros follows, because the position is behind the last readable byte.
inline bool IsBehindEnd(const BitReader& reader) {
  return (reader.position >> 3) >= reader.readableTo;
}

// The next 32 bits, the first at the top, without taking them.
inline u32 PeekWord(const BitReader& reader) {
  return static_cast<u32>(LoadWindow(reader, reader.position >> 3) << (reader.position & 7) >> 32);
}

inline u32 GetBit(BitReader& reader) {
  const u32 bit = PeekWord(reader) >> 31;
  ++reader.position;
  return bit;
}

inline u32 GetWord(BitReader& reader) {
  const u32 word = PeekWord(reader);
  reader.position += 32;
  return word;
}

// Where the word that holds the next bit ends must not be behind the limit; tested once a row.
inline bool IsPastLimit(const BitReader& reader, u64 limit) {
  return (reader.position >> 5) * 4 + 4 > limit;
}

// How many bits at most may follow the next `count` within the limit.
inline u64 BitsToLimit(const BitReader& reader, u64 limit, u64 count) {
  const u64 end = reader.position + count;
  return limit > end >> 3 ? limit * 8 - end : 0;
}

}  // namespace vorel::inline VOREL_INSTRUCTIONS
