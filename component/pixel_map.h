// What a host's pixel map says of its picture.
#pragma once
#include "component/host_types.h"

namespace vorel::component {

// The map's own code, or where it has none its depth in bits, which names the chunky formats.
inline OSType HostPixelFormat(const PixMap& map) {
  return map.pixelFormat != 0 ? map.pixelFormat : static_cast<u16>(map.pixelSize);
}

struct PictureSize {
  i32 width;  // in pixels; negative for an inside-out rectangle
  i32 height;
};

inline PictureSize SizeOf(const Rect& bounds) {
  return {bounds.right - bounds.left, bounds.bottom - bounds.top};
}

}  // namespace vorel::component
