#pragma once

#include <exception>
#include <new>

#include "common/mcstatus.h"
#include "common/runreport.h"
#include "common/statuscodes.h"

namespace MCBinning {

// Carries an error out of inner code. Guard() hands it to the caller as it is.
class StatusError : public std::exception {
 public:
  explicit StatusError(StatusCode code) : StatusError(Error(code)) {}
  explicit StatusError(const MCStatus& status) : fStatus(status) {}

  const MCStatus& GetStatus() const { return fStatus; }
  const char* what() const noexcept override { return "an error status"; }

 private:
  MCStatus fStatus;
};

// Notes in the report that a host's object has thrown, with its text as far as memory goes.
inline void NoteException(RunReport* report, const char* text) noexcept {
  if (report == nullptr) return;
  report->isHostException = true;
  try {
    report->exceptionText = text;
  } catch (...) {
    report->exceptionText.clear();
  }
}

// Runs `operation`, which returns an MCStatus, and lets no exception out: inner code's own
// errors become the answer, memory that ran out becomes error 3, anything else a host's object
// has thrown error 1, which the report, where there is one, tells from a cancellation.
template <typename Operation>
MCStatus Guard(const Operation& operation, RunReport* report = nullptr) {
  try {
    return operation();
  } catch (const StatusError& error) {
    return error.GetStatus();
  } catch (const std::bad_alloc&) {
    return Error(StatusCode::kOutOfMemory);
  } catch (const std::exception& exception) {
    NoteException(report, exception.what());
  } catch (...) {
    NoteException(report, "");
  }
  return Error(StatusCode::kCancelled);
}

}  // namespace MCBinning
