#pragma once

#include <ostream>
#include <vector>

#include "common/export.h"
#include "common/mcstatus.h"

// The outcome of supervised binning for one attribute/target pair. A copyable value; a
// default-constructed one has indices -1 and every number 0.
//
//   Cut points   ascending. With the right border closed, bin b holds the values in
//                (cut[b-1], cut[b]]; otherwise in [cut[b-1], cut[b]).
//   Cell counts  one vector per bin (cut points + 1 of them): the bin's total weight,
//                then its weight in every target category, by category code. The only
//                bin's vector is empty when the pair was not binned (an error, or no
//                valid case).
//   Totals       "total weight" sums the valid cases (weight, target and value present);
//                "with missing" also those whose target or value is missing.
//   Minimum, maximum, model entropy  the system-missing value when there is no valid
//                case. The model entropy is in bits.
class MCBINNING_API BINAttributeTargetResults {
 public:
  // The outcome as text; doubles with the stream's own formatting.
  virtual std::ostream& Display(std::ostream& os) const;

  const MCBinning::MCStatus& GetStatus() const { return fStatus; }
  int GetAttributeIndex() const { return fAttributeIndex; }
  int GetTargetIndex() const { return fTargetIndex; }
  const std::vector<double>& GetCutPoints() const { return fCutPoints; }
  const std::vector<std::vector<double>>& GetCellCounts() const { return fCellCounts; }
  unsigned int GetNDistinctValues() const { return fNDistinctValues; }
  double GetTotalWeight() const { return fTotalWeight; }
  double GetTotalWeightWithMissing() const { return fTotalWeightWithMissing; }
  double GetMinimum() const { return fMinimum; }
  double GetMaximum() const { return fMaximum; }
  double GetModelEntropy() const { return fModelEntropy; }

 private:
  friend class BINOutput;

  MCBinning::MCStatus fStatus;
  int fAttributeIndex = -1;
  int fTargetIndex = -1;
  std::vector<double> fCutPoints;
  std::vector<std::vector<double>> fCellCounts;
  unsigned int fNDistinctValues = 0;
  double fTotalWeight = 0.0;
  double fTotalWeightWithMissing = 0.0;
  double fMinimum = 0.0;
  double fMaximum = 0.0;
  double fModelEntropy = 0.0;
};
