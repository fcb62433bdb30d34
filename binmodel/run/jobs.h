#pragma once

#include <atomic>
#include <cstddef>
#include <exception>
#include <functional>
#include <mutex>

#include "common/mcquerycancel.h"

namespace MCBinModel {

// Runs jobs side by side, each in a thread of its own. It is the cancel query of the algorithm
// in every one of them: the host's cancellation and the failure of one job end all.
class Jobs : public MCQueryCancel {
 public:
  // Borrows `cancel`, which may be empty.
  explicit Jobs(const std::function<bool()>& cancel) : fCancel(cancel) {}

  // Calls job(0) to job(count - 1) and returns when all have ended; job 0 runs in this thread,
  // so a single job needs no other. Rethrows what a job threw, of several the first; throws
  // Refusal when the threads cannot be started. Requires count > 0.
  void Run(std::size_t count, const std::function<void(std::size_t)>& job);

  // What the host's callbacks throw ends the run, here and below.
  bool QueryCancel() override;
  void Guard(const std::function<void()>& callback) noexcept;

  // The host has said that the run is to stop.
  bool IsCancelled() const { return fIsCancelled; }

 private:
  void Fail(std::exception_ptr failure);

  const std::function<bool()>& fCancel;
  std::mutex fMutex;  // of fFailure
  std::exception_ptr fFailure;
  std::atomic<bool> fHasFailed{false};
  std::atomic<bool> fIsCancelled{false};
};

}  // namespace MCBinModel
