#pragma once

#include <exception>
#include <new>

#include "common/mcstatus.h"
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

// Runs `operation`, which returns an MCStatus, and lets no exception out: inner code's own
// errors become the answer, memory that ran out becomes error 3, anything else a host's object
// has thrown error 1.
template <typename Operation>
MCStatus Guard(const Operation& operation) {
  try {
    return operation();
  } catch (const StatusError& error) {
    return error.GetStatus();
  } catch (const std::bad_alloc&) {
    return Error(StatusCode::kOutOfMemory);
  } catch (...) {
    return Error(StatusCode::kCancelled);
  }
}

}  // namespace MCBinning
