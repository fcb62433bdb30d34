#pragma once

#include <set>
#include <vector>

#include "algorithm/percentilecuts.h"
#include "algorithm/rowboundaries.h"
#include "algorithm/rowsearch.h"
#include "common/mcstatus.h"
#include "output/resultstore.h"

class BINDataSet;

namespace MCBinning {

// Partitions the sorted cases that a data set has loaded, of which there is at least one:
// splitting, then the merging of small bins.
class Partitioner {
 public:
  // Keeps a reference to the data set.
  Partitioner(BINDataSet& dataSet, bool rightBorderClosed, double smallBinThreshold);

  // Every distinct value is a candidate. Leaves `partition` as it was when the values do not fit
  // (warning 120002); warning 120017 when there is one bin.
  MCStatus UseDistinctValues(Partition& partition) const;

  // The candidates are given, ascending. Takes out the one that cannot separate anything.
  MCStatus UseCandidates(std::vector<double>& candidates, Partition& partition) const;

  // The percentiles of the cases are the candidates. OK without bins when there are none.
  MCStatus UsePercentiles(const PercentileCuts& percentiles, Partition& partition) const;

 private:
  void RemoveEdge(std::vector<double>& candidates) const;
  MCStatus PartitionRows(const RowSearch& search, const RowBoundaries& boundaries,
                         Partition& partition) const;
  std::vector<double> CountBins(const RowSearch& search, const RowBoundaries& boundaries,
                                const std::set<double>& cuts) const;

  BINDataSet& fDataSet;
  bool fRightBorderClosed;
  double fSmallBinThreshold;
};

}  // namespace MCBinning
