#include "binmodel/run/runshare.h"

#include <algorithm>
#include <numeric>
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

// An attribute of a few hundred distinct values takes about half the time of one where nearly all
// are distinct.
double CostOf(const VariableInfo& attribute) { return attribute.IsCategorical() ? 1.0 : 2.0; }

}  // namespace

std::vector<AttributeShare> ShareOut(const RunVariables& variables, std::size_t threadCount) {
  AttributeShare left(variables.attributes.size());
  std::iota(left.begin(), left.end(), std::size_t{0});
  if (threadCount == 1) return {left};

  const auto costOf = [&](std::size_t attribute) {
    return CostOf(variables.attributes[attribute]);
  };
  std::stable_sort(left.begin(), left.end(),
                   [&](std::size_t a, std::size_t b) { return costOf(a) > costOf(b); });
  double costLeft = 0.0;
  for (const std::size_t attribute : left) costLeft += costOf(attribute);

  // In rounds of a share for every thread. A share takes about as long as an attribute more, as it
  // reads targets anew and gets memory of its own: few attributes go in one round.
  constexpr std::size_t kFewPerThread = 8;
  const double roundPart = left.size() < kFewPerThread * threadCount ? 1.0 : 0.75;
  std::vector<AttributeShare> shares;
  double roundCost = 0.0;  // of the shares of the round that are to come
  double shareCost = 0.0;
  double cost = 0.0;
  for (const std::size_t attribute : left) {
    if (shares.empty() || cost + costOf(attribute) / 2 > shareCost) {
      costLeft -= cost;
      roundCost -= cost;
      cost = 0.0;
      const std::size_t sharesOfRound = shares.size() % threadCount;
      if (sharesOfRound == 0) roundCost = roundPart * costLeft;
      shareCost = roundCost / static_cast<double>(threadCount - sharesOfRound);
      shares.emplace_back();
    }
    shares.back().push_back(attribute);
    cost += costOf(attribute);
  }
  return shares;
}

ShareVariables MakeShareVariables(const RunVariables& variables, const AttributeShare& share) {
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
  for (const std::size_t i : share) {
    result.attributeIndexes.push_back(
        AddVariable(result.list, variables.attributes[i], IBINVariable::RoleAttribute));
    result.columns.push_back({variables.attributeColumns[i], &variables.attributes[i]});
  }
  return result;
}

}  // namespace MCBinModel
