#pragma once

#include <string>
#include <vector>

#include "cli/options/runoptions.h"
#include "csv/columnnames.h"
#include "csv/columnrequest.h"

namespace MCBin {

// The columns that a run reads: targets in the order given, the weight, then attributes
// (in the order given, or in file order when none were named). `notes` gets a line for
// each option that has no effect.
//
// Throws Refusal for a name that is not in the file, and UsageError when the options
// contradict each other (a column in two roles, a continuous target).
std::vector<ColumnRequest> SelectColumns(const ColumnNames& names, const RunOptions& options,
                                         std::vector<std::string>& notes);

}  // namespace MCBin
