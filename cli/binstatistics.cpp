#include "cli/binstatistics.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace MCBin {

std::vector<double> SumClassWeights(const AttributeBins& bins) {
  std::vector<double> sums;
  for (const std::vector<double>& bin : bins.classWeights) {
    sums.resize(bin.size());
    std::transform(bin.begin(), bin.end(), sums.begin(), sums.begin(), std::plus<>());
  }
  return sums;
}

double Entropy(const std::vector<double>& weights) {
  const double total = std::accumulate(weights.begin(), weights.end(), 0.0);
  double entropy = 0.0;
  for (const double weight : weights) {
    if (weight > 0.0) entropy -= weight / total * std::log2(weight / total);
  }
  return entropy;
}

double InformationGain(const AttributeBins& bins) {
  return std::max(0.0, Entropy(SumClassWeights(bins)) - *bins.modelEntropy);
}

double LargestShareDeviation(const AttributeBins& bins, int binCount) {
  double largest = 0.0;
  for (const double weight : bins.binWeights) {
    largest = std::max(largest, std::abs(weight / bins.validWeight - 1.0 / binCount));
  }
  return largest;
}

}  // namespace MCBin
