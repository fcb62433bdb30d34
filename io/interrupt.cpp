#include "io/interrupt.h"

#include <poll.h>
#include <sys/time.h>

#include <atomic>
#include <cerrno>
#include <csignal>

namespace MCBin {

namespace {

std::atomic<bool> gRequested{false};
static_assert(std::atomic<bool>::is_always_lock_free, "a signal handler sets it");

// The signal may come between a look at the flag and the system call that then waits. So an alarm
// rings from now on, ten times a second, and ends that call too.
void OnSignal(int /*number*/) {
  gRequested.store(true, std::memory_order_relaxed);
  const int error = errno;
  constexpr timeval kPeriod = {0, 100'000};
  const itimerval alarm = {kPeriod, kPeriod};
  setitimer(ITIMER_REAL, &alarm, nullptr);
  errno = error;
}

void OnAlarm(int /*number*/) {}

void Handle(int number, void (*handler)(int)) {
  struct sigaction action = {};  // without SA_RESTART
  action.sa_handler = handler;
  sigemptyset(&action.sa_mask);
  sigaction(number, &action, nullptr);
}

}  // namespace

void Interrupt::Install() {
  Handle(SIGALRM, OnAlarm);
  for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
    struct sigaction inherited = {};
    sigaction(number, nullptr, &inherited);
    const bool ignoredByParent = inherited.sa_handler == SIG_IGN;  // nohup, background jobs
    if (!ignoredByParent) Handle(number, OnSignal);
  }
  for (const int number : {SIGPIPE, SIGXFSZ}) Handle(number, SIG_IGN);
}

bool Interrupt::IsRequested() { return gRequested.load(std::memory_order_relaxed); }

void Interrupt::ThrowIfRequested() {
  if (IsRequested()) throw Requested();
}

void Interrupt::WaitFor(int file, short events) {
  constexpr int kForEver = -1;
  pollfd waited = {file, events, 0};
  do {
    ThrowIfRequested();
  } while (poll(&waited, 1, kForEver) < 0 && errno == EINTR);
}

}  // namespace MCBin
