// The handler touches nothing but lock-free atomics and a path that stands still, and calls nothing but
// unlink, signal and raise: all that is allowed on any thread at any moment.
#include "tool/interruption.h"

#include <unistd.h>

#include <atomic>
#include <climits>
#include <csignal>

namespace vorel::tool {

namespace {

constexpr int kSignals[] = {SIGINT, SIGTERM, SIGHUP};

char guardedPath[PATH_MAX];  // written only while isGuarded is false
std::atomic<bool> isGuarded = false;
std::atomic<bool> isHeld = false;
std::atomic<int> pendingSignal = 0;

static_assert(std::atomic<bool>::is_always_lock_free && std::atomic<int>::is_always_lock_free);

void TakeEffect(int number) {
  if (isGuarded) ::unlink(guardedPath);
  std::signal(number, SIG_DFL);
  std::raise(number);
}

extern "C" void OnInterruption(int number) {
  if (isHeld) {
    pendingSignal = number;
  } else {
    TakeEffect(number);
  }
}

}  // namespace

void CatchInterruptions() {
  std::signal(SIGPIPE, SIG_IGN);
  for (const int number : kSignals) {
    struct sigaction action = {};
    if (::sigaction(number, nullptr, &action) == 0 && action.sa_handler == SIG_IGN) continue;
    action = {};
    action.sa_handler = OnInterruption;
    ::sigaction(number, &action, nullptr);
  }
}

InterruptionHold::InterruptionHold() {
  isHeld = true;
}

InterruptionHold::~InterruptionHold() {
  isHeld = false;
  if (const int number = pendingSignal.exchange(0); number != 0) TakeEffect(number);
}

void GuardTemporary(const std::string& path) {
  isGuarded = false;
  if (path.empty() || path.size() >= sizeof guardedPath) return;
  guardedPath[path.copy(guardedPath, path.size())] = 0;
  isGuarded = true;
}

}  // namespace vorel::tool
