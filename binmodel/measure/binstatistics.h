#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "../model/binmodel.h"
#include "../model/binmodelexport.h"

namespace MCBinModel {

// Measures of bins; docs/statistics.md has the formulas and their sources. An empty cell is not
// smoothed: what it makes infinite is infinite.

// The target's weights over all bins, by category code.
MCBINMODEL_API std::vector<double> SumClassWeights(const AttributeBins& bins);

// Entropy of a distribution in bits: -sum of p log2 p over the shares p. 0 without weight.
MCBINMODEL_API double Entropy(const std::vector<double>& weights);

// What the bins tell about the target, in bits: the entropy of the target over the valid
// cases minus the model entropy. Never below 0. Requires bins with a model entropy.
MCBINMODEL_API double InformationGain(const AttributeBins& bins);

// The entropy of the target within the bins, in bits. Requires bins with weight.
MCBINMODEL_API double ModelEntropy(const AttributeBins& bins);

// Which of a target's two categories is the event that weight of evidence is about; see
// VariableInfo::GetEvent(). Throws Refusal when the target does not have two categories.
MCBINMODEL_API std::size_t EventCategory(const VariableInfo& target);

// The next three know the bins alone: MeasureEvidence() is what also counts the missing cases and
// the adjustment.

// For each bin, ln((events in the bin / all events) / (others in the bin / all others)):
// above 0 where the event is more frequent than overall. +-infinity where one of the two is
// absent; nothing in a bin without weight, or when one class has no weight at all. Requires
// class weights of two categories.
MCBINMODEL_API std::vector<std::optional<double>> WeightsOfEvidence(const AttributeBins& bins,
                                                                    std::size_t event);

// The sum of (share of all events - share of all others) * weight of evidence over the bins
// with weight; infinite when a weight of evidence is. Nothing when one class has no weight.
MCBINMODEL_API std::optional<double> InformationValue(const AttributeBins& bins, std::size_t event);

// What each bin adds to that sum. Nothing in a bin without weight of evidence.
MCBINMODEL_API std::vector<std::optional<double>> InformationValueTerms(const AttributeBins& bins,
                                                                        std::size_t event);

// How far the shares of the bins moved between two samples: the sum of
// (b - a) * ln(b / a) over the shares a and b of each bin. 0 when nothing moved, infinite
// when a bin is empty in one sample only. Nothing when a sample has no weight. Requires as
// many bins in both.
MCBINMODEL_API std::optional<double> StabilityIndex(const std::vector<double>& weights,
                                                    const std::vector<double>& otherWeights);

// The same of two counts of the same bins. The missing cases are a bin like the others where both
// have counted them; nothing also when only one has bins.
MCBINMODEL_API std::optional<double> StabilityOfBins(const AttributeBins& bins,
                                                     const AttributeBins& others);

// The largest distance of a bin's share of the weight from 1 / binCount.
MCBINMODEL_API double LargestShareDeviation(const AttributeBins& bins, int binCount);

}  // namespace MCBinModel
