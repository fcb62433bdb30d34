#include "binmodel/model/variableinfo.h"

#include "binmodel/text/boolean.h"
#include "binmodel/text/isotime.h"
#include "binmodel/text/number.h"

namespace MCBinModel {

std::size_t VariableInfo::GetCategoryCount() const {
  return kind == VariableKind::kNumericCategorical ? numbers.size() : texts.size();
}

std::string VariableInfo::GetLabel(std::size_t code) const {
  return kind == VariableKind::kNumericCategorical ? FormatNumber(numbers[code]) : texts[code];
}

std::string VariableInfo::FormatValue(double number) const {
  return isTime ? FormatTime(number) : FormatNumber(number);
}

std::size_t VariableInfo::GetEvent() const {
  if (event) return *event;
  if (kind == VariableKind::kStringCategorical) {
    const auto first = ParseBoolean(texts[0]);
    const auto second = ParseBoolean(texts[1]);
    const bool areOnePair = first && second && first->pair == second->pair;
    if (areOnePair && first->isTrue != second->isTrue) return first->isTrue ? 0 : 1;
  }
  const bool isNumeric = kind == VariableKind::kNumericCategorical;
  const bool firstIsEvent = isNumeric ? numbers[0] > numbers[1] : texts[0] > texts[1];
  return firstIsEvent ? 0 : 1;
}

}  // namespace MCBinModel
