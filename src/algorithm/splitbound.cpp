#include "algorithm/splitbound.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "algorithm/binentropy.h"

namespace MCBinning {

namespace {

constexpr std::size_t kMostCorners = std::size_t{1} << SplitBound::kMostCategories;

}  // namespace

SplitBound::SplitBound(const double* totals, std::size_t categoryCount)
    : fCategoryCount(categoryCount), fTotals(), fWeight(0.0) {
  for (std::size_t category = 0; category < categoryCount; ++category) {
    fTotals[category] = totals[category];
    fWeight += totals[category];
  }
}

// With weight w on a side and w_k of it in category k, the side's entropy times its weight is
// w log w - sum of w_k log w_k.
double SplitBound::GetLeast(const Weights& low, const Weights& high) const {
  // The corners so far: their weight and the sum over categories, left and right together.
  std::array<double, kMostCorners> weight;
  std::array<double, kMostCorners> sum;
  weight[0] = 0.0;
  sum[0] = 0.0;
  std::size_t corners = 1;
  for (std::size_t category = 0; category < fCategoryCount; ++category) {
    const auto both = [&](double left) { return XLogX(left) + XLogX(fTotals[category] - left); };
    const double lowSum = both(low[category]);
    const std::size_t lowCorners = corners;
    if (high[category] != low[category]) {
      const double highSum = both(high[category]);
      for (std::size_t corner = 0; corner < lowCorners; ++corner) {
        weight[corners] = weight[corner] + high[category];
        sum[corners++] = sum[corner] + highSum;
      }
    }
    for (std::size_t corner = 0; corner < lowCorners; ++corner) {
      weight[corner] += low[category];
      sum[corner] += lowSum;
    }
  }

  double least = std::numeric_limits<double>::infinity();
  for (std::size_t corner = 0; corner < corners; ++corner) {
    const double left = weight[corner];
    least = std::min(least, XLogX(left) + XLogX(fWeight - left) - sum[corner]);
  }
  return least / (fWeight * std::log(2.0));
}

}  // namespace MCBinning
