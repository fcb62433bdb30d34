#include "binmodel/run/runcheck.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>
#include <utility>

#include "binmodel/apply/bincounter.h"
#include "binmodel/apply/weightcoder.h"
#include "binmodel/run/columnblocks.h"
#include "binmodel/run/recounting.h"
#include "binmodel/run/resultbins.h"
#include "common/statuscodes.h"
#include "metadata/describe.h"

namespace MCBinModel {

using MCBinning::StatusCode;

namespace {

void CheckCancelled(const RunControl& control) {
  if (control.cancel && control.cancel()) throw CancelledRun();
}

// Weights are whole numbers: their sums are exact up to 2^53, and rounded beyond.
bool IsSameWeight(double weight, double other, std::uint64_t recordCount) {
  constexpr double kLargestExact = 9007199254740992.0;
  const double larger = std::max(weight, other);
  if (larger <= kLargestExact) return weight == other;
  return std::abs(weight - other) <= larger / kLargestExact * static_cast<double>(recordCount);
}

bool AddsUp(const AttributeBins& bins, std::uint64_t recordCount) {
  if (bins.binWeights.empty()) return true;
  const double sum = std::accumulate(bins.binWeights.begin(), bins.binWeights.end(), 0.0);
  return IsSameWeight(sum, bins.validWeight, recordCount);
}

// A percentile multiplies the weight by 100.
void CheckPercentiles(const BinSettings& settings, const AttributeBins& bins) {
  const bool wasPrebinned = settings.prebinAbove > 0 &&
                            bins.distinctValues > static_cast<std::uint64_t>(settings.prebinAbove);
  const bool hasPercentiles = settings.algorithm == Algorithm::kEqualFrequency || wasPrebinned;
  constexpr double kLargest = std::numeric_limits<double>::max() / 100.0;
  if (!hasPercentiles || bins.weightWithMissing <= kLargest) return;
  throw Refusal(
      "the weights sum up to more than a hundredth of the largest double; divide them, for example "
      "by 1000");
}

}  // namespace

Refusal FailedRun(const MCBinning::MCStatus& error, const std::string& extent) {
  const bool isTemporaryFile = HasCode(error, StatusCode::kTempFileFailed);
  return {isTemporaryFile ? RefusalCode::kTemporaryFile : RefusalCode::kInput,
          {},
          fmt::format("binning failed: {}{} (status {})", MCBinning::Describe(error), extent,
                      error.GetErrorCode())};
}

Refusal CancelledRun() { return {RefusalCode::kCancelled, {}, "the run was cancelled"}; }

DroppedRecords CheckWeights(const RunVariables& variables, const ColumnSource& columns,
                            const RunControl& control) {
  if (columns.GetRecordCount() == 0) {
    throw Refusal(RefusalCode::kNoRecords, {}, "there is no record");
  }
  if (!variables.weight) return {};
  WeightCoder coder(variables.weight->info);
  ColumnBlocks blocks(columns, {{variables.weight->column, nullptr}});
  while (const std::size_t count = blocks.ReadNext()) {
    CheckCancelled(control);
    for (std::size_t i = 0; i < count; ++i) coder.Code(blocks.GetValues(0)[i]);
  }
  coder.CheckRecordsLeft(columns.GetRecordCount());
  return coder.GetDropped();
}

std::vector<std::size_t> CheckResults(BinModel& model, const RunVariables& variables,
                                      const ColumnSource& columns, const RunControl& control) {
  const std::uint64_t recordCount = columns.GetRecordCount();
  std::vector<std::size_t> doubtful;
  for (std::size_t i = 0; i < model.results.size(); ++i) {
    const AttributeBins& bins = model.results[i];
    if (HasCode(bins.status, StatusCode::kTempFileFailed)) throw FailedRun(bins.status);
    CheckPercentiles(model.settings, bins);
    CheckCutPoints(bins.cutPoints, model.GetAttribute(bins));
    const bool isEmpty = HasCode(bins.status, StatusCode::kNoValidCase);
    if (isEmpty || !AddsUp(bins, recordCount)) doubtful.push_back(i);
  }
  if (doubtful.empty()) return {};

  std::vector<std::size_t> countedAnew;
  Recounting recounting(model, doubtful, variables, columns);
  const auto goOn = [&](std::size_t /*recordCount*/) {
    CheckCancelled(control);
    return true;
  };
  for (RecountedBins& recounted : recounting.Count(goOn)) {
    AttributeBins& bins = model.results[recounted.result];
    AttributeBins& counts = recounted.counts;
    if (!IsSameWeight(counts.validWeight, bins.validWeight, recordCount)) {
      throw FailedRun(Error(StatusCode::kTempFileFailed));
    }
    const bool isEmpty = HasCode(bins.status, StatusCode::kNoValidCase);
    if (isEmpty || HasSameCounts(bins, counts)) continue;
    bins.binWeights = std::move(counts.binWeights);
    bins.classWeights = std::move(counts.classWeights);
    bins.modelEntropy = counts.modelEntropy;
    bins.informationGain = counts.informationGain;
    countedAnew.push_back(recounted.result);
  }
  return countedAnew;
}

}  // namespace MCBinModel
