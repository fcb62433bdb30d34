#pragma once

#include <nanobind/nanobind.h>

#include <chrono>
#include <cstdint>

namespace MCBinPython {

// What a run calls back while the interpreter's lock is released: a progress function of Python,
// and the question whether a signal such as Ctrl-C wants the run to stop. Both take the lock a few
// times a second only. What Python raises is thrown through the run, which ends it.
class HostCalls {
 public:
  // Borrows the function, which may be None. Belongs to the thread that runs.
  explicit HostCalls(nanobind::handle progress) : fProgress(progress) {}

  void ReportProgress(std::uint64_t done, std::uint64_t total);

  // Raises instead of answering true.
  bool QueryCancel();

 private:
  using Clock = std::chrono::steady_clock;

  nanobind::handle fProgress;
  Clock::time_point fNextReport;
  Clock::time_point fNextQuery;
};

}  // namespace MCBinPython
