// Partitioning by class entropy and the minimum description length principle: the part of
// BINAlgorithm that docs/method.md describes under "Supervised binning".

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <cstddef>
#include <utility>

#include "algorithm/binalgorithm.h"
#include "algorithm/binentropy.h"
#include "algorithm/splitsearch.h"
#include "common/guard.h"
#include "common/statuscodes.h"
#include "common/vectormath.h"
#include "metadata/bindataset.h"
#include "metadata/casebuffers.h"
#include "metadata/loadedcases.h"

using MCBinning::Error;
using MCBinning::Log2;
using MCBinning::MCStatus;
using MCBinning::StatusCode;
using MCBinning::Warning;

double BINAlgorithm::Entropy(const std::vector<double>* weights) const {
  return MCBinning::Entropy(weights->data(), weights->size() - 1);
}

double BINAlgorithm::ComputeEntropy(const std::vector<double>* left,
                                    const std::vector<double>* right) const {
  return MCBinning::SplitEntropy(left->data(), right->data(), left->size() - 1);
}

double BINAlgorithm::ComputeDelta(const std::vector<double>* left, const std::vector<double>* right,
                                  double parentEntropy) const {
  const auto leftCategories = static_cast<double>(MCBinning::VectorXNonZero(*left, 1));
  const auto rightCategories = static_cast<double>(MCBinning::VectorXNonZero(*right, 1));
  // Categories on both sides count twice: not the number of categories of the parent.
  const double categories = leftCategories + rightCategories;
  return Log2(std::pow(3.0, categories) - 2.0) -
         (categories * parentEntropy - leftCategories * Entropy(left) -
          rightCategories * Entropy(right));
}

void BINAlgorithm::ComputeModelEntropy(const std::vector<double>& counts,
                                       double& modelEntropy) const {
  if (!fDataSet) return;
  const std::size_t groupSize = std::size_t{fNumTargetCategories} + 1;
  double sum = 0.0;
  for (std::size_t bin = 0; bin + groupSize <= counts.size(); bin += groupSize) {
    sum += counts[bin] * MCBinning::Entropy(counts.data() + bin, fNumTargetCategories);
  }
  modelEntropy = sum / fDataSet->GetTotalweight();
}

MCStatus BINAlgorithm::MDLP(const std::vector<BINDataTuple>* tuples, std::set<double>& cuts,
                            std::vector<double>& counts, double& modelEntropy) const {
  if (!HasCases(tuples)) return Error(StatusCode::kCutPointsMisfit);
  return MCBinning::Guard([&] { return PartitionDistinct(cuts, counts, modelEntropy); });
}

MCStatus BINAlgorithm::MDLP(const std::vector<BINDataTuple>* tuples, std::vector<double>& cutPoints,
                            std::set<double>& cuts, std::vector<double>& counts,
                            double& modelEntropy) const {
  if (!HasCases(tuples)) return Error(StatusCode::kCutPointsMisfit);
  return MCBinning::Guard(
      [&] { return PartitionCandidates(cutPoints, cuts, counts, modelEntropy); });
}

// Whether a pair was run, and the tuples can be its own.
bool BINAlgorithm::HasCases(const std::vector<BINDataTuple>* tuples) const {
  return fDataSet && tuples != nullptr && fNumCases > 0 && tuples->size() >= fNumCases;
}

MCStatus BINAlgorithm::PartitionDistinct(std::set<double>& cuts, std::vector<double>& counts,
                                         double& modelEntropy) const {
  return MCBinning::LoadedCases::UseBinTable(
      *fDataSet, [&](MCBinning::DistinctBinTable& table) -> MCStatus {
        const MCStatus status =
            fDataSet->CreateDistinctBinTable(fRightBorderClosed, table.boundaries, table.weights);
        if (!status.IsOK()) return status;
        return PartitionTable(table.boundaries, table.weights, cuts, counts, modelEntropy);
      });
}

MCStatus BINAlgorithm::PartitionCandidates(std::vector<double>& cutPoints, std::set<double>& cuts,
                                           std::vector<double>& counts,
                                           double& modelEntropy) const {
  RemoveEdge(cutPoints);
  std::vector<double> boundaries;
  boundaries.reserve(cutPoints.size() + 2);
  boundaries.push_back(-DBL_MAX);
  boundaries.insert(boundaries.end(), cutPoints.begin(), cutPoints.end());
  boundaries.push_back(DBL_MAX);

  std::vector<double> table;
  const MCStatus status = fDataSet->CreateBinTable(&boundaries, fRightBorderClosed, table);
  if (!status.IsOK()) return status;
  // One boundary per row: its closed end.
  if (fRightBorderClosed) {
    boundaries.erase(boundaries.begin());
  } else {
    boundaries.pop_back();
  }
  return PartitionTable(boundaries, table, cuts, counts, modelEntropy);
}

// The candidate at the edge of the values separates nothing.
void BINAlgorithm::RemoveEdge(std::vector<double>& cutPoints) const {
  if (cutPoints.empty()) return;
  if (fRightBorderClosed) {
    if (cutPoints.back() == fDataSet->GetMaximum()) cutPoints.pop_back();
  } else {
    if (cutPoints.front() == fDataSet->GetMinimum()) cutPoints.erase(cutPoints.begin());
  }
}

MCStatus BINAlgorithm::PartitionTable(const std::vector<double>& boundaries,
                                      const std::vector<double>& table, std::set<double>& cuts,
                                      std::vector<double>& counts, double& modelEntropy) const {
  if (table.size() != boundaries.size() * fNumTargetCategories)
    return Error(StatusCode::kCutPointsMisfit);
  const int last = static_cast<int>(boundaries.size()) - 1;
  const MCBinning::SplitSearch search(table, fNumTargetCategories, fRightBorderClosed, 0, last);
  SplitRows(search, boundaries, 0, last, cuts);
  CountBins(search, boundaries, cuts, counts);
  if (fSettings.GetSmallBinDetectionThreshold() > 0.0 && cuts.size() >= 2) {
    ProcessLittleBins(&counts, cuts);
  }
  ComputeModelEntropy(counts, modelEntropy);
  return cuts.empty() ? Warning(StatusCode::kNoCutAccepted) : MCStatus();
}

MCStatus BINAlgorithm::MDLPCut(const std::vector<double>* boundaries,
                               const std::vector<double>* binTable, int first, int last,
                               std::set<double>& cuts) const {
  const std::size_t categoryCount = fNumTargetCategories;
  if (boundaries == nullptr || binTable == nullptr || categoryCount == 0 ||
      boundaries->size() != binTable->size() / categoryCount) {
    return Error(StatusCode::kCutPointsMisfit);
  }

  return MCBinning::Guard([&] {
    const MCBinning::SplitSearch search(*binTable, categoryCount, fRightBorderClosed, first, last);
    SplitRows(search, *boundaries, first, last, cuts);
    return MCStatus();
  });
}

// Recursive, with the intervals that wait on a stack of its own.
void BINAlgorithm::SplitRows(const MCBinning::SplitSearch& search,
                             const std::vector<double>& boundaries, int first, int last,
                             std::set<double>& cuts) const {
  const std::size_t categoryCount = fNumTargetCategories;
  std::vector<double> left(categoryCount + 1);
  std::vector<double> right(categoryCount + 1);
  std::vector<std::pair<int, int>> intervals{{first, last}};
  while (!intervals.empty()) {
    const auto [from, to] = intervals.back();
    intervals.pop_back();
    if (to - from < 1) continue;

    std::fill(left.begin(), left.end(), 0.0);
    search.SumRows(from, to, right);
    const double entropy = Entropy(&right);
    const double weight = right[0];
    const int best = search.FindBest(from, to, left, right);
    const double gain = entropy - ComputeEntropy(&left, &right);
    const double delta = ComputeDelta(&left, &right, entropy);
    if (!(gain > Log2(weight - 1.0) / weight + delta / weight)) continue;

    cuts.insert(boundaries[static_cast<std::size_t>(best)]);
    const int split = fRightBorderClosed ? best : best - 1;
    // At a weight of 1 a split can be accepted that leaves one part as large as before: to
    // look at that again would go on for ever.
    if (split + 1 > from) intervals.emplace_back(split + 1, to);
    if (split < to) intervals.emplace_back(from, split);
  }
}

int BINAlgorithm::FindBestCutPoint(const std::vector<double>* binTable, int first, int last,
                                   std::vector<double>* left, std::vector<double>* right) const {
  const MCBinning::SplitSearch search(*binTable, left->size() - 1, fRightBorderClosed, first, last);
  return search.FindBest(first, last, *left, *right);
}

void BINAlgorithm::CountBins(const MCBinning::SplitSearch& search,
                             const std::vector<double>& boundaries, const std::set<double>& cuts,
                             std::vector<double>& counts) const {
  const int rowCount = static_cast<int>(boundaries.size());
  std::vector<double> bin(std::size_t{fNumTargetCategories} + 1);
  counts.reserve(bin.size() * (cuts.size() + 1));
  int first = 0;
  const auto countUpTo = [&](int end) {
    search.SumRows(first, end - 1, bin);
    counts.insert(counts.end(), bin.begin(), bin.end());
    first = end;
  };
  for (const double cut : cuts) {
    const auto row = std::find(boundaries.begin() + first, boundaries.end(), cut);
    const int cutRow = static_cast<int>(row - boundaries.begin());
    countUpTo(std::min(fRightBorderClosed ? cutRow + 1 : cutRow, rowCount));
  }
  countUpTo(rowCount);
}
