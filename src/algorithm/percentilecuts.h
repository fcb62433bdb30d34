#pragma once

#include <vector>

class BINEFPreProcess;

namespace MCBinning {

template <typename Case>
class LazyOrder;

// Cuts sorted cases of any kind at weighted percentiles, as BINEFPreProcess does for tuples.
class PercentileCuts {
 public:
  explicit PercentileCuts(const BINEFPreProcess& preProcess);

  // See BINEFPreProcess::FindCutPts(). Cases that are not sorted come with their order.
  template <typename Case>
  bool Find(const std::vector<Case>& cases, double totalWeight, std::vector<double>& cutPoints,
            std::vector<double>& binWeights, LazyOrder<Case>* order = nullptr) const;

 private:
  int fBinCount;
  bool fRightBorderClosed;
};

}  // namespace MCBinning
