// Samples of a plane as differences from the sample before, modulo their size, and back: what makes a
// general-purpose compressor useful on pictures. Words are split: all low bytes, then all high bytes, since the
// high bytes of differences hardly vary.
#pragma once
#include "bench/samples.h"

namespace vorel::bench {

// Residuals of a picture in planes, kept until the next call.
const Bytes& PredictFromLeft(const Samples& picture);

// Room for residuals of a picture, kept until the next call of either function.
Bytes& RoomForResiduals(const Samples& picture);

void RestoreFromLeft(const Bytes& residuals, Samples& picture);

}  // namespace vorel::bench
