// Two ways for the same pictures, in turns: ratios that neighbours on the machine do not change.
#pragma once
#include <string>
#include <vector>

#include "bench/members.h"
#include "bench/pictures.h"

namespace vorel::bench {

// How many times as fast the AVX2 set is as the baseline, in both directions: "sets/encode/MEMBER/GROUP". Nothing where
// the processor has the baseline alone.
void RegisterSets(const Member& member, const std::string& group,
                  const std::vector<const Sequence*>& sequences);

// How many times as fast a member is as another one, in both directions: "KIND/encode/MEMBER/GROUP".
void RegisterBeside(const std::string& kind, const Member& other, const Member& member,
                    const std::string& group, const std::vector<const Sequence*>& sequences);

}  // namespace vorel::bench
