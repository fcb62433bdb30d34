#pragma once

#include "cli/options/applyoptions.h"

namespace MCBin {

// Runs `mcbin apply`: copies the input to standard output, record by record, with the bins of
// a bin file. Returns the exit code; throws Refusal, UsageError and Interrupt::Requested.
int ApplyCommand(const ApplyOptions& options);

}  // namespace MCBin
