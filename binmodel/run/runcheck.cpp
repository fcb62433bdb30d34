#include "binmodel/run/runcheck.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>
#include <optional>
#include <utility>

#include "binmodel/apply/bincounter.h"
#include "binmodel/apply/valuecoder.h"
#include "binmodel/apply/weightcoder.h"
#include "binmodel/run/columnblocks.h"
#include "binmodel/run/resultbins.h"
#include "common/statuscodes.h"
#include "metadata/describe.h"

namespace MCBinModel {

using MCBinning::StatusCode;

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

void CheckCancelled(const RunControl& control) {
  if (control.cancel && control.cancel()) throw CancelledRun();
}

// The cases of some results, counted anew from the columns.
class Recounting {
 public:
  Recounting(const BinModel& model, const std::vector<std::size_t>& results,
             const RunVariables& variables, const ColumnSource& source)
      : fModel(model),
        fCounter(model, results),
        fBlocks(source, ColumnsOf(variables)),
        fCodes(fCounter.GetVariables().size() * fBlocks.GetStride()),
        fWeights(variables.weight ? fBlocks.GetStride() : 0) {
    if (variables.weight) fWeightCoder.emplace(variables.weight->info);
    for (const BinCounter::Variable& variable : fCounter.GetVariables()) {
      fCoders.emplace_back(variable.GetInfo(model));
    }
  }

  std::vector<RecountedBins> Count(const RunControl& control) {
    while (const std::size_t count = fBlocks.ReadNext()) {
      CheckCancelled(control);
      AddBlock(count);
    }
    return fCounter.Finish();
  }

 private:
  // Those of the counter's variables, then the weight.
  std::vector<SourceColumn> ColumnsOf(const RunVariables& variables) const {
    std::vector<SourceColumn> columns;
    for (const BinCounter::Variable& variable : fCounter.GetVariables()) {
      const auto& places = variable.isTarget ? variables.targetColumns : variables.attributeColumns;
      columns.push_back({places[variable.index], &variable.GetInfo(fModel)});
    }
    if (variables.weight) columns.push_back({variables.weight->column, nullptr});
    return columns;
  }

  void AddBlock(std::size_t count) {
    std::vector<const double*> columns;
    for (std::size_t i = 0; i < fCoders.size(); ++i) {
      const double* const values = fBlocks.GetValues(i);
      double* const codes = fCodes.data() + i * fBlocks.GetStride();
      if (fCounter.GetVariables()[i].GetInfo(fModel).IsCategorical()) {
        std::copy_n(values, count, codes);
        std::replace_if(
            codes, codes + count, [](double code) { return !(code >= 0.0); }, kNaN);
      } else {
        fCoders[i].Code(ColumnView<double>{values}, count, codes);
      }
      columns.push_back(codes);
    }
    for (std::size_t i = 0; fWeightCoder && i < count; ++i) {
      fWeights[i] = fWeightCoder->Code(fBlocks.GetValues(fCoders.size())[i]).value_or(kNaN);
    }
    fCounter.Add(columns.data(), fWeightCoder ? fWeights.data() : nullptr, count);
  }

  const BinModel& fModel;
  BinCounter fCounter;
  ColumnBlocks fBlocks;
  std::vector<ValueCoder> fCoders;
  std::optional<WeightCoder> fWeightCoder;
  std::vector<double> fCodes;  // variable by variable
  std::vector<double> fWeights;
};

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
  for (RecountedBins& recounted : Recounting(model, doubtful, variables, columns).Count(control)) {
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
