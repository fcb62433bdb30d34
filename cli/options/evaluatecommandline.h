#pragma once

#include "cli/options/commandoptions.h"

namespace MCBin {

// Adds `evaluate`. Parsing it sets `action`, which must outlive `app`; it throws UsageError
// for options that contradict each other.
void AddEvaluateCommand(CLI::App& app, CommandAction& action);

}  // namespace MCBin
