#pragma once

#include "cli/options/commandoptions.h"

namespace MCBin {

// Runs a command. What it throws becomes a message on standard error and an exit code.
int RunGuarded(const CommandAction& action);

}  // namespace MCBin
