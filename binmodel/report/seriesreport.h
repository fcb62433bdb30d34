#pragma once

#include <vector>

#include "binmodel/report/binreport.h"
#include "binmodel/report/reportwriter.h"
#include "binmodel/report/shownresults.h"

namespace MCBinModel {

// Several data: a column for each, the bin file's first, and a table for each measure; then tables
// of the shares and event rates of each result that has cut points. The others are one table.
void WriteSeries(const BinModel& model, const std::vector<NamedRecount>& data,
                 const ShownResults& shown, ReportWriter& writer);

}  // namespace MCBinModel
