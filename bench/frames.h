// Speed of the frame routines, beside memcpy.
#pragma once
#include "bench/measure.h"
#include "bench/members.h"

namespace vorel::bench {

// Registers memcpy/MEMBER/group, encode/MEMBER/group and decode/MEMBER/group.
void RegisterFrames(const Member& member, const std::string& group,
                    const std::vector<const Sequence*>& sequences);

}  // namespace vorel::bench
