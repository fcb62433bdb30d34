#include "support/scenario.h"

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <cstdlib>
#include <limits>

#include "support/dice.h"

namespace {

using reference::kMissing;

double Extreme(Dice& dice) {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  const double next = std::nextafter(1.0, 2.0);
  if (dice.OneIn(20)) {
    return dice.OneOf({kInfinity, -kInfinity, std::numeric_limits<double>::quiet_NaN()});
  }
  return dice.OneOf({0.0, -0.0, 1.0, next, -1.0, DBL_MIN, 5e-324, 1e308, -1e308, -1.7e308});
}

std::vector<double> RandomValues(Dice& dice, int records) {
  std::vector<double> values;
  const int shape = dice.Roll(10);
  const int levels = 1 + dice.Roll(12);
  for (int i = 0; i < records; ++i) {
    if (shape <= 3) {
      values.push_back(dice.Roll(levels) / dice.OneOf({1.0, 2.0}));
    } else if (shape == 4) {
      values.push_back(i / 3);  // ascending
    } else if (shape == 5) {
      values.push_back(-0.1 * i);  // descending
    } else if (shape == 6) {
      values.push_back(Extreme(dice));
    } else if (shape == 7) {
      values.push_back(dice.OneIn(3) ? dice.Share() : 0.5);  // one heavy tie
    } else {
      values.push_back(std::exp(6.0 * dice.Share()) - 3.0);
    }
  }
  return values;
}

// Category codes that follow the order of `values` in runs, with some noise.
std::vector<double> RandomCodes(Dice& dice, const std::vector<double>& values, int categories) {
  std::vector<std::size_t> order(values.size());
  for (std::size_t i = 0; i < order.size(); ++i) order[i] = i;
  const auto rank = [&](std::size_t i) { return std::isnan(values[i]) ? DBL_MAX : values[i]; };
  std::stable_sort(order.begin(), order.end(),
                   [&](std::size_t a, std::size_t b) { return rank(a) < rank(b); });
  std::vector<double> codes(values.size());
  const int noise = dice.OneOf({1, 3, 10, 1000});
  const int runLength = 1 + dice.Roll(20);
  int code = dice.Roll(categories);
  for (const std::size_t i : order) {
    if (dice.OneIn(runLength)) code = dice.Roll(categories);
    codes[i] = dice.OneIn(noise) ? dice.Roll(categories) : code;
  }
  return codes;
}

double RandomWeight(Dice& dice, int shape, reference::Rounding rounding) {
  if (dice.OneIn(25)) return kMissing;
  if (rounding == reference::Rounding::kNone) return dice.Roll(shape == 0 ? 4 : 20) / 4.0;
  if (shape == 0) return 1.0;
  if (shape == 1) return dice.Roll(12);
  if (shape == 2) return -1.0 + 5.0 * dice.Share();
  return dice.OneIn(8) ? 1e17 * dice.Share() : dice.Roll(9) / 2.0;
}

void AddMissing(Dice& dice, ScenarioVariable& variable) {
  const bool continuous = variable.level == IBINVariable::MeasureContinuous;
  const bool categorical = variable.level == IBINVariable::MeasureNumericCategorical;
  const double share = dice.OneOf({0.0, 0.05, 0.3, dice.OneIn(5) ? 1.0 : 0.0});
  for (double& value : variable.values) {
    if (dice.Share() < share) value = categorical && dice.OneIn(2) ? -1.0 : kMissing;
  }
  if (categorical) return;
  if (dice.OneIn(4)) variable.discreteMissing = {variable.values.front(), 3.0, 99.0};
  if (continuous && dice.OneIn(6)) {
    const double low = variable.values.back();
    variable.missingInterval = {low, low + dice.OneOf({-1.0, 0.0, 2.0})};
  }
}

}  // namespace

ScenarioVariable Continuous(std::vector<double> values) { return {.values = std::move(values)}; }

ScenarioVariable Categorical(std::vector<double> codes, int categories,
                             IBINVariable::VariableRole role) {
  return {.level = IBINVariable::MeasureNumericCategorical,
          .role = role,
          .categories = categories,
          .values = std::move(codes)};
}

ScenarioVariable Weights(std::vector<double> weights) {
  return {.level = IBINVariable::MeasureFrequencyWeight,
          .role = IBINVariable::RoleFrequencyWeight,
          .values = std::move(weights)};
}

int Scenario::Append(ScenarioVariable variable) {
  variables.push_back(std::move(variable));
  return static_cast<int>(variables.size()) - 1;
}

BINVarList Scenario::VarList() const {
  BINVarList list;
  for (const ScenarioVariable& variable : variables) {
    const std::string name = std::to_string(list.Size());
    int index = -1;
    if (variable.level == IBINVariable::MeasureContinuous) {
      index = list.AddContVar(name, name, variable.role);
    } else if (variable.level == IBINVariable::MeasureFrequencyWeight) {
      index =
          list.AddWeightVar(name, name, static_cast<IBINVariable::BINWRoundingOption>(rounding));
    } else {
      index = list.AddCatVar(name, name, variable.categories, variable.level, variable.role);
    }
    for (const double value : variable.discreteMissing) {
      list.AddDiscreteUserMissing(index, value, "");
    }
    if (variable.missingInterval) {
      list.SetMissingInterval(index, variable.missingInterval->first,
                              variable.missingInterval->second);
    }
  }
  return list;
}

MCCommon::InMemoryRecordIterator Scenario::Records() const {
  MCCommon::InMemoryRecordIterator records;
  std::vector<double> row(variables.size());
  for (std::size_t i = 0; i < variables.front().values.size(); ++i) {
    for (std::size_t v = 0; v < variables.size(); ++v) row[v] = variables[v].values[i];
    records.Add(row);
  }
  return records;
}

int Scenario::IndexOf(IBINVariable::VariableRole role) const {
  const auto found = std::find_if(variables.begin(), variables.end(),
                                  [&](const auto& variable) { return variable.role == role; });
  return found != variables.end() ? static_cast<int>(found - variables.begin()) : -1;
}

int Scenario::TargetIndex() const { return IndexOf(IBINVariable::RoleTarget); }

int Scenario::WeightIndex() const { return IndexOf(IBINVariable::RoleFrequencyWeight); }

std::vector<double> Scenario::Stored(int index) const {
  const ScenarioVariable& variable = variables[static_cast<std::size_t>(index)];
  std::vector<double> stored = variable.values;
  for (double& value : stored) {
    const auto declared = [&](double missing) { return missing == value; };
    if (std::any_of(variable.discreteMissing.begin(), variable.discreteMissing.end(), declared) ||
        (variable.missingInterval && variable.missingInterval->first <= value &&
         value <= variable.missingInterval->second) ||
        (variable.level == IBINVariable::MeasureNumericCategorical && value == -1.0)) {
      value = kMissing;
    }
    if (index == WeightIndex()) value = reference::RoundedWeight(value, rounding);
  }
  return stored;
}

std::vector<double> Scenario::StoredWeights() const {
  return WeightIndex() < 0 ? std::vector<double>{} : Stored(WeightIndex());
}

std::uint64_t TestSeed() {
  const char* const seed = std::getenv("MCBINNING_TEST_SEED");
  return seed == nullptr ? 20240229 : std::strtoull(seed, nullptr, 10);
}

Scenario RandomScenario(std::uint64_t seed, int maxRecords, bool withTarget) {
  Dice dice(seed);
  Scenario scenario;
  const int records = 1 + (dice.OneIn(3) ? dice.Roll(maxRecords) : dice.Roll(25) % maxRecords);

  for (int attributes = 1 + dice.Roll(3); attributes > 0; --attributes) {
    scenario.Append(Continuous(RandomValues(dice, records)));
  }
  const std::vector<double> signal = scenario.variables.front().values;
  for (int targets = 1 + dice.Roll(3); targets > 0; --targets) {
    const int categories = dice.OneIn(12) ? 1 : (dice.OneIn(8) ? 8 : 2) + dice.Roll(5);
    ScenarioVariable target =
        Categorical(RandomCodes(dice, signal, categories), std::max(2, categories));
    if (withTarget && targets == 1) target.role = IBINVariable::RoleTarget;
    scenario.Append(target);
  }
  if (dice.OneIn(2)) {
    scenario.rounding = dice.OneOf({reference::Rounding::kTruncate, reference::Rounding::kClosest,
                                    reference::Rounding::kNone});
    const int shape = dice.Roll(4);
    std::vector<double> weights;
    for (int i = 0; i < records; ++i) {
      weights.push_back(RandomWeight(dice, shape, scenario.rounding));
    }
    if (dice.OneIn(30)) weights.back() = dice.OneOf({std::nan(""), HUGE_VAL});
    scenario.Append(Weights(weights));
  }
  for (ScenarioVariable& variable : scenario.variables) AddMissing(dice, variable);
  std::rotate(scenario.variables.begin(),
              scenario.variables.begin() + dice.Roll(static_cast<int>(scenario.variables.size())),
              scenario.variables.end());

  scenario.options.rightBorderClosed = dice.OneIn(2);
  scenario.options.distinctThreshold = dice.OneOf({-1, 0, 1, 1 + dice.Roll(10), 20});
  scenario.options.numberOfBins = 2 + dice.Roll(14);
  scenario.options.smallBinThreshold = dice.OneOf({0.0, 0.0, 0.1, 0.7, 1.0});
  return scenario;
}
