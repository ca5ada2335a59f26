// Pictures in planes to and from rows. Planes hold a sample in a byte, or in a little-endian word of 16 bits
// where it has 10 bits. They follow each other without gaps: Y', Cb, Cr and, where there are four, alpha.
// With 4:2:2 a row of a chroma plane has (width + 1) / 2 samples.
#pragma once
#include "picture_io/clip_format.h"

namespace vorel::picture_io {

struct PlaneShape {
  u32 bits;       // of a sample: 8 or 10; 0 if there are no planes
  u32 planes;     // 3, or 4 with alpha
  bool isPaired;  // chroma is that of pairs: 4:2:2

  bool operator==(const PlaneShape&) const = default;
};

// The ways between the planes and the rows of one pixel format. Rows are RowsOf(pixelFormat,
// width).memoryBytes apart.
struct PlanarRoutines {
  u32 pixelFormat;
  PlaneShape shape;
  void (*rowsFromPlanes)(const u8* planes, std::size_t width, std::size_t height, u8* rows);
  void (*planesFromRows)(const u8* rows, std::size_t width, std::size_t height, u8* planes);
};

// Bits of a sample in planes that go with a pixel format: 8 or 10, or 0 if none do.
u32 PlaneBits(u32 pixelFormat);

// The planes of a clip's pictures; all 0 if its pixel format has none.
PlaneShape PlanesOf(const ClipFormat& format);

std::size_t PlanarBytes(const PlaneShape& shape, u32 width, u32 height);

// Both do nothing for a clip without planes. Rows have the shape that ShapePicture gives them, planes take
// PlanarBytes.
void RowsFromPlanes(const ClipFormat& format, const u8* planes, u8* rows);
void PlanesFromRows(const ClipFormat& format, const u8* rows, u8* planes);

}  // namespace vorel::picture_io
