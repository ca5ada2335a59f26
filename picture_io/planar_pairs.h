// 4:2:2 in three planes to and from rows of pairs.
//
//   'yuvu'   8 bits    Y'0 Cb Y'1 Cr   chroma is neutral at 128 in the planes and at 0, in two's
//                                      complement, in the pair: the top bit differs and nothing else
//   '2vuy'   8 bits    Cb Y'0 Cr Y'1   bytes as they are
//   'v216'   10 bits   Cb Y'0 Cr Y'1   samples at the top of 16 bits: 6 bits higher than in the planes
//
// With an odd width the last Y' of a row is stored twice; on the way back the second Y' of the last pair is
// dropped, and so are the lower 6 bits of 'v216'.
#pragma once
#include <span>

#include "picture_io/planar_rows.h"

namespace vorel::picture_io {

std::span<const PlanarRoutines> PairRoutines();

}  // namespace vorel::picture_io
