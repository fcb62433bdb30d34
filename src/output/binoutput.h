#pragma once

#include <map>
#include <ostream>
#include <set>
#include <utility>
#include <vector>

#include "../common/export.h"
#include "../common/mcstatus.h"
#include "binattributetargetresults.h"

namespace MCBinning {
class ResultStore;
}

// The results of a supervised run: a record per attribute/target pair, in the order in
// which the pairs were run, those that ended with a warning or an error included.
//
// Every operation answers with status 3 when memory runs out; `out` is then unspecified.
class MCBINNING_API BINOutput {
 public:
  // Without records.
  BINOutput();
  virtual ~BINOutput();

  // Copies are deep, and may throw std::bad_alloc.
  BINOutput(const BINOutput&) = default;
  BINOutput& operator=(const BINOutput&) = default;

  // Writes a readable dump, in the stream's own formatting.
  virtual std::ostream& Display(std::ostream& os) const;

  // Appends the record of a pair; the algorithm calls it. `counts` holds the bins one
  // after the other, counts.size() / (cutPoints.size() + 1) values each; values beyond that
  // are not stored. A pair that is set again gets a second record, but lookups by pair
  // still find the first. Error 120013, and nothing stored, when an index is negative or
  // both are equal. The record's own status is not this call's result.
  MCBinning::MCStatus SetAttributeTargetResults(MCBinning::MCStatus status,
                                                const std::set<double>& cutPoints,
                                                const std::vector<double>& counts,
                                                int attributeIndex, int targetIndex,
                                                unsigned int nDistinctValues, double totalWeight,
                                                double totalWeightWithMissing, double minimum,
                                                double maximum, double modelEntropy);

  // Replaces `out` by all records. Error 120020, `out` unchanged, when there is none.
  MCBinning::MCStatus GetAllCutPoints(std::vector<BINAttributeTargetResults>& out) const;

  // Appends every record of the attribute to `out` and returns the status of the last one.
  // Error 120013 when there is none.
  MCBinning::MCStatus GetAttributeCutPoints(int attributeIndex,
                                            std::vector<BINAttributeTargetResults>& out) const;

  // Assigns the pair's first record to `out` and returns that record's status. Error 120013,
  // `out` unchanged, when there is none.
  MCBinning::MCStatus GetAttributeTargetCutPoints(int attributeIndex, int targetIndex,
                                                  BINAttributeTargetResults& out) const;

 private:
  friend class MCBinning::ResultStore;

  std::vector<BINAttributeTargetResults> fResults;
  std::map<std::pair<int, int>, int> fPairIndex;
};
