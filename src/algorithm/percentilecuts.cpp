#include "algorithm/percentilecuts.h"

#include <algorithm>
#include <cstddef>

#include "algorithm/binefpreprocess.h"
#include "algorithm/percentilescan.h"
#include "metadata/pass/cases.h"

namespace MCBinning {

namespace {

// Drops every bin without weight, and the cut point above it (below it for the last bin). A last
// bin so light beside the others that it vanished in the sum has no weight at all.
void RemoveEmptyBins(std::vector<double>& cutPoints, std::vector<double>& binWeights) {
  binWeights.resize(cutPoints.size() + 1, 0.0);
  std::vector<double> keptCuts;
  std::vector<double> keptWeights;
  for (std::size_t i = 0; i < cutPoints.size(); ++i) {
    if (binWeights[i] == 0.0) continue;
    keptCuts.push_back(cutPoints[i]);
    keptWeights.push_back(binWeights[i]);
  }
  const double lastWeight = binWeights[cutPoints.size()];
  if (lastWeight == 0.0 && !keptCuts.empty()) {
    keptCuts.pop_back();
  } else {
    keptWeights.push_back(lastWeight);
  }
  cutPoints.swap(keptCuts);
  binWeights.swap(keptWeights);
}

}  // namespace

PercentileCuts::PercentileCuts(const BINEFPreProcess& preProcess)
    : fBinCount(preProcess.fNumBins), fRightBorderClosed(preProcess.fRightBorderClosed) {}

template <typename Case>
bool PercentileCuts::Find(const std::vector<Case>& cases, double totalWeight,
                          std::vector<double>& cutPoints, std::vector<double>& binWeights,
                          LazyOrder<Case>* order) const {
  if (fBinCount < 1 || cases.empty() || totalWeight <= 0.0) return false;

  const double step = 100.0 / fBinCount;
  PercentileScan<Case> scan(cases, fRightBorderClosed, totalWeight, order);
  for (int k = 0; k < fBinCount; ++k) {
    const double value = scan.Next(std::min(step * (k + 1), 100.0), cutPoints, binWeights);
    // The last step is made for its bin weight alone.
    if (k < fBinCount - 1 && (k == 0 || value != cutPoints.back())) cutPoints.push_back(value);
  }
  if (kHasTarget<Case>) return true;

  if (fRightBorderClosed) {
    if (!cutPoints.empty() && cutPoints.back() == Unpacked(cases.back()).value)
      cutPoints.pop_back();
  } else if (!cutPoints.empty() && cutPoints.front() == Unpacked(cases.front()).value) {
    cutPoints.erase(cutPoints.begin());
    if (!binWeights.empty()) binWeights.erase(binWeights.begin());
  }
  if (cutPoints.empty() && binWeights.empty()) binWeights.push_back(totalWeight);
  RemoveEmptyBins(cutPoints, binWeights);
  return true;
}

template bool PercentileCuts::Find(const std::vector<BINDataTuple>&, double, std::vector<double>&,
                                   std::vector<double>&, LazyOrder<BINDataTuple>*) const;
template bool PercentileCuts::Find(const std::vector<EFBINDataTuple>&, double, std::vector<double>&,
                                   std::vector<double>&, LazyOrder<EFBINDataTuple>*) const;
template bool PercentileCuts::Find(const std::vector<UnweightedCase>&, double, std::vector<double>&,
                                   std::vector<double>&, LazyOrder<UnweightedCase>*) const;
template bool PercentileCuts::Find(const std::vector<UnweightedEFCase>&, double,
                                   std::vector<double>&, std::vector<double>&,
                                   LazyOrder<UnweightedEFCase>*) const;
template bool PercentileCuts::Find(const std::vector<PackedCase<1>>&, double, std::vector<double>&,
                                   std::vector<double>&, LazyOrder<PackedCase<1>>*) const;
template bool PercentileCuts::Find(const std::vector<PackedCase<5>>&, double, std::vector<double>&,
                                   std::vector<double>&, LazyOrder<PackedCase<5>>*) const;

}  // namespace MCBinning
