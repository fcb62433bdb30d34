#pragma once

#include <cstddef>
#include <cstdint>
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

// The bins of many values, as FindBin() finds them, and -1 for NaN. Takes some nanoseconds a value,
// whatever order they come in.
MCBINMODEL_API void FindBins(const std::vector<double>& cutPoints, const double* values,
                             std::size_t count, bool rightClosed, std::int32_t* bins);

// How a bin is named in data: its interval, such as "(4.3, 5.4]", with numbers that read back
// as the same doubles; of a categorical attribute its categories, such as "{low, high}". No
// two bins that can hold a value have the same label. Requires bin <= cutPoints.size().
MCBINMODEL_API std::string BinLabel(const VariableInfo& attribute,
                                    const std::vector<double>& cutPoints, std::size_t bin,
                                    bool rightClosed);

}  // namespace MCBinModel
