#pragma once

#include <string_view>

#include "csv/columnrequest.h"

namespace MCBin {

// Reads NAME=v1,v2,low:high. "low:" and ":high" are open to one side; a value that holds
// a comma or looks like an interval is written in double quotes. Throws UsageError.
MissingRequest ParseMissingOption(std::string_view text);

}  // namespace MCBin
