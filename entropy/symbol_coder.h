// Runs of 8-bit symbols whose classes alternate, A first: the hot loops of encoder and decoder. See
// entropy/symbol_groups.h for the tables. Both loops have a careful twin that they go over to near the end of
// the frame or of the run.
#pragma once
#include "entropy/bit_reader.h"
#include "entropy/bit_writer.h"
#include "entropy/symbol_groups.h"

namespace vorel {

// Codes one class A symbol (low byte) and one class B symbol (high byte), anywhere.
template <typename Window>
inline void PutSymbolPair(BitWriter<Window>& writer, const RowCodes8& codes, u16 symbols) {
  PutCode(writer, codes.codes->encode[symbols & 255u][0]);
  PutCode(writer, codes.codes->encode[symbols >> 8][1]);
}

// What `count` symbol pairs may take at most, in bytes.
constexpr std::size_t WorstPairBytes(u32 count) {
  return std::size_t{count} * (2 * kLongestCode / 8);
}

// Codes `count` pairs of symbols, each with the class A symbol in its low byte.
template <typename Window>
void PutSymbolPairs(BitWriter<Window>& writer, const RowCodes8& codes, const u16* symbols, u32 count) {
  if (!HasRoom(writer, WorstPairBytes(count))) {
    for (u32 i = 0; i < count; ++i) PutSymbolPair(writer, codes, symbols[i]);
    return;
  }
  const u32* pairs = codes.pairs->data();
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

// What the bits behind the end of a frame that is cut short come to: symbol 0 of either class, the first of
// `classBFirst`.
template <int Symbols>
[[gnu::noinline, gnu::cold]] void TakeZeroSymbols(BitReader& reader, const CodeSet<Symbols>& codes, u8* out,
                                                  std::size_t count, bool classBFirst) {
  std::memset(out, 0, count);
  const std::size_t ofFirst = (count + 1) / 2;
  const std::size_t ofClassA = classBFirst ? count - ofFirst : ofFirst;
  reader.position += u64{ofClassA} * DecodeSymbol(codes, CodeClass::a, 0).length;
  reader.position += u64{count - ofClassA} * DecodeSymbol(codes, CodeClass::b, 0).length;
}

// Decodes `count` symbols, an even number, into `out`.
//
// bitsBehind   how many coded bits follow this run in a whole frame: they allow for more look-ahead
//              without loading more than two words behind the last of them
template <typename Window>
void GetSymbols(BitReader& reader, const RowCodes8& codes, u8* out, std::size_t count, u64 bitsBehind) {
  static_assert(kGroupTableBytes <= 0xFFFF);
  // An offset from an entry, rather than an index, keeps one addition out of the chain from look-up to
  // look-up.
  const auto tableAt = [&](u32 offset) {
    return reinterpret_cast<const u64*>(reinterpret_cast<const u8*>(codes.groups->data()) + offset);
  };
  const u8* const end = out + count;
  u32 table = 0;  // offset in bytes of the entries for the class that comes next
  // Decodes one symbol of any length from the next 32 bits and gives the bits that it takes.
  const auto takeOne = [&](u32 next) {
    const DecodedSymbol decoded = DecodeSymbol(*codes.codes, table == 0 ? CodeClass::a : CodeClass::b, next);
    *out++ = static_cast<u8>(decoded.symbol);
    table ^= kGroupTableBytes;
    return decoded.length;
  };
  if constexpr (kWindowBits<Window> == 64) {
    // A turn takes at most 16 symbols, and its loads end at most 127 bits behind the position that they start
    // from: with 63 coded bits ahead that is within two words of the last one. A symbol has at least one bit.
    const std::size_t margin = bitsBehind >= 64 ? 16 : 64;
    if (count >= margin && IsReadable(reader, reader.position >> 3, 16)) {
      const u8* const outLast = end - margin;
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
          StoreLittle32(out, static_cast<u32>(entry >> 32));
          out += entry >> 8 & 255;
          window <<= entry & 63;
          used += static_cast<u32>(entry & 255);
          table = static_cast<u32>(entry >> 16 & 0xFFFF);
        }
        valid -= used;
        if ((entry & 255) == 0) [[unlikely]] {
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
    while (end - out >= 8 && IsReadable(reader, reader.position >> 3, 4)) {
      u32 window = LoadBig32(reader.frame + (reader.position >> 3)) << (reader.position & 7);
      u64 entry = 0;
      u32 used = 0;
      for (int step = 0; step < 2; ++step) {
        entry = tableAt(table)[window >> (32 - kGroupBits)];
        StoreLittle32(out, static_cast<u32>(entry >> 32));
        out += entry >> 8 & 255;
        window <<= entry & 31;
        used += static_cast<u32>(entry & 255);
        table = static_cast<u32>(entry >> 16 & 0xFFFF);
      }
      reader.position += used;
      if ((entry & 255) == 0) [[unlikely]] {
        reader.position += takeOne(PeekWord(reader));
      }
    }
  }
  while (out < end) {
    if (IsBehindEnd(reader)) {
      TakeZeroSymbols(reader, *codes.codes, out, static_cast<std::size_t>(end - out), table != 0);
      return;
    }
    const u32 window = PeekWord(reader);
    const u64 entry = tableAt(table)[window >> (32 - kGroupBits)];
    if ((entry & 255) != 0 && end - out >= static_cast<std::ptrdiff_t>(kMostGroupSymbols)) {
      StoreLittle32(out, static_cast<u32>(entry >> 32));
      out += entry >> 8 & 255;
      reader.position += entry & 255;
      table = static_cast<u32>(entry >> 16 & 0xFFFF);
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

}  // namespace vorel
