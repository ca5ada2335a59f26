// Frames in parallel, in order: one thread at a time begins jobs, any thread works on them, one at a time
// ends them in the order they were begun. Jobs are made once, so memory is bounded by their number, however long
// the clip; the one that ended last is begun next, for its memory is still in the caches.
#pragma once
#include <oneapi/tbb/global_control.h>
#include <oneapi/tbb/parallel_pipeline.h>
#include <oneapi/tbb/task_arena.h>

#include <chrono>
#include <exception>
#include <mutex>
#include <vector>

#include "base/integers.h"

namespace vorel::tool {

struct PipelineShape {
  u32 threads;          // at least 1
  u32 jobs;             // jobs that exist, at least 1
  u64 bytesPerJob = 0;  // that a job was taken to need
};

// What a run took. Steps that waited, for a disk or for a processor, count as busy.
struct PipelineRun {
  PipelineShape shape;
  u64 jobBytes = 0;  // of all jobs at the end, see RunPipeline
  double seconds = 0;
  double readSeconds = 0;   // of these one thread begins jobs,
  double codeSeconds = 0;   // all threads together work on them,
  double writeSeconds = 0;  // and one thread ends them
};

// Takes a step and adds its seconds.
template <typename Step>
void Clocked(double& seconds, Step&& step) {
  const auto start = std::chrono::steady_clock::now();
  step();
  seconds += std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

// A last step of a run, which ends what its jobs have ended up in.
template <typename Step>
void FinishRun(PipelineRun& run, Step&& step) {
  Clocked(run.seconds, [&] { Clocked(run.writeSeconds, step); });
}

// Two jobs for each thread, or fewer where they would take more than a quarter of this machine's memory.
// threads 0: one for each processor.
PipelineShape ShapePipeline(u32 threads, u64 bytesPerJob);

// begin(Job&) -> bool   fills a job; false at the end, when the job is dropped
// work(Job&)            on any thread
// end(Job&)             in order
//
// The first exception in the order of jobs, wherever it is thrown, ends the run and is thrown again here; all
// jobs before its own have ended then.
//
// Where there is a BytesTaken(const Job&), it tells the memory that a job keeps, for PipelineRun.
template <typename Job, typename Begin, typename Work, typename End>
PipelineRun RunPipeline(const PipelineShape& shape, Begin begin, Work work, End end) {
  struct Slot {
    Job job;
    std::exception_ptr failure;
    double workSeconds = 0;  // of the job under way
  };
  PipelineRun run = {shape};
  // At most `jobs` are in flight, so one is always free when another begins.
  std::vector<Slot> slots(shape.jobs);
  std::vector<Slot*> free;
  free.reserve(slots.size());
  for (Slot& slot : slots) free.push_back(&slot);
  std::mutex freeMutex;
  bool isDone = false;
  const auto takeFree = [&] {
    const std::scoped_lock lock(freeMutex);
    Slot* const slot = free.back();
    free.pop_back();
    return slot;
  };
  const auto giveBack = [&](Slot* slot) {
    const std::scoped_lock lock(freeMutex);
    free.push_back(slot);
  };
  const auto attempt = [](Slot& slot, auto&& step) {
    try {
      step();
    } catch (...) {
      slot.failure = std::current_exception();
    }
  };
  const auto take = [&](tbb::flow_control& flow) -> Slot* {
    if (!isDone) {
      Slot* const slot = takeFree();
      Clocked(run.readSeconds, [&] { attempt(*slot, [&] { isDone = !begin(slot->job); }); });
      isDone = isDone || slot->failure != nullptr;
      if (!isDone || slot->failure != nullptr) return slot;
    }
    flow.stop();
    return nullptr;
  };
  const auto treat = [&](Slot* slot) {
    slot->workSeconds = 0;
    if (slot->failure == nullptr)
      Clocked(slot->workSeconds, [&] { attempt(*slot, [&] { work(slot->job); }); });
    return slot;
  };
  const auto finish = [&](Slot* slot) {
    if (slot->failure != nullptr) std::rethrow_exception(slot->failure);
    run.codeSeconds += slot->workSeconds;
    Clocked(run.writeSeconds, [&] { end(slot->job); });
    giveBack(slot);
  };
  const tbb::global_control limit(tbb::global_control::max_allowed_parallelism, shape.threads);
  tbb::task_arena arena(static_cast<int>(shape.threads));
  Clocked(run.seconds, [&] {
    arena.execute([&] {
      tbb::parallel_pipeline(shape.jobs,
                             tbb::make_filter<void, Slot*>(tbb::filter_mode::serial_in_order, take) &
                                 tbb::make_filter<Slot*, Slot*>(tbb::filter_mode::parallel, treat) &
                                 tbb::make_filter<Slot*, void>(tbb::filter_mode::serial_in_order, finish));
    });
  });
  if constexpr (requires(const Job& job) { BytesTaken(job); }) {
    for (const Slot& slot : slots) run.jobBytes += BytesTaken(slot.job);
  }
  return run;
}

}  // namespace vorel::tool
