#include "binmodel/report/comparedbins.h"

#include "binmodel/measure/binstatistics.h"
#include "binmodel/model/resultselection.h"
#include "binmodel/report/reportcells.h"

namespace MCBinModel {

ComparedBins::ComparedBins(const BinModel& model, const RecountedBins& recounted)
    : file(model.results[recounted.result]), data(recounted.counts) {
  if (!file.missing) data.missing.reset();
  if (!data.target) DropTarget(file);
}

bool ComparedBins::HasMissing() const {
  return FindMissingBin(file) != nullptr || FindMissingBin(data) != nullptr;
}

std::optional<double> ComparedBins::StabilityWithoutMissing() const {
  if (file.binWeights.size() != data.binWeights.size()) return std::nullopt;
  return StabilityIndex(file.binWeights, data.binWeights);
}

bool LeavesOutMissing(const BinModel& model, const RecountedBins& recounted) {
  const AttributeBins& file = model.results[recounted.result];
  if (file.missing) return false;
  const std::optional<MissingBin>& missing = recounted.counts.missing;
  return (missing && missing->weight > 0.0) || file.weightWithMissing > file.validWeight;
}

}  // namespace MCBinModel
