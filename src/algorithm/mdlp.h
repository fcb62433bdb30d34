#pragma once

#include <set>
#include <vector>

#include "algorithm/rowboundaries.h"
#include "algorithm/rowsearch.h"
#include "output/resultstore.h"

namespace MCBinning {

// Recursive splitting by class entropy, stopped by the minimum description length principle:
// docs/method.md, "Supervised binning".

// What a split costs to describe beyond its position, in bits.
double SplitCost(const std::vector<double>& left, const std::vector<double>& right,
                 double parentEntropy);

// Adds the boundaries of all accepted splits of rows first..last (both included) to `cuts`. Returns
// the best split of them all, accepted or not.
SplitFound SplitRows(const RowSearch& search, const RowBoundaries& boundaries, int first, int last,
                     std::set<double>& cuts);

}  // namespace MCBinning
