// What is measured and how: every picture on its own, the fastest of its times, in processor time of one
// thread. A cycle is one step of a chain of dependent additions, timed in the same run.
#pragma once
#include <benchmark/benchmark.h>

#include <algorithm>
#include <limits>

#include "bench/clock.h"
#include "bench/pictures.h"

namespace vorel::bench {

// A sequence in some pixel format.
struct Job {
  const Sequence* sequence;
  std::vector<std::vector<u8>> pictures;
  i32 rowBytes;
};

// The jobs of one pixel format; pictures of only one stay in memory.
const std::vector<Job>& JobsOf(const std::vector<const Sequence*>& sequences, const std::string& pixelName);

// Pictures of all jobs, one after another.
struct Item {
  const Job* job;
  std::size_t number;  // of the picture in its sequence
};

std::vector<Item> ItemsOf(const std::vector<Job>& jobs);

inline const std::vector<u8>& PictureOf(const Item& item) {
  return item.job->pictures[item.number];
}

// Reports the sum of the fastest time of each picture, and how many times smaller the coded ones are where
// `codedBytes` is not 0.
void Report(benchmark::State& state, const std::vector<Item>& items, const std::vector<double>& fastest,
            double cycle, std::size_t codedBytes);

// Runs `once` with the number of every item until the benchmark has had enough.
template <typename Once>
void Measure(benchmark::State& state, const std::vector<Item>& items, std::size_t codedBytes, Once once) {
  std::vector<double> fastest(items.size(), std::numeric_limits<double>::max());
  double cycle = SecondsPerCycle();
  for (auto unused : state) {
    for (std::size_t i = 0; i < items.size(); ++i) {
      const double start = Now();
      once(i);
      benchmark::ClobberMemory();
      fastest[i] = std::min(fastest[i], Now() - start);
    }
  }
  cycle = std::min(cycle, SecondsPerCycle());
  Report(state, items, fastest, cycle, codedBytes);
}

}  // namespace vorel::bench
