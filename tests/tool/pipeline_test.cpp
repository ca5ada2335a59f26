// Order, bounds and failures of the frame pipeline.
#include "tool/pipeline.h"

#include <gtest/gtest.h>

#include <atomic>
#include <set>
#include <stdexcept>
#include <string>
#include <thread>

namespace vorel::tool {

namespace {

struct Job {
  int number = -1;
};

u64 BytesTaken(const Job&) {
  return 1000;
}

// Uneven work, so that jobs overtake each other wherever they can.
void Linger(int number) {
  std::this_thread::sleep_for(std::chrono::microseconds(number % 7 * 150));
}

}  // namespace

TEST(Pipeline, JobsEndInTheOrderTheyBegan) {
  int begun = 0;
  std::vector<int> ended;
  RunPipeline<Job>(
      {4, 8},
      [&](Job& job) {
        job.number = begun;
        return begun++ < 200;
      },
      [](Job& job) { Linger(job.number); }, [&](Job& job) { ended.push_back(job.number); });
  ASSERT_EQ(ended.size(), 200u);
  for (int i = 0; i < 200; ++i) EXPECT_EQ(ended[static_cast<std::size_t>(i)], i);
}

TEST(Pipeline, NoMoreJobsExistThanAllowedAndTheyAreUsedAgain) {
  std::atomic<int> begun = 0;
  std::atomic<int> live = 0;
  std::atomic<int> most = 0;
  std::set<const Job*> jobs;
  RunPipeline<Job>(
      {4, 5},
      [&](Job& job) {
        if (begun == 300) return false;
        job.number = begun++;
        jobs.insert(&job);
        most = std::max(most.load(), ++live);
        return true;
      },
      [&](Job& job) {
        // The first one lasts until there is another, for ten seconds at most.
        for (int i = 0; i < 10'000 && job.number == 0 && begun < 2; ++i)
          std::this_thread::sleep_for(std::chrono::milliseconds(1));
        Linger(job.number);
      },
      [&](Job&) { --live; });
  EXPECT_LE(most, 5);
  EXPECT_GT(most, 1);
  EXPECT_LE(jobs.size(), 5u);
}

TEST(Pipeline, NoJobIsBegunAnewWhileItIsWorkedOn) {
  int begun = 0;
  bool isClean = true;
  RunPipeline<Job>(
      {4, 3},
      [&](Job& job) {
        if (job.number != -1) isClean = false;
        job.number = begun;
        return begun++ < 300;
      },
      [](Job& job) { Linger(job.number); }, [](Job& job) { job.number = -1; });
  EXPECT_TRUE(isClean);
}

TEST(Pipeline, FirstFailureInOrderIsThrownAfterAllJobsBeforeIt) {
  for (int run = 0; run < 20; ++run) {
    int begun = 0;
    int ended = 0;
    try {
      RunPipeline<Job>(
          {4, 8},
          [&](Job& job) {
            job.number = begun;
            return begun++ < 100;
          },
          [](Job& job) {
            if (job.number == 20) Linger(6);
            if (job.number >= 20) throw std::runtime_error(std::to_string(job.number));
          },
          [&](Job&) { ++ended; });
      FAIL() << "nothing thrown";
    } catch (const std::runtime_error& error) {
      EXPECT_STREQ(error.what(), "20");
      EXPECT_EQ(ended, 20);
    }
  }
}

TEST(Pipeline, FailureToBeginIsThrownAfterAllJobsBeforeIt) {
  int begun = 0;
  int ended = 0;
  EXPECT_THROW(RunPipeline<Job>(
                   {4, 8},
                   [&](Job& job) {
                     job.number = begun;
                     if (begun == 30) throw std::runtime_error("no more");
                     return begun++ < 100;
                   },
                   [](Job& job) { Linger(job.number); }, [&](Job&) { ++ended; }),
               std::runtime_error);
  EXPECT_EQ(ended, 30);
}

TEST(Pipeline, OneThreadAndOneJobSuffice) {
  const std::thread::id here = std::this_thread::get_id();
  int begun = 0;
  int ended = 0;
  RunPipeline<Job>(
      {1, 1}, [&](Job&) { return begun++ < 10; }, [&](Job&) { EXPECT_EQ(std::this_thread::get_id(), here); },
      [&](Job&) { ++ended; });
  EXPECT_EQ(ended, 10);
}

TEST(Pipeline, RunTellsWhatItTook) {
  int begun = 0;
  const PipelineRun run = RunPipeline<Job>(
      {2, 3}, [&](Job&) { return begun++ < 10; },
      [](Job&) { std::this_thread::sleep_for(std::chrono::milliseconds(4)); },
      [](Job&) { std::this_thread::sleep_for(std::chrono::milliseconds(1)); });
  EXPECT_EQ(run.shape.jobs, 3u);
  EXPECT_EQ(run.jobBytes, 3000u);
  EXPECT_GE(run.codeSeconds, 0.040);
  EXPECT_GE(run.writeSeconds, 0.010);
  EXPECT_LE(run.readSeconds + run.codeSeconds + run.writeSeconds, 2 * run.seconds);
}

TEST(Pipeline, LastStepCountsAsWriting) {
  PipelineRun run = {};
  FinishRun(run, [] { std::this_thread::sleep_for(std::chrono::milliseconds(3)); });
  EXPECT_GE(run.writeSeconds, 0.003);
  EXPECT_GE(run.seconds, run.writeSeconds);
}

TEST(PipelineShape, TwoJobsForAThreadUnlessTheyAreHuge) {
  EXPECT_EQ(ShapePipeline(3, 1000).jobs, 6u);
  EXPECT_EQ(ShapePipeline(3, 1000).threads, 3u);
  EXPECT_EQ(ShapePipeline(64, u64{1} << 60).jobs, 1u);
  EXPECT_GE(ShapePipeline(0, 1000).threads, 1u);
}

}  // namespace vorel::tool
