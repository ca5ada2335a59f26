// What components cost over calling the core's dispatch.
#pragma once
#include <vector>

#include "bench/pictures.h"

namespace vorel::bench {

// Registers component/encode/PIXEL and component/decode/PIXEL for pixel formats of several families: how many times
// as fast components are as the dispatch, in turns.
void RegisterComponents(const std::vector<const Sequence*>& sequences);

}  // namespace vorel::bench
