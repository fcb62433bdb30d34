#pragma once

#include <cstddef>
#include <vector>

namespace MCBinning {

template <typename Case>
class LazyOrder;

// Finds the weighted percentiles of sorted cases of any kind, asked for in ascending order, and
// the weights between them: docs/method.md, "Equal-frequency binning". O(cases) for all together.
template <typename Case>
class PercentileScan {
 public:
  // How far the scan has come.
  struct State {
    std::size_t position = 0;     // cases consumed
    double weight = 0.0;          // their weight
    double previousWeight = 0.0;  // the same without the last distinct value
  };

  // Keeps a reference to the cases, of which there is at least one. Cases that are not sorted weigh
  // 1 each and come with their order, which sorts what the scan looks at.
  PercentileScan(const std::vector<Case>& cases, bool rightBorderClosed, double totalWeight,
                 LazyOrder<Case>* order = nullptr)
      : fCases(cases),
        fRightBorderClosed(rightBorderClosed),
        fTotalWeight(totalWeight),
        fOrder(order) {}

  // The value at `percent` of the total weight. Appends the weight since the last step to
  // `binWeights`, for equal-frequency cases only; `cutPoints` are those found so far.
  double Next(double percent, const std::vector<double>& cutPoints,
              std::vector<double>& binWeights);

  const State& GetState() const { return fState; }
  void SetState(const State& state) { fState = state; }

 private:
  // One step over distinct values, up to a target weight.
  struct Step {
    double target;         // the weight to reach
    std::size_t position;  // cases consumed
    double weight;         // their weight
    double weightBefore;   // without the last distinct value consumed
    double value;          // the last distinct value looked at
    double valueBelow;     // the one below it, when the target was reached exactly at its end
    bool isExact;
  };

  double ValueAt(std::size_t position) const;
  void Advance(Step& step) const;
  std::size_t SkipBuckets(Step& step) const;
  void AppendWeightsRightClosed(const Step& step, std::vector<double>& binWeights) const;
  void AppendWeightsRightOpen(const Step& step, std::vector<double>& binWeights) const;

  const std::vector<Case>& fCases;
  bool fRightBorderClosed;
  double fTotalWeight;
  LazyOrder<Case>* fOrder;
  State fState;
};

}  // namespace MCBinning
