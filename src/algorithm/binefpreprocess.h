#pragma once

#include <ostream>
#include <vector>

#include "../common/export.h"
#include "../metadata/bindatatuple.h"
#include "../metadata/efbindatatuple.h"

namespace MCBinning {
class PercentileCuts;
}

// Weighted percentile cut points: they split sorted cases into bins of as nearly equal
// weight as ties allow.
//
// A cut point is an observed value, or the midpoint between two neighbouring distinct values
// where the weight up to the lower one is exactly a bin's share. Ties are never split, so
// fewer bins than asked for may come out. docs/method.md gives the rules in full.
//
// One pass over the cases for all bins together: O(cases + bins). What appends to a vector may
// throw std::bad_alloc.
class MCBINNING_API BINEFPreProcess {
 public:
  // At least 1 bin. With the right border closed a bin holds its upper cut point, otherwise
  // its lower one.
  BINEFPreProcess(int nBins, bool rightBorderClosed);

  // A copy keeps the same tuples, which stay the caller's.
  BINEFPreProcess(const BINEFPreProcess&) = default;
  BINEFPreProcess& operator=(const BINEFPreProcess&) = default;
  virtual ~BINEFPreProcess();

  // Cuts `tuples`, which are sorted by value, weigh `totalWeight` in all, stay the caller's
  // and are kept for FindCutPts(), which takes equal-frequency tuples once there are any. The
  // results are those of FindCutPts(): false, with both vectors untouched, when there is nothing
  // to cut.
  bool EFCreatePercentileCutPts(std::vector<EFBINDataTuple>* tuples, std::vector<double>& cutPoints,
                                std::vector<double>& binWeights, double totalWeight);
  bool EFCreatePercentileCutPts(std::vector<BINDataTuple>* tuples, std::vector<double>& cutPoints,
                                std::vector<double>& binWeights, double totalWeight);

  // Appends the cut points, ascending, to `cutPoints` and, for equal-frequency tuples only,
  // the weight of every bin to `binWeights`, one more than cut points; both are expected empty.
  // Bins without weight are left out. For supervised tuples the cut points are candidates: one may
  // equal the smallest or the largest value. False, with both untouched, without tuples, with
  // fewer than 1 bin or when the total weight is not positive.
  bool FindCutPts(std::vector<double>& cutPoints, std::vector<double>& binWeights,
                  double totalWeight);

  // One step of the scan: the value at `percent` of the total weight; appends the weight
  // since the last step to `binWeights` (equal-frequency tuples only). The scan's state is in
  // `position` (cases consumed), `cumulativeWeight` (their weight) and
  // `previousCumulativeWeight` (the same without the last distinct value); all start at 0.
  // Requires at least one tuple.
  double GetPercentile(std::vector<double>& cutPoints, std::vector<double>& binWeights,
                       double percent, unsigned int& position, double& cumulativeWeight,
                       double& previousCumulativeWeight, const double& totalWeight);

  // Writes a readable dump, in the stream's own formatting.
  std::ostream& Display(std::ostream& os) const;

 private:
  friend class MCBinning::PercentileCuts;

  bool fRightBorderClosed;
  int fNumBins;
  std::vector<EFBINDataTuple>* fEFTuples;
  std::vector<BINDataTuple>* fTuples;
};
