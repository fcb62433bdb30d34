#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "../model/binmodel.h"
#include "../model/binmodelexport.h"

namespace MCBinModel {

// How much each bin speaks for one of a target's two classes. The missing cases are a bin like the
// others, if they were counted and there are any: they are in the totals that shares are taken of.
struct Evidence {
  std::vector<std::optional<double>> weights;  // weight of evidence of each bin
  std::vector<std::optional<double>> values;   // what each bin adds to the information value
  std::optional<double> missingWeight;         // weight of evidence of the missing cases
  std::optional<double> missingValue;          // what they add to the information value
  std::optional<double> informationValue;      // the sum of all these
  std::optional<double> valueWithoutMissing;   // information value of the cases with a value alone
};

// Measures a target with two categories; docs/statistics.md has the formulas.
//
// `adjustment`, a weight from 0 up, is added to both classes in every bin with weight before
// anything is measured, so that an empty cell no longer makes a measure infinite; with 0
// nothing is smoothed.
MCBINMODEL_API Evidence MeasureEvidence(const AttributeBins& bins, std::size_t event,
                                        double adjustment);

// The same of a result of the model, with the event and the adjustment that the model says: what
// reports, exports and applying use, so that all say the same. Throws Refusal
// (RefusalCode::kEvidenceNeedsTarget or kEvidenceNeedsTwoClasses) when the result is not about a
// target of two classes.
MCBINMODEL_API Evidence MeasureEvidence(const BinModel& model, const AttributeBins& bins);

// The weight of the cases whose weight of evidence is infinite: those of bins that lack a class.
MCBINMODEL_API double GetInfiniteWeight(const AttributeBins& bins, const Evidence& evidence);

}  // namespace MCBinModel
