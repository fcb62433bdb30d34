#pragma once

#include <ostream>
#include <vector>

#include "../common/export.h"
#include "../common/mcstatus.h"

namespace MCBinning {
class ResultStore;
}

// The outcome of supervised binning for one attribute/target pair. A copyable value; a
// default-constructed one has indices -1 and every number 0.
//
// A "valid case" has a weight, a target and a value. What the getters return by reference
// lives as long as this object.
class MCBINNING_API BINAttributeTargetResults final {
 public:
  // The outcome as text: whole numbers in decimal, doubles with the stream's own formatting.
  virtual std::ostream& Display(std::ostream& os) const;

  // How this pair went; docs/status-codes.md lists the codes.
  const MCBinning::MCStatus& GetStatus() const { return fStatus; }

  // The index in the variable list.
  int GetAttributeIndex() const { return fAttributeIndex; }
  int GetTargetIndex() const { return fTargetIndex; }

  // Ascending. With the right border closed, bin b holds the values in (cut[b-1], cut[b]];
  // otherwise in [cut[b-1], cut[b]). The first and the last bin have no outer border.
  const std::vector<double>& GetCutPoints() const { return fCutPoints; }

  // One vector per bin, cut points + 1 of them: the bin's total weight, then its weight in
  // every target category, by category code. The only bin's vector is empty when the pair was
  // not binned (an error, or no valid case).
  const std::vector<std::vector<double>>& GetCellCounts() const { return fCellCounts; }

  // Of the valid cases.
  unsigned int GetNDistinctValues() const { return fNDistinctValues; }

  // Of the valid cases.
  double GetTotalWeight() const { return fTotalWeight; }

  // Of the valid cases and those whose target or value is missing.
  double GetTotalWeightWithMissing() const { return fTotalWeightWithMissing; }

  // The smallest and the largest valid value; the system-missing value without a valid case.
  double GetMinimum() const { return fMinimum; }
  double GetMaximum() const { return fMaximum; }

  // The entropy that is left within the bins, in bits; the system-missing value without a
  // valid case.
  double GetModelEntropy() const { return fModelEntropy; }

  // The cases whose value is missing while weight and target are there, counted as one more bin:
  // their total weight, then their weight in every target category, by category code; categories
  // may be left out at the end, and there may be some that no bin has. Empty when they were not
  // counted.
  const std::vector<double>& GetMissingCellCounts() const { return fMissingCellCounts; }

  // The best split of all valid cases in two, accepted or not: its cut point, its information gain
  // in bits, and what the gain must exceed for the split to be accepted. Without cut points it is
  // what came closest. The system-missing value when there was nothing to split: an error, no valid
  // case or a single candidate.
  double GetBestSplitCutPoint() const { return fBestSplitCutPoint; }
  double GetBestSplitGain() const { return fBestSplitGain; }
  double GetBestSplitThreshold() const { return fBestSplitThreshold; }

 private:
  friend class MCBinning::ResultStore;

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
  std::vector<double> fMissingCellCounts;
  double fBestSplitCutPoint = 0.0;
  double fBestSplitGain = 0.0;
  double fBestSplitThreshold = 0.0;
};
