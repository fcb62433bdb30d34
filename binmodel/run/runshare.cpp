#include "binmodel/run/runshare.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <numeric>
#include <string>

#include "common/missing.h"

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

// A share takes about as long as an attribute more, as it reads targets anew and gets memory of its
// own: fewer attributes a thread than this go in one share.
constexpr std::size_t kManyPerThread = 32;

constexpr std::size_t kSampleSize = 1024;

// Whether the values of a block, some of them looked at, are hardly ever the same.
bool AreMostlyDistinct(const std::vector<double>& values) {
  std::vector<double> sample;
  for (std::size_t i = 0; i < values.size(); i += values.size() / kSampleSize) {
    if (!std::isnan(values[i]) && !MCMV::IsMissing(values[i])) sample.push_back(values[i]);
  }
  std::sort(sample.begin(), sample.end());
  const auto end = std::unique(sample.begin(), sample.end());
  return static_cast<std::size_t>(end - sample.begin()) > sample.size() * 9 / 10;
}

// What it costs to bin each attribute, in proportion to the others. A look at the first block tells
// more where it pays: not for many attributes, which small shares at the end balance; nor where a
// block is most of the records, or too few to tell.
std::vector<double> EstimateCosts(const RunVariables& variables, const ColumnSource& columns,
                                  std::size_t threadCount) {
  constexpr std::size_t kMostInBlock = 16384;
  constexpr std::uint64_t kManyRecords = 50000;
  const std::size_t inBlock = columns.GetRecordsPerBlock();
  const bool looks =
      !variables.weight && variables.attributes.size() < kManyPerThread * threadCount &&
      columns.GetRecordCount() >= kManyRecords && inBlock >= kSampleSize && inBlock <= kMostInBlock;
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

  const std::vector<double> costs = EstimateCosts(variables, columns, threadCount);
  const auto costOf = [&](std::size_t attribute) { return costs[attribute]; };
  std::stable_sort(left.begin(), left.end(),
                   [&](std::size_t a, std::size_t b) { return costOf(a) > costOf(b); });
  double costLeft = std::accumulate(costs.begin(), costs.end(), 0.0);

  // In rounds of a share for every thread, each attribute to the one that costs least so far. So
  // threads get as many of each kind as they can, whatever one costs in truth.
  const double roundPart = left.size() < kManyPerThread * threadCount ? 1.0 : 0.9;
  std::vector<AttributeShare> shares;
  std::vector<double> shareCosts;  // of the round
  double roundLeft = 0.0;
  for (const std::size_t attribute : left) {
    if (roundLeft <= costOf(attribute) / 2) {
      roundLeft = roundPart * costLeft;
      shareCosts.assign(threadCount, 0.0);
      shares.resize(shares.size() + threadCount);
    }
    const auto least = std::min_element(shareCosts.begin(), shareCosts.end());
    *least += costOf(attribute);
    const auto placeFromEnd = static_cast<std::size_t>(shareCosts.end() - least);
    shares[shares.size() - placeFromEnd].push_back(attribute);
    roundLeft -= costOf(attribute);
    costLeft -= costOf(attribute);
  }
  std::erase_if(shares, [](const AttributeShare& share) { return share.empty(); });
  // In the order of the columns, as the source has them.
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
