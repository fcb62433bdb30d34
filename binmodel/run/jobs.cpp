#include "binmodel/run/jobs.h"

#include <fmt/format.h>

#include <system_error>
#include <thread>
#include <utility>
#include <vector>

#include "binmodel/model/refusal.h"

namespace MCBinModel {

void Jobs::Run(std::size_t count, const std::function<void(std::size_t)>& job) {
  {
    std::vector<std::jthread> threads;  // joined at the end of this block, whatever happens
    try {
      threads.reserve(count - 1);
      for (std::size_t index = 1; index < count; ++index) {
        threads.emplace_back([this, index, &job] { Guard([&] { job(index); }); });
      }
    } catch (const std::system_error& error) {
      Fail(std::make_exception_ptr(
          Refusal(RefusalCode::kTooManyThreads, {},
                  fmt::format("cannot start {} threads: {}", count - 1, error.code().message()))));
    } catch (...) {
      Fail(std::current_exception());
    }
    if (!fHasFailed) Guard([&] { job(0); });
  }
  if (fFailure) std::rethrow_exception(fFailure);
}

void Jobs::Guard(const std::function<void()>& callback) noexcept {
  try {
    callback();
  } catch (...) {
    Fail(std::current_exception());
  }
}

// What follows the first failure is its consequence.
void Jobs::Fail(std::exception_ptr failure) {
  const std::lock_guard lock(fMutex);
  if (!fFailure) fFailure = std::move(failure);
  fHasFailed = true;
}

bool Jobs::QueryCancel() {
  Guard([&] {
    if (fCancel && !fIsCancelled && fCancel()) fIsCancelled = true;
  });
  return fHasFailed || fIsCancelled;
}

}  // namespace MCBinModel
