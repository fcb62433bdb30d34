#pragma once

#include "cli/options/commandoptions.h"

namespace MCBin {

// Adds `supervised` and `equal-frequency`. Parsing one of them sets `action`, which must
// outlive `app`; it throws UsageError for options that contradict each other.
void AddRunCommands(CLI::App& app, CommandAction& action);

}  // namespace MCBin
