#pragma once

#include <string>
#include <vector>

#include "binmodel/export/exportmodel.h"

namespace MCBinModel {

// A PMML 4.4 document whose transformation dictionary derives the bins: Discretize for
// intervals, MapValues for categories. Without `model.missing` a missing value stays missing.
//
// `notes` gets a line for each interval of user-missing values, which PMML cannot say. Throws
// Refusal for a text with a character that XML cannot hold.
std::string WritePmml(const ExportModel& model, std::vector<std::string>& notes);

}  // namespace MCBinModel
