#pragma once

#include "cli/options/reportoptions.h"

namespace MCBin {

// Runs `mcbin report` and returns the exit code. Throws Refusal and UsageError.
int ReportCommand(const ReportOptions& options);

}  // namespace MCBin
