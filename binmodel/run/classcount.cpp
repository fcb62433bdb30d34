#include "binmodel/run/classcount.h"

#include <utility>

#include "binmodel/run/recounting.h"
#include "common/statuscodes.h"

namespace MCBinModel {

namespace {

// One result for each target and attribute, not counted yet.
std::vector<AttributeBins> RepeatForTargets(const BinModel& model) {
  std::vector<AttributeBins> results;
  for (std::size_t target = 0; target < model.targets.size(); ++target) {
    for (const AttributeBins& bins : model.results) {
      results.push_back(bins);
      results.back().target = target;
      results.back().missing.reset();
    }
  }
  return results;
}

// The number of distinct values stays that of all cases with a value, which the cuts rest on.
void TakeCounts(AttributeBins& bins, AttributeBins counts) {
  bins.binWeights = std::move(counts.binWeights);
  bins.classWeights = std::move(counts.classWeights);
  bins.missing = std::move(counts.missing);
  bins.validWeight = counts.validWeight;
  bins.minimum = counts.minimum;
  bins.maximum = counts.maximum;
  bins.modelEntropy = counts.modelEntropy;
  bins.informationGain = counts.informationGain;
  if (!bins.binWeights.empty()) return;
  bins.cutPoints.clear();
  bins.distinctValues = 0;
  bins.status = Warning(MCBinning::StatusCode::kNoValidCase);
}

}  // namespace

void CountClasses(BinModel& model, const RunVariables& variables, const ColumnSource& columns,
                  const CountingWork& work) {
  model.results = RepeatForTargets(model);
  work.jobs.Run(work.threadCount, work.shares.size(), [&](std::size_t index) {
    std::vector<std::size_t> results;
    for (std::size_t target = 0; target < model.targets.size(); ++target) {
      for (const std::size_t attribute : work.shares[index]) {
        const std::size_t result = target * model.attributes.size() + attribute;
        if (!model.results[result].status.IsError()) results.push_back(result);
      }
    }
    Recounting recounting(model, results, variables, columns);
    const auto goOn = [&](std::size_t recordCount) {
      work.progress.Add(recordCount);
      work.jobs.Tell();
      return !work.jobs.QueryCancel();
    };
    for (RecountedBins& recounted : recounting.Count(goOn)) {
      TakeCounts(model.results[recounted.result], std::move(recounted.counts));
    }
  });
}

}  // namespace MCBinModel
