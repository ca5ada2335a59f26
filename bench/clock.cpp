#include "bench/clock.h"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <ctime>

namespace vorel::bench {

double Now() {
  timespec time{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
}

double WallTime() {
  return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

double SecondsPerCycle(double (*now)()) {
  double least = 1;
  for (int run = 0; run < 20; ++run) {
    constexpr int kSteps = 2000000;
    const double start = now();
    // Of the width of a register, and from a register: newer processors add constants without spending a cycle.
    std::size_t value = 0;
    const std::size_t one = 1;
    for (int i = 0; i < kSteps / 8; ++i) {
      asm volatile(
          "add %1,%0\n add %1,%0\n add %1,%0\n add %1,%0\n add %1,%0\n add %1,%0\n add %1,%0\n add %1,%0"
          : "+r"(value)
          : "r"(one));
    }
    least = std::min(least, (now() - start) / kSteps);
  }
  return least;
}

}  // namespace vorel::bench
