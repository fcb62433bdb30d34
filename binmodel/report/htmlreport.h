#pragma once

#include <string>

#include "binmodel/model/binmodel.h"

namespace MCBinModel {

// The results as one HTML page that needs nothing else: no scripts, no network. It is XML as
// well. A ranking of the attributes comes first, for each target, then a chart and a table
// for each result.
//
// `adjustment` is added to each class weight before weights of evidence are taken; see
// MeasureEvidence().
std::string WriteHtmlReport(const BinModel& model, double adjustment);

}  // namespace MCBinModel
