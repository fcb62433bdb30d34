#pragma once

#include <cstdint>
#include <optional>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "host/inmemoryrecorditerator.h"
#include "metadata/binvarlist.h"
#include "metadata/ibinvariable.h"
#include "support/reference.h"

// A column of a scenario's data with its description.
struct ScenarioVariable {
  IBINVariable::MeasureLevel level = IBINVariable::MeasureContinuous;
  IBINVariable::VariableRole role = IBINVariable::RoleAttribute;
  int categories = 0;          // declared; of a categorical variable
  std::vector<double> values;  // one per record
  std::vector<double> discreteMissing{};
  std::optional<std::pair<double, double>> missingInterval{};
};

// Data, variables and settings of one run, for the library and for the reference alike.
struct Scenario {
  std::vector<ScenarioVariable> variables;
  reference::Options options;
  reference::Rounding rounding = reference::Rounding::kClosest;

  int Append(ScenarioVariable variable);  // its index
  BINVarList VarList() const;
  MCCommon::InMemoryRecordIterator Records() const;

  int TargetIndex() const;  // -1 when there is none
  int WeightIndex() const;

  // A column as it counts: weights rounded, user-missing values and -1 codes missing.
  std::vector<double> Stored(int variable) const;
  std::vector<double> StoredWeights() const;  // empty without a weight variable

 private:
  int IndexOf(IBINVariable::VariableRole role) const;
};

ScenarioVariable Continuous(std::vector<double> values);
ScenarioVariable Categorical(std::vector<double> codes, int categories,
                             IBINVariable::VariableRole role = IBINVariable::RoleAttribute);
ScenarioVariable Weights(std::vector<double> weights);

// MCBINNING_TEST_SEED, or a fixed number.
std::uint64_t TestSeed();

// Anything goes, up to `maxRecords` records: ties, extremes, missing values of every kind, odd
// weights, several targets, every setting. With `withTarget` one variable has the target role.
Scenario RandomScenario(std::uint64_t seed, int maxRecords, bool withTarget);
