// Time as benchmarks take it.
#pragma once

namespace vorel::bench {

// Processor time of this thread in seconds: neighbours on the machine do not count.
double Now();

// Time on the wall in seconds: on Windows that of a thread goes in steps as long as a frame takes.
double WallTime();

// Of a chain of dependent additions: the fastest of some runs just now, since clocks change.
double SecondsPerCycle(double (*now)() = Now);

}  // namespace vorel::bench
