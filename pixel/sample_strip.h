// A strip: the samples of up to 96 pixels of a row, plane by plane. Row loops work strip by strip, so that
// loops have a constant length; pixel formats end where a strip is filled or drained. 96 pixels are a whole
// number of 'v210' groups and of vectors of any width.
#pragma once
#include "base/integers.h"

namespace vorel {

inline constexpr u32 kStripPixels = 96;
inline constexpr u32 kStripPairs = kStripPixels / 2;

// Cells on either side of a strip. A whole vector, so that cell 0 is aligned.
inline constexpr u32 kStripMargin = 16;

// Cells 0 to 95 are the strip; samples of any depth in use and chroma before it is cut fit 16 bits with a
// sign.
struct SamplePlane {
  alignas(32) i16 cells[kStripMargin + kStripPixels + kStripMargin];
};

// R, G, B or Y', Cb, Cr, and alpha. Of pairs there are 48 cells of Cb and Cr.
struct SampleStrip {
  SamplePlane first;
  SamplePlane second;
  SamplePlane third;
  SamplePlane alpha;
};

inline i16* Cells(SamplePlane& plane) {
  return plane.cells + kStripMargin;
}
inline const i16* Cells(const SamplePlane& plane) {
  return plane.cells + kStripMargin;
}

// Cell 0 of four planes, which need not be of one strip.
template <typename Sample>
struct PlaneCells {
  Sample* first;
  Sample* second;
  Sample* third;
  Sample* alpha;
};
using Planes = PlaneCells<i16>;
using ConstPlanes = PlaneCells<const i16>;

inline Planes PlanesOf(SampleStrip& strip) {
  return {Cells(strip.first), Cells(strip.second), Cells(strip.third), Cells(strip.alpha)};
}
inline ConstPlanes Reading(Planes planes) {
  return {planes.first, planes.second, planes.third, planes.alpha};
}

}  // namespace vorel
