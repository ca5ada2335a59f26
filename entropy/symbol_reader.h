// Runs of symbols whose classes follow a pattern, out of a frame: the hot loops of the decoder. See
// entropy/symbol_groups.h for the tables. Each loop has a careful twin that it goes over to near the end of the
// frame or of the run.
#pragma once
#include <algorithm>

#include "base/instructions.h"
#include "entropy/two_cursors.h"

namespace vorel::inline VOREL_INSTRUCTIONS {

// What the bits behind the end of a frame that is cut short come to: symbol 0 of every class, the first one that
// of `place` in the pattern.
template <int Symbols>
[[gnu::noinline, gnu::cold]] void TakeZeroSymbols(BitReader& reader, const RowCodes<Symbols>& codes,
                                                  SampleOf<Symbols>* out, std::size_t count, u32 place) {
  std::memset(out, 0, count * sizeof *out);
  std::array<u64, 2> ofClass = {};
  for (u32 k = 0; k < codes.pattern.length; ++k) {
    const u32 at = (place + k) % codes.pattern.length;
    const u64 times = (u64{count} + codes.pattern.length - 1 - k) / codes.pattern.length;
    ofClass[static_cast<std::size_t>(Index(ClassAt(codes.pattern, at)))] += times;
  }
  reader.position += ofClass[0] * DecodeSymbol(*codes.codes, CodeClass::a, 0).length;
  reader.position += ofClass[1] * DecodeSymbol(*codes.codes, CodeClass::b, 0).length;
}

// Decodes most of a run, in turns of as many steps as a window has bits for.
template <typename Window, int Symbols>
inline void GetTurns(BitReader& reader, const RowCodes<Symbols>& codes, SymbolRun<Symbols>& run,
                     const SampleOf<Symbols>* end, u64 bitsBehind) {
  if constexpr (kWindowBits<Window> == 64) {
    // With so many coded bits ahead, no load goes further than two words behind the last of them. A symbol has at least
    // one bit.
    constexpr u64 kBitsAhead = 8 * kLookAheadBytes - 64;
    const std::ptrdiff_t margin = bitsBehind >= kBitsAhead
                                      ? kTurnSymbols<Symbols>
                                      : std::max<std::ptrdiff_t>(kBitsAhead, kTurnSymbols<Symbols>);
    if (end - run.out < margin || !IsReadable(reader, reader.position >> 3, kLookAheadBytes)) return;
    const SampleOf<Symbols>* const last = end - margin;
    const u64 offsetEnd = std::min<u64>(reader.readableTo, u64{1} << 60) - kLookAheadBytes;
    Cursor<Symbols> cursor = {run, OpenWindow(reader.frame, reader.position)};
    while (TakeTurns(cursor, codes, reader.frame, last, offsetEnd))
      GoOnInZeros(cursor, codes, reader.frame, {static_cast<u64>(last - cursor.run.out), offsetEnd * 8});
    run = cursor.run;
    reader.position = PositionOf(cursor.window);
  } else {
    // A load of 32 bits at the position leaves 25: two steps.
    constexpr int kSteps = 2;
    constexpr std::ptrdiff_t kMargin = (kSteps - 1) * kMostGroupSymbols<Symbols> + kStoredSymbols<Symbols>;
    u64 position = reader.position;
    while (end - run.out >= kMargin && IsReadable(reader, position >> 3, 4)) {
      u32 window = LoadBig32(reader.frame + (position >> 3)) << (position & 7);
      u32 used = 0;
      for (int i = 0; i < kSteps; ++i) {
        TakeStep(run, codes.steps, codes.groups, window >> (32 - kGroupBits));
        window <<= BitsOfStep(run.step);
        used += BitsOfStep(run.step);
      }
      position += used;
    }
    reader.position = position;
  }
}

// Decodes the end of a run, where turns would store or load too much.
template <int Symbols>
inline void GetLastSymbols(BitReader& reader, const RowCodes<Symbols>& codes, SymbolRun<Symbols> run,
                           const SampleOf<Symbols>* end) {
  while (end - run.out >= kStoredSymbols<Symbols> && !IsBehindEnd(reader)) {
    TakeStep(run, codes.steps, codes.groups, PeekWord(reader) >> (32 - kGroupBits));
    reader.position += BitsOfStep(run.step);
  }
  u32 place = StateOfStep(run.step);
  if (place >= codes.pattern.length) {
    // Back to the start of a long code.
    place -= codes.pattern.length;
    reader.position -= kFirstBitsOfLong;
  }
  while (run.out < end) {
    if (IsBehindEnd(reader)) {
      TakeZeroSymbols(reader, codes, run.out, static_cast<std::size_t>(end - run.out), place);
      return;
    }
    const DecodedSymbol decoded = DecodeSymbol(*codes.codes, ClassAt(codes.pattern, place), PeekWord(reader));
    *run.out++ = static_cast<SampleOf<Symbols>>(decoded.symbol);
    reader.position += decoded.length;
    place = place + 1 == codes.pattern.length ? 0 : place + 1;
  }
}

// Decodes `count` symbols into `out`, a whole number of patterns.
//
// bitsBehind   how many coded bits follow this run in a whole frame: they allow for more look-ahead
//              without loading more than two words behind the last of them
// guess        of how long the run is; afterwards that of the next one
template <typename Window, int Symbols>
void GetSymbols(BitReader& reader, const RowCodes<Symbols>& codes, SampleOf<Symbols>* out, std::size_t count,
                u64 bitsBehind, RunGuess& guess) {
  SymbolRun<Symbols> run = {out, kStepBeforeRun};
  const SampleOf<Symbols>* const end = out + count;
  const u64 start = reader.position;
  if constexpr (kWindowBits<Window> == 64) TryFromTwo(reader, codes, run, end, count + bitsBehind, guess);
  GetTurns<Window>(reader, codes, run, end, bitsBehind);
  GetLastSymbols(reader, codes, run, end);
  guess.bits = reader.position - start;
  guess.zeroBits = std::min(run.zeroBits, guess.bits);
  guess.symbols = count;
}

// Reads `count` bytes, a multiple of 4, as they stand in the stream at any bit.
inline void GetRawBytes(BitReader& reader, u8* out, std::size_t count) {
  if (IsBehindEnd(reader)) {
    std::memset(out, 0, count);
    reader.position += u64{count} * 8;
    return;
  }
  for (std::size_t i = 0; i < count; i += 4) StoreBig32(out + i, GetWord(reader));
}

// Reads `count` fields of `SampleBits` bits.
template <u32 SampleBits, typename Sample>
void GetRawSamples(BitReader& reader, Sample* out, std::size_t count) {
  if (IsBehindEnd(reader)) {
    std::memset(out, 0, count * sizeof *out);
    reader.position += u64{count} * SampleBits;
    return;
  }
  for (std::size_t i = 0; i < count; ++i) {
    out[i] = static_cast<Sample>(PeekWord(reader) >> (32 - SampleBits));
    reader.position += SampleBits;
  }
}

}  // namespace vorel::inline VOREL_INSTRUCTIONS
