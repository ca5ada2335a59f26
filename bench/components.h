// What components cost over calling the core's dispatch.
#pragma once
#include <vector>

#include "bench/pictures.h"

namespace vorel::bench {

// Registers component/encode/PIXEL and component/decode/PIXEL for pixel formats of several families. Every
// picture goes both ways, one after the other, in turns; told are the medians of their times and of the ratios
// of each pair.
void RegisterComponents(const std::vector<const Sequence*>& sequences);

}  // namespace vorel::bench
