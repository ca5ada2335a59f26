#include "bench/measure.h"

#include <cstddef>

namespace vorel::bench {

std::vector<Job> MakeJobs(const std::vector<const Sequence*>& sequences, const std::string& pixelName) {
  std::vector<Job> jobs;
  for (const Sequence* sequence : sequences) {
    std::vector<std::vector<u8>> pictures = InPixelFormat(*sequence, pixelName);
    const i32 rowBytes = static_cast<i32>(pictures[0].size() / sequence->height);
    jobs.push_back({sequence, std::move(pictures), rowBytes});
  }
  return jobs;
}

const std::vector<Job>& JobsOf(const std::vector<const Sequence*>& sequences, const std::string& pixelName) {
  static std::vector<Job> jobs;
  static std::string made;
  const std::string key = pixelName + std::to_string(sequences.size()) + sequences[0]->name;
  if (made != key) {
    jobs = {};
    jobs = MakeJobs(sequences, pixelName);
    made = key;
  }
  return jobs;
}

std::vector<Item> ItemsOf(const std::vector<Job>& jobs) {
  std::vector<Item> items;
  for (const Job& job : jobs) {
    for (std::size_t i = 0; i < job.pictures.size(); ++i) items.push_back({&job, i});
  }
  return items;
}

double Median(std::vector<double> values) {
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

void Report(benchmark::State& state, const std::vector<Item>& items, const Timings& timings,
            std::size_t codedBytes) {
  double seconds = 0;
  double pixels = 0;
  double bytes = 0;
  for (std::size_t i = 0; i < items.size(); ++i) {
    const Sequence& sequence = *items[i].job->sequence;
    seconds += timings.fastest[i];
    pixels += static_cast<double>(sequence.width) * sequence.height;
    bytes += static_cast<double>(PictureOf(items[i]).size());
  }
  state.counters["MB/s"] = bytes / 1e6 / seconds;
  state.counters["ns/px"] = seconds * 1e9 / pixels;
  state.counters["cycles/px"] = seconds / timings.cycle / pixels;
  if (codedBytes > 0) state.counters["ratio"] = bytes / static_cast<double>(codedBytes);
}

}  // namespace vorel::bench
