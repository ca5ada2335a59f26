// Long runs of zero residuals, as flat parts of a picture have. Codes ascend with the symbol, so that of symbol 0 is zero
// bits alone in every class: where the stream has nothing else, whole patterns are taken without a table.
#pragma once
#include <algorithm>
#include <bit>

#include "base/instructions.h"
#include "entropy/symbol_steps.h"

namespace vorel::inline VOREL_INSTRUCTIONS {

// Going over to zeros and back takes as long as some hundred bits. So they are taken where a window that was filled has
// nothing else, nor so many words of 64 bits behind it. Two of these tell most of the time.
inline constexpr u64 kZeroWords = 7;

[[gnu::always_inline]] inline bool AreZerosAhead(const BitWindow& window, u64 filled, const u8* frame) {
  const u8* const behind = frame + window.offset;
  const auto word = [&](u64 i) { return LoadNative<u64>(behind + 8 * i); };
  if ((filled | word(kZeroWords / 2) | word(kZeroWords - 1)) != 0) [[likely]]
    return false;
  u64 all = 0;
  for (u64 i = 0; i < kZeroWords; ++i) all |= word(i);
  return all == 0;
}

// Loads of a turn, with a look for zeros before it, end so many bytes behind the position at most.
inline constexpr u64 kLookAheadBytes = 8 + 8 * kZeroWords;

// What zeros are taken up to.
struct ZeroLimits {
  u64 symbols;
  u64 end;  // position of a bit; eight bytes from there on must be readable
};

// How many bits from `position` on are zero, of `most` that are looked at; it may be more of them.
inline u64 CountZeroBits(const u8* frame, u64 position, u64 most) {
  u64 offset = position >> 3;
  u64 word = LoadBig64(frame + offset) & ~u64{0} >> (position & 7);
  while (word == 0) {
    offset += 8;
    if (offset * 8 >= position + most) return most;
    word = LoadBig64(frame + offset);
  }
  return offset * 8 + static_cast<u64>(std::countl_zero(word)) - position;
}

// Takes zeros in whole patterns, if any begin here, and gives how many. The step of the run becomes one that takes a
// pattern.
template <int Symbols>
[[gnu::noinline]] u64 TakeZeros(Cursor<Symbols>& cursor, const RowCodes<Symbols>& codes, const u8* frame,
                                ZeroLimits limits) {
  SymbolRun<Symbols>& run = cursor.run;
  const u64 position = PositionOf(cursor.window);
  const u32 place = StateOfStep(run.step);
  const bool inLongCode = place >= codes.pattern.length;
  if (inLongCode || position >= limits.end) return 0;
  const u64 most = std::min(limits.symbols / codes.pattern.length, (limits.end - position) / codes.zeroBits);
  const u64 bits = CountZeroBits(frame, position, most * codes.zeroBits);
  const u64 patterns = std::min(bits / codes.zeroBits, most);
  if (patterns == 0) return 0;
  const u64 symbols = patterns * codes.pattern.length;
  std::memset(run.out, 0, symbols * sizeof *run.out);
  run.out += symbols;
  run.zeroBits += patterns * codes.zeroBits;
  run.step = MakeStep(place, codes.pattern.length, codes.zeroBits);
  cursor.window = OpenWindow(frame, position + patterns * codes.zeroBits);
  return patterns;
}

// The same, and a turn.
template <int Symbols>
inline void GoOnInZeros(Cursor<Symbols>& cursor, const RowCodes<Symbols>& codes, const u8* frame,
                        ZeroLimits limits) {
  TakeZeros(cursor, codes, frame, limits);
  TakeTurn(cursor, FillWindow(cursor.window, frame), codes);
}

// Takes turns until zeros are ahead, or it has come behind `last` or to load at `offsetEnd`. Gives whether zeros are ahead.
template <int Symbols>
[[gnu::noinline]] bool TakeTurns(Cursor<Symbols>& cursor, const RowCodes<Symbols>& codes, const u8* frame,
                                 const SampleOf<Symbols>* last, u64 offsetEnd) {
  // In registers: stores through u8* could otherwise alter them.
  const RowCodes<Symbols> tables = codes;
  Cursor<Symbols> own = cursor;
  bool zerosAhead = false;
  while (own.run.out <= last && own.window.offset < offsetEnd) {
    const u64 filled = FillWindow(own.window, frame);
    zerosAhead = AreZerosAhead(own.window, filled, frame);
    if (zerosAhead) [[unlikely]] {
      own.window.bits = filled;
      break;
    }
    TakeTurn(own, filled, tables);
  }
  cursor = own;
  return zerosAhead;
}

}  // namespace vorel::inline VOREL_INSTRUCTIONS
