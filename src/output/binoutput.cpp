#include "output/binoutput.h"

#include <cstddef>
#include <numeric>

#include "common/guard.h"
#include "common/statuscodes.h"
#include "output/displayresults.h"
#include "output/resultstore.h"

using MCBinning::Error;
using MCBinning::MCStatus;
using MCBinning::PairResult;
using MCBinning::ResultStore;
using MCBinning::StatusCode;

namespace {

bool IsPair(int attributeIndex, int targetIndex) {
  return attributeIndex >= 0 && targetIndex >= 0 && attributeIndex != targetIndex;
}

}  // namespace

void ResultStore::Append(BINOutput& output, const PairResult& result) {
  if (!IsPair(result.attribute, result.target)) return;
  BINAttributeTargetResults record;
  record.fStatus = result.status;
  record.fAttributeIndex = result.attribute;
  record.fTargetIndex = result.target;
  record.fNDistinctValues = result.totals.distinctValues;
  record.fTotalWeight = result.totals.weight;
  record.fTotalWeightWithMissing = result.totals.weightWithMissing;
  record.fMinimum = result.totals.minimum;
  record.fMaximum = result.totals.maximum;
  if (const std::vector<double>& missing = result.totals.missingWeights; !missing.empty()) {
    record.fMissingCellCounts = {std::accumulate(missing.begin(), missing.end(), 0.0)};
    record.fMissingCellCounts.insert(record.fMissingCellCounts.end(), missing.begin(),
                                     missing.end());
  }

  const auto& [cuts, counts, modelEntropy, bestSplit] = result.partition;
  record.fCutPoints.assign(cuts.begin(), cuts.end());
  record.fModelEntropy = modelEntropy;
  record.fBestSplitCutPoint = bestSplit.cutPoint;
  record.fBestSplitGain = bestSplit.gain;
  record.fBestSplitThreshold = bestSplit.threshold;
  const std::size_t binCount = cuts.size() + 1;
  const std::size_t countsPerBin = counts.size() / binCount;
  for (std::size_t bin = 0; bin < binCount; ++bin) {
    const double* const first = counts.data() + bin * countsPerBin;
    record.fCellCounts.emplace_back(first, first + countsPerBin);
  }

  output.fResults.push_back(std::move(record));
  try {
    output.fPairIndex.try_emplace({result.attribute, result.target},
                                  static_cast<int>(output.fResults.size()) - 1);
  } catch (...) {
    output.fResults.pop_back();
    throw;
  }
}

BINOutput::BINOutput() = default;

BINOutput::~BINOutput() = default;

MCStatus BINOutput::SetAttributeTargetResults(MCStatus status, const std::set<double>& cutPoints,
                                              const std::vector<double>& counts, int attributeIndex,
                                              int targetIndex, unsigned int nDistinctValues,
                                              double totalWeight, double totalWeightWithMissing,
                                              double minimum, double maximum, double modelEntropy) {
  if (!IsPair(attributeIndex, targetIndex)) return Error(StatusCode::kNoSuchVariable);
  return MCBinning::Guard([&] {
    ResultStore::Append(*this,
                        {status,
                         attributeIndex,
                         targetIndex,
                         {nDistinctValues, totalWeight, totalWeightWithMissing, minimum, maximum},
                         {cutPoints, counts, modelEntropy, {}}});
    return MCStatus();
  });
}

MCStatus BINOutput::GetAllCutPoints(std::vector<BINAttributeTargetResults>& out) const {
  if (fResults.empty()) return Error(StatusCode::kNoResults);
  return MCBinning::Guard([&] {
    out = fResults;
    return MCStatus();
  });
}

MCStatus BINOutput::GetAttributeCutPoints(int attributeIndex,
                                          std::vector<BINAttributeTargetResults>& out) const {
  MCStatus status = Error(StatusCode::kNoSuchVariable);
  if (attributeIndex < 0) return status;
  return MCBinning::Guard([&] {
    for (const BINAttributeTargetResults& record : fResults) {
      if (record.GetAttributeIndex() != attributeIndex) continue;
      out.push_back(record);
      status = record.GetStatus();
    }
    return status;
  });
}

MCStatus BINOutput::GetAttributeTargetCutPoints(int attributeIndex, int targetIndex,
                                                BINAttributeTargetResults& out) const {
  if (!IsPair(attributeIndex, targetIndex)) return Error(StatusCode::kNoSuchVariable);
  const auto found = fPairIndex.find({attributeIndex, targetIndex});
  if (found == fPairIndex.end()) return Error(StatusCode::kNoSuchVariable);
  return MCBinning::Guard([&] {
    out = fResults[static_cast<std::size_t>(found->second)];
    return out.GetStatus();
  });
}

std::ostream& BINOutput::Display(std::ostream& os) const {
  return MCBinning::DisplayRecords(os, "BINOutput", fResults);
}
