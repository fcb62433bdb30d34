#pragma once

#include <cstddef>
#include <set>
#include <vector>

namespace MCBinning {

// Merges every bin between two others that weighs less than `threshold` of the lighter one into
// the neighbour that keeps the class entropy lower: docs/method.md, "Small bins". `counts` holds
// the bins' category weight vectors.
void MergeSmallBins(double threshold, std::size_t categoryCount, std::vector<double>& counts,
                    std::set<double>& cuts);

}  // namespace MCBinning
