#pragma once

#include "binmodel/export/exportoptions.h"

namespace MCBin {

// Runs `mcbin export`: writes a bin file's rules in another language. Returns the exit code;
// throws Refusal, UsageError and Interrupt::Requested.
int ExportCommand(const MCBinModel::ExportOptions& options);

}  // namespace MCBin
