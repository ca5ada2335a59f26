// Speed of common lossless coders on the samples that our frames hold, for comparison.
#pragma once
#include "bench/measure.h"

namespace vorel::bench {

// Registers encode/PEER/PIXEL/group and decode/PEER/PIXEL/group for every class of samples and every peer that
// was built in and can hold them.
void RegisterPeers(const std::string& group, const std::vector<const Sequence*>& sequences);

// Names and versions of the libraries, as a list in words.
std::string PeerVersions();

}  // namespace vorel::bench
