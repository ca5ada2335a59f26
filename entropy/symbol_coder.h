// Runs of symbols whose classes follow a pattern: the hot loops of encoder and decoder. See
// entropy/symbol_groups.h for the tables. Each loop has a careful twin that it goes over to near the end of the
// frame or of the run.
#pragma once
#include <algorithm>

#include "entropy/bit_reader.h"
#include "entropy/bit_writer.h"
#include "entropy/symbol_groups.h"

namespace vorel {

// Codes one class A symbol (low byte) and one class B symbol (high byte), anywhere.
template <typename Window>
inline void PutSymbolPair(BitWriter<Window>& writer, const RowCodes<256>& codes, u16 symbols) {
  PutCode(writer, codes.codes->encode[symbols & 255u][0]);
  PutCode(writer, codes.codes->encode[symbols >> 8][1]);
}

// What `count` symbol pairs may take at most, in bytes.
constexpr std::size_t WorstPairBytes(u32 count) {
  return std::size_t{count} * (2 * kLongestCode / 8);
}

// Codes `count` pairs of symbols, each with the class A symbol in its low byte.
template <typename Window>
void PutSymbolPairs(BitWriter<Window>& writer, const RowCodes<256>& codes, const u16* symbols, u32 count) {
  if (!HasRoom(writer, WorstPairBytes(count))) {
    for (u32 i = 0; i < count; ++i) PutSymbolPair(writer, codes, symbols[i]);
    return;
  }
  const u32* pairs = codes.pairs;
  BitWriter<Window> local = writer;  // in registers: stores through u8* could otherwise alter it
  const auto putOne = [&](u16 symbolPair) {
    const u32 entry = pairs[symbolPair];
    if ((entry & 255) == kNoPairCode) {
      PutSymbolPair(local, codes, symbolPair);
    } else {
      PutBitsFast(local, static_cast<Window>(entry >> 8), entry & 255);
    }
  };
  const u16* const end = symbols + count;
  if constexpr (kWindowBits<Window> == 64) {
    for (; end - symbols >= 4; symbols += 4) {
      const u32 e0 = pairs[symbols[0]];
      const u32 e1 = pairs[symbols[1]];
      const u32 e2 = pairs[symbols[2]];
      const u32 e3 = pairs[symbols[3]];
      const u32 bits = (e0 + e1 + e2 + e3) & 255;
      if (bits <= kMostBitsPerPut<Window>) [[likely]] {
        const u64 high = u64{e0 >> 8} << (e1 & 63) | e1 >> 8;
        const u64 low = u64{e2 >> 8} << (e3 & 63) | e3 >> 8;
        PutBitsFast(local, high << ((e2 + e3) & 63) | low, bits);
      } else {
        for (u32 k = 0; k < 4; ++k) putOne(symbols[k]);
      }
    }
  }
  for (; symbols != end; ++symbols) putOne(*symbols);
  writer = local;
}

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

// The codes of one repetition of a pattern, put together.
struct StepCode {
  u64 bits;
  u32 length;  // up to 64: then the first bits may be missing
};

// Codes `steps` repetitions of a pattern of `Length` symbols, each symbol from a plane of its own.
template <u32 Length, typename Window, int Symbols>
void PutSteps(BitWriter<Window>& writer, const RowCodes<Symbols>& codes,
              std::array<const u16*, Length> planes, u32 steps) {
  std::array<const u32*, Length> tables;
  for (u32 k = 0; k < Length; ++k)
    tables[k] = (*codes.single)[static_cast<std::size_t>(Index(ClassAt(codes.pattern, k)))].data();
  const auto putOneByOne = [&](BitWriter<Window>& to, u32 i) {
    for (u32 k = 0; k < Length; ++k) {
      const u32 code = tables[k][planes[k][i]];
      PutBits(to, static_cast<Window>(code >> 8), code & 255);
    }
  };
  if (!HasRoom(writer, std::size_t{steps} * Length * kLongestCode / 8)) {
    for (u32 i = 0; i < steps; ++i) putOneByOne(writer, i);
    return;
  }
  BitWriter<Window> local = writer;  // in registers: stores through u8* could otherwise alter it
  u32 i = 0;
  if constexpr (kWindowBits<Window> == 64) {
    const auto gather = [&](u32 step) {
      u32 code = tables[0][planes[0][step]];
      StepCode gathered = {code >> 8, code & 255};
      for (u32 k = 1; k < Length; ++k) {
        code = tables[k][planes[k][step]];
        gathered.bits = gathered.bits << (code & 63) | code >> 8;
        gathered.length += code & 255;
      }
      return gathered;
    };
    // Two at a time: their codes are short as a rule.
    for (; i + 2 <= steps; i += 2) {
      const StepCode first = gather(i);
      const StepCode second = gather(i + 1);
      if (first.length + second.length <= kMostBitsPerPut<Window>) [[likely]] {
        PutBitsFast(local, first.bits << second.length | second.bits, first.length + second.length);
      } else {
        putOneByOne(local, i);
        putOneByOne(local, i + 1);
      }
    }
  }
  for (; i < steps; ++i) putOneByOne(local, i);
  writer = local;
}

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

}  // namespace vorel
