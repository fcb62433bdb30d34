#pragma once

#include "cli/options/runoptions.h"

namespace MCBin {

// Runs `mcbin supervised` or `mcbin equal-frequency` and returns the exit code. Messages
// go to standard error; no temporary file stays behind. Throws Refusal, UsageError and
// Interrupt::Requested.
int RunCommand(const RunOptions& options);

}  // namespace MCBin
