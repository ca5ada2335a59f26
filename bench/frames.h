// Speed of the frame routines, beside memcpy.
#pragma once
#include "bench/measure.h"
#include "bench/members.h"

namespace vorel::bench {

// Registers memcpy/MEMBER/group, encode/MEMBER/group and decode/MEMBER/group; and where the processor has more than the
// baseline, sets/encode/MEMBER/group and sets/decode/MEMBER/group, which tell how many times as fast AVX2 is.
void RegisterFrames(const Member& member, const std::string& group,
                    const std::vector<const Sequence*>& sequences);

}  // namespace vorel::bench
