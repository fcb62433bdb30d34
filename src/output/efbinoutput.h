#pragma once

#include <cstddef>
#include <ostream>
#include <vector>

#include "../common/export.h"
#include "../common/mcstatus.h"
#include "binattributeresults.h"

namespace MCBinning {
class ResultStore;
}

// The results of an equal-frequency run: a record per attribute, in the order in which
// the attributes were run, those that ended with a warning or an error included.
//
// Every operation answers with status 3 when memory runs out; `out` is then unspecified.
class MCBINNING_API EFBINOutput {
 public:
  // Without records.
  EFBINOutput();
  virtual ~EFBINOutput();

  // Copies are deep, and may throw std::bad_alloc.
  EFBINOutput(const EFBINOutput&) = default;
  EFBINOutput& operator=(const EFBINOutput&) = default;

  // Writes a readable dump, in the stream's own formatting.
  virtual std::ostream& Display(std::ostream& os) const;

  // Appends the record of an attribute; the algorithm calls it. Error 120011, and nothing
  // stored, when the index is negative. The record's own status is not this call's result.
  MCBinning::MCStatus SetAttributeResults(MCBinning::MCStatus status,
                                          const std::vector<double>& cutPoints,
                                          const std::vector<double>& binWeights, int attributeIndex,
                                          unsigned int nDistinctValues, double totalWeight,
                                          double totalWeightWithMissing, double minimum,
                                          double maximum);

  // Replaces `out` by all records. Error 120020, `out` unchanged, when there is none.
  MCBinning::MCStatus GetAllCutPoints(std::vector<BINAttributeResults>& out) const;

  // Assigns the attribute's first record to `out` and returns that record's status. Error
  // 120013, `out` unchanged, when there is none.
  MCBinning::MCStatus GetAttributeCutPoints(int attributeIndex, BINAttributeResults& out) const;

 private:
  friend class MCBinning::ResultStore;

  const BINAttributeResults* FindFirst(int attributeIndex) const;

  std::vector<BINAttributeResults> fResults;
  std::size_t fAscendingCount = 0;  // of records before the first whose index does not ascend
};
