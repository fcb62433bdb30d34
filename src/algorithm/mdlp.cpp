#include "algorithm/mdlp.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <utility>

#include "algorithm/binentropy.h"
#include "common/exactarithmetic.h"
#include "common/vectormath.h"

namespace MCBinning {

double SplitCost(const std::vector<double>& left, const std::vector<double>& right,
                 double parentEntropy) {
  const auto leftCategories = static_cast<double>(VectorXNonZero(left, 1));
  const auto rightCategories = static_cast<double>(VectorXNonZero(right, 1));
  // Categories on both sides count twice: not the number of categories of the parent.
  const double categories = leftCategories + rightCategories;
  return Log2(std::pow(3.0, categories) - 2.0) -
         (categories * parentEntropy - leftCategories * Entropy(left) -
          rightCategories * Entropy(right));
}

// Recursive, with the intervals that wait on a stack of its own.
SplitFound SplitRows(const RowSearch& search, const RowBoundaries& boundaries, int first, int last,
                     std::set<double>& cuts) {
  SplitFound bestSplit;
  std::vector<double> left(search.GetCategoryCount() + 1);
  std::vector<double> right(search.GetCategoryCount() + 1);
  std::vector<std::pair<int, int>> intervals{{first, last}};
  while (!intervals.empty()) {
    const auto [from, to] = intervals.back();
    intervals.pop_back();
    if (to - from < 1) continue;

    std::fill(left.begin(), left.end(), 0.0);
    search.SumRows(from, to, right);
    const double entropy = Entropy(right);
    const double weight = right[0];
    const int best = search.FindBest(from, to, left, right);
    const double gain = entropy - SplitEntropy(left, right);
    const double cost = SplitCost(left, right, entropy);
    const double threshold = Log2(weight - 1.0) / weight + cost / weight;
    if (from == first && to == last) bestSplit = {boundaries.BoundaryOf(best), gain, threshold};
    if (!(gain > threshold)) continue;

    cuts.insert(boundaries.BoundaryOf(best));
    const int split = search.IsRightBorderClosed() ? best : best - 1;
    // At a weight of 1 a split can be accepted that leaves one part as large as before: to
    // look at that again would go on for ever.
    if (split + 1 > from) intervals.emplace_back(split + 1, to);
    if (split < to) intervals.emplace_back(from, split);
  }
  return bestSplit;
}

}  // namespace MCBinning
