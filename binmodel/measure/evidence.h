#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "../model/binmodel.h"
#include "../model/binmodelexport.h"

namespace MCBinModel {

// How much each bin speaks for one of a target's two classes, as a report shows it.
struct Evidence {
  std::vector<std::optional<double>> weights;  // weight of evidence of each bin
  std::vector<std::optional<double>> values;   // what each bin adds to the information value
  std::optional<double> informationValue;      // the sum of these
};

// Measures a target with two categories; docs/statistics.md has the formulas.
//
// `adjustment`, a weight from 0 up, is added to both classes in every bin with weight before
// anything is measured, so that an empty cell no longer makes a measure infinite; with 0
// nothing is smoothed.
MCBINMODEL_API Evidence MeasureEvidence(const AttributeBins& bins, std::size_t event,
                                        double adjustment);

}  // namespace MCBinModel
