// Frames in parallel, in order: one thread at a time begins jobs, any thread works on them, one at a time
// ends them in the order they were begun. Jobs live in a fixed ring, so memory is bounded by their number,
// however long the clip.
#pragma once
#include <oneapi/tbb/global_control.h>
#include <oneapi/tbb/parallel_pipeline.h>
#include <oneapi/tbb/task_arena.h>

#include <exception>
#include <vector>

#include "base/integers.h"

namespace vorel::tool {

struct PipelineShape {
  u32 threads;  // at least 1
  u32 jobs;     // jobs that exist, at least 1
};

// Two jobs for each thread, or fewer where they would take more than a quarter of this machine's memory.
// threads 0: one for each processor.
PipelineShape ShapePipeline(u32 threads, u64 bytesPerJob);

// begin(Job&) -> bool   fills a job; false at the end, when the job is dropped
// work(Job&)            on any thread
// end(Job&)             in order
//
// The first exception in the order of jobs, wherever it is thrown, ends the run and is thrown again here; all
// jobs before its own have ended then.
template <typename Job, typename Begin, typename Work, typename End>
void RunPipeline(const PipelineShape& shape, Begin begin, Work work, End end) {
  struct Slot {
    Job job;
    std::exception_ptr failure;
  };
  // At most `jobs` are in flight and they end in order, so the slot that comes up next in the ring is always
  // free.
  std::vector<Slot> ring(shape.jobs);
  std::size_t next = 0;
  bool isDone = false;
  const auto attempt = [](Slot& slot, auto&& step) {
    try {
      step();
    } catch (...) {
      slot.failure = std::current_exception();
    }
  };
  const auto take = [&](tbb::flow_control& flow) -> Slot* {
    Slot& slot = ring[next];
    if (!isDone) {
      attempt(slot, [&] { isDone = !begin(slot.job); });
      if (slot.failure == nullptr && !isDone) {
        next = (next + 1) % ring.size();
        return &slot;
      }
      isDone = true;
      if (slot.failure != nullptr) return &slot;
    }
    flow.stop();
    return nullptr;
  };
  const auto run = [&](Slot* slot) {
    if (slot->failure == nullptr) attempt(*slot, [&] { work(slot->job); });
    return slot;
  };
  const auto finish = [&](Slot* slot) {
    if (slot->failure != nullptr) std::rethrow_exception(slot->failure);
    end(slot->job);
  };
  const tbb::global_control limit(tbb::global_control::max_allowed_parallelism, shape.threads);
  tbb::task_arena arena(static_cast<int>(shape.threads));
  arena.execute([&] {
    tbb::parallel_pipeline(shape.jobs,
                           tbb::make_filter<void, Slot*>(tbb::filter_mode::serial_in_order, take) &
                               tbb::make_filter<Slot*, Slot*>(tbb::filter_mode::parallel, run) &
                               tbb::make_filter<Slot*, void>(tbb::filter_mode::serial_in_order, finish));
  });
}

}  // namespace vorel::tool
