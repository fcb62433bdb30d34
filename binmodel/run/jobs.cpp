#include "binmodel/run/jobs.h"

#include <fmt/format.h>

#include <system_error>
#include <thread>
#include <utility>
#include <vector>

#include "binmodel/model/refusal.h"
#include "io/interrupt.h"

namespace MCBinModel {

void Jobs::Run(std::size_t count, const std::function<void(std::size_t)>& job) {
  {
    std::vector<std::jthread> threads;  // joined at the end of this block, whatever happens
    try {
      threads.reserve(count - 1);
      for (std::size_t index = 1; index < count; ++index) {
        threads.emplace_back([this, index, &job] { RunOne(index, job); });
      }
    } catch (const std::system_error& error) {
      Fail(std::make_exception_ptr(
          Refusal(fmt::format("cannot start {} threads: {}; choose fewer with --jobs", count - 1,
                              error.code().message()))));
    } catch (...) {
      Fail(std::current_exception());
    }
    if (!fHasFailed) RunOne(0, job);
  }
  if (fFailure) std::rethrow_exception(fFailure);
}

void Jobs::RunOne(std::size_t index, const std::function<void(std::size_t)>& job) noexcept {
  try {
    job(index);
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

bool Jobs::QueryCancel() { return fHasFailed || MCBin::Interrupt::IsRequested(); }

}  // namespace MCBinModel
