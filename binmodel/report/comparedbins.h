#pragma once

#include <optional>

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

  // The stability index of the bins alone, whatever is missing.
  std::optional<double> StabilityWithoutMissing() const;
};

// Whether there are missing cases on either side that no measure knows, as the model has not
// counted its own.
bool LeavesOutMissing(const BinModel& model, const RecountedBins& recounted);

}  // namespace MCBinModel
