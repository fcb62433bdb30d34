#include "binmodel/run/jobs.h"

#include <fmt/format.h>

#include <chrono>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

#include "binmodel/model/refusal.h"

namespace MCBinModel {

template <typename Action>
void Jobs::Guard(const Action& action) noexcept {
  try {
    action();
  } catch (...) {
    Fail(std::current_exception());
  }
}

void Jobs::Run(std::size_t threadCount, std::size_t jobCount,
               const std::function<void(std::size_t)>& job) {
  std::atomic<std::size_t> next{0};
  const auto work = [&] {
    while (!fHasFailed) {
      const std::size_t index = next++;
      if (index >= jobCount) return;
      Guard([&] { job(index); });
    }
  };
  fHasThreads = threadCount > 1;
  if (fHasThreads) {
    RunThreads(threadCount, work);
  } else {
    work();
  }
  if (fFailure) std::rethrow_exception(fFailure);
}

void Jobs::RunThreads(std::size_t threadCount, const std::function<void()>& work) {
  const auto enter = [this] {
    const std::lock_guard lock(fMutex);
    ++fThreadsWorking;
  };
  const auto leave = [this] {
    const std::lock_guard lock(fMutex);
    --fThreadsWorking;
    fHasLeft.notify_one();
  };
  std::vector<std::jthread> threads;  // joined at the end, whatever happens
  Guard([&] {
    threads.reserve(threadCount);
    while (threads.size() < threadCount) {
      enter();
      try {
        threads.emplace_back([&] {
          work();
          leave();
        });
      } catch (const std::system_error& error) {
        leave();
        throw Refusal(
            RefusalCode::kTooManyThreads, {},
            fmt::format("cannot start {} threads: {}", threadCount, error.code().message()));
      } catch (...) {
        leave();
        throw;
      }
    }
  });
  AnswerCalls();
}

// Until no thread is left that could call; what is told last is the end. Looks for calls at times:
// woken by each, this thread would take the others' cores some hundred times a run, 3 % of it.
void Jobs::AnswerCalls() {
  constexpr std::chrono::milliseconds kBetweenLooks(4);
  for (bool isWorking = true; isWorking;) {
    {
      std::unique_lock lock(fMutex);
      fHasLeft.wait_for(lock, kBetweenLooks, [this] { return fThreadsWorking == 0; });
      isWorking = fThreadsWorking > 0;
    }
    for (const Call call : {Call::kCancel, Call::kTell}) {
      if (fHasCalls[static_cast<std::size_t>(call)].exchange(false)) Make(call);
    }
  }
}

bool Jobs::QueryCancel() {
  if (fHost.cancel) Have(Call::kCancel);
  return fHasFailed || fIsCancelled;
}

void Jobs::Tell() {
  if (fHost.tell) Have(Call::kTell);
}

void Jobs::Have(Call call) {
  if (!fHasThreads) {
    Make(call);
  } else {
    fHasCalls[static_cast<std::size_t>(call)] = true;
  }
}

// A run that has failed, or that the host has stopped, has nothing more to ask or tell.
void Jobs::Make(Call call) {
  if (fHasFailed || fIsCancelled) return;
  Guard([&] {
    if (call == Call::kTell) {
      fHost.tell();
    } else if (fHost.cancel()) {
      fIsCancelled = true;
    }
  });
}

// What follows the first failure is its consequence.
void Jobs::Fail(std::exception_ptr failure) {
  const std::lock_guard lock(fMutex);
  if (!fFailure) fFailure = std::move(failure);
  fHasFailed = true;
}

}  // namespace MCBinModel
