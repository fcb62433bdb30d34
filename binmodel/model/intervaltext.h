#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "binmodel/model/variableinfo.h"

namespace MCBinModel {

// Bin `bin` of the bins that the cut points of a continuous attribute make, such as "(-inf, 5.5]"
// with the right border closed or "[5.5, 6.1)" with the left. Requires bin <= cutPoints.size().
std::string IntervalText(const VariableInfo& attribute, const std::vector<double>& cutPoints,
                         std::size_t bin, bool rightClosed);

}  // namespace MCBinModel
