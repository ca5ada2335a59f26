// Memory of an instance that is kept from frame to frame.
#pragma once
#include "component/compressor.h"

namespace vorel::component {

// At least `size` bytes, with nothing certain in them; what was there is gone if they have to be made. False if
// there is no memory.
bool GrowMemory(WorkMemory& memory, std::size_t size);

void FreeMemory(WorkMemory& memory);

}  // namespace vorel::component
