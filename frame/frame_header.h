// The 20 bytes before the bit stream:
//
//   word   0              1             2                     3         4
//   bytes  V o r l        0D 0A 00 0A   FF 'T' 'a' 'm'        r i c k   format tag
//   or     K e s p                      AD 'T' 'a' 'm'
//
// The second form is only ever read. The words spell their text in file order; the words of the stream behind
// them are stored most significant byte first.
#pragma once
#include <array>

#include "base/bytes.h"
#include "vorel/frame_codec.h"

namespace vorel {

using HeaderWords = std::array<u32, VOREL_FRAME_HEADER_WORDS>;

inline constexpr std::array<u32, 4> kWrittenSignature = {WordOfBytes("Vorl"), 0x0A000A0D,
                                                         WordOfBytes("\xFFTam"), WordOfBytes("rick")};
inline constexpr u32 kOtherFirstWord = WordOfBytes("Kesp");
inline constexpr u32 kOtherMarkerWord = WordOfBytes("\xADTam");

// The signature that encoders write, exactly.
constexpr bool IsWrittenSignature(const HeaderWords& header) {
  for (std::size_t i = 0; i < kWrittenSignature.size(); ++i) {
    if (header[i] != kWrittenSignature[i]) return false;
  }
  return true;
}

// Either form, each word tested by itself: frames that mix the two are accepted on purpose.
constexpr bool IsReadableSignature(HeaderWords header) {
  if (header[0] == kOtherFirstWord) header[0] = kWrittenSignature[0];
  if (header[2] == kOtherMarkerWord) header[2] = kWrittenSignature[2];
  return IsWrittenSignature(header);
}

static_assert(kWrittenSignature[2] == 0x6D6154FF && kWrittenSignature[3] == 0x6B636972);

}  // namespace vorel
