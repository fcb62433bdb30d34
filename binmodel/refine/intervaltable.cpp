#include "binmodel/refine/intervaltable.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace MCBinModel {

namespace {

// Values are whole numbers, so that their sums do not depend on the order: multiples of 2^-36 bits,
// less than rounding could show. Every bin costs two of them, more than rounding can make a cut
// worth that separates nothing, and a fraction that only decides between equal sums.
constexpr int kUnitExponent = 36;
constexpr std::int64_t kBinCost = 2;
constexpr std::int64_t kFractions = 4096;  // more than there are bins

double XLog2X(double x) { return x > 0.0 ? x * std::log2(x) : 0.0; }

std::int64_t CountUnits(double information) {
  const std::int64_t units = std::llround(std::ldexp(information, kUnitExponent));
  return (units - kBinCost) * kFractions - 1;
}

// A bin that grows by its upper neighbours.
class GrowingBin {
 public:
  GrowingBin(const AttributeBins& bins, const JoinMeasure& measure)
      : fBins(bins), fMeasure(measure) {
    fTotal = std::accumulate(bins.binWeights.begin(), bins.binWeights.end(), 0.0);
    fClassTotals.resize(bins.classWeights.empty() ? 0 : bins.classWeights.front().size());
    for (const std::vector<double>& weights : bins.classWeights) {
      std::transform(weights.begin(), weights.end(), fClassTotals.begin(), fClassTotals.begin(),
                     std::plus<>());
    }
  }

  void Start() {
    fWeight = 0.0;
    fClassWeights.assign(fClassTotals.size(), 0.0);
    fClassTerms.assign(fClassTotals.size(), 0.0);
  }

  void Add(std::size_t bin) {
    fWeight += fBins.binWeights[bin];
    for (std::size_t code = 0; code < fClassWeights.size(); ++code) {
      const double weight = fBins.classWeights[bin][code];
      if (weight == 0.0) continue;
      fClassWeights[code] += weight;
      fClassTerms[code] = XLog2X(fClassWeights[code] / fTotal);
    }
  }

  bool Fits(const JoinLimits& limits) const {
    if (!(fWeight >= limits.minWeight && fWeight / fTotal >= limits.minShare)) return false;
    if (limits.NeedRates() && fWeight == 0.0) return false;  // it has no rate
    if (fClassWeights.size() != 2) return true;
    const double events = fClassWeights[fMeasure.event];
    const double nonevents = fClassWeights[1 - fMeasure.event];
    if (limits.bothClasses && (events == 0.0 || nonevents == 0.0)) return false;
    return events >= limits.minEventWeight && nonevents >= limits.minNoneventWeight;
  }

  double Rate() const { return fClassWeights[fMeasure.event] / fWeight; }

  std::int64_t Value() const {
    if (fMeasure.objective == RefineObjective::kInformationValue) {
      const double events = fClassWeights[fMeasure.event] / fClassTotals[fMeasure.event];
      const double nonevents = fClassWeights[1 - fMeasure.event] / fClassTotals[1 - fMeasure.event];
      // An infinite value is that of a bin which is not allowed; without that limit it is 0.
      if (!(events > 0.0 && nonevents > 0.0)) return CountUnits(0.0);
      return CountUnits((events - nonevents) * std::log(events / nonevents));
    }
    double information = 0.0;
    for (const double term : fClassTerms) information += term;
    return CountUnits(information - XLog2X(fWeight / fTotal));
  }

 private:
  const AttributeBins& fBins;
  const JoinMeasure& fMeasure;
  double fTotal = 0.0;
  std::vector<double> fClassTotals;
  double fWeight = 0.0;
  std::vector<double> fClassWeights;
  std::vector<double> fClassTerms;  // of the information, one for each class
};

bool IsAmong(const std::vector<double>& cuts, double cut) {
  return std::binary_search(cuts.begin(), cuts.end(), cut);
}

}  // namespace

IntervalTable::IntervalTable(const AttributeBins& bins, const JoinMeasure& measure,
                             const JoinLimits& limits)
    : fBinCount(bins.binWeights.size()) {
  const std::size_t intervalCount = fBinCount * (fBinCount + 1) / 2;
  fValues.assign(intervalCount, kNotAllowed);
  if (limits.NeedRates()) fRates.resize(intervalCount);
  // Whether bins may begin, and whether one must, at a bin; the end counts as one.
  std::vector<char> mayBegin(fBinCount + 1, 1);
  std::vector<char> mustBegin(fBinCount + 1, 0);
  for (std::size_t bin = 1; bin < fBinCount; ++bin) {
    const double cut = bins.cutPoints[bin - 1];
    const bool isGiven = limits.onlyCuts && IsAmong(*limits.onlyCuts, cut);
    mayBegin[bin] = isGiven || !limits.onlyCuts;
    mustBegin[bin] = isGiven || IsAmong(limits.keptCuts, cut);
  }

  GrowingBin joined(bins, measure);
  for (std::size_t first = 0; first < fBinCount; ++first) {
    if (!mayBegin[first]) continue;
    joined.Start();
    for (std::size_t end = first + 1; end <= fBinCount; ++end) {
      joined.Add(end - 1);
      if (mayBegin[end] && joined.Fits(limits)) {
        fValues[Index(first, end)] = joined.Value();
        if (limits.NeedRates()) fRates[Index(first, end)] = joined.Rate();
      }
      if (mustBegin[end]) break;
    }
  }
}

}  // namespace MCBinModel
