#include "algorithm/binefpreprocess.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>

#include "common/displayframe.h"
#include "common/missing.h"
#include "metadata/casebuffers.h"

namespace {

constexpr double kEpsilon = std::numeric_limits<double>::epsilon();

// False when either is infinite, a NaN, or both are 0.
bool IsRelativelyEqual(double a, double b) { return std::fabs(a - b) / std::max(a, b) < kEpsilon; }

// One step of the scan over distinct values, up to a target weight.
struct Scan {
  double totalWeight;
  double target;       // the weight to reach
  double startWeight;  // the state the step began with
  double startPrevious;
  bool isAtStart;
  std::size_t position;  // cases consumed
  double weight;         // their weight
  double weightBefore;   // without the last distinct value consumed
  double value;          // the last distinct value looked at
  double valueBelow;     // the one below it, when the target was reached exactly at its end
  bool isExact;
};

template <typename Case>
void Advance(Scan& scan, const std::vector<Case>& cases) {
  while (scan.position < cases.size() &&
         (scan.target > scan.weight || IsRelativelyEqual(scan.target, scan.weight))) {
    scan.value = cases[scan.position].value;
    scan.weightBefore = scan.weight;
    if (IsRelativelyEqual(scan.weight, scan.target)) {
      scan.isExact = true;
      scan.valueBelow = cases[scan.position - 1].value;
      ++scan.position;
      return;
    }
    do {
      scan.weight += cases[scan.position].weight;
      ++scan.position;
    } while (scan.position < cases.size() && cases[scan.position].value == scan.value);
  }
}

void AppendWeightsRightClosed(const Scan& scan, std::vector<double>& binWeights) {
  if (scan.target == scan.totalWeight) {
    binWeights.push_back(scan.weight - scan.startWeight);
  } else if (scan.weight <= scan.target) {
    if (scan.weightBefore != 0.0) binWeights.push_back(scan.weightBefore - scan.startWeight);
  } else {
    binWeights.push_back((scan.isExact ? scan.weightBefore : scan.weight) - scan.startWeight);
  }
}

void AppendWeightsRightOpen(const Scan& scan, std::vector<double>& binWeights) {
  const bool isLast = scan.target == scan.totalWeight;
  if (scan.weightBefore == 0.0) {
    binWeights.push_back(!scan.isExact && scan.isAtStart ? 0.0 : scan.weight);
    return;
  }
  binWeights.push_back((isLast ? scan.weight : scan.weightBefore) - scan.startPrevious);
  if (!isLast && scan.weight == scan.totalWeight) {
    binWeights.push_back(scan.weight - scan.weightBefore);
  }
}

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

BINEFPreProcess::BINEFPreProcess(int nBins, bool rightBorderClosed)
    : fRightBorderClosed(rightBorderClosed),
      fNumBins(nBins),
      fEFTuples(nullptr),
      fTuples(nullptr) {}

BINEFPreProcess::~BINEFPreProcess() = default;

bool BINEFPreProcess::EFCreatePercentileCutPts(std::vector<EFBINDataTuple>* tuples,
                                               std::vector<double>& cutPoints,
                                               std::vector<double>& binWeights,
                                               double totalWeight) {
  fEFTuples = tuples;
  return FindCutPts(cutPoints, binWeights, totalWeight);
}

bool BINEFPreProcess::EFCreatePercentileCutPts(std::vector<BINDataTuple>* tuples,
                                               std::vector<double>& cutPoints,
                                               std::vector<double>& binWeights,
                                               double totalWeight) {
  fTuples = tuples;
  return FindCutPts(cutPoints, binWeights, totalWeight);
}

bool BINEFPreProcess::FindCutPts(std::vector<double>& cutPoints, std::vector<double>& binWeights,
                                 double totalWeight) {
  if (fEFTuples != nullptr) return CutCases(*fEFTuples, cutPoints, binWeights, totalWeight);
  return fTuples != nullptr && CutCases(*fTuples, cutPoints, binWeights, totalWeight);
}

template <typename Case>
bool BINEFPreProcess::CutCases(const std::vector<Case>& cases, std::vector<double>& cutPoints,
                               std::vector<double>& binWeights, double totalWeight) const {
  if (fNumBins < 1 || cases.empty() || totalWeight <= 0.0) return false;

  const double step = 100.0 / fNumBins;
  unsigned int position = 0;
  double cumulativeWeight = 0.0;
  double previousCumulativeWeight = 0.0;
  for (int k = 0; k < fNumBins; ++k) {
    const double percent = std::min(step * (k + 1), 100.0);
    const double value = Step(cases, cutPoints, binWeights, percent, position, cumulativeWeight,
                              previousCumulativeWeight, totalWeight);
    // The last step is made for its bin weight alone.
    if (k < fNumBins - 1 && (k == 0 || value != cutPoints.back())) cutPoints.push_back(value);
  }
  if (MCBinning::kHasTarget<Case>) return true;

  if (fRightBorderClosed) {
    if (!cutPoints.empty() && cutPoints.back() == cases.back().value) cutPoints.pop_back();
  } else if (!cutPoints.empty() && cutPoints.front() == cases.front().value) {
    cutPoints.erase(cutPoints.begin());
    if (!binWeights.empty()) binWeights.erase(binWeights.begin());
  }
  if (cutPoints.empty() && binWeights.empty()) binWeights.push_back(totalWeight);
  RemoveEmptyBins(cutPoints, binWeights);
  return true;
}

double BINEFPreProcess::GetPercentile(std::vector<double>& cutPoints,
                                      std::vector<double>& binWeights, double percent,
                                      unsigned int& position, double& cumulativeWeight,
                                      double& previousCumulativeWeight, const double& totalWeight) {
  const auto step = [&](const auto& cases) {
    return Step(cases, cutPoints, binWeights, percent, position, cumulativeWeight,
                previousCumulativeWeight, totalWeight);
  };
  return fEFTuples != nullptr ? step(*fEFTuples) : step(*fTuples);
}

template <typename Case>
double BINEFPreProcess::Step(const std::vector<Case>& cases, const std::vector<double>& cutPoints,
                             std::vector<double>& binWeights, double percent,
                             unsigned int& position, double& cumulativeWeight,
                             double& previousCumulativeWeight, double totalWeight) const {
  const bool isFinalPercent = std::fabs(percent - 100.0) <= 100.0 * kEpsilon;
  const double target = isFinalPercent ? totalWeight : totalWeight * percent / 100.0;

  const double currentValue = cases[position == 0 ? 0 : position - 1].value;
  if (target <= cumulativeWeight && !cutPoints.empty() && currentValue == cutPoints.back()) {
    return currentValue;
  }

  Scan scan{};
  scan.totalWeight = totalWeight;
  scan.target = target;
  scan.startWeight = scan.weight = cumulativeWeight;
  scan.startPrevious = previousCumulativeWeight;
  scan.isAtStart = position == 0;
  scan.position = position;
  scan.value = MCMV::Missing();
  Advance(scan, cases);
  if (!MCBinning::kHasTarget<Case>) {
    if (fRightBorderClosed) {
      AppendWeightsRightClosed(scan, binWeights);
    } else {
      AppendWeightsRightOpen(scan, binWeights);
    }
  }

  cumulativeWeight = scan.isExact ? scan.weightBefore : scan.weight;
  position = static_cast<unsigned int>(scan.isExact ? scan.position - 1 : scan.position);
  previousCumulativeWeight = scan.weightBefore;
  return scan.isExact ? (scan.valueBelow + scan.value) / 2.0 : scan.value;
}

template bool BINEFPreProcess::CutCases(const std::vector<BINDataTuple>&, std::vector<double>&,
                                        std::vector<double>&, double) const;
template bool BINEFPreProcess::CutCases(const std::vector<EFBINDataTuple>&, std::vector<double>&,
                                        std::vector<double>&, double) const;
template bool BINEFPreProcess::CutCases(const std::vector<MCBinning::UnweightedCase>&,
                                        std::vector<double>&, std::vector<double>&, double) const;
template bool BINEFPreProcess::CutCases(const std::vector<MCBinning::UnweightedEFCase>&,
                                        std::vector<double>&, std::vector<double>&, double) const;

std::ostream& BINEFPreProcess::Display(std::ostream& os) const {
  MCBinning::DisplayStart(os, "BINEFPreProcess");
  os << "Number of bins = " << fNumBins << '\n'
     << "Right border closed = " << fRightBorderClosed << '\n';
  return MCBinning::DisplayEnd(os, "BINEFPreProcess");
}
