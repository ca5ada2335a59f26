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

// Decodes `count` symbols into `out`, a whole number of patterns.
//
// bitsBehind   how many coded bits follow this run in a whole frame: they allow for more look-ahead
//              without loading more than two words behind the last of them
template <typename Window, int Symbols>
void GetSymbols(BitReader& reader, const RowCodes<Symbols>& codes, SampleOf<Symbols>* out, std::size_t count,
                u64 bitsBehind) {
  // An offset from an entry, rather than an index, keeps one addition out of the chain from look-up to
  // look-up.
  const u8* const tables = reinterpret_cast<const u8*>(codes.groups);
  const auto tableAt = [tables](u32 offset) { return reinterpret_cast<const u64*>(tables + offset); };
  SampleOf<Symbols>* const end = out + count;
  u32 table = 0;  // offset in bytes of the entries for the place that comes next
  const auto storeGroup = [](SampleOf<Symbols>* to, u64 entry) { StoreNative(to, entry >> 16); };
  // Decodes one symbol of any length from the next 32 bits and gives the bits that it takes.
  const auto takeOne = [&](u32 next) {
    const u32 place = table / kGroupTableBytes;
    const DecodedSymbol decoded = DecodeSymbol(*codes.codes, ClassAt(codes.pattern, place), next);
    *out++ = static_cast<SampleOf<Symbols>>(decoded.symbol);
    table = place + 1 == codes.pattern.length ? 0 : table + kGroupTableBytes;
    return decoded.length;
  };
  constexpr std::size_t kStoredSamples = 8 / sizeof(SampleOf<Symbols>);  // by one storeGroup
  if constexpr (kWindowBits<Window> == 64) {
    // A turn takes at most kTurnSymbols, and its loads end at most 127 bits behind the position that they start
    // from: with 63 coded bits ahead that is within two words of the last one. A symbol has at least one bit.
    constexpr std::size_t kTurnSymbols = std::size_t{4} * kMostGroupSymbols<Symbols> + kStoredSamples;
    const std::size_t margin = bitsBehind >= 64 ? kTurnSymbols : std::max<std::size_t>(64, kTurnSymbols);
    if (count >= margin && IsReadable(reader, reader.position >> 3, 16)) {
      const SampleOf<Symbols>* const outLast = end - margin;
      const u64 offsetLast = reader.readableTo - 8;
      u64 offset = reader.position >> 3;
      u64 window = LoadBig64(reader.frame + offset);
      u32 valid = 56;  // bits of the window that count; those below are the true ones behind, or zero
      offset += 7;
      window <<= reader.position & 7;
      valid -= static_cast<u32>(reader.position & 7);
      while (out <= outLast && offset <= offsetLast) {
        window |= LoadBig64(reader.frame + offset) >> valid;
        offset += (63 - valid) >> 3;
        valid |= 56;
        u64 entry = 0;
        u32 used = 0;
        for (int step = 0; step < 4; ++step) {
          entry = tableAt(table)[window >> (64 - kGroupBits)];
          storeGroup(out, entry);
          out += SymbolsOfGroup(entry);
          window <<= entry & 63;
          used += BitsOfGroup(entry);
          table = static_cast<u32>(entry) & kNextTableMask;
        }
        valid -= used;
        if (BitsOfGroup(entry) == 0) [[unlikely]] {
          // A code of more than 11 bits. 12 bits are left at least; the load gives the rest.
          if (offset > offsetLast) break;
          window |= LoadBig64(reader.frame + offset) >> valid;
          offset += (63 - valid) >> 3;
          valid |= 56;
          const u32 length = takeOne(static_cast<u32>(window >> 32));
          window <<= length;
          valid -= length;
        }
      }
      reader.position = offset * 8 - valid;
    }
  } else {
    // A load of 32 bits at the position leaves 25: two steps.
    constexpr std::ptrdiff_t kTurnSymbols = 2 * kMostGroupSymbols<Symbols> + kStoredSamples;
    while (end - out >= kTurnSymbols && IsReadable(reader, reader.position >> 3, 4)) {
      u32 window = LoadBig32(reader.frame + (reader.position >> 3)) << (reader.position & 7);
      u64 entry = 0;
      u32 used = 0;
      for (int step = 0; step < 2; ++step) {
        entry = tableAt(table)[window >> (32 - kGroupBits)];
        storeGroup(out, entry);
        out += SymbolsOfGroup(entry);
        window <<= entry & 31;
        used += BitsOfGroup(entry);
        table = static_cast<u32>(entry) & kNextTableMask;
      }
      reader.position += used;
      if (BitsOfGroup(entry) == 0) [[unlikely]] {
        reader.position += takeOne(PeekWord(reader));
      }
    }
  }
  while (out < end) {
    if (IsBehindEnd(reader)) {
      TakeZeroSymbols(reader, codes, out, static_cast<std::size_t>(end - out), table / kGroupTableBytes);
      return;
    }
    const u32 window = PeekWord(reader);
    const u64 entry = tableAt(table)[window >> (32 - kGroupBits)];
    if (BitsOfGroup(entry) != 0 && end - out >= static_cast<std::ptrdiff_t>(kStoredSamples)) {
      storeGroup(out, entry);
      out += SymbolsOfGroup(entry);
      reader.position += BitsOfGroup(entry);
      table = static_cast<u32>(entry) & kNextTableMask;
    } else {
      reader.position += takeOne(window);
    }
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
