#include "frame/instruction_set.h"

#include <atomic>

namespace vorel {
namespace {

// Before this is set, routines that other static objects call run on the baseline.
std::atomic<InstructionSet> inUse = BestInstructionSet();

}  // namespace

InstructionSet BestInstructionSet() {
#ifdef VOREL_WITH_AVX2
  __builtin_cpu_init();
  if (__builtin_cpu_supports("avx2") != 0 && __builtin_cpu_supports("bmi") != 0 &&
      __builtin_cpu_supports("bmi2") != 0)
    return InstructionSet::avx2;
#endif
  return InstructionSet::baseline;
}

InstructionSet InstructionSetInUse() {
  return inUse.load(std::memory_order_relaxed);
}

bool UseInstructionSet(InstructionSet set) {
  if (set > BestInstructionSet()) return false;
  inUse.store(set, std::memory_order_relaxed);
  return true;
}

}  // namespace vorel
