#pragma once

#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <exception>
#include <functional>
#include <mutex>
#include <utility>

#include "common/mcquerycancel.h"

namespace MCBinModel {

// Runs jobs side by side in threads of their own, and makes the calls to the host in the thread
// that asked for them, which does nothing else meanwhile. With one thread that one does the jobs,
// too.
//
// It is the cancel query of the algorithm in every job: the host's cancellation and the failure of
// one job end all.
class Jobs : public MCQueryCancel {
 public:
  // What is asked and told in the calling thread; either may be empty.
  struct Host {
    std::function<bool()> cancel;  // whether the run is to stop
    std::function<void()> tell;    // how far the run is
  };

  explicit Jobs(Host host) : fHost(std::move(host)) {}

  // Calls job(0) to job(jobCount - 1) and returns when all have ended; a thread takes the next one
  // when it is done with one. Rethrows what a job or the host threw, of several the first; throws
  // Refusal when the threads cannot be started. Requires threads.
  void Run(std::size_t threadCount, std::size_t jobCount,
           const std::function<void(std::size_t)>& job);

  // For jobs: has the host asked, with several threads before long, and answers whether to stop as
  // far as is known.
  bool QueryCancel() override;

  // For jobs: has the host told, with several threads before long and once for what came together.
  void Tell();

  // The host has said that the run is to stop.
  bool IsCancelled() const { return fIsCancelled; }

 private:
  enum class Call { kCancel, kTell };

  void RunThreads(std::size_t threadCount, const std::function<void()>& work);
  void AnswerCalls();
  void Have(Call call);
  void Make(Call call);
  template <typename Action>
  void Guard(const Action& action) noexcept;
  void Fail(std::exception_ptr failure);

  const Host fHost;
  bool fHasThreads = false;

  std::mutex fMutex;  // of what follows
  std::condition_variable fHasLeft;
  std::size_t fThreadsWorking = 0;
  std::exception_ptr fFailure;

  std::atomic<bool> fHasCalls[2] = {false, false};  // by Call
  std::atomic<bool> fHasFailed{false};
  std::atomic<bool> fIsCancelled{false};
};

}  // namespace MCBinModel
