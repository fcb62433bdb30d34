#include "algorithm/percentilescan.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "common/exactarithmetic.h"
#include "common/missing.h"
#include "metadata/pass/cases.h"
#include "metadata/pass/lazyorder.h"

namespace MCBinning {

namespace {

constexpr double kEpsilon = std::numeric_limits<double>::epsilon();

// False when either is infinite, a NaN, or both are 0.
bool IsRelativelyEqual(double a, double b) { return std::fabs(a - b) / std::max(a, b) < kEpsilon; }

}  // namespace

template <typename Case>
double PercentileScan<Case>::Next(double percent, const std::vector<double>& cutPoints,
                                  std::vector<double>& binWeights) {
  const bool isFinalPercent = std::fabs(percent - 100.0) <= 100.0 * kEpsilon;
  const double target = isFinalPercent ? fTotalWeight : fTotalWeight * percent / 100.0;

  const double currentValue = ValueAt(fState.position == 0 ? 0 : fState.position - 1);
  if (target <= fState.weight && !cutPoints.empty() && currentValue == cutPoints.back()) {
    return currentValue;
  }

  Step step{target, fState.position, fState.weight, 0.0, MCMV::Missing(), MCMV::Missing(), false};
  Advance(step);
  if (!kHasTarget<Case>) {
    if (fRightBorderClosed) {
      AppendWeightsRightClosed(step, binWeights);
    } else {
      AppendWeightsRightOpen(step, binWeights);
    }
  }
  fState.weight = step.isExact ? step.weightBefore : step.weight;
  fState.position = step.isExact ? step.position - 1 : step.position;
  fState.previousWeight = step.weightBefore;
  return step.isExact ? (step.valueBelow + step.value) / 2.0 : step.value;
}

template <typename Case>
double PercentileScan<Case>::ValueAt(std::size_t position) const {
  return Unpacked(fCases[position]).value;
}

template <typename Case>
void PercentileScan<Case>::Advance(Step& step) const {
  std::size_t sortedEnd = fOrder != nullptr ? 0 : fCases.size();
  while (step.position < fCases.size() &&
         (step.target > step.weight || IsRelativelyEqual(step.target, step.weight))) {
    if (step.position >= sortedEnd) sortedEnd = SkipBuckets(step);
    const Case& first = fCases[step.position];
    step.value = Unpacked(first).value;
    step.weightBefore = step.weight;
    if (IsRelativelyEqual(step.weight, step.target)) {
      step.isExact = true;
      step.valueBelow = ValueAt(step.position - 1);
      ++step.position;
      return;
    }
    do {
      step.weight += Unpacked(fCases[step.position]).weight;
      ++step.position;
    } while (step.position < fCases.size() && HaveSameValue(fCases[step.position], first));
  }
}

// Leaves out the buckets at whose end the target is not reached, as the values in them would only
// be added up: the weight is the number of cases then. Returns up to where cases are in their
// places, which the order puts there. A bucket that ends just at the target is looked into, too:
// the value below the target is asked for.
template <typename Case>
std::size_t PercentileScan<Case>::SkipBuckets(Step& step) const {
  for (;;) {
    const std::size_t end = fOrder->EndOfBucket(step.position);
    const auto weight = static_cast<double>(end);
    if (end == fCases.size() || step.target <= weight || IsRelativelyEqual(step.target, weight)) {
      return fOrder->LookInto(step.position);
    }
    step.position = end;
    step.weight = weight;
  }
}

template <typename Case>
void PercentileScan<Case>::AppendWeightsRightClosed(const Step& step,
                                                    std::vector<double>& binWeights) const {
  if (step.target == fTotalWeight) {
    binWeights.push_back(step.weight - fState.weight);
  } else if (step.weight <= step.target) {
    if (step.weightBefore != 0.0) binWeights.push_back(step.weightBefore - fState.weight);
  } else {
    binWeights.push_back((step.isExact ? step.weightBefore : step.weight) - fState.weight);
  }
}

template <typename Case>
void PercentileScan<Case>::AppendWeightsRightOpen(const Step& step,
                                                  std::vector<double>& binWeights) const {
  const bool isLast = step.target == fTotalWeight;
  if (step.weightBefore == 0.0) {
    const bool isAtStart = fState.position == 0;
    binWeights.push_back(!step.isExact && isAtStart ? 0.0 : step.weight);
    return;
  }
  binWeights.push_back((isLast ? step.weight : step.weightBefore) - fState.previousWeight);
  if (!isLast && step.weight == fTotalWeight) {
    binWeights.push_back(step.weight - step.weightBefore);
  }
}

template class PercentileScan<BINDataTuple>;
template class PercentileScan<EFBINDataTuple>;
template class PercentileScan<UnweightedCase>;
template class PercentileScan<UnweightedEFCase>;
template class PercentileScan<PackedCase<1>>;
template class PercentileScan<PackedCase<5>>;

}  // namespace MCBinning
