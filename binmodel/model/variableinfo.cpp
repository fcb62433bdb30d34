#include "binmodel/model/variableinfo.h"

#include "binmodel/text/number.h"

namespace MCBinModel {

std::size_t VariableInfo::GetCategoryCount() const {
  return kind == VariableKind::kNumericCategorical ? numbers.size() : texts.size();
}

std::string VariableInfo::GetLabel(std::size_t code) const {
  return kind == VariableKind::kNumericCategorical ? FormatNumber(numbers[code]) : texts[code];
}

}  // namespace MCBinModel
