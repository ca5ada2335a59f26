// Runs of symbols whose classes follow a pattern, out of a frame: the hot loops of the decoder. See
// entropy/symbol_groups.h for the tables. Each loop has a careful twin that it goes over to near the end of the
// frame or of the run.
#pragma once
#include <algorithm>

#include "base/instructions.h"
#include "entropy/bit_reader.h"
#include "entropy/symbol_groups.h"

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

// How far a run of symbols has come.
template <int Symbols>
struct SymbolRun {
  SampleOf<Symbols>* out;  // the next symbol goes here
  SampleOf<Symbols>* end;
  u32 step;  // the last one, whose state comes next
};

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

// What a step stores, in symbols.
template <int Symbols>
inline constexpr std::ptrdiff_t kStoredSymbols = 8 / sizeof(SampleOf<Symbols>);

// Decodes most of a run, in turns of as many steps as a window has bits for.
template <typename Window, int Symbols>
inline void GetTurns(BitReader& reader, const RowCodes<Symbols>& codes, SymbolRun<Symbols>& runSoFar,
                     u64 bitsBehind) {
  constexpr int kSteps = kWindowBits<Window> == 64 ? 4 : 2;
  constexpr std::ptrdiff_t kTurnSymbols = (kSteps - 1) * kMostGroupSymbols<Symbols> + kStoredSymbols<Symbols>;
  SymbolRun<Symbols> run = runSoFar;  // in registers: stores through u8* could otherwise alter it
  const u16* const steps = codes.steps;
  const u64* const groups = codes.groups;
  if constexpr (kWindowBits<Window> == 64) {
    // The load of a turn ends at most 127 bits behind the position: with 63 coded bits ahead that is within two
    // words of the last one. A symbol has at least one bit.
    const std::ptrdiff_t margin =
        bitsBehind >= 64 ? kTurnSymbols : std::max<std::ptrdiff_t>(64, kTurnSymbols);
    u64 offset = reader.position >> 3;
    if (run.end - run.out < margin || !IsReadable(reader, offset, 16)) return;
    const SampleOf<Symbols>* const outLast = run.end - margin;
    const u64 offsetLast = reader.readableTo - 8;
    u64 window = LoadBig64(reader.frame + offset) << (reader.position & 7);
    // Bits of the window that count, 8 to 63 modulo 64: those below are the true ones behind, or zero.
    u64 valid = 56 - (reader.position & 7);
    offset += 7;
    while (run.out <= outLast && offset <= offsetLast) {
      window |= LoadBig64(reader.frame + offset) >> (valid & 63);
      offset += ~valid >> 3 & 7;
      valid |= 56;
      for (int i = 0; i < kSteps; ++i) {
        TakeStep(run, steps, groups, window >> (64 - kGroupBits));
        window <<= BitsOfStep(run.step);
        valid -= run.step;  // the low six bits alone matter
      }
    }
    reader.position = offset * 8 - (valid & 63);
  } else {
    // A load of 32 bits at the position leaves 25: two steps.
    u64 position = reader.position;
    while (run.end - run.out >= kTurnSymbols && IsReadable(reader, position >> 3, 4)) {
      u32 window = LoadBig32(reader.frame + (position >> 3)) << (position & 7);
      u32 used = 0;
      for (int i = 0; i < kSteps; ++i) {
        TakeStep(run, steps, groups, window >> (32 - kGroupBits));
        window <<= BitsOfStep(run.step);
        used += BitsOfStep(run.step);
      }
      position += used;
    }
    reader.position = position;
  }
  runSoFar = run;
}

// Decodes `count` symbols into `out`, a whole number of patterns.
//
// bitsBehind   how many coded bits follow this run in a whole frame: they allow for more look-ahead
//              without loading more than two words behind the last of them
template <typename Window, int Symbols>
void GetSymbols(BitReader& reader, const RowCodes<Symbols>& codes, SampleOf<Symbols>* out, std::size_t count,
                u64 bitsBehind) {
  SymbolRun<Symbols> run = {out, out + count, MakeStep(0, 0, 0)};
  GetTurns<Window>(reader, codes, run, bitsBehind);
  while (run.end - run.out >= kStoredSymbols<Symbols> && !IsBehindEnd(reader)) {
    TakeStep(run, codes.steps, codes.groups, PeekWord(reader) >> (32 - kGroupBits));
    reader.position += BitsOfStep(run.step);
  }
  u32 place = StateOfStep(run.step);
  if (place >= codes.pattern.length) {
    // Back to the start of a long code.
    place -= codes.pattern.length;
    reader.position -= kFirstBitsOfLong;
  }
  while (run.out < run.end) {
    if (IsBehindEnd(reader)) {
      TakeZeroSymbols(reader, codes, run.out, static_cast<std::size_t>(run.end - run.out), place);
      return;
    }
    const DecodedSymbol decoded = DecodeSymbol(*codes.codes, ClassAt(codes.pattern, place), PeekWord(reader));
    *run.out++ = static_cast<SampleOf<Symbols>>(decoded.symbol);
    reader.position += decoded.length;
    place = place + 1 == codes.pattern.length ? 0 : place + 1;
  }
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
