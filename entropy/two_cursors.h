// Long runs of symbols from two places at once.
//
// A step cannot begin before the one before it has told its bits, so a cursor alone leaves most of a
// processor idle. Codes fall into step by themselves: a cursor that begins at any bit, as if a code began
// there, soon comes upon one that does, and all that it finds from there on is right. So a second cursor
// begins where the middle of a run is guessed to be, and goes beside the first one until that has come so
// far. The first goes on alone until it meets the trail of the second: symbols behind that place are taken
// over.
#pragma once
#include <algorithm>

#include "base/instructions.h"
#include "entropy/zero_runs.h"

namespace vorel::inline VOREL_INSTRUCTIONS {

// How long the last run was, from which the middle of the next one is guessed; and how many runs are left to
// one cursor because those before them were not met.
struct RunGuess {
  u64 bits = 0;
  u64 zeroBits = 0;  // that took no steps
  u64 symbols = 1;
  u32 pause = 0;
  u32 lastPause = 0;
};

// Half the bits of a run that take steps; shorter ones are not worth two cursors.
inline constexpr u64 kLeastHalfBits = 1024;

// The most runs that are left to one cursor behind one that was not met.
inline constexpr u32 kLongestPause = 15;

// The most turns of the second cursor.
inline constexpr std::size_t kTrailTurns = 1024;

// What the second cursor found.
template <int Symbols>
struct Trail {
  std::array<u16, kTrailTurns * kTurnSteps> steps;
  std::array<SampleOf<Symbols>, kTrailTurns * kTurnSteps * kStoredSymbols<Symbols>> symbols;
};

// Both on their way.
template <int Symbols>
struct TwoCursors {
  Cursor<Symbols> first;
  Cursor<Symbols> second;
  u16* trailEnd;  // behind the steps of the second
  u64 turns;      // that it may still take
};

// Where both have to stop.
template <int Symbols>
struct Bounds {
  u64 middle;                     // where the second began
  const SampleOf<Symbols>* last;  // behind this symbol the first must not begin a turn
  u64 end;                        // position of a bit behind which no turn may begin
};

template <int Symbols>
inline ZeroLimits ZerosToGo(const Cursor<Symbols>& first, const Bounds<Symbols>& bounds) {
  return {static_cast<u64>(bounds.last - first.run.out), bounds.end};
}

// Turns that both take between two looks at where they are.
inline constexpr u64 kTurnsToALook = 2;
template <int Symbols>
inline constexpr std::ptrdiff_t kLookSymbols =
    (kTurnsToALook - 1) * kTurnSteps* kMostGroupSymbols<Symbols> + kTurnSymbols<Symbols>;

// Takes turns of both until zeros are ahead of one, or until the first has come to the second one's start or
// near the end of the run, or the second has no turns left. Gives whether zeros are ahead.
template <int Symbols>
[[gnu::noinline]] bool TakeTurnsOfBoth(TwoCursors<Symbols>& cursors, const RowCodes<Symbols>& codes,
                                       const u8* frame, const Bounds<Symbols>& bounds) {
  // In registers: stores through u8* could otherwise alter them.
  const RowCodes<Symbols> tables = codes;
  const Bounds<Symbols> until = bounds;
  auto [first, second, trailEnd, turns] = cursors;
  bool zerosAhead = false;
  for (; turns >= kTurnsToALook && first.window.offset < until.middle >> 3 && first.run.out <= until.last;
       turns -= kTurnsToALook) {
    u64 ofFirst = FillWindow(first.window, frame);
    u64 ofSecond = FillWindow(second.window, frame);
    zerosAhead = AreZerosAhead(first.window, ofFirst, frame) || AreZerosAhead(second.window, ofSecond, frame);
    if (zerosAhead) [[unlikely]] {
      first.window.bits = ofFirst;
      second.window.bits = ofSecond;
      break;
    }
#pragma GCC unroll 2
    for (u64 turn = 0; turn < kTurnsToALook; ++turn) {
      if (turn > 0) {
        ofFirst = FillWindow(first.window, frame);
        ofSecond = FillWindow(second.window, frame);
      }
      // Step by step: what waits for one cursor leaves a processor little room to look further ahead for the
      // other.
#pragma GCC unroll 3
      for (u32 step = 0; step < kTurnSteps; ++step) {
        TakeStepOfTurn(first, ofFirst, tables);
        *trailEnd++ = static_cast<u16>(TakeStepOfTurn(second, ofSecond, tables));
      }
    }
  }
  cursors = {first, second, trailEnd, turns};
  return zerosAhead;
}

// Takes zeros of the second cursor, as far as they are wanted, and a turn. Each pattern of zeros is a step of
// the trail.
template <int Symbols>
inline void LeaveTrailInZeros(TwoCursors<Symbols>& cursors, const RowCodes<Symbols>& codes, const u8* frame,
                              const Bounds<Symbols>& bounds, const Trail<Symbols>& trail) {
  Cursor<Symbols>& second = cursors.second;
  // The run has room for so many more.
  const std::ptrdiff_t wanted = bounds.last - cursors.first.run.out - (second.run.out - trail.symbols.data());
  const u64 turns = cursors.turns - 1;
  const u64 patterns = TakeZeros(second, codes, frame,
                                 {std::min(static_cast<u64>(std::max<std::ptrdiff_t>(wanted, 0)),
                                           turns * kTurnSteps * codes.pattern.length),
                                  PositionOf(second.window) + turns * kTurnBits});
  cursors.trailEnd = std::fill_n(cursors.trailEnd, patterns, static_cast<u16>(second.run.step));
  // As many turns are gone as have so many steps, or bits.
  cursors.turns = turns - (patterns * std::max(codes.zeroBits, kGroupBits) + kTurnBits - 1) / kTurnBits;
  for (const u32 step : TakeTurn(second, FillWindow(second.window, frame), codes))
    *cursors.trailEnd++ = static_cast<u16>(step);
}

// A place of the trail, behind the step `step`.
struct TrailPlace {
  const u16* next;
  u32 step;
  u64 position;
  std::size_t symbols;  // before it
};

// Goes to the first place of the trail that is not before the cursor. Gives whether the cursor is there.
template <int Symbols>
[[gnu::always_inline]] inline bool IsOnTrail(const Cursor<Symbols>& cursor, TrailPlace& place,
                                             const u16* trailEnd) {
  const u64 position = PositionOf(cursor.window);
  while (place.position < position && place.next < trailEnd) {
    place.step = *place.next++;
    place.position += BitsOfStep(place.step);
    place.symbols += SymbolsOfStep(place.step);
  }
  return place.position == position && StateOfStep(place.step) == StateOfStep(cursor.run.step);
}

// How the first cursor came to the trail.
struct Meeting {
  bool meets;
  u32 turns;  // that it took alone
};

// Goes on with the first cursor until it is on the trail, near the end of the run or behind the trail.
template <int Symbols>
[[gnu::always_inline]] inline Meeting GoOnToTrail(Cursor<Symbols>& first, const RowCodes<Symbols>& codes,
                                                  const u8* frame, const Bounds<Symbols>& bounds,
                                                  TrailPlace& place, const u16* trailEnd) {
  bool meets = IsOnTrail(first, place, trailEnd);
  u32 turns = 0;
  for (; !meets && place.next < trailEnd && first.run.out <= bounds.last; ++turns) {
    const u64 filled = FillWindow(first.window, frame);
    if (AreZerosAhead(first.window, filled, frame)) [[unlikely]] {
      first.window.bits = filled;
      GoOnInZeros(first, codes, frame, ZerosToGo(first, bounds));
    } else {
      TakeTurn(first, filled, codes);
    }
    meets = IsOnTrail(first, place, trailEnd);
  }
  return {meets, turns};
}

// Loads of the first cursor, which is at most a turn behind the end of the trail, end no further behind it.
inline constexpr u64 kReadableBehind = kLookAheadBytes + (kTurnBits + 7) / 8;
static_assert(kReadableBehind < (kLeastHalfBits + kLeastHalfBits / 4) / 8);

// Takes over what the second cursor found behind the place, as far as whole steps fit before the end of the
// run.
template <int Symbols>
inline void TakeOver(BitReader& reader, SymbolRun<Symbols>& run, const SampleOf<Symbols>* end,
                     const Cursor<Symbols>& second, const Trail<Symbols>& trail, const TrailPlace& place,
                     const u16* trailEnd) {
  std::size_t count = static_cast<std::size_t>(second.run.out - trail.symbols.data()) - place.symbols;
  u64 position = PositionOf(second.window);
  for (const auto room = static_cast<std::size_t>(end - run.out); count > room;) {
    const u32 step = *--trailEnd;
    count -= SymbolsOfStep(step);
    position -= BitsOfStep(step);
  }
  std::copy_n(trail.symbols.data() + place.symbols, count, run.out);
  if (trailEnd > place.next) run.step = trailEnd[-1];
  run.out += count;
  run.zeroBits += second.run.zeroBits;
  reader.position = position;
}

// Decodes a run from its start and from bit `middle`, as far as the second cursor comes, or, if they do not
// meet, as far as the first does.
//
// end         of the run
// readableTo  offset of the bytes that must not be loaded: kReadableBehind or more behind the byte after `middle`
template <int Symbols>
[[gnu::noinline]] Meeting GetFromTwo(BitReader& reader, const RowCodes<Symbols>& codes,
                                     SymbolRun<Symbols>& run, const SampleOf<Symbols>* end, u64 middle,
                                     u64 readableTo) {
  Trail<Symbols> trail;
  const u8* const frame = reader.frame;
  const RowCodes<Symbols> tables = codes;  // in registers: stores through u8* could otherwise alter them
  const Bounds<Symbols> bounds = {middle, end - kLookSymbols<Symbols>, (readableTo - kReadableBehind) * 8};
  TwoCursors<Symbols> cursors = {
      .first = {run, OpenWindow(frame, reader.position)},
      .second = {{trail.symbols.data(), kStepBeforeRun}, OpenWindow(frame, middle)},
      .trailEnd = trail.steps.data(),
      .turns = std::min<u64>(kTrailTurns, (bounds.end - middle) / kTurnBits),
  };
  while (TakeTurnsOfBoth(cursors, tables, frame, bounds)) {
    GoOnInZeros(cursors.first, tables, frame, ZerosToGo(cursors.first, bounds));
    LeaveTrailInZeros(cursors, tables, frame, bounds, trail);
  }
  TrailPlace place = {trail.steps.data(), kStepBeforeRun, middle, 0};
  const Meeting meeting = GoOnToTrail(cursors.first, tables, frame, bounds, place, cursors.trailEnd);
  run = cursors.first.run;
  reader.position = PositionOf(cursors.first.window);
  if (meeting.meets) TakeOver(reader, run, end, cursors.second, trail, place, cursors.trailEnd);
  return meeting;
}

// Decodes most of a run from two places if it is likely to be long and the guess is worth something.
//
// sureBits  how many bits from the start of the run on are there in a whole frame
template <int Symbols>
inline void TryFromTwo(BitReader& reader, const RowCodes<Symbols>& codes, SymbolRun<Symbols>& run,
                       const SampleOf<Symbols>* end, u64 sureBits, RunGuess& guess) {
  const u64 symbols = static_cast<u64>(end - run.out);
  const u64 half = guess.bits * symbols / (2 * guess.symbols);
  if ((guess.bits - guess.zeroBits) * symbols / (2 * guess.symbols) < kLeastHalfBits) return;
  if (guess.pause > 0) {
    --guess.pause;
    return;
  }
  const u64 readableTo = std::min<u64>((reader.position + sureBits) >> 3, reader.readableTo);
  const u64 middle = reader.position + half;
  // What the second cursor takes must be there, give or take a quarter.
  if (readableTo < (middle + half + half / 4) >> 3 || !IsReadable(reader, reader.position >> 3, 16)) return;
  const Meeting meeting = GetFromTwo(reader, codes, run, end, middle, readableTo);
  // Where zeros took the first one past the trail, it had little to do alone.
  const bool isWorthIt = meeting.meets || meeting.turns < half / kTurnBits / 2;
  guess.lastPause = isWorthIt ? 0 : std::min(2 * guess.lastPause + 1, kLongestPause);
  guess.pause = guess.lastPause;
}

}  // namespace vorel::inline VOREL_INSTRUCTIONS
