#pragma once

#include <array>
#include <cstddef>

namespace MCBinning {

// Lower bounds on the entropy of splits of one interval.
//
// The entropy of a split is a concave function of the category weights on its left. So over
// all left sides in a box it is smallest at one of the box's corners.
class SplitBound {
 public:
  static constexpr std::size_t kMostCategories = 8;  // a box has up to 2^K corners

  using Weights = std::array<double, kMostCategories>;  // by category

  // `totals` are the interval's category weights, at most kMostCategories.
  SplitBound(const double* totals, std::size_t categoryCount);

  // The least entropy, in bits, of any left side between `low` and `high`. Exact but for
  // rounding, which stays below kRounding, when both are the same.
  double GetLeast(const Weights& low, const Weights& high) const;

  // More than this and the plain arithmetic never differ while weights sum up to less than
  // 2^52: every term is known to a few units in its last place.
  static constexpr double kRounding = 1e-11;

 private:
  std::size_t fCategoryCount;
  Weights fTotals;
  double fWeight;
};

}  // namespace MCBinning
