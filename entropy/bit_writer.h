// Lays bits into a frame: one continuous string, the first bit at bit 7 of the first byte. Words of 32 bits
// matter only for the cursors, for the row decision and for the close, which fills the last word up with
// zeros.
//
// The position moves by whole bytes: `next` is the byte that holds the next free bit, and the lowest `fill` bits
// (0..7 between calls) of `recent` are those of that byte that are already decided. Above them are older ones, of
// no account. A put stores a whole window from `next` on, so zeros appear behind the position, but never at or
// behind `end`.
//
// Window is the accumulator, see entropy/window.h.
#pragma once
#include "base/bytes.h"
#include "base/instructions.h"
#include "entropy/window.h"
#include "frame/stream_cursor.h"

namespace vorel::inline VOREL_INSTRUCTIONS {

// How many bits one put may add to the 7 that a byte may hold already.
template <typename Window>
inline constexpr u32 kMostBitsPerPut = kWindowBits<Window> - 7;

template <typename Window>
struct BitWriter {
  u8* frame;
  u8* next;
  const u8* end;
  Window recent;
  u32 fill;
};

inline void StoreBigWindow(u8* bytes, u64 window) {
  StoreBig64(bytes, window);
}
inline void StoreBigWindow(u8* bytes, u32 window) {
  StoreBig32(bytes, window);
}

// Opens at a folded cursor. The bits of the word before the cursor stay, all behind it are replaced; with bit
// cursor 0 the frame is not read. `limit` is the offset in bytes from the start of the frame at and behind
// which nothing is stored.
template <typename Window>
BitWriter<Window> OpenWriter(u8* frame, StreamCursor cursor, u64 limit) {
  BitWriter<Window> writer = {frame, frame + std::size_t{cursor.word} * 4 + cursor.bit / 8, frame + limit, 0,
                              cursor.bit % 8};
  if (writer.fill != 0) writer.recent = static_cast<Window>(*writer.next >> (8 - writer.fill));
  return writer;
}

// Bits from the start of the frame to the position.
template <typename Window>
u64 WrittenBits(const BitWriter<Window>& writer) {
  return static_cast<u64>(writer.next - writer.frame) * 8 + writer.fill;
}

// Where the word that takes the next bit ends must not be behind the limit; tested once a row.
template <typename Window>
bool IsPastLimit(const BitWriter<Window>& writer, u64 limit) {
  return (WrittenBits(writer) >> 5) * 4 + 4 > limit;
}

// Adds `count` bits, 1 to kMostBitsPerPut, right-aligned in `bits`, zeros above. For places where a whole
// window fits before `end`.
template <typename Window>
inline void PutBitsFast(BitWriter<Window>& writer, Window bits, u32 count) {
  writer.recent = writer.recent << count | bits;
  writer.fill += count;
  StoreBigWindow(writer.next, writer.recent << (kWindowBits<Window> - writer.fill));
  writer.next += writer.fill >> 3;
  writer.fill &= 7;
}

// The same anywhere. Bytes at and behind `end` are counted and not stored.
template <typename Window>
inline void PutBits(BitWriter<Window>& writer, Window bits, u32 count) {
  writer.recent = writer.recent << count | bits;
  writer.fill += count;
  while (writer.fill >= 8) {
    writer.fill -= 8;
    if (writer.next < writer.end) *writer.next = static_cast<u8>(writer.recent >> writer.fill);
    ++writer.next;
  }
}

// Adds a code, given as in an EncodeTable: length in the top byte, code left-aligned in the low 16 bits.
template <typename Window>
inline void PutCode(BitWriter<Window>& writer, u32 entry) {
  const u32 length = entry >> 24;
  PutBits(writer, static_cast<Window>((entry & 0xFFFF) >> (16 - length)), length);
}

template <typename Window>
inline void PutWord(BitWriter<Window>& writer, u32 word) {
  PutBits(writer, static_cast<Window>(word >> 16), 16);
  PutBits(writer, static_cast<Window>(word & 0xFFFF), 16);
}

// Whether `bytes` more, and one whole window behind them, can be stored before `end`.
template <typename Window>
inline bool HasRoom(const BitWriter<Window>& writer, std::size_t bytes) {
  const std::ptrdiff_t room = writer.end - writer.next;
  return room >= static_cast<std::ptrdiff_t>(bytes + sizeof(Window));
}

// Stores the partly filled word to its end, also when it holds no bit, and gives the position.
template <typename Window>
u64 CloseWriter(BitWriter<Window>& writer) {
  const u64 position = WrittenBits(writer);
  const u32 fillOfWord = static_cast<u32>(position & 31);
  const u32 missing = 32 - fillOfWord;
  PutBits(writer, Window{0}, missing < 16 ? missing : 16);
  if (missing > 16) PutBits(writer, Window{0}, missing - 16);
  return position;
}

}  // namespace vorel::inline VOREL_INSTRUCTIONS
