// Steps through runs of symbols, see entropy/symbol_groups.h for the tables, and windows of 64 bits that they are
// taken from.
#pragma once
#include "base/instructions.h"
#include "entropy/bit_reader.h"
#include "entropy/symbol_groups.h"

namespace vorel::inline VOREL_INSTRUCTIONS {

// How far a run of symbols has come.
template <int Symbols>
struct SymbolRun {
  SampleOf<Symbols>* out;  // the next symbol goes here
  u32 step;                // the last one, whose state comes next
  u64 zeroBits = 0;        // taken without steps
};

// The step behind which a run begins.
inline constexpr u32 kStepBeforeRun = MakeStep(0, 0, 0);

// What a step stores, in symbols.
template <int Symbols>
inline constexpr std::ptrdiff_t kStoredSymbols = 8 / sizeof(SampleOf<Symbols>);

// A sum that the compiler adds up where it stands, and not in another order.
template <typename Sum>
[[gnu::always_inline]] inline Sum AsOne(Sum sum) {
  asm("" : "+r"(sum));
  return sum;
}

// Takes one step over `index`, the next 12 bits. Stores 8 bytes, whatever their number of symbols.
template <int Symbols>
[[gnu::always_inline]] inline void TakeStep(SymbolRun<Symbols>& run, const u16* steps, const u64* groups,
                                            std::size_t index) {
  // The next step waits for the bits of this one, then for its own index: all else is added up before that.
  const std::size_t state = run.step & kStateMask;
  const u16* const stepsOfState = AsOne(steps + state);
  run.step = stepsOfState[index];
  StoreNative(run.out, groups[AsOne(state + index)]);
  run.out += SymbolsOfStep(run.step);
}

// ---- Windows of 64 bits

// The bits ahead, the first highest.
struct BitWindow {
  u64 bits;
  u64 valid;  // how many of them count, at least kGroupBits, modulo 64: those below are the true ones, or zero
  u64 offset;  // of the byte behind them
};

// Eight bytes from the position on must be readable, as with each turn eight from the offset on.
inline BitWindow OpenWindow(const u8* frame, u64 position) {
  const u64 offset = position >> 3;
  return {LoadBig64(frame + offset) << (position & 7), 56 - (position & 7), offset + 7};
}

inline u64 PositionOf(const BitWindow& window) {
  return window.offset * 8 - (window.valid & 63);
}

// Makes 56 or more bits valid and gives them. Those in the window stay as they are, so that the next step can begin
// before the new ones are there.
[[gnu::always_inline]] inline u64 FillWindow(BitWindow& window, const u8* frame) {
  const u64 filled = window.bits | LoadBig64(frame + window.offset) >> (window.valid & 63);
  window.offset += ~window.valid >> 3 & 7;
  window.valid |= 56;
  return filled;
}

// Steps to a window that was filled: 12 bits are left behind the last one.
inline constexpr u32 kTurnSteps = 3;
static_assert(56 - kTurnSteps * kGroupBits >= kGroupBits);

// The most bits of a turn.
inline constexpr u64 kTurnBits = kTurnSteps * kGroupBits;

template <int Symbols>
inline constexpr std::ptrdiff_t kTurnSymbols =
    (kTurnSteps - 1) * kMostGroupSymbols<Symbols> + kStoredSymbols<Symbols>;

// A run on its way through a window.
template <int Symbols>
struct Cursor {
  SymbolRun<Symbols> run;
  BitWindow window;
};

// Takes a step of a turn, and gives it. `filled` is the window, filled; afterwards what is left of it.
template <int Symbols>
[[gnu::always_inline]] inline u32 TakeStepOfTurn(Cursor<Symbols>& cursor, u64& filled,
                                                 const RowCodes<Symbols>& codes) {
  auto& [run, window] = cursor;
  TakeStep(run, codes.steps, codes.groups, window.bits >> (64 - kGroupBits));
  window.bits = filled <<= BitsOfStep(run.step);
  window.valid -= run.step;  // the low six bits alone matter
  return run.step;
}

// Takes a turn of steps, and gives them.
template <int Symbols>
[[gnu::always_inline]] inline std::array<u32, kTurnSteps> TakeTurn(Cursor<Symbols>& cursor, u64 filled,
                                                                   const RowCodes<Symbols>& codes) {
  std::array<u32, kTurnSteps> taken;
  for (u32& step : taken) step = TakeStepOfTurn(cursor, filled, codes);
  return taken;
}

}  // namespace vorel::inline VOREL_INSTRUCTIONS
