#include "binmodel/report/comparedbins.h"

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

}  // namespace MCBinModel
