#pragma once

#include <ostream>
#include <vector>

#include "../common/export.h"
#include "../common/mcstatus.h"

namespace MCBinning {
class ResultStore;
}

// The outcome of equal-frequency binning for one attribute. A copyable value; a
// default-constructed one has index -1 and every number 0.
//
// A "valid case" has a weight and a value. What the getters return by reference lives as long
// as this object.
class MCBINNING_API BINAttributeResults final {
 public:
  // The outcome as text: whole numbers in decimal, doubles with the stream's own formatting.
  virtual std::ostream& Display(std::ostream& os) const;

  // How this attribute went; docs/status-codes.md lists the codes.
  const MCBinning::MCStatus& GetStatus() const { return fStatus; }

  // The index in the variable list.
  int GetAttributeIndex() const { return fAttributeIndex; }

  // Ascending. With the right border closed, bin b holds the values in (cut[b-1], cut[b]];
  // otherwise in [cut[b-1], cut[b]). The first and the last bin have no outer border.
  const std::vector<double>& GetCutPoints() const { return fCutPoints; }

  // The weight of each bin: cut points + 1 values. Empty when the status is an error or the
  // attribute has no valid case.
  const std::vector<double>& GetCellCounts() const { return fCellCounts; }

  // Of the valid cases.
  unsigned int GetNDistinctValues() const { return fNDistinctValues; }

  // Of the valid cases.
  double GetTotalWeight() const { return fTotalWeight; }

  // Of the valid cases and those whose value is missing.
  double GetTotalWeightWithMissing() const { return fTotalWeightWithMissing; }

  // The smallest and the largest valid value; the system-missing value without a valid case.
  double GetMinimum() const { return fMinimum; }
  double GetMaximum() const { return fMaximum; }

  // Of the cases whose value is missing.
  double GetMissingWeight() const { return fMissingWeight; }

 private:
  friend class MCBinning::ResultStore;

  MCBinning::MCStatus fStatus;
  int fAttributeIndex = -1;
  std::vector<double> fCutPoints;
  std::vector<double> fCellCounts;
  unsigned int fNDistinctValues = 0;
  double fTotalWeight = 0.0;
  double fTotalWeightWithMissing = 0.0;
  double fMinimum = 0.0;
  double fMaximum = 0.0;
  double fMissingWeight = 0.0;
};
