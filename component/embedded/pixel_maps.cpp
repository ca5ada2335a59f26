// Pixel maps. Fourteen bits of a map's own row bytes say how long a row is; longer rows, and rows of a picture
// that stands on its head, are kept in an extension.
#include "component/embedded/embedded_host.h"
#include "component/embedded/operations.h"

namespace vorel::component::embedded {

namespace {

constexpr i32 kRowBytesMask = 0x3FFF;
constexpr i32 kPixelMapMark = 0x8000;  // tells a pixel map from a bit map

const PixelMapExtension* ExtensionOf(const PixMap& map) {
  return static_cast<const PixelMapExtension*>(map.pmExt);
}

}  // namespace

i32 QTGetPixMapPtrRowBytes(PixMap* map) {
  if (map == nullptr) return 0;
  if (const PixelMapExtension* extension = ExtensionOf(*map)) return extension->rowBytes;
  return map->rowBytes & kRowBytesMask;
}

Fixed QTGetPixMapPtrGammaLevel(PixMap* map) {
  if (map == nullptr || map->pmExt == nullptr) return 0;
  return ExtensionOf(*map)->gammaLevel;
}

Ptr GetPixBaseAddr(PixMapHandle map) {
  return map == nullptr || *map == nullptr ? nullptr : (*map)->baseAddr;
}

void SetPixelMapRows(PixMap& map, PixelMapExtension& extension, i32 rowBytes, Fixed gammaLevel) {
  extension = {rowBytes, gammaLevel};
  const i32 ownRowBytes = rowBytes >= 0 && rowBytes <= kRowBytesMask ? rowBytes : 0;
  map.rowBytes = static_cast<i16>(kPixelMapMark | ownRowBytes);
  map.pmExt = &extension;
}

}  // namespace vorel::component::embedded
