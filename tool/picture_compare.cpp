// Rows are compared whole; only one that differs is looked at closely.
#include "tool/picture_compare.h"

#include <cstring>

namespace vorel::tool {

namespace {

struct PairPlace {
  const char* component;
  u32 pixel;     // within the pair
  u32 inverted;  // the bit in which the stored form differs from 0 to 255
};

// Y'0, Cb, Y'1, Cr.
constexpr PairPlace kPlaces[4] = {{"Y'", 0, 0}, {"Cb", 0, 0x80}, {"Y'", 1, 0}, {"Cr", 0, 0x80}};

}  // namespace

std::optional<Difference> FindDifference(const picture_io::Picture& first, const picture_io::Picture& second,
                                         bool comparesPadding) {
  for (u32 row = 0; row < first.height; ++row) {
    const u8* const a = first.bytes.data() + std::size_t{row} * first.rowBytes;
    const u8* const b = second.bytes.data() + std::size_t{row} * second.rowBytes;
    if (std::memcmp(a, b, first.rowBytes) == 0) continue;
    for (u32 i = 0; i < first.rowBytes; ++i) {
      const PairPlace& place = kPlaces[i % 4];
      const u32 pixel = i / 4 * 2 + place.pixel;
      const bool counts = pixel < first.width || comparesPadding;
      if (counts && a[i] != b[i]) {
        return Difference{row, pixel, place.component, a[i] ^ place.inverted, b[i] ^ place.inverted};
      }
    }
  }
  return std::nullopt;
}

}  // namespace vorel::tool
