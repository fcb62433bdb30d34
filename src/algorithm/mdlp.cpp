#include "algorithm/mdlp.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
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

namespace {

constexpr std::size_t kMostBoundedCategories = 8;  // with more the bound is seldom of use

// What a split of an interval leaves at most if it is accepted: its cost is least where neither
// side has any entropy, and each category is on one side or both. Infinite when that tells nothing.
double MostEntropy(const std::vector<double>& weights, double entropy) {
  const auto present = static_cast<std::size_t>(VectorXNonZero(weights, 1));
  if (present > kMostBoundedCategories) return std::numeric_limits<double>::infinity();
  double leastCost = std::numeric_limits<double>::infinity();
  for (std::size_t count = present; count <= 2 * present; ++count) {
    const auto categories = static_cast<double>(count);
    leastCost = std::min(leastCost, Log2(std::pow(3.0, categories) - 2.0) - categories * entropy);
  }
  const double weight = weights[0];
  const double leastThreshold = (Log2(weight - 1.0) + leastCost) / weight;
  // Below 0, even a split that separates nothing might be accepted.
  return leastThreshold > 0.0 ? entropy - leastThreshold : std::numeric_limits<double>::infinity();
}

}  // namespace

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
    const bool isWhole = from == first && to == last;
    const int best = isWhole ? search.FindBest(from, to, left, right)
                             : search.FindBest(from, to, left, right, MostEntropy(right, entropy));
    if (best == RowSearch::kNoRow) continue;
    const double gain = entropy - SplitEntropy(left, right);
    const double cost = SplitCost(left, right, entropy);
    const double threshold = Log2(weight - 1.0) / weight + cost / weight;
    if (isWhole) bestSplit = {boundaries.BoundaryOf(best), gain, threshold};
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
