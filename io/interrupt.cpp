#include "io/interrupt.h"

#include <atomic>
#include <csignal>

namespace MCBin {

namespace {

std::atomic<bool> gRequested{false};
static_assert(std::atomic<bool>::is_always_lock_free, "a signal handler sets it");

void OnSignal(int /*number*/) { gRequested.store(true, std::memory_order_relaxed); }

}  // namespace

void Interrupt::Install() {
  struct sigaction action = {};
  action.sa_handler = OnSignal;
  sigemptyset(&action.sa_mask);
  for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
    struct sigaction inherited = {};
    sigaction(number, nullptr, &inherited);
    const bool ignoredByParent = inherited.sa_handler == SIG_IGN;  // nohup, background jobs
    if (!ignoredByParent) sigaction(number, &action, nullptr);
  }
  action.sa_handler = SIG_IGN;
  sigaction(SIGPIPE, &action, nullptr);
}

bool Interrupt::IsRequested() { return gRequested.load(std::memory_order_relaxed); }

void Interrupt::ThrowIfRequested() {
  if (IsRequested()) throw Requested();
}

}  // namespace MCBin
