#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "binmodelexport.h"
#include "variableinfo.h"

namespace MCBinModel {

// The bin of a value: the number of cut points below it, and with the left border closed
// those equal to it too. Infinite values are in the first and the last bin. Requires a value that
// is not missing, and ascending cut points.
MCBINMODEL_API std::size_t FindBin(const std::vector<double>& cutPoints, double value,
                                   bool rightClosed);

// How a bin is named in data: its interval, such as "(4.3, 5.4]", with numbers that read back
// as the same doubles; of a categorical attribute its categories, such as "{low, high}". No
// two bins that can hold a value have the same label. Requires bin <= cutPoints.size().
MCBINMODEL_API std::string BinLabel(const VariableInfo& attribute,
                                    const std::vector<double>& cutPoints, std::size_t bin,
                                    bool rightClosed);

}  // namespace MCBinModel
