#pragma once

#include <string>

#include "binmodel/apply/recount.h"
#include "binmodel/model/binmodel.h"
#include "cli/terminal/resultstream.h"

namespace MCBinModel {

// Prints, for people, what the bin file says and what the other data say side by side: a
// summary line for each attribute, then a table for each, in the order of the file.
// `dataName` is what the data are called.
void WriteEvaluationReport(const BinModel& model, const Recount& recount,
                           const std::string& dataName, MCBin::ResultStream& out);

}  // namespace MCBinModel
