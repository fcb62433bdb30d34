#pragma once

#include "cli/options/commandoptions.h"

namespace MCBin {

// Adds `report`. Parsing it sets `action`, which must outlive `app`.
void AddReportCommand(CLI::App& app, CommandAction& action);

}  // namespace MCBin
