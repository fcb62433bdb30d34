#pragma once

#include "cli/options/exportoptions.h"

namespace MCBin {

// Runs `mcbin export`: writes a bin file's rules in another language. Returns the exit code;
// throws Refusal, UsageError and Interrupt::Requested.
int ExportCommand(const ExportOptions& options);

}  // namespace MCBin
