#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "binmodel/model/binmodel.h"
#include "binmodel/model/refusal.h"
#include "binmodel/run/binrun.h"
#include "binmodel/run/columnsource.h"
#include "common/mcstatus.h"

namespace MCBinModel {

// What is thrown when a run ended with an error, and when the host stopped it. `extent` follows the
// words for the error.
Refusal FailedRun(const MCBinning::MCStatus& error, const std::string& extent = {});
Refusal CancelledRun();

// Reads the weights before a run and answers which records they drop. Throws Refusal for a weight
// that cannot be used, and when no record is left.
DroppedRecords CheckWeights(const RunVariables& variables, const ColumnSource& columns,
                            const RunControl& control);

// Holds the results of a run against the columns that it read. Bins whose weights do not sum up to
// that of the valid cases are counted anew for the cut points there are: the arithmetic of
// equal-frequency cut points loses a cut between neighbouring doubles. Answers which results were;
// columns are those of `variables`, names those of the model.
//
// Throws Refusal for what makes bins unusable: a temporary file that failed, no valid case where
// the columns have some, weights or values whose cut points overflow.
std::vector<std::size_t> CheckResults(BinModel& model, const RunVariables& variables,
                                      const ColumnSource& columns, const RunControl& control);

}  // namespace MCBinModel
