// Runs all tests of a program on the instruction set that it is compiled for.
#include <cstdio>
#include <cstdlib>

#include "frame/instruction_set.h"

namespace vorel {
namespace {

const bool isChosen = [] {
  if (!UseInstructionSet(InstructionSet::VOREL_INSTRUCTIONS)) {
    std::fprintf(stderr, "NOT RUN: this processor does not have the instruction set of these tests\n");
    std::exit(EXIT_SUCCESS);
  }
  return true;
}();

}  // namespace
}  // namespace vorel
