#pragma once

#include <new>

#include "common/mcstatus.h"

namespace MCBinning {

// Runs `operation`, which returns an MCStatus, and lets no exception out: memory that ran
// out becomes error 3, anything else a host's object has thrown error 1.
template <typename Operation>
MCStatus Guard(const Operation& operation) {
  try {
    return operation();
  } catch (const std::bad_alloc&) {
    return MCStatus(3, false);
  } catch (...) {
    return MCStatus(1, false);
  }
}

}  // namespace MCBinning
