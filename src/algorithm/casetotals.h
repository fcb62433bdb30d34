#pragma once

#include "common/missing.h"
#include "metadata/bindataset.h"

namespace MCBinning {

// What is stored about an attribute's cases with its result, whatever the algorithm.
struct CaseTotals {
  unsigned int distinctValues = 0;
  double weight = 0.0;
  double weightWithMissing = 0.0;
  double minimum = MCMV::Missing();
  double maximum = MCMV::Missing();

  static CaseTotals Of(const BINDataSet& dataSet) {
    return {dataSet.GetNumDistinctValues(), dataSet.GetTotalweight(),
            dataSet.GetTotalWeightWithMissing(), dataSet.GetMinimum(), dataSet.GetMaximum()};
  }
};

}  // namespace MCBinning
