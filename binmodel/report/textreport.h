#pragma once

#include "binmodel/model/binmodel.h"
#include "binmodel/report/textstyle.h"
#include "cli/terminal/resultstream.h"

namespace MCBinModel {

// Prints the results for people: a summary line for each, then a table for each. Those of
// supervised binning are ordered by information gain, the most informative first; the
// others come in the order of the model.
void WriteTextReport(const BinModel& model, const TextStyle& style, MCBin::ResultStream& out);

}  // namespace MCBinModel
