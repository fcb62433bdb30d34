#pragma once

#include <set>
#include <vector>

#include "common/mcstatus.h"
#include "common/missing.h"

class BINOutput;
class EFBINOutput;

namespace MCBinning {

// What is stored about an attribute's cases with its result, whatever the algorithm.
struct CaseTotals {
  unsigned int distinctValues = 0;
  double weight = 0.0;
  double weightWithMissing = 0.0;
  double minimum = MCMV::Missing();
  double maximum = MCMV::Missing();

  // Of the cases that lack the value alone, by target category; one without target. None when they
  // were not counted.
  std::vector<double> missingWeights{};
};

// Of an entry that was refused before it was run.
inline const CaseTotals kNoTotals{0, 0.0, 0.0, 0.0, 0.0};

// A split in two, and what its gain must exceed to be accepted; the missing value for none.
struct SplitFound {
  double cutPoint = MCMV::Missing();
  double gain = MCMV::Missing();  // bits, as is the threshold
  double threshold = MCMV::Missing();
};

// The bins of an attribute against a target.
struct Partition {
  std::set<double> cuts;
  std::vector<double> counts;  // bin by bin: its weight, then its weight in each category
  double modelEntropy = MCMV::Missing();
  SplitFound bestSplit = {};  // of all cases
};

struct PairResult {
  MCStatus status;
  int attribute;
  int target;
  CaseTotals totals;
  Partition partition;
};

struct AttributeResult {
  MCStatus status;
  int attribute;
  CaseTotals totals;
  std::vector<double> cutPoints;
  std::vector<double> binWeights;
};

// Appends records to the containers of results. Throws std::bad_alloc, and nothing is stored then.
class ResultStore {
 public:
  // Nothing is stored of indices that cannot be a pair: negative, or the same.
  static void Append(BINOutput& output, const PairResult& result);

  // Nothing is stored of a negative index.
  static void Append(EFBINOutput& output, const AttributeResult& result);
};

}  // namespace MCBinning
