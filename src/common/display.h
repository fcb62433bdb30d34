#pragma once

#include <map>
#include <ostream>
#include <string>
#include <vector>

#include "export.h"

namespace MCBinning {

// Diagnostic dumps of vectors: the label, a colon, then every value with a blank before
// it, on one line. Bools print as 1 or 0 and integers in decimal, whatever flags the stream
// carries; doubles with the stream's own formatting.
MCBINNING_API std::ostream& DisplayB(std::ostream& os, const std::string& label,
                                     const std::vector<bool>& values);
MCBINNING_API std::ostream& DisplayD(std::ostream& os, const std::string& label,
                                     const std::vector<double>& values);

// After a line with the label and a colon, a map prints a line per entry (a tab, the key, an
// arrow and the value), a matrix, which is a vector of rows, a line per row with a tab before
// every value.
MCBINNING_API std::ostream& DisplayMI(std::ostream& os, const std::string& label,
                                      const std::map<int, int>& values);
MCBINNING_API std::ostream& DisplayMI(std::ostream& os, const std::string& label,
                                      const std::vector<std::vector<int>>& rows);

}  // namespace MCBinning
