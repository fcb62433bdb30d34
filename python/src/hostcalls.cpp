#include "hostcalls.h"

namespace nb = nanobind;

namespace MCBinPython {

namespace {

constexpr std::chrono::milliseconds kPause{50};

}  // namespace

void HostCalls::ReportProgress(std::uint64_t done, std::uint64_t total) {
  const Clock::time_point now = Clock::now();
  if (now < fNextReport && done < total) return;
  fNextReport = now + kPause;
  const nb::gil_scoped_acquire lock;
  fProgress(done, total);
}

bool HostCalls::QueryCancel() {
  const Clock::time_point now = Clock::now();
  if (now < fNextQuery) return false;
  fNextQuery = now + kPause;
  const nb::gil_scoped_acquire lock;
  if (PyErr_CheckSignals() != 0) throw nb::python_error();
  return false;
}

}  // namespace MCBinPython
