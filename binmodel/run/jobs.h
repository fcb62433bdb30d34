#pragma once

#include <atomic>
#include <cstddef>
#include <exception>
#include <functional>
#include <mutex>

#include "common/mcquerycancel.h"

namespace MCBinModel {

// Runs jobs side by side, each in a thread of its own. It is the cancel query of the component
// in every one of them: the user's Ctrl-C and the failure of one job end all.
class Jobs : public MCQueryCancel {
 public:
  // Calls job(0) to job(count - 1) and returns when all have ended; job 0 runs in this thread,
  // so a single job needs no other. Rethrows what a job threw, of several the first.
  // Requires count > 0.
  void Run(std::size_t count, const std::function<void(std::size_t)>& job);

  bool QueryCancel() override;

 private:
  void RunOne(std::size_t index, const std::function<void(std::size_t)>& job) noexcept;
  void Fail(std::exception_ptr failure);

  std::mutex fMutex;  // of fFailure
  std::exception_ptr fFailure;
  std::atomic<bool> fHasFailed{false};
};

}  // namespace MCBinModel
