#pragma once

#include <string>

#include "columns.h"

namespace bench {

// A whole supervised run of the library of bins over columns in memory, in wall time: seconds.
double SecondsOfModelRun(const Columns& columns, const std::string& directory, int jobs);

}  // namespace bench
