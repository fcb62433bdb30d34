#include "algorithm/partitioner.h"

#include <algorithm>
#include <cfloat>
#include <cstddef>

#include "algorithm/binentropy.h"
#include "algorithm/countedboundaries.h"
#include "algorithm/mdlp.h"
#include "algorithm/smallbins.h"
#include "algorithm/sparsesearch.h"
#include "algorithm/sparsetable.h"
#include "algorithm/splitsearch.h"
#include "common/statuscodes.h"
#include "metadata/bindataset.h"
#include "metadata/pass/bintable.h"
#include "metadata/pass/counttable.h"
#include "metadata/pass/loadedcases.h"

namespace MCBinning {

Partitioner::Partitioner(BINDataSet& dataSet, bool rightBorderClosed, double smallBinThreshold)
    : fDataSet(dataSet),
      fRightBorderClosed(rightBorderClosed),
      fSmallBinThreshold(smallBinThreshold) {}

MCStatus Partitioner::UseDistinctValues(Partition& partition) const {
  const std::size_t categoryCount = fDataSet.GetNumOfTargetCategories();
  if (categoryCount > CountTable::kMostCategories) {
    SparseTable table(categoryCount);
    const MCStatus status = table.Fill(fDataSet, fRightBorderClosed);
    if (!status.IsOK()) return status;
    return PartitionRows(SparseSearch(table, fRightBorderClosed),
                         ListedBoundaries(table.GetBoundaries()), partition);
  }
  const auto useCounts = [&](const CountTable& table, const auto& cases) {
    const CountSearch search(table.GetCounts(), categoryCount, fRightBorderClosed, 0,
                             static_cast<int>(table.GetRowCount()) - 1);
    return PartitionRows(search, CountedBoundaries(cases, search, table.GetRowCount()), partition);
  };
  const auto useWeights = [&](const DistinctBinTable& table) {
    const SplitSearch search(table.weights.data(), categoryCount, fRightBorderClosed, 0,
                             static_cast<int>(table.boundaries.size()) - 1);
    return PartitionRows(search, ListedBoundaries(table.boundaries), partition);
  };
  return LoadedCases::UseBinTable(fDataSet, fRightBorderClosed, useCounts, useWeights);
}

MCStatus Partitioner::UseCandidates(std::vector<double>& candidates, Partition& partition) const {
  RemoveEdge(candidates);
  std::vector<double> boundaries;
  boundaries.reserve(candidates.size() + 2);
  boundaries.push_back(-DBL_MAX);
  boundaries.insert(boundaries.end(), candidates.begin(), candidates.end());
  boundaries.push_back(DBL_MAX);

  std::vector<double> table;
  if (!LoadedCases::FillBinTable(fDataSet, boundaries, fRightBorderClosed, table)) {
    return Warning(StatusCode::kCutPointsMisfit);
  }
  // One boundary per row: its closed end.
  if (fRightBorderClosed) {
    boundaries.erase(boundaries.begin());
  } else {
    boundaries.pop_back();
  }
  const SplitSearch search(table.data(), fDataSet.GetNumOfTargetCategories(), fRightBorderClosed, 0,
                           static_cast<int>(boundaries.size()) - 1);
  return PartitionRows(search, ListedBoundaries(boundaries), partition);
}

MCStatus Partitioner::UsePercentiles(const PercentileCuts& percentiles,
                                     Partition& partition) const {
  std::vector<double> candidates;
  std::vector<double> unusedWeights;
  const bool areCut = LoadedCases::VisitSupervised(fDataSet, [&](const auto& cases) {
    return percentiles.Find(cases, fDataSet.GetTotalweight(), candidates, unusedWeights);
  });
  return areCut ? UseCandidates(candidates, partition) : MCStatus();
}

// The candidate at the edge of the values separates nothing.
void Partitioner::RemoveEdge(std::vector<double>& candidates) const {
  if (candidates.empty()) return;
  if (fRightBorderClosed) {
    if (candidates.back() == fDataSet.GetMaximum()) candidates.pop_back();
  } else {
    if (candidates.front() == fDataSet.GetMinimum()) candidates.erase(candidates.begin());
  }
}

MCStatus Partitioner::PartitionRows(const RowSearch& search, const RowBoundaries& boundaries,
                                    Partition& partition) const {
  const std::size_t categoryCount = search.GetCategoryCount();
  std::set<double> cuts;
  partition.bestSplit = SplitRows(search, boundaries, 0, boundaries.GetRowCount() - 1, cuts);
  std::vector<double> counts = CountBins(search, boundaries, cuts);
  if (fSmallBinThreshold > 0.0 && cuts.size() >= 2) {
    MergeSmallBins(fSmallBinThreshold, categoryCount, counts, cuts);
  }
  partition.modelEntropy = ModelEntropy(counts, categoryCount, fDataSet.GetTotalweight());
  partition.counts = std::move(counts);
  partition.cuts = std::move(cuts);
  return partition.cuts.empty() ? Warning(StatusCode::kNoCutAccepted) : MCStatus();
}

std::vector<double> Partitioner::CountBins(const RowSearch& search, const RowBoundaries& boundaries,
                                           const std::set<double>& cuts) const {
  const int rowCount = boundaries.GetRowCount();
  std::vector<double> bin(search.GetCategoryCount() + 1);
  std::vector<double> counts;
  counts.reserve(bin.size() * (cuts.size() + 1));
  int first = 0;
  const auto countUpTo = [&](int end) {
    search.SumRows(first, end - 1, bin);
    counts.insert(counts.end(), bin.begin(), bin.end());
    first = end;
  };
  for (const double cut : cuts) {
    const int cutRow = boundaries.RowOf(cut, first);
    countUpTo(std::min(fRightBorderClosed ? cutRow + 1 : cutRow, rowCount));
  }
  countUpTo(rowCount);
  return counts;
}

}  // namespace MCBinning
