#pragma once

#include <cstddef>
#include <vector>

#include "binmodel/model/binmodel.h"

namespace MCBinModel {

// Indexes of the results: the largest information gain first, those without a gain last,
// otherwise in the order of the results.
std::vector<std::size_t> OrderByGain(const std::vector<AttributeBins>& results);

}  // namespace MCBinModel
