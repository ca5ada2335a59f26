// How many threads and jobs a run gets.
#include "tool/pipeline.h"

#include <oneapi/tbb/info.h>
#include <unistd.h>

#include <algorithm>

namespace vorel::tool {

namespace {

constexpr u64 kAssumedMemory = u64{4} << 30;  // where the system doesn't tell

u64 MachineMemory() {
  const long pages = ::sysconf(_SC_PHYS_PAGES);
  const long pageBytes = ::sysconf(_SC_PAGESIZE);
  if (pages <= 0 || pageBytes <= 0) return kAssumedMemory;
  return static_cast<u64>(pages) * static_cast<u64>(pageBytes);
}

}  // namespace

PipelineShape ShapePipeline(u32 threads, u64 bytesPerJob) {
  if (threads == 0) threads = static_cast<u32>(std::max(1, tbb::info::default_concurrency()));
  const u64 affordable = MachineMemory() / 4 / std::max<u64>(bytesPerJob, 1);
  return {threads, static_cast<u32>(std::clamp<u64>(affordable, 1, u64{2} * threads)), bytesPerJob};
}

}  // namespace vorel::tool
