#pragma once

#include <map>
#include <ostream>
#include <string>
#include <vector>

#include "common/export.h"

namespace MCBinning {

// Diagnostic dumps of vectors: the label, a colon, then every value with a blank before
// it, on one line. Bools print as 1 or 0; doubles with the stream's own formatting.
MCBINNING_API std::ostream& DisplayB(std::ostream& os, const std::string& label,
                                     const std::vector<bool>& values);
MCBINNING_API std::ostream& DisplayD(std::ostream& os, const std::string& label,
                                     const std::vector<double>& values);

// A map prints a line "<tab>key -> value" per entry after the label's line; a matrix (a
// vector of rows) a line per row, every value with a tab before it.
MCBINNING_API std::ostream& DisplayMI(std::ostream& os, const std::string& label,
                                      const std::map<int, int>& values);
MCBINNING_API std::ostream& DisplayMI(std::ostream& os, const std::string& label,
                                      const std::vector<std::vector<int>>& rows);

}  // namespace MCBinning
