#include "binmodel/apply/updatedcounts.h"

#include <utility>
#include <vector>

namespace MCBinModel {

namespace {

// Without a valid case there are bins all the same: their cut points are to be kept.
void FillEmptyBins(const VariableInfo* target, AttributeBins& counts) {
  if (!counts.binWeights.empty()) return;
  counts.binWeights.assign(counts.cutPoints.size() + 1, 0.0);
  if (target == nullptr) return;
  const std::vector<double> noWeights(target->GetCategoryCount(), 0.0);
  counts.classWeights.assign(counts.binWeights.size(), noWeights);
}

}  // namespace

BinModel WithCounts(const BinModel& model, const Recount& recount) {
  BinModel updated{model.settings, model.source, {}, {}, {}, model.refinements};
  updated.source.recordCount = recount.recordCount;
  updated.source.dropped = recount.dropped;
  for (const RecountedBins& found : recount.results) {
    AttributeBins counts = found.counts;
    const VariableInfo* const target = model.GetTarget(counts);
    FillEmptyBins(target, counts);
    counts.status = model.results[found.result].status;
    updated.attributes.push_back(model.GetAttribute(counts));
    counts.attribute = updated.attributes.size() - 1;
    if (target != nullptr) {
      updated.targets = {*target};
      counts.target = 0;
    }
    updated.results.push_back(std::move(counts));
  }
  return updated;
}

}  // namespace MCBinModel
