#pragma once

#include <ostream>
#include <vector>

#include "common/export.h"
#include "common/mcstatus.h"

// The outcome of equal-frequency binning for one attribute. A copyable value; a
// default-constructed one has index -1 and every number 0.
//
//   Cut points   ascending. With the right border closed, bin b holds the values in
//                (cut[b-1], cut[b]]; otherwise in [cut[b-1], cut[b]).
//   Cell counts  the weight of each bin (cut points + 1 of them). Empty when the status
//                is an error or the attribute has no valid case.
//   Totals       "total weight" sums the valid cases (weight and value present); "with
//                missing" also those whose value is missing.
//   Minimum, maximum  the system-missing value when there is no valid case.
class MCBINNING_API BINAttributeResults {
 public:
  // The outcome as text; doubles with the stream's own formatting.
  virtual std::ostream& Display(std::ostream& os) const;

  const MCBinning::MCStatus& GetStatus() const { return fStatus; }
  int GetAttributeIndex() const { return fAttributeIndex; }
  const std::vector<double>& GetCutPoints() const { return fCutPoints; }
  const std::vector<double>& GetCellCounts() const { return fCellCounts; }
  unsigned int GetNDistinctValues() const { return fNDistinctValues; }
  double GetTotalWeight() const { return fTotalWeight; }
  double GetTotalWeightWithMissing() const { return fTotalWeightWithMissing; }
  double GetMinimum() const { return fMinimum; }
  double GetMaximum() const { return fMaximum; }

 private:
  friend class EFBINOutput;

  MCBinning::MCStatus fStatus;
  int fAttributeIndex = -1;
  std::vector<double> fCutPoints;
  std::vector<double> fCellCounts;
  unsigned int fNDistinctValues = 0;
  double fTotalWeight = 0.0;
  double fTotalWeightWithMissing = 0.0;
  double fMinimum = 0.0;
  double fMaximum = 0.0;
};
