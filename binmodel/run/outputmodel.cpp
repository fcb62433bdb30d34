#include "binmodel/run/outputmodel.h"

#include <algorithm>
#include <array>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "algorithm/ibinalgorithm.h"
#include "algorithm/iefbinalgorithm.h"
#include "algorithm/runreport.h"
#include "binmodel/model/refusal.h"
#include "binmodel/run/resultbins.h"
#include "common/statuscodes.h"
#include "metadata/bincatnumencoder.h"
#include "metadata/binnumericusermissing.h"
#include "metadata/binroundencoder.h"
#include "metadata/binstringencoder.h"
#include "metadata/binstringusermissing.h"

namespace MCBinModel {

using MCBinning::StatusCode;

namespace {

MissingDefinition TakeMissing(const IBINUserMissing* missing) {
  MissingDefinition definition;
  if (const auto* const numeric = dynamic_cast<const BINNumericUserMissing*>(missing)) {
    definition.numbers = numeric->GetDiscreteValues();
    if (const BINNumericInterval* const interval = numeric->GetInterval()) {
      definition.interval = {interval->GetLeftEnd(), interval->GetRightEnd()};
    }
  } else if (const auto* const texts = dynamic_cast<const BINStringUserMissing*>(missing)) {
    definition.texts = texts->GetDiscreteValues();
  }
  return definition;
}

// The variable at an index of the list; categories that have no value are named by their codes.
VariableInfo TakeVariable(const BINVarList& variables, int index) {
  const IBINVariable& variable = *variables.GetVarAt(index);
  VariableInfo info;
  info.name = variable.GetVariableName();
  info.missing = TakeMissing(variable.GetUserMissingInfo());
  const int count = variable.GetNumberOfCategories();
  if (variable.GetMeasureLevel() == IBINVariable::MeasureNumericCategorical) {
    info.kind = VariableKind::kNumericCategorical;
    const auto* const encoder = dynamic_cast<const BINCatNumEncoder*>(variable.GetEncoder());
    for (int code = 0; code < count; ++code) {
      const bool hasValue = encoder != nullptr && code < encoder->GetNumberOfCategories();
      info.numbers.push_back(hasValue ? encoder->Decode(code) : code);
    }
  } else if (variable.GetMeasureLevel() == IBINVariable::MeasureStringCategorical) {
    info.kind = VariableKind::kStringCategorical;
    const auto* const encoder = dynamic_cast<const BINStringEncoder*>(variable.GetEncoder());
    for (int code = 0; code < count; ++code) {
      const bool hasValue = encoder != nullptr && code < encoder->GetNumberOfCategories();
      info.texts.push_back(hasValue ? encoder->Decode(code) : std::to_string(code));
    }
  }
  return info;
}

// Gives the variables of a model their places there.
class Places {
 public:
  Places(const BINVarList& variables, std::vector<VariableInfo>& infos)
      : fVariables(variables), fInfos(infos) {}

  std::size_t Of(int index) {
    const auto [place, isNew] = fPlaces.try_emplace(index, fInfos.size());
    if (isNew) fInfos.push_back(TakeVariable(fVariables, index));
    return place->second;
  }

 private:
  const BINVarList& fVariables;
  std::vector<VariableInfo>& fInfos;
  std::map<int, std::size_t> fPlaces;
};

int TargetOf(const BINAttributeTargetResults& results) { return results.GetTargetIndex(); }
int TargetOf(const BINAttributeResults& /*results*/) { return -1; }

// Entries of an index list that were refused: no such variable, the wrong kind, the weight.
bool IsRefused(const MCBinning::MCStatus& status) {
  constexpr std::array kRefusals = {StatusCode::kIsWeightOrTarget,
                                    StatusCode::kTargetNotCategorical, StatusCode::kNoSuchAttribute,
                                    StatusCode::kNoSuchVariable};
  return std::any_of(kRefusals.begin(), kRefusals.end(),
                     [&](StatusCode code) { return HasCode(status, code); });
}

template <typename Results, typename Output>
BinModel TakeOutput(const Output& output, const BinSettings& settings,
                    const BINVarList& variables) {
  std::vector<Results> all;
  output.GetAllCutPoints(all);
  // By target, then by attribute; the first of equal pairs stays the first.
  std::map<std::pair<int, int>, const Results*> found;
  for (const Results& results : all) {
    if (IsRefused(results.GetStatus())) continue;
    found.try_emplace({TargetOf(results), results.GetAttributeIndex()}, &results);
  }
  if (found.empty()) throw Refusal("there are no results");

  BinModel model;
  model.settings = settings;
  Places attributes(variables, model.attributes);
  Places targets(variables, model.targets);
  for (const auto& [pair, results] : found) {
    AttributeBins bins = TakeResults(*results);
    bins.attribute = attributes.Of(pair.second);
    CheckCutPoints(bins.cutPoints, model.attributes[bins.attribute]);
    if (pair.first >= 0) {
      bins.target = targets.Of(pair.first);
      AddUnseenCategories(bins, model.targets[*bins.target]);
    }
    model.results.push_back(std::move(bins));
  }
  if (const int weight = variables.GetWeightIndex(); weight >= 0) {
    const IBINVariable& variable = *variables.GetVarAt(weight);
    const auto* const encoder = dynamic_cast<const BINRoundEncoder*>(variable.GetEncoder());
    model.source.weight = {variable.GetVariableName(),
                           encoder != nullptr ? encoder->GetOption() : IBINVariable::RoundClosest,
                           TakeMissing(variable.GetUserMissingInfo())};
  }
  return model;
}

template <typename Algorithm>
BinModel TakeAlgorithm(const Algorithm& algorithm) {
  BinModel model =
      MakeBinModel(algorithm.GetBinningResults(), algorithm.GetSettings(), algorithm.GetVarList());
  const MCBinning::RunReport& report = MCBinning::GetRunReport(algorithm);
  model.source.recordCount = report.recordsRead - report.nullRecords;
  model.source.dropped.missing = report.missingWeights;
  model.source.dropped.roundedToZero = report.weightsRoundedToZero;
  return model;
}

}  // namespace

BinModel MakeBinModel(const BINOutput& output, const ::BINSettings& settings,
                      const BINVarList& variables) {
  BinSettings taken;
  taken.algorithm = Algorithm::kSupervised;
  taken.rightClosed = settings.IsRightBorderClosed();
  taken.prebinAbove = std::max(settings.GetNumDistinctValueThreshold(), 0);  // -1: never
  taken.prebins = settings.GetNumberOfBins();
  taken.smallBins = settings.GetSmallBinDetectionThreshold();
  return TakeOutput<BINAttributeTargetResults>(output, taken, variables);
}

BinModel MakeBinModel(const EFBINOutput& output, const ::EFBINSettings& settings,
                      const BINVarList& variables) {
  BinSettings taken;
  taken.algorithm = Algorithm::kEqualFrequency;
  taken.rightClosed = settings.IsRightBorderClosed();
  taken.bins = settings.GetNumberOfBins();
  return TakeOutput<BINAttributeResults>(output, taken, variables);
}

BinModel MakeBinModel(const IBINAlgorithm& algorithm) { return TakeAlgorithm(algorithm); }

BinModel MakeBinModel(const IEFBINAlgorithm& algorithm) { return TakeAlgorithm(algorithm); }

}  // namespace MCBinModel
