// Looks the routines up; the loops are with the pixel formats.
#include "picture_io/planar_rows.h"

#include <span>

#include "picture_io/planar_pairs.h"
#include "picture_io/planar_pixels.h"

namespace vorel::picture_io {

namespace {

const PlanarRoutines* Find(std::span<const PlanarRoutines> all, u32 pixelFormat, bool isOpaque) {
  for (const PlanarRoutines& routines : all) {
    const bool needsAlpha = routines.shape.planes > 3;
    if (routines.pixelFormat == pixelFormat && !(needsAlpha && isOpaque)) return &routines;
  }
  return nullptr;
}

const PlanarRoutines* FindRoutines(u32 pixelFormat, bool isOpaque) {
  const PlanarRoutines* const pairs = Find(PairRoutines(), pixelFormat, isOpaque);
  return pairs != nullptr ? pairs : Find(PixelRoutines(), pixelFormat, isOpaque);
}

}  // namespace

u32 PlaneBits(u32 pixelFormat) {
  const PlanarRoutines* const routines = FindRoutines(pixelFormat, false);
  return routines == nullptr ? 0 : routines->shape.bits;
}

PlaneShape PlanesOf(const ClipFormat& format) {
  const PlanarRoutines* const routines = FindRoutines(format.pixelFormat, format.isOpaque);
  return routines == nullptr ? PlaneShape{} : routines->shape;
}

std::size_t PlanarBytes(const PlaneShape& shape, u32 width, u32 height) {
  if (shape.bits == 0) return 0;
  const std::size_t chroma = shape.isPaired ? (std::size_t{width} + 1) / 2 : width;
  const std::size_t rowSamples = (shape.planes - 2) * std::size_t{width} + 2 * chroma;
  return rowSamples * height * ((shape.bits + 7) / 8);
}

void RowsFromPlanes(const ClipFormat& format, const u8* planes, u8* rows) {
  if (const PlanarRoutines* const routines = FindRoutines(format.pixelFormat, format.isOpaque))
    routines->rowsFromPlanes(planes, format.width, format.height, rows);
}

void PlanesFromRows(const ClipFormat& format, const u8* rows, u8* planes) {
  if (const PlanarRoutines* const routines = FindRoutines(format.pixelFormat, format.isOpaque))
    routines->planesFromRows(rows, format.width, format.height, planes);
}

}  // namespace vorel::picture_io
