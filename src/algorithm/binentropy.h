#pragma once

#include <cmath>
#include <cstddef>
#include <vector>

namespace MCBinning {

// Base-2 entropies of category weight vectors: the total weight, then the weight of each of
// `categoryCount` categories.

inline double Log2(double x) { return std::log(x) / std::log(2.0); }

inline double XLogX(double x) { return x > 0.0 ? x * std::log(x) : 0.0; }

// 0 when the total is 0.
inline double Entropy(const double* weights, std::size_t categoryCount) {
  if (weights[0] == 0.0) return 0.0;
  double entropy = 0.0;
  for (std::size_t category = 1; category <= categoryCount; ++category) {
    double share = weights[category] / weights[0];
    if (share == 0.0) share = 1.0;  // an absent category adds nothing
    entropy += -share * Log2(share);
  }
  return entropy;
}

inline double Entropy(const std::vector<double>& weights) {
  return Entropy(weights.data(), weights.size() - 1);
}

// The mean entropy of two sides, by weight. A NaN when neither weighs anything.
inline double SplitEntropy(const double* left, const double* right, std::size_t categoryCount) {
  return (left[0] * Entropy(left, categoryCount) + right[0] * Entropy(right, categoryCount)) /
         (left[0] + right[0]);
}

inline double SplitEntropy(const std::vector<double>& left, const std::vector<double>& right) {
  return SplitEntropy(left.data(), right.data(), left.size() - 1);
}

// The entropy within bins, each a category weight vector, over a total weight.
inline double ModelEntropy(const std::vector<double>& counts, std::size_t categoryCount,
                           double totalWeight) {
  const std::size_t groupSize = categoryCount + 1;
  double sum = 0.0;
  for (std::size_t bin = 0; bin + groupSize <= counts.size(); bin += groupSize) {
    sum += counts[bin] * Entropy(counts.data() + bin, categoryCount);
  }
  return sum / totalWeight;
}

}  // namespace MCBinning
