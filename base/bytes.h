// Numbers in memory: big- and little-endian loads and stores at any address, and four-character codes.
#pragma once
#include <bit>
#include <cstring>

#include "base/integers.h"

namespace vorel {

static_assert(std::endian::native == std::endian::little,
              "frame headers and pixel formats are written for little endian");

template <typename Integer>
inline Integer LoadNative(const void* bytes) {
  Integer value;
  std::memcpy(&value, bytes, sizeof value);
  return value;
}

template <typename Integer>
inline void StoreNative(void* bytes, Integer value) {
  std::memcpy(bytes, &value, sizeof value);
}

constexpr u16 SwapBytes(u16 value) {
  return __builtin_bswap16(value);
}
constexpr u32 SwapBytes(u32 value) {
  return __builtin_bswap32(value);
}
constexpr u64 SwapBytes(u64 value) {
  return __builtin_bswap64(value);
}

inline u16 LoadBig16(const void* bytes) {
  return SwapBytes(LoadNative<u16>(bytes));
}
inline u32 LoadBig32(const void* bytes) {
  return SwapBytes(LoadNative<u32>(bytes));
}
inline u64 LoadBig64(const void* bytes) {
  return SwapBytes(LoadNative<u64>(bytes));
}
inline void StoreBig16(void* bytes, u16 value) {
  StoreNative(bytes, SwapBytes(value));
}
inline void StoreBig32(void* bytes, u32 value) {
  StoreNative(bytes, SwapBytes(value));
}
inline void StoreBig64(void* bytes, u64 value) {
  StoreNative(bytes, SwapBytes(value));
}

inline u32 LoadLittle32(const void* bytes) {
  return LoadNative<u32>(bytes);
}
inline void StoreLittle32(void* bytes, u32 value) {
  StoreNative(bytes, value);
}

// 'yuvu' as the platform's numbers have it: the first character in the top byte.
constexpr u32 FourCharacterCode(const char (&text)[5]) {
  u32 code = 0;
  for (int i = 0; i < 4; ++i) code = code << 8 | static_cast<u8>(text[i]);
  return code;
}

// The same four bytes as they stand in a file, read as a little-endian number: how frames hold tags and
// signatures.
constexpr u32 WordOfBytes(const char (&text)[5]) {
  return SwapBytes(FourCharacterCode(text));
}

static_assert(FourCharacterCode("yuvu") == 0x79757675);
static_assert(WordOfBytes("YbYr") == 0x72596259);

}  // namespace vorel
