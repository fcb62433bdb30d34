#pragma once

#include <vector>

#include "binmodel/model/binmodel.h"
#include "output/binattributeresults.h"
#include "output/binattributetargetresults.h"

namespace MCBinModel {

// A result of either algorithm as bins of a model, but for their attribute and target. Throws
// Refusal when the weights sum up to more than the largest double, or to no number.
AttributeBins TakeResults(const BINAttributeTargetResults& results);
AttributeBins TakeResults(const BINAttributeResults& results);

// Weight 0, in every bin, for the categories of the target that no case has shown.
void AddUnseenCategories(AttributeBins& bins, const VariableInfo& target);

// Throws Refusal for a cut point that is not finite (the midpoint of two values beyond half the
// largest double is infinite) and for cut points that do not ascend.
void CheckCutPoints(const std::vector<double>& cutPoints, const VariableInfo& attribute);

}  // namespace MCBinModel
