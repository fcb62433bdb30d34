#pragma once

#include "cli/runoptions.h"

namespace MCBin {

// Runs `mcbin supervised` or `mcbin equal-frequency` and returns the exit code. Messages
// go to standard error; nothing is thrown, no temporary file stays behind.
int RunCommand(const RunOptions& options);

}  // namespace MCBin
