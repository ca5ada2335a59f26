// Speed of common lossless picture formats on the same 8-bit R'G'B' pictures, for comparison.
#pragma once
#include "bench/measure.h"

namespace vorel::bench {

// Registers encode/PEER/PIXEL/name and decode/PEER/PIXEL/name for pixels RGB and RGBA. Peers are "png1",
// libpng at compression level 1, and "qoi" where its header was found.
void RegisterPeers(const std::string& name, const std::vector<const Sequence*>& sequences);

}  // namespace vorel::bench
