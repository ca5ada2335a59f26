// Hot code is compiled once for each instruction set that pays, from one source: all of it lies in an inline
// namespace named after the set. Code without a set of its own sees the baseline.
//
// Files that are compiled more than once hold nothing that a linker could take from one compile for another: what
// is not in that namespace is data, or is always inlined.
#pragma once

#ifdef VOREL_NO_HOT_CODE
#error "This file is compiled once for all instruction sets: list it with those that are compiled for each."
#endif

// A build that compiles hot code for AVX2 too defines VOREL_WITH_AVX2 everywhere, and VOREL_INSTRUCTIONS=avx2 for
// those compiles.
#ifndef VOREL_INSTRUCTIONS
#define VOREL_INSTRUCTIONS baseline
#define VOREL_IS_BASELINE
#endif
