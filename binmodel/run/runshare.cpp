#include "binmodel/run/runshare.h"

#include <string>

namespace MCBinModel {

namespace {

void SetNumericMissing(BINVarList& list, int index, const MissingDefinition& missing) {
  for (const double value : missing.numbers) list.AddDiscreteUserMissing(index, value, "");
  if (missing.interval) {
    list.SetMissingInterval(index, missing.interval->low, missing.interval->high);
  }
}

int AddVariable(BINVarList& list, const VariableInfo& variable, IBINVariable::VariableRole role) {
  int index = -1;
  switch (variable.kind) {
    case VariableKind::kContinuous:
      index = list.AddContVar(variable.name, "", role);
      SetNumericMissing(list, index, variable.missing);
      break;
    case VariableKind::kNumericCategorical:
      index = list.AddCatVar(variable.name, "", variable.numbers, role);
      SetNumericMissing(list, index, variable.missing);
      break;
    case VariableKind::kStringCategorical:
      index = list.AddCatVar(variable.name, "", variable.texts, role);
      for (const std::string& value : variable.missing.texts) {
        list.AddDiscreteUserMissing(index, value, "");
      }
      break;
  }
  return index;
}

// Deals out forwards and backwards in turn, 0 1 2 2 1 0 0 1 2: if every second attribute takes
// longer, they do not all go to the same share.
std::size_t ShareOf(std::size_t attribute, std::size_t shareCount) {
  const bool forwards = attribute / shareCount % 2 == 0;
  const std::size_t place = attribute % shareCount;
  return forwards ? place : shareCount - 1 - place;
}

}  // namespace

ShareVariables MakeShareVariables(const RunVariables& variables, std::size_t share,
                                  std::size_t shareCount) {
  ShareVariables result;
  for (std::size_t i = 0; i < variables.targets.size(); ++i) {
    const auto role = i == 0 ? IBINVariable::RoleTarget : IBINVariable::RoleAttribute;
    result.targetIndexes.push_back(AddVariable(result.list, variables.targets[i], role));
    result.columns.push_back({variables.targetColumns[i], &variables.targets[i]});
  }
  if (variables.weight) {
    const RunVariables::Weight& weight = *variables.weight;
    const int index = result.list.AddWeightVar(weight.info.name, "", weight.info.rounding);
    SetNumericMissing(result.list, index, weight.info.missing);
    result.columns.push_back({weight.column, nullptr});
  }
  for (std::size_t i = 0; i < variables.attributes.size(); ++i) {
    if (ShareOf(i, shareCount) != share) continue;
    result.attributes.push_back(i);
    result.attributeIndexes.push_back(
        AddVariable(result.list, variables.attributes[i], IBINVariable::RoleAttribute));
    result.columns.push_back({variables.attributeColumns[i], &variables.attributes[i]});
  }
  return result;
}

}  // namespace MCBinModel
