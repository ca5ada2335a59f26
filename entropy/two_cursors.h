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

// What the second cursor found.
template <int Symbols>
struct Trail {
  std::array<u16, kTrailTurns * kTurnSteps> steps;
  std::array<SampleOf<Symbols>, kTrailTurns * kTurnSteps * kStoredSymbols<Symbols>> symbols;
};

// Takes one symbol, if one begins here. Gives whether one does.
template <int Symbols>
inline bool TakeOne(SymbolRun<Symbols>& run, BitWindow& window, const u8* frame,
                    const RowCodes<Symbols>& codes) {
  const u32 place = StateOfStep(run.step);
  if (place >= codes.pattern.length) return false;
  const u64 filled = FillWindow(window, frame);
  const DecodedSymbol decoded =
      DecodeSymbol(*codes.codes, ClassAt(codes.pattern, place), static_cast<u32>(filled >> 32));
  *run.out++ = static_cast<SampleOf<Symbols>>(decoded.symbol);
  window.bits = filled << decoded.length;
  window.valid -= decoded.length;
  run.step = MakeStep(place + 1 == codes.pattern.length ? 0 : place + 1, 1, decoded.length);
  return true;
}

// Turns of the first cursor between attempts to meet the trail symbol by symbol: where all codes are alike, steps stay
// apart although their symbols are the same.
inline constexpr u32 kTurnsTillSymbols = 16;

// Decodes a run from its start and from bit `middle`, as far as the second cursor comes, or, if they do not meet, as
// far as the first does. Gives whether they met.
//
// end         of the run
// readableTo  offset of the bytes that must not be loaded
template <int Symbols>
[[gnu::noinline]] bool GetFromTwo(BitReader& reader, const RowCodes<Symbols>& codes,
                                  SymbolRun<Symbols>& runSoFar, const SampleOf<Symbols>* end, u64 middle,
                                  u64 readableTo) {
  Trail<Symbols> trail;
  const u8* const frame = reader.frame;
  const u16* const steps = codes.steps;
  const u64* const groups = codes.groups;
  SymbolRun<Symbols> first = runSoFar;
  SymbolRun<Symbols> second = {trail.symbols.data(), kStepBeforeRun};
  BitWindow firstWindow = OpenWindow(frame, reader.position);
  BitWindow secondWindow = OpenWindow(frame, middle);
  // A turn takes this many bits at most. Loads end 16 bytes behind the position of a cursor at most, and the first one is
  // at most a symbol behind the end of the trail when it loads.
  constexpr u64 kTurnBits = kTurnSteps * kGroupBits;
  const u64 middleOffset = middle >> 3;
  u64 turns = std::min<u64>(kTrailTurns, (readableTo - middleOffset - 24) * 8 / kTurnBits);
  const SampleOf<Symbols>* const last = end - kTurnSymbols<Symbols>;
  u16* trailEnd = trail.steps.data();
  for (; turns > 0 && firstWindow.offset < middleOffset && first.out <= last; --turns) {
    TakeTurn(first, firstWindow, frame, steps, groups);
    for (const u32 step : TakeTurn(second, secondWindow, frame, steps, groups))
      *trailEnd++ = static_cast<u16>(step);
  }

  const u16* met = trail.steps.data();
  u32 metStep = kStepBeforeRun;
  u64 metPosition = middle;
  std::size_t passed = 0;  // symbols before the place of the trail
  const auto haveMet = [&] {
    const u64 position = PositionOf(firstWindow);
    while (metPosition < position && met < trailEnd) {
      metStep = *met++;
      metPosition += BitsOfStep(metStep);
      passed += SymbolsOfStep(metStep);
    }
    return metPosition == position && StateOfStep(metStep) == StateOfStep(first.step);
  };
  bool meets = haveMet();
  for (u32 turn = 1; !meets && met < trailEnd && first.out <= last; ++turn) {
    if (turn % kTurnsTillSymbols == 0 && met > trail.steps.data()) {
      for (u32 i = 0; i < kMostGroupSymbols<Symbols> && !meets && met < trailEnd &&
                      TakeOne(first, firstWindow, frame, codes);
           ++i)
        meets = haveMet();
    } else {
      TakeTurn(first, firstWindow, frame, steps, groups);
      meets = haveMet();
    }
  }
  runSoFar = first;
  reader.position = PositionOf(firstWindow);
  if (!meets) return false;

  std::size_t count = static_cast<std::size_t>(second.out - trail.symbols.data()) - passed;
  u64 position = PositionOf(secondWindow);
  for (const auto room = static_cast<std::size_t>(end - first.out); count > room;) {
    const u32 step = *--trailEnd;
    count -= SymbolsOfStep(step);
    position -= BitsOfStep(step);
  }
  std::copy_n(trail.symbols.data() + passed, count, first.out);
  if (trailEnd > met) runSoFar.step = trailEnd[-1];
  runSoFar.out += count;
  reader.position = position;
  return true;
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
