#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "binmodel/model/binmodel.h"

namespace MCBinModel {

// Categories of a target that a chart draws in one colour and a table counts in one column.
struct ClassGroup {
  std::string label;
  std::vector<std::size_t> codes;
};

// At most eight groups that cover all categories, the same for every result of the target:
// one for each category in code order, of two categories the event first; with more than
// eight categories the seven of largest weight and the others together.
std::vector<ClassGroup> GroupClasses(const BinModel& model, std::size_t target);

// The group's part of a bin's weights by category code.
double GroupWeight(const ClassGroup& group, const std::vector<double>& classWeights);

}  // namespace MCBinModel
