#pragma once

#include "binmodel/apply/bincounter.h"

namespace MCBinModel {

// A result of the model and its recount on other data, cut down to what both know: without the
// missing cases where the model has not counted its own, without the target where the data lack it.
struct ComparedBins {
  AttributeBins file;
  AttributeBins data;

  ComparedBins(const BinModel& model, const RecountedBins& recounted);

  // Some cases are missing on either side, and both have counted theirs.
  bool HasMissing() const;
};

}  // namespace MCBinModel
