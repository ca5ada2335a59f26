// Time as benchmarks take it.
#pragma once
#include <ctime>

namespace vorel::bench {

// Processor time of this thread in seconds: neighbours on the machine do not count.
inline double Now() {
  timespec time{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
}

}  // namespace vorel::bench
