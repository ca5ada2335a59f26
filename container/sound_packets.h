// How many bytes a sound sample takes where the size table does not say it: old sound tracks state 1 byte per
// sample, whatever the format, and leave the true size to the sound description.
#pragma once
#include <optional>
#include <vector>

#include "container/atoms.h"
#include "container/sample_table.h"

namespace vorel::container {

/// The packet size that a track's sound descriptions imply; nothing when the formats do not tell, or do not
/// agree. Throws Problem when a description is too short.
std::optional<ImpliedSampleSize> SoundPacketSize(const std::vector<AtomView>& descriptions);

}  // namespace vorel::container
