// The steps of a run that BINAlgorithm also offers on their own.

#include <cstddef>
#include <utility>

#include "algorithm/binalgorithm.h"
#include "algorithm/binentropy.h"
#include "algorithm/mdlp.h"
#include "algorithm/partitioner.h"
#include "algorithm/smallbins.h"
#include "algorithm/splitsearch.h"
#include "common/guard.h"
#include "common/statuscodes.h"
#include "metadata/bindataset.h"

using MCBinning::Error;
using MCBinning::ListedBoundaries;
using MCBinning::MCStatus;
using MCBinning::Partition;
using MCBinning::Partitioner;
using MCBinning::SplitSearch;
using MCBinning::StatusCode;

namespace {

// Whether a pair is loaded, and the tuples can be its own.
bool AreLoaded(const std::vector<BINDataTuple>* tuples, const BINDataSet* dataSet) {
  return dataSet != nullptr && dataSet->GetNumberOfCases() > 0 && tuples != nullptr &&
         tuples->size() >= dataSet->GetNumberOfCases();
}

// Hands out what `partition` makes, and leaves it alone when it makes nothing.
template <typename MakePartition>
MCStatus HandOut(std::set<double>& cuts, std::vector<double>& counts, double& modelEntropy,
                 const MakePartition& makePartition) {
  return MCBinning::Guard([&] {
    Partition partition{std::move(cuts), std::move(counts), modelEntropy, {}};
    const MCStatus status = makePartition(partition);
    cuts = std::move(partition.cuts);
    counts = std::move(partition.counts);
    modelEntropy = partition.modelEntropy;
    return status;
  });
}

}  // namespace

MCStatus BINAlgorithm::MDLP(const std::vector<BINDataTuple>* tuples, std::set<double>& cuts,
                            std::vector<double>& counts, double& modelEntropy) const {
  if (!AreLoaded(tuples, fDataSet.get())) return Error(StatusCode::kCutPointsMisfit);
  const Partitioner partitioner(*fDataSet, fRightBorderClosed,
                                fSettings.GetSmallBinDetectionThreshold());
  return HandOut(cuts, counts, modelEntropy,
                 [&](Partition& partition) { return partitioner.UseDistinctValues(partition); });
}

MCStatus BINAlgorithm::MDLP(const std::vector<BINDataTuple>* tuples, std::vector<double>& cutPoints,
                            std::set<double>& cuts, std::vector<double>& counts,
                            double& modelEntropy) const {
  if (!AreLoaded(tuples, fDataSet.get())) return Error(StatusCode::kCutPointsMisfit);
  const Partitioner partitioner(*fDataSet, fRightBorderClosed,
                                fSettings.GetSmallBinDetectionThreshold());
  return HandOut(cuts, counts, modelEntropy, [&](Partition& partition) {
    return partitioner.UseCandidates(cutPoints, partition);
  });
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
    const SplitSearch search(binTable->data(), categoryCount, fRightBorderClosed, first, last);
    MCBinning::SplitRows(search, ListedBoundaries(*boundaries), first, last, cuts);
    return MCStatus();
  });
}

int BINAlgorithm::FindBestCutPoint(const std::vector<double>* binTable, int first, int last,
                                   std::vector<double>* left, std::vector<double>* right) const {
  const SplitSearch search(binTable->data(), left->size() - 1, fRightBorderClosed, first, last);
  return search.FindBest(first, last, *left, *right);
}

double BINAlgorithm::Entropy(const std::vector<double>* weights) const {
  return MCBinning::Entropy(*weights);
}

double BINAlgorithm::ComputeEntropy(const std::vector<double>* left,
                                    const std::vector<double>* right) const {
  return MCBinning::SplitEntropy(*left, *right);
}

double BINAlgorithm::ComputeDelta(const std::vector<double>* left, const std::vector<double>* right,
                                  double parentEntropy) const {
  return MCBinning::SplitCost(*left, *right, parentEntropy);
}

void BINAlgorithm::ComputeModelEntropy(const std::vector<double>& counts,
                                       double& modelEntropy) const {
  if (!fDataSet) return;
  modelEntropy = MCBinning::ModelEntropy(counts, fNumTargetCategories, fDataSet->GetTotalweight());
}

void BINAlgorithm::ProcessLittleBins(std::vector<double>* counts, std::set<double>& cuts) const {
  MCBinning::MergeSmallBins(fSettings.GetSmallBinDetectionThreshold(), fNumTargetCategories,
                            *counts, cuts);
}
