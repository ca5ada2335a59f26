// What is measured and how: every picture on its own, the fastest of its times in all rounds, in processor time
// of one thread. A cycle is one step of a chain of dependent additions, timed in the same run.
#pragma once
#include <benchmark/benchmark.h>

#include <algorithm>
#include <limits>
#include <memory>
#include <string>

#include "bench/clock.h"
#include "bench/pictures.h"

namespace vorel::bench {

// A sequence in some pixel format.
struct Job {
  const Sequence* sequence;
  std::vector<std::vector<u8>> pictures;
  i32 rowBytes;
};

std::vector<Job> MakeJobs(const std::vector<const Sequence*>& sequences, const std::string& pixelName);

// The same, which stay in memory until those of another pixel format are asked for.
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

// What a benchmark has seen in all rounds so far.
struct Timings {
  std::vector<double> fastest;  // seconds of each picture
  double cycle = std::numeric_limits<double>::max();
  std::vector<double> ratios;  // where two ways take turns
};

// Registers a benchmark that calls `run(state, timings)`; each has timings of its own.
template <typename Run>
void Register(const std::string& name, Run run) {
  const auto timings = std::make_shared<Timings>();
  benchmark::RegisterBenchmark(name.c_str(), [=](benchmark::State& state) {
    run(state, *timings);
  })->Unit(benchmark::kMillisecond);
}

template <typename Work>
double TimeOf(Work work) {
  const double start = Now();
  work();
  benchmark::ClobberMemory();
  return Now() - start;
}

// Reports the sum of the fastest time of each picture, and how many times smaller the coded ones are where
// `codedBytes` is not 0.
void Report(benchmark::State& state, const std::vector<Item>& items, const Timings& timings,
            std::size_t codedBytes);

// Runs `once` with the number of every item until the benchmark has had enough.
template <typename Once>
void Measure(benchmark::State& state, const std::vector<Item>& items, std::size_t codedBytes,
             Timings& timings, Once once) {
  timings.fastest.resize(items.size(), std::numeric_limits<double>::max());
  timings.cycle = std::min(timings.cycle, SecondsPerCycle());
  for (auto unused : state) {
    for (std::size_t i = 0; i < items.size(); ++i)
      timings.fastest[i] = std::min(timings.fastest[i], TimeOf([&] { once(i); }));
  }
  timings.cycle = std::min(timings.cycle, SecondsPerCycle());
  Report(state, items, timings, codedBytes);
}

double Median(std::vector<double> values);

// Runs `first` and `second` with the number of every item, one right after the other, and which goes first changes
// with every pair. Reports how many times as fast the second one is, the middle of all pairs: what slows both down
// does not count.
template <typename First, typename Second>
void MeasureInTurns(benchmark::State& state, std::size_t items, Timings& timings, First first,
                    Second second) {
  for (auto unused : state) {
    for (std::size_t i = 0; i < items; ++i) {
      const bool isSecondFirst = timings.ratios.size() % 2 != 0;
      double ofSecond = 0;
      if (isSecondFirst) ofSecond = TimeOf([&] { second(i); });
      const double ofFirst = TimeOf([&] { first(i); });
      if (!isSecondFirst) ofSecond = TimeOf([&] { second(i); });
      timings.ratios.push_back(ofFirst / ofSecond);
    }
  }
  state.counters["times as fast"] = Median(timings.ratios);
}

}  // namespace vorel::bench
