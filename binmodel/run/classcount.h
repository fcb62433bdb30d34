#pragma once

#include <cstddef>
#include <vector>

#include "binmodel/model/binmodel.h"
#include "binmodel/run/binrun.h"
#include "binmodel/run/columnsource.h"
#include "binmodel/run/jobs.h"
#include "binmodel/run/runprogress.h"
#include "binmodel/run/runshare.h"

namespace MCBinModel {

// How the counting is shared out.
struct CountingWork {
  std::size_t threadCount;
  const std::vector<AttributeShare>& shares;
  RunProgress& progress;  // one pass over the records for every share
  Jobs& jobs;             // which ends the counting early when the run is to stop
};

// Makes of the bins of every attribute, which know no target, those against each of the model's
// targets, target by target: the cut points stay, and weights become those of the cases that have
// the target, by class. Columns are those of `variables`, names those of the model. Throws what the
// columns throw.
void CountClasses(BinModel& model, const RunVariables& variables, const ColumnSource& columns,
                  const CountingWork& work);

}  // namespace MCBinModel
