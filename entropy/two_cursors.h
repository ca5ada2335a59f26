// Long runs of symbols from two places at once.
//
// A step cannot begin before the one before it has told its bits, so a cursor alone leaves most of a processor idle.
// Codes fall into step by themselves: a cursor that begins at any bit, as if a code began there, soon comes upon one
// that does, and all that it finds from there on is right. So a second cursor begins where the middle of a run is
// guessed to be, and goes beside the first one until that has come so far. The first goes on alone until it meets the
// trail of the second: symbols behind that place are taken over.
#pragma once
#include <algorithm>

#include "base/instructions.h"
#include "entropy/symbol_steps.h"

namespace vorel::inline VOREL_INSTRUCTIONS {

// How long the last run was, from which the middle of the next one is guessed; and how many runs are left to one
// cursor because those before them were not met.
struct RunGuess {
  u64 bits = 0;
  u64 symbols = 1;
  u32 pause = 0;
  u32 lastPause = 0;
};

// Half the bits of a run; shorter ones are not worth two cursors.
inline constexpr u64 kLeastHalfBits = 1024;

// The most runs that are left to one cursor behind one that was not met.
inline constexpr u32 kLongestPause = 15;

// The most turns of the second cursor.
inline constexpr std::size_t kTrailTurns = 1024;

// One of the two.
template <int Symbols>
struct Cursor {
  SymbolRun<Symbols> run;
  BitWindow window;
};

// What the second cursor found.
template <int Symbols>
struct Trail {
  std::array<u16, kTrailTurns * kTurnSteps> steps;
  std::array<SampleOf<Symbols>, kTrailTurns * kTurnSteps * kStoredSymbols<Symbols>> symbols;
};

// Goes on with both cursors until the first has come to the second one's start, `middleOffset`, or near `last`, or the
// second has taken so many turns. Gives where its steps end.
template <int Symbols>
[[gnu::always_inline]] inline const u16* GoSideBySide(Cursor<Symbols>& first, Cursor<Symbols>& second,
                                                      const RowCodes<Symbols>& codes, const u8* frame,
                                                      u64 middleOffset, const SampleOf<Symbols>* last,
                                                      u64 turns, Trail<Symbols>& trail) {
  u16* trailEnd = trail.steps.data();
  for (; turns > 0 && first.window.offset < middleOffset && first.run.out <= last; --turns) {
    TakeTurn(first.run, first.window, frame, codes.steps, codes.groups);
    for (const u32 step : TakeTurn(second.run, second.window, frame, codes.steps, codes.groups))
      *trailEnd++ = static_cast<u16>(step);
  }
  return trailEnd;
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

// Takes one symbol, if one begins here. Gives whether one does.
template <int Symbols>
inline bool TakeOne(Cursor<Symbols>& cursor, const u8* frame, const RowCodes<Symbols>& codes) {
  const u32 place = StateOfStep(cursor.run.step);
  if (place >= codes.pattern.length) return false;
  const u64 filled = FillWindow(cursor.window, frame);
  const DecodedSymbol decoded =
      DecodeSymbol(*codes.codes, ClassAt(codes.pattern, place), static_cast<u32>(filled >> 32));
  *cursor.run.out++ = static_cast<SampleOf<Symbols>>(decoded.symbol);
  cursor.window.bits = filled << decoded.length;
  cursor.window.valid -= decoded.length;
  cursor.run.step = MakeStep(place + 1 == codes.pattern.length ? 0 : place + 1, 1, decoded.length);
  return true;
}

// Turns of the first cursor between attempts to meet the trail symbol by symbol: where all codes are alike, steps stay
// apart although their symbols are the same.
inline constexpr u32 kTurnsTillSymbols = 16;

// Goes on with the first cursor until it is on the trail, near `last` or behind the trail. Gives whether it is on it.
template <int Symbols>
[[gnu::always_inline]] inline bool GoOnToTrail(Cursor<Symbols>& first, const RowCodes<Symbols>& codes,
                                               const u8* frame, const SampleOf<Symbols>* last,
                                               TrailPlace& place, const u16* trailEnd) {
  const u16* const trailBegin = place.next;
  bool meets = IsOnTrail(first, place, trailEnd);
  for (u32 turn = 1; !meets && place.next < trailEnd && first.run.out <= last; ++turn) {
    if (turn % kTurnsTillSymbols == 0 && place.next > trailBegin) {
      for (u32 i = 0;
           i < kMostGroupSymbols<Symbols> && !meets && place.next < trailEnd && TakeOne(first, frame, codes);
           ++i)
        meets = IsOnTrail(first, place, trailEnd);
    } else {
      TakeTurn(first.run, first.window, frame, codes.steps, codes.groups);
      meets = IsOnTrail(first, place, trailEnd);
    }
  }
  return meets;
}

// Takes over what the second cursor found behind the place, as far as whole steps fit before the end of the run.
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
  reader.position = position;
}

// Decodes a run from its start and from bit `middle`, as far as the second cursor comes, or, if they do not meet, as
// far as the first does. Gives whether they met.
//
// end         of the run
// readableTo  offset of the bytes that must not be loaded
template <int Symbols>
[[gnu::noinline]] bool GetFromTwo(BitReader& reader, const RowCodes<Symbols>& codes, SymbolRun<Symbols>& run,
                                  const SampleOf<Symbols>* end, u64 middle, u64 readableTo) {
  Trail<Symbols> trail;
  const u8* const frame = reader.frame;
  const RowCodes<Symbols> tables = codes;  // in registers: stores through u8* could otherwise alter them
  Cursor<Symbols> first = {run, OpenWindow(frame, reader.position)};
  Cursor<Symbols> second = {{trail.symbols.data(), kStepBeforeRun}, OpenWindow(frame, middle)};
  // A turn takes this many bits at most. Loads end 16 bytes behind the position of a cursor at most, and the first one is
  // at most a symbol behind the end of the trail when it loads.
  constexpr u64 kTurnBits = kTurnSteps * kGroupBits;
  const u64 middleOffset = middle >> 3;
  const u64 turns = std::min<u64>(kTrailTurns, (readableTo - middleOffset - 24) * 8 / kTurnBits);
  const SampleOf<Symbols>* const last = end - kTurnSymbols<Symbols>;
  const u16* const trailEnd = GoSideBySide(first, second, tables, frame, middleOffset, last, turns, trail);
  TrailPlace place = {trail.steps.data(), kStepBeforeRun, middle, 0};
  const bool meets = GoOnToTrail(first, tables, frame, last, place, trailEnd);
  run = first.run;
  reader.position = PositionOf(first.window);
  if (meets) TakeOver(reader, run, end, second, trail, place, trailEnd);
  return meets;
}

// Decodes most of a run from two places if it is likely to be long and the guess is worth something.
//
// sureBits  how many bits from the start of the run on are there in a whole frame
template <int Symbols>
inline void TryFromTwo(BitReader& reader, const RowCodes<Symbols>& codes, SymbolRun<Symbols>& run,
                       const SampleOf<Symbols>* end, u64 sureBits, RunGuess& guess) {
  const u64 half = guess.bits * static_cast<u64>(end - run.out) / (2 * guess.symbols);
  if (half < kLeastHalfBits) return;
  if (guess.pause > 0) {
    --guess.pause;
    return;
  }
  const u64 readableTo = std::min<u64>((reader.position + sureBits) >> 3, reader.readableTo);
  const u64 middle = reader.position + half;
  // What the second cursor takes must be there, give or take a quarter.
  if (readableTo < (middle + half + half / 4) >> 3 || !IsReadable(reader, reader.position >> 3, 16)) return;
  const bool meets = GetFromTwo(reader, codes, run, end, middle, readableTo);
  guess.lastPause = meets ? 0 : std::min(2 * guess.lastPause + 1, kLongestPause);
  guess.pause = guess.lastPause;
}

}  // namespace vorel::inline VOREL_INSTRUCTIONS
