// Runs of symbols whose classes follow a pattern, into a frame: the hot loops of the encoder. See
// entropy/symbol_codes.h for the tables. Each loop has a careful twin that it goes over to near the end of the
// frame.
#pragma once
#include "base/instructions.h"
#include "entropy/bit_writer.h"
#include "entropy/symbol_codes.h"

namespace vorel::inline VOREL_INSTRUCTIONS {

// Writes `count` bytes, a multiple of 4, as they stand.
template <typename Window>
void PutRawBytes(BitWriter<Window>& writer, const u8* bytes, std::size_t count) {
  if (!HasRoom(writer, count)) {
    for (std::size_t i = 0; i < count; i += 4) PutWord(writer, LoadBig32(bytes + i));
    return;
  }
  BitWriter<Window> local = writer;
  for (std::size_t i = 0; i < count; i += 4) {
    const u32 word = LoadBig32(bytes + i);
    if constexpr (kMostBitsPerPut<Window> >= 32) {
      PutBitsFast(local, Window{word}, 32);
    } else {
      PutBitsFast(local, Window{word >> 16}, 16);
      PutBitsFast(local, Window{word & 0xFFFF}, 16);
    }
  }
  writer = local;
}

// Cells from one plane of joint indexes to the next: those of a strip, and more up to a whole vector.
inline constexpr std::size_t kIndexPitch = 112;

// Symbols of a strip of steps, as the look-ups want them. A pair that goes on into the next step counts to the step
// where it begins.
template <u32 Length>
struct StepCells {
  const u16* pairs;                        // a plane of joint indexes for each pair until the pattern repeats
  std::array<const u16*, Length> symbols;  // not needed of an alphabet of 256, where indexes tell them
};

struct SymbolPair {
  u32 first;
  u32 second;
};

template <int Symbols, u32 Length>
inline SymbolPair SymbolsOfPair(const StepCells<Length>& cells, u32 pair, std::size_t step) {
  if constexpr (Symbols == 256) {
    const u32 index = cells.pairs[kIndexPitch * pair + step];
    return {index & 255, index >> 8};
  } else {
    const u32 place = FirstOfPair(Length, pair);
    return {cells.symbols[place][step], cells.symbols[(place + 1) % Length][step + (place + 1) / Length]};
  }
}

// What `steps` may take at most, in bytes.
constexpr std::size_t WorstStepBytes(u32 steps, u32 length) {
  return std::size_t{steps} * length * kLongestCode / 8;
}

// The pairs of a round: of the fewest steps that are whole pairs and more than one.
template <u32 Length>
inline constexpr u32 kRoundSteps = Length == 4 ? 1 : 2;
template <u32 Length>
inline constexpr u32 kRoundPairs = kRoundSteps<Length>* Length / 2;

struct PairPlace {
  u32 pair;
  std::size_t step;
};

// Pair `k` of the round that begins at `step`.
template <u32 Length>
constexpr PairPlace PlaceInRound(u32 k, std::size_t step) {
  return {Length == 2 ? 0 : k, step + 2 * k / Length};
}

template <int Symbols, u32 Length>
inline std::array<u32, 2> CodesOfPair(const SymbolCodes<Symbols>& codes, const StepCells<Length>& cells,
                                      PairPlace place) {
  const u32 first = FirstOfPair(Length, place.pair);
  const SymbolPair symbols = SymbolsOfPair<Symbols>(cells, place.pair, place.step);
  return {CodesAt(*codes.single, codes.pattern, first)[symbols.first],
          CodesAt(*codes.single, codes.pattern, (first + 1) % Length)[symbols.second]};
}

static_assert(kNoJointCode > kMostBitsPerPut<u64>);

// The codes of a round's pairs, put together.
struct JoinedCodes {
  u64 bits;
  u32 length;  // more than a put may add where a pair has no entry, or the first bits are missing
};

template <int Symbols, u32 Length>
inline u32 EntryOfPair(const u32* tables, const u16* indexes, PairPlace place) {
  return tables[kJointEntries<Symbols> * std::size_t{place.pair} +
                indexes[kIndexPitch * place.pair + place.step]];
}

template <int Symbols, u32 Length>
inline JoinedCodes JoinRound(const u32* tables, const u16* indexes) {
  JoinedCodes joined = {};
  for (u32 k = 0; k < kRoundPairs<Length>; ++k) {
    const u32 entry = EntryOfPair<Symbols, Length>(tables, indexes, PlaceInRound<Length>(k, 0));
    joined.bits = k == 0 ? entry >> 8 : joined.bits << (entry & 63) | entry >> 8;
    joined.length += entry;
  }
  joined.length &= 255;
  return joined;
}

// Codes one round pair by pair; for places where a whole window fits. Never called: its caller keeps the writer in
// registers.
template <int Symbols, u32 Length, typename Window>
[[gnu::always_inline]] inline void PutPairs(BitWriter<Window>& writer, const SymbolCodes<Symbols>& codes,
                                            const StepCells<Length>& cells, std::size_t step) {
  for (u32 k = 0; k < kRoundPairs<Length>; ++k) {
    const PairPlace place = PlaceInRound<Length>(k, step);
    const u32 entry = EntryOfPair<Symbols, Length>(codes.pairs, cells.pairs, place);
    if ((entry & 255) != kNoJointCode) {
      PutBitsFast(writer, static_cast<Window>(entry >> 8), entry & 255);
    } else {
      for (const u32 code : CodesOfPair(codes, cells, place))
        PutBitsFast(writer, static_cast<Window>(code >> 8), code & 255);
    }
  }
}

// Codes steps one by one, anywhere.
template <int Symbols, u32 Length, typename Window>
void PutStepsCarefully(BitWriter<Window>& writer, const SymbolCodes<Symbols>& codes,
                       const StepCells<Length>& cells, std::size_t first, std::size_t end) {
  const auto put = [&](u32 code) { PutBits(writer, static_cast<Window>(code >> 8), code & 255); };
  for (std::size_t step = first; step < end; ++step) {
    for (u32 pair = 0; pair < (Length + 1) / 2; ++pair) {
      const std::array<u32, 2> pairCodes = CodesOfPair(codes, cells, {pair, step});
      put(pairCodes[0]);
      if (2 * pair + 1 < Length) put(pairCodes[1]);
    }
  }
}

// Codes `steps` repetitions of a pattern of `Length` symbols.
template <u32 Length, typename Window, int Symbols>
void PutSteps(BitWriter<Window>& writer, const SymbolCodes<Symbols>& codes, const StepCells<Length>& cells,
              u32 steps) {
  std::size_t step = 0;
  if (HasRoom(writer, WorstStepBytes(steps, Length))) {
    // In registers: stores through u8* could otherwise alter them.
    BitWriter<Window> local = writer;
    const u32* const tables = codes.pairs;
    const u16* const indexes = cells.pairs;
    if constexpr (kWindowBits<Window> == 64) {
      constexpr u32 kMost = kMostBitsPerPut<Window>;
      for (; step + 2 * kRoundSteps<Length> <= steps; step += 2 * kRoundSteps<Length>) {
        const std::size_t next = step + kRoundSteps<Length>;
        const JoinedCodes first = JoinRound<Symbols, Length>(tables, indexes + step);
        const JoinedCodes second = JoinRound<Symbols, Length>(tables, indexes + next);
        if (first.length + second.length <= kMost) [[likely]] {
          PutBitsFast(local, first.bits << second.length | second.bits, first.length + second.length);
          continue;
        }
        if (first.length <= kMost) [[likely]] {
          PutBitsFast(local, first.bits, first.length);
        } else {
          PutPairs(local, codes, cells, step);
        }
        if (second.length <= kMost) [[likely]] {
          PutBitsFast(local, second.bits, second.length);
        } else {
          PutPairs(local, codes, cells, next);
        }
      }
    }
    for (; step + kRoundSteps<Length> <= steps; step += kRoundSteps<Length>)
      PutPairs(local, codes, cells, step);
    writer = local;
  }
  PutStepsCarefully(writer, codes, cells, step, steps);
}

// Writes `steps` units of `Length` samples as plain fields of `SampleBits` bits.
template <u32 Length, u32 SampleBits, typename Window>
void PutRawSteps(BitWriter<Window>& writer, std::array<const u16*, Length> planes, u32 steps) {
  if (!HasRoom(writer, std::size_t{steps} * Length * 2)) {
    for (u32 i = 0; i < steps; ++i) {
      for (u32 k = 0; k < Length; ++k) PutBits(writer, Window{planes[k][i]}, SampleBits);
    }
    return;
  }
  BitWriter<Window> local = writer;
  for (u32 i = 0; i < steps; ++i) {
    if constexpr (Length * SampleBits <= kMostBitsPerPut<Window>) {
      Window fields = planes[0][i];
      for (u32 k = 1; k < Length; ++k) fields = fields << SampleBits | planes[k][i];
      PutBitsFast(local, fields, Length * SampleBits);
    } else {
      for (u32 k = 0; k < Length; ++k) PutBitsFast(local, Window{planes[k][i]}, SampleBits);
    }
  }
  writer = local;
}

}  // namespace vorel::inline VOREL_INSTRUCTIONS
