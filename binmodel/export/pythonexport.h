#pragma once

#include <string>

#include "binmodel/export/exportmodel.h"

namespace MCBinModel {

// A Python module with one function, assign_bins, that needs NumPy only: it takes the columns
// by name and returns the new ones. Without `model.missing` a missing value becomes -1 (index),
// None (label) or NaN (weight of evidence).
std::string WritePython(const ExportModel& model);

}  // namespace MCBinModel
