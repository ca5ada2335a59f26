// Which of the compiles of the hot code runs.
#pragma once
#include "base/instructions.h"
#include "base/integers.h"

namespace vorel {

enum class InstructionSet : u8 {
  baseline,  // what every processor of the architecture has: SSE2 on x86
  avx2,      // AVX2, BMI and BMI2
};

inline constexpr const char* kInstructionSetNames[] = {"baseline", "avx2"};

// The best one that this processor has.
InstructionSet BestInstructionSet();

// In use: the best one, unless another was chosen.
InstructionSet InstructionSetInUse();

// For tests and measurements, while no frame is being coded. False if this processor doesn't have it.
bool UseInstructionSet(InstructionSet set);

}  // namespace vorel
