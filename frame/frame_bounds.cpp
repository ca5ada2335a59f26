#include "frame/frame_bounds.h"

#include <algorithm>

#include "frame/frame_tags.h"

namespace vorel {

u32 MaxFrameBytesOfTag(u32 tag, u32 width, u32 height) {
  const TaggedLayout found = LayoutOfTag(tag);
  return found.layout == nullptr ? 0 : MaxFrameBytes(*found.layout, width, height);
}

u32 RowStoreBytes(u32 width) {
  // Rows of 'v210' have their samples packed by threes and end at a multiple of 128 bytes.
  const u32 v210Row = ((width / 2 * 4 | 2) / 3 * 4 + 127) & ~u32{127};
  return std::max({
      8 * width + 24,                                 // RGB 10bf; 10bv 4:4:4 with alpha
      4 * width + 12,                                 // RGB 8bf; 8b 4:4:4; 10bv 4:4:4
      std::max((width & ~u32{1}) * 6 + 36, v210Row),  // 10bv 4:2:2 with alpha
      std::max(width / 2 * 8 + 24, v210Row),          // 10bv 4:2:2
      width / 2 * 6 + 18,                             // 8bv 4:2:2 with alpha
      width / 2 * 4 + 12,                             // 8bv 4:2:2
      (width + 1) / 2 * 4 + 12,                       // 8bw 4:2:2
  });
}

}  // namespace vorel
