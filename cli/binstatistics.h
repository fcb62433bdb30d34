#pragma once

#include <vector>

#include "cli/binmodel.h"

namespace MCBin {

// Measures computed from the component's results.

// The target's weights over all bins, by category code.
std::vector<double> SumClassWeights(const AttributeBins& bins);

// Entropy of a distribution in bits: -sum of p log2 p over the shares p. 0 without weight.
double Entropy(const std::vector<double>& weights);

// What the bins tell about the target, in bits: the entropy of the target over the valid
// cases minus the model entropy. Never below 0. Requires bins with a model entropy.
double InformationGain(const AttributeBins& bins);

// The largest distance of a bin's share of the weight from 1 / binCount.
double LargestShareDeviation(const AttributeBins& bins, int binCount);

}  // namespace MCBin
