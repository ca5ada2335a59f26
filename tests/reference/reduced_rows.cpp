#include "tests/reference/reduced_rows.h"

#include "tests/reference/frame_model.h"

namespace reference {

using std::uint32_t;
using std::uint64_t;

// A row opens with a run of ones and a zero. An odd run is that of a raw row; two ones stand for a lost bit.
ReducedPicture DecodeReducedRows(const Bits& bits, uint64_t position, uint32_t width, uint32_t height,
                                 uint64_t bound) {
  const PrefixCode& lumaCode = FindCode("8bv 4:2:2 i", 'A');
  const PrefixCode& chromaCode = FindCode("8bv 4:2:2 i", 'B');
  const uint64_t firstWord = position / 32;
  BitSource source = {bits, position};
  ReducedPicture picture = {};
  for (uint32_t y = 0; y < height && picture.status == 0; ++y) {
    int ones = 0;
    while (TakeField(source, 1) == 1) ++ones;
    const bool raw = ones % 2 == 1;
    const int lost = ones / 2;
    const int field = lost < 8 ? 8 - lost : 0;  // bits of a raw sample
    // No row uses the one above.
    int luma = lost < 8 ? 125 >> lost : 0;
    int chroma[2] = {lost < 8 ? 128 >> lost : 0, lost < 8 ? 128 >> lost : 0};
    // Byte `place` of the pair. A value too large for its reduced range reaches into the next byte; what
    // leaves the word is gone.
    const auto put = [lost](uint32_t& pair, int place, int sample) {
      const int at = 8 * place + lost;
      if (at < 32) pair |= static_cast<uint32_t>(sample) << at;
    };
    std::vector<std::uint8_t>& row = picture.rows.emplace_back();
    for (uint64_t k = 0; k < (uint64_t{width} + 1) / 2; ++k) {
      uint32_t pair = 0;
      for (int half = 0; half < 2; ++half) {
        luma = raw ? TakeField(source, field) : (luma + TakeSymbol(source, lumaCode)) & 255;
        chroma[half] = raw ? TakeField(source, field) : (chroma[half] + TakeSymbol(source, chromaCode)) & 255;
        put(pair, 2 * half + 1, luma);
        put(pair, 2 * half, chroma[half]);
      }
      for (int shift = 0; shift < 32; shift += 8) row.push_back(static_cast<std::uint8_t>(pair >> shift));
    }
    if (IsPastBound(source.position, firstWord, bound)) picture.status = 4;
  }
  picture.position = source.position;
  return picture;
}

}  // namespace reference
