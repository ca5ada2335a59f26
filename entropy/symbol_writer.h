// Runs of symbols whose classes follow a pattern, into a frame: the hot loops of the encoder. See
// entropy/symbol_groups.h for the tables. Each loop has a careful twin that it goes over to near the end of the
// frame.
#pragma once
#include "base/instructions.h"
#include "entropy/bit_writer.h"
#include "entropy/symbol_groups.h"

namespace vorel::inline VOREL_INSTRUCTIONS {

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
