#include "binmodel/run/runshare.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
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

// Of cases that weigh 1 each: few different values are counted, others are sorted.
constexpr double kCostOfFewValues = 3.0;
constexpr double kCostOfManyValues = 5.0;

// Whether the values of a block, some of them looked at, are hardly ever the same.
bool AreMostlyDistinct(const std::vector<double>& values) {
  constexpr std::size_t kSampleSize = 1024;
  std::vector<double> sample;
  const std::size_t step = std::max<std::size_t>(values.size() / kSampleSize, 1);
  for (std::size_t i = 0; i < values.size(); i += step) {
    if (!std::isnan(values[i])) sample.push_back(values[i]);
  }
  std::sort(sample.begin(), sample.end());
  const auto end = std::unique(sample.begin(), sample.end());
  return end - sample.begin() > static_cast<std::ptrdiff_t>(sample.size() / 10 * 9);
}

// What it costs to bin each attribute, in proportion to the others.
std::vector<double> EstimateCosts(const RunVariables& variables, const ColumnSource& columns) {
  constexpr std::uint64_t kManyRecords = 50000;  // below, a look would not pay
  constexpr std::uint64_t kManyInBlock = 65536;  // nor above
  const std::uint64_t recordCount = columns.GetRecordCount();
  const std::uint64_t inBlock = std::min<std::uint64_t>(columns.GetRecordsPerBlock(), recordCount);
  const bool looks = !variables.weight && recordCount >= kManyRecords && inBlock <= kManyInBlock;
  std::vector<double> values(looks ? inBlock : 0);
  std::vector<double> costs;
  for (std::size_t i = 0; i < variables.attributes.size(); ++i) {
    bool areDistinct = !variables.attributes[i].IsCategorical();
    if (areDistinct && looks) {
      columns.Read(0, variables.attributeColumns[i], values.data());
      areDistinct = AreMostlyDistinct(values);
    }
    costs.push_back(areDistinct ? kCostOfManyValues : kCostOfFewValues);
  }
  return costs;
}

}  // namespace

std::vector<AttributeShare> ShareOut(const RunVariables& variables, const ColumnSource& columns,
                                     std::size_t threadCount) {
  AttributeShare left(variables.attributes.size());
  std::iota(left.begin(), left.end(), std::size_t{0});
  if (threadCount == 1) return {left};

  const std::vector<double> costs = EstimateCosts(variables, columns);
  const auto costOf = [&](std::size_t attribute) { return costs[attribute]; };
  std::stable_sort(left.begin(), left.end(),
                   [&](std::size_t a, std::size_t b) { return costOf(a) > costOf(b); });
  double costLeft = 0.0;
  for (const std::size_t attribute : left) costLeft += costOf(attribute);

  // In rounds of a share for every thread. A share takes about as long as an attribute more, as it
  // reads targets anew and gets memory of its own: few attributes go in one round.
  constexpr std::size_t kFewPerThread = 32;
  const double roundPart = left.size() < kFewPerThread * threadCount ? 1.0 : 0.9;
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
  // Not all threads are to sort many values at the same time: they wait for the same memory then.
  for (AttributeShare& share : shares) std::sort(share.begin(), share.end());
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
