// Running sums of pairs, a vector at once.
#include <array>
#include <utility>

#include "base/lanes.h"
#include "codec422/pair_rebuild.h"

namespace vorel::inline VOREL_INSTRUCTIONS {
namespace {

using PairWords = u32 __attribute__((vector_size(2 * kLanes)));
using PairBytes = u8 __attribute__((vector_size(2 * kLanes)));

inline constexpr std::size_t kVectorPairs = sizeof(PairBytes) / 4;

#ifdef __AVX2__

inline PairBytes Reorder(PairBytes bytes, const OrderOfParts& order) {
  return (PairBytes)ReorderBytes((Lanes)bytes, order);
}

// The last pair of each part in all of its pairs, with its Y'1 in place of Y'0 too.
inline Lanes EndOfParts(PairBytes sums) {
  static constexpr auto kLast = OrderOfBytes([](int i) { return i % 4 == 0 ? 14 : 12 + i % 4; });
  return ReorderBytes((Lanes)sums, kLast);
}
inline PairBytes EndOf(PairBytes sums) {
  return (PairBytes)SecondPartInBoth(EndOfParts(sums));
}

// Running sums of each component: luma in steps of two bytes and chroma in steps of four.
inline PairBytes SumPairs(PairBytes sums) {
  static constexpr auto kLumaUp = OrderOfBytes([](int i) { return i % 2 == 0 ? i - 2 : -1; });
  static constexpr auto kPairUp = OrderOfBytes([](int i) { return i - 4; });
  static constexpr auto kTwoPairsUp = OrderOfBytes([](int i) { return i - 8; });
  sums += Reorder(sums, kLumaUp);
  sums += Reorder(sums, kPairUp);
  sums += Reorder(sums, kTwoPairsUp);
  return sums + (PairBytes)FirstPartAsSecond(EndOfParts(sums));
}

#else

// Moves the bytes of a vector up by N and puts zeros below.
template <int... Position>
PairBytes ShiftUp(PairBytes value, std::integer_sequence<int, Position...> /*positions*/) {
  constexpr int kShift = 16 - static_cast<int>(sizeof...(Position));
  const PairBytes zero = {};
  if constexpr (kShift == 2) {
    return __builtin_shufflevector(zero, value, 0, 0, Position + 16 ...);
  } else if constexpr (kShift == 4) {
    return __builtin_shufflevector(zero, value, 0, 0, 0, 0, Position + 16 ...);
  } else {
    static_assert(kShift == 8);
    return __builtin_shufflevector(zero, value, 0, 0, 0, 0, 0, 0, 0, 0, Position + 16 ...);
  }
}

// The last pair in all pairs, with its Y'1 in place of Y'0 too.
inline PairBytes EndOf(PairBytes sums) {
  const PairWords last = __builtin_shufflevector((PairWords)sums, (PairWords)sums, 3, 3, 3, 3);
  return (PairBytes)((last & 0xFFFFFF00u) | (last >> 16 & 0xFFu));
}

// Running sums of each component: luma in steps of two bytes and chroma in steps of four.
inline PairBytes SumPairs(PairBytes sums) {
  const PairBytes lumaMask = {255, 0, 255, 0, 255, 0, 255, 0, 255, 0, 255, 0, 255, 0, 255, 0};
  sums += ShiftUp(sums, std::make_integer_sequence<int, 14>()) & lumaMask;
  sums += ShiftUp(sums, std::make_integer_sequence<int, 12>());
  return sums + ShiftUp(sums, std::make_integer_sequence<int, 8>());
}

#endif

u8 Sum(u8 a, u8 b) {
  return static_cast<u8>(a + b);
}

}  // namespace

PairStart RebuildLeftOnly(u8* row, std::size_t pairs, PairStart start) {
  // Sums within a vector, which wait for nothing before it, and then what came before them.
  const u32 before = u32{start.luma} * 0x00010001u | u32{start.cb} << 8 | u32{start.cr} << 24;
  auto carry = (PairBytes)(PairWords{} + before);
  std::size_t i = 0;
  for (; i + kVectorPairs <= pairs; i += kVectorPairs) {
    const PairBytes sums = SumPairs(LoadNative<PairBytes>(row + 4 * i));
    StoreNative(row + 4 * i, sums + carry);
    carry += EndOf(sums);
  }
  PairStart next = {carry[0], carry[1], carry[3]};
  for (; i < pairs; ++i) {
    u8* pair = row + 4 * i;
    pair[0] = Sum(pair[0], next.luma);
    pair[1] = Sum(pair[1], next.cb);
    pair[2] = Sum(pair[2], pair[0]);
    pair[3] = Sum(pair[3], next.cr);
    next = {pair[2], pair[1], pair[3]};
  }
  return next;
}

}  // namespace vorel::inline VOREL_INSTRUCTIONS
