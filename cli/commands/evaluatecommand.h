#pragma once

#include "cli/options/evaluateoptions.h"

namespace MCBin {

// Runs `mcbin evaluate`: counts the bins of a bin file on other data and prints both side by
// side. Returns the exit code; throws Refusal, UsageError and Interrupt::Requested.
int EvaluateCommand(const EvaluateOptions& options);

}  // namespace MCBin
