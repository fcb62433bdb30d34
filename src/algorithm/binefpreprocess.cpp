#include "algorithm/binefpreprocess.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>

#include "common/displayframe.h"
#include "common/missing.h"

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

template <typename Tuple>
void Advance(Scan& scan, const std::vector<Tuple>& tuples) {
  while (scan.position < tuples.size() &&
         (scan.target > scan.weight || IsRelativelyEqual(scan.target, scan.weight))) {
    scan.value = tuples[scan.position].value;
    scan.weightBefore = scan.weight;
    if (IsRelativelyEqual(scan.weight, scan.target)) {
      scan.isExact = true;
      scan.valueBelow = tuples[scan.position - 1].value;
      ++scan.position;
      return;
    }
    do {
      scan.weight += tuples[scan.position].weight;
      ++scan.position;
    } while (scan.position < tuples.size() && tuples[scan.position].value == scan.value);
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

// Drops every bin without weight, and the cut point above it (below it for the last bin).
void RemoveEmptyBins(std::vector<double>& cutPoints, std::vector<double>& binWeights) {
  if (binWeights.size() < cutPoints.size() + 1) return;  // NaN or infinite input only
  std::vector<double> keptCuts;
  std::vector<double> keptWeights;
  for (std::size_t i = 0; i < cutPoints.size(); ++i) {
    if (binWeights[i] == 0.0) continue;
    keptCuts.push_back(cutPoints[i]);
    keptWeights.push_back(binWeights[i]);
  }
  const double lastWeight = binWeights[cutPoints.size()];
  if (lastWeight != 0.0) {
    keptWeights.push_back(lastWeight);
  } else if (!keptCuts.empty()) {
    keptCuts.pop_back();
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
  if (fEFTuples == nullptr && fTuples == nullptr) return false;
  const std::size_t caseCount = fEFTuples != nullptr ? fEFTuples->size() : fTuples->size();
  if (fNumBins < 1 || caseCount == 0 || totalWeight <= 0.0) return false;

  const double step = 100.0 / fNumBins;
  unsigned int position = 0;
  double cumulativeWeight = 0.0;
  double previousCumulativeWeight = 0.0;
  for (int k = 0; k < fNumBins; ++k) {
    const double percent = std::min(step * (k + 1), 100.0);
    const double value = GetPercentile(cutPoints, binWeights, percent, position, cumulativeWeight,
                                       previousCumulativeWeight, totalWeight);
    // The last step is made for its bin weight alone.
    if (k < fNumBins - 1 && (k == 0 || value != cutPoints.back())) cutPoints.push_back(value);
  }
  if (fEFTuples == nullptr) return true;

  if (fRightBorderClosed) {
    if (!cutPoints.empty() && cutPoints.back() == fEFTuples->back().value) cutPoints.pop_back();
  } else if (!cutPoints.empty() && cutPoints.front() == fEFTuples->front().value) {
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
  const bool isFinalPercent = std::fabs(percent - 100.0) <= 100.0 * kEpsilon;
  const double target = isFinalPercent ? totalWeight : totalWeight * percent / 100.0;

  const std::size_t current = position == 0 ? 0 : position - 1;
  const double currentValue =
      fEFTuples != nullptr ? (*fEFTuples)[current].value : (*fTuples)[current].value;
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
  if (fEFTuples != nullptr) {
    Advance(scan, *fEFTuples);
    if (fRightBorderClosed) {
      AppendWeightsRightClosed(scan, binWeights);
    } else {
      AppendWeightsRightOpen(scan, binWeights);
    }
  } else {
    Advance(scan, *fTuples);
  }

  cumulativeWeight = scan.isExact ? scan.weightBefore : scan.weight;
  position = static_cast<unsigned int>(scan.isExact ? scan.position - 1 : scan.position);
  previousCumulativeWeight = scan.weightBefore;
  return scan.isExact ? (scan.valueBelow + scan.value) / 2.0 : scan.value;
}

std::ostream& BINEFPreProcess::Display(std::ostream& os) const {
  MCBinning::DisplayStart(os, "BINEFPreProcess");
  os << "Number of bins = " << fNumBins << '\n'
     << "Right border closed = " << fRightBorderClosed << '\n';
  return MCBinning::DisplayEnd(os, "BINEFPreProcess");
}
