#include "binmodel/measure/binstatistics.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <numeric>

#include "binmodel/model/refusal.h"
#include "binmodel/text/displaytext.h"

namespace MCBinModel {

namespace {

double Sum(const std::vector<double>& weights) {
  return std::accumulate(weights.begin(), weights.end(), 0.0);
}

// (b - a) ln(b / a): what a cell adds to a divergence. Infinite when one of the two is 0.
double DivergenceTerm(double a, double b) { return a == b ? 0.0 : (b - a) * std::log(b / a); }

}  // namespace

std::vector<double> SumClassWeights(const AttributeBins& bins) {
  std::vector<double> sums;
  for (const std::vector<double>& bin : bins.classWeights) {
    sums.resize(bin.size());
    std::transform(bin.begin(), bin.end(), sums.begin(), sums.begin(), std::plus<>());
  }
  return sums;
}

double Entropy(const std::vector<double>& weights) {
  const double total = Sum(weights);
  double entropy = 0.0;
  for (const double weight : weights) {
    if (weight > 0.0) entropy -= weight / total * std::log2(weight / total);
  }
  return entropy;
}

double InformationGain(const AttributeBins& bins) {
  return std::max(0.0, Entropy(SumClassWeights(bins)) - *bins.modelEntropy);
}

double ModelEntropy(const AttributeBins& bins) {
  double entropy = 0.0;
  for (const std::vector<double>& bin : bins.classWeights) entropy += Sum(bin) * Entropy(bin);
  return entropy / Sum(bins.binWeights);
}

std::size_t EventCategory(const VariableInfo& target) {
  if (target.GetCategoryCount() != 2) {
    throw Refusal(RefusalCode::kEvidenceNeedsTwoClasses, {"", target.name, ""},
                  fmt::format("weight of evidence needs a target with two classes; {} has {}",
                              QuotedText(target.name), target.GetCategoryCount()));
  }
  return target.GetEvent();
}

std::vector<std::optional<double>> WeightsOfEvidence(const AttributeBins& bins, std::size_t event) {
  const std::size_t other = 1 - event;
  const std::vector<double> totals = SumClassWeights(bins);
  std::vector<std::optional<double>> evidence;
  for (const std::vector<double>& bin : bins.classWeights) {
    const double eventShare = bin[event] / totals[event];
    const double otherShare = bin[other] / totals[other];
    const double value = std::log(eventShare / otherShare);
    evidence.push_back(std::isnan(value) ? std::nullopt : std::optional<double>(value));
  }
  return evidence;
}

std::optional<double> InformationValue(const AttributeBins& bins, std::size_t event) {
  std::vector<double> events;
  std::vector<double> others;
  for (const std::vector<double>& bin : bins.classWeights) {
    events.push_back(bin[event]);
    others.push_back(bin[1 - event]);
  }
  return StabilityIndex(others, events);
}

std::vector<std::optional<double>> InformationValueTerms(const AttributeBins& bins,
                                                         std::size_t event) {
  const std::vector<double> totals = SumClassWeights(bins);
  std::vector<std::optional<double>> terms = WeightsOfEvidence(bins, event);
  for (std::size_t bin = 0; bin < terms.size(); ++bin) {
    if (!terms[bin]) continue;
    const std::vector<double>& weights = bins.classWeights[bin];
    terms[bin] =
        DivergenceTerm(weights[1 - event] / totals[1 - event], weights[event] / totals[event]);
  }
  return terms;
}

std::optional<double> StabilityIndex(const std::vector<double>& weights,
                                     const std::vector<double>& otherWeights) {
  const double total = Sum(weights);
  const double otherTotal = Sum(otherWeights);
  if (total == 0.0 || otherTotal == 0.0) return std::nullopt;
  double index = 0.0;
  for (std::size_t bin = 0; bin < weights.size(); ++bin) {
    index += DivergenceTerm(weights[bin] / total, otherWeights[bin] / otherTotal);
  }
  return index;
}

std::optional<double> StabilityOfBins(const AttributeBins& bins, const AttributeBins& others) {
  std::vector<double> weights = bins.binWeights;
  std::vector<double> otherWeights = others.binWeights;
  // Bins without a valid case have no weights at all, but all cases may be missing there.
  if (weights.empty()) weights.resize(otherWeights.size());
  if (otherWeights.empty()) otherWeights.resize(weights.size());
  if (weights.size() != otherWeights.size()) return std::nullopt;
  if (bins.missing && others.missing) {
    weights.push_back(bins.missing->weight);
    otherWeights.push_back(others.missing->weight);
  }
  return StabilityIndex(weights, otherWeights);
}

double LargestShareDeviation(const AttributeBins& bins, int binCount) {
  double largest = 0.0;
  for (const double weight : bins.binWeights) {
    largest = std::max(largest, std::abs(weight / bins.validWeight - 1.0 / binCount));
  }
  return largest;
}

}  // namespace MCBinModel
