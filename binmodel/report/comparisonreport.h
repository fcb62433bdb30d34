#pragma once

#include "binmodel/report/binreport.h"
#include "binmodel/report/reportwriter.h"
#include "binmodel/report/shownresults.h"

namespace MCBinModel {

// The bin file and one other data side by side: a line for each result, then a table for each that
// has cut points; the others are one table at the end.
void WriteComparison(const BinModel& model, const NamedRecount& data, const ShownResults& shown,
                     ReportWriter& writer);

}  // namespace MCBinModel
