// One lock guards the waiting frames and the state of every frame in flight; it is not held while a frame is
// drawn.
#include "component/embedded/base_queue.h"

#include <algorithm>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>
#include <vector>

#include "component/embedded/embedded_host.h"
#include "component/selectors.h"

namespace vorel::component::embedded {

namespace {

struct BaseQueue {
  std::mutex mutex;
  std::condition_variable frameWaits;
  std::condition_variable frameDone;
  std::deque<BaseFrame*> waiting;
  std::vector<std::thread> threads;
  u32 wantedThreads = 0;
  bool stopping = false;
};

BaseQueue queue;

ComponentResult Draw(BaseFrame& frame) {
  if (frame.draw != nullptr) return frame.draw(frame.drawRefCon, &frame.record);
  return CallSelector(frame.target, kImageCodecDrawBandSelect, &frame.record);
}

// The frame is out of the waiting ones; the lock is held on entry and on return.
void DrawUnlocked(BaseFrame& frame, std::unique_lock<std::mutex>& lock) {
  frame.state = FrameState::drawing;
  lock.unlock();
  const ComponentResult result = Draw(frame);
  lock.lock();
  frame.result = result;
  frame.state = FrameState::done;
  queue.frameDone.notify_all();
}

void DrawFrames() {
  std::unique_lock lock(queue.mutex);
  while (true) {
    queue.frameWaits.wait(lock, [] { return queue.stopping || !queue.waiting.empty(); });
    if (queue.stopping) return;
    BaseFrame& frame = *queue.waiting.front();
    queue.waiting.pop_front();
    DrawUnlocked(frame, lock);
  }
}

}  // namespace

void DrawNow(BaseFrame& frame) {
  std::unique_lock lock(queue.mutex);
  DrawUnlocked(frame, lock);
}

void StartDrawing(BaseFrame& frame) {
  const std::scoped_lock lock(queue.mutex);
  while (queue.threads.size() < queue.wantedThreads) queue.threads.emplace_back(DrawFrames);
  frame.state = FrameState::waiting;
  queue.waiting.push_back(&frame);
  queue.frameWaits.notify_one();
}

bool IsDone(const BaseFrame& frame) {
  const std::scoped_lock lock(queue.mutex);
  return frame.state == FrameState::done;
}

void WaitUntilDone(const BaseFrame& frame) {
  std::unique_lock lock(queue.mutex);
  queue.frameDone.wait(lock, [&frame] { return frame.state == FrameState::done; });
}

bool DrawWaitingFrame(const void* base) {
  std::unique_lock lock(queue.mutex);
  const auto found = std::find_if(queue.waiting.begin(), queue.waiting.end(),
                                  [base](const BaseFrame* frame) { return frame->base == base; });
  if (found == queue.waiting.end()) return false;
  BaseFrame& frame = **found;
  queue.waiting.erase(found);
  DrawUnlocked(frame, lock);
  return true;
}

u32 BaseThreads() {
  const std::scoped_lock lock(queue.mutex);
  return queue.wantedThreads;
}

void SetBaseThreads(std::optional<u32> count) {
  const std::scoped_lock lock(queue.mutex);
  queue.wantedThreads = count ? *count : std::max(1u, std::thread::hardware_concurrency());
  queue.stopping = false;
}

void StopBaseThreads() {
  std::vector<std::thread> threads;
  {
    const std::scoped_lock lock(queue.mutex);
    queue.stopping = true;
    queue.waiting.clear();
    threads.swap(queue.threads);
    queue.frameWaits.notify_all();
  }
  for (std::thread& thread : threads) thread.join();
}

}  // namespace vorel::component::embedded
