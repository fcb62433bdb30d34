#include "binmodel/file/binfile.h"

#include <cfloat>
#include <utility>

#include "binmodel/file/cutpointmark.h"
#include "binmodel/file/jsonprinter.h"
#include "binmodel/model/bestsplit.h"
#include "binmodel/model/severity.h"
#include "metadata/describe.h"
#include "version.h"

namespace MCBinModel {

namespace {

using nlohmann::ordered_json;

// Values as texts of a variable of texts, as numbers of any other.
void AddMissing(ordered_json& parent, const char* key, const MissingDefinition& missing,
                bool texts) {
  if (missing.IsEmpty()) return;
  ordered_json& object = parent[key];
  object["values"] = texts ? ordered_json(missing.texts) : ordered_json(missing.numbers);
  if (!missing.interval) return;
  ordered_json& interval = object["interval"] = ordered_json::object();
  if (missing.interval->low != -DBL_MAX) interval["low"] = missing.interval->low;
  if (missing.interval->high != DBL_MAX) interval["high"] = missing.interval->high;
}

ordered_json MakeSettings(const BinModel& model) {
  const BinSettings& settings = model.settings;
  const std::optional<WeightInfo>& weight = model.source.weight;
  ordered_json object;
  if (settings.algorithm == Algorithm::kSupervised) {
    object["prebin_above"] = settings.prebinAbove;
    object["prebins"] = settings.prebins;
    object["small_bins"] = settings.smallBins;
  } else {
    object["bins"] = settings.bins;
  }
  if (!model.targets.empty()) object["woe_adjust"] = settings.evidenceAdjustment;
  if (weight) {
    object["weight"] = weight->name;
    object["rounding"] = weight->rounding == IBINVariable::RoundTruncate ? "truncate" : "closest";
    AddMissing(object, "weight_user_missing", weight->missing, false);
  }
  return object;
}

ordered_json MakeSource(const BinSource& source) {
  ordered_json object = {{"name", source.name}, {"delimiter", std::string(1, source.delimiter)}};
  if (source.decimal != '.') object["decimal"] = std::string(1, source.decimal);
  if (source.thousands != '\0') object["thousands"] = std::string(1, source.thousands);
  object["na"] = source.missingTexts;
  object["records"] = source.recordCount;
  object["dropped"] = {{"missing_weight", source.dropped.missing},
                       {"zero_weight", source.dropped.zero},
                       {"weight_rounded_to_zero", source.dropped.roundedToZero}};
  return object;
}

ordered_json MakeCategory(const VariableInfo& variable, std::size_t code) {
  if (variable.kind == VariableKind::kNumericCategorical) return variable.numbers[code];
  return variable.texts[code];
}

// The event is written where there is one, chosen or not: a reader need not know which it would be.
ordered_json MakeVariables(const std::vector<VariableInfo>& variables, bool areTargets) {
  ordered_json list = ordered_json::array();
  for (const VariableInfo& variable : variables) {
    ordered_json object = {{"name", variable.name},
                           {"kind", kKindNames[static_cast<std::size_t>(variable.kind)]}};
    if (variable.isTime) object["unit"] = kTimeUnit;
    if (variable.kind == VariableKind::kNumericCategorical) {
      object["categories"] = variable.numbers;
    } else if (variable.kind == VariableKind::kStringCategorical) {
      object["categories"] = variable.texts;
    }
    if (areTargets && variable.GetCategoryCount() == 2) {
      object["event"] = MakeCategory(variable, variable.GetEvent());
    }
    AddMissing(object, "user_missing", variable.missing,
               variable.kind == VariableKind::kStringCategorical);
    list.push_back(std::move(object));
  }
  return list;
}

ordered_json MakeResult(const BinModel& model, const AttributeBins& bins) {
  ordered_json object = {{"attribute", model.GetAttribute(bins).name}};
  if (bins.target) object["target"] = model.GetTarget(bins)->name;
  object["status"] = {{"code", bins.status.GetErrorCode()},
                      {"severity", DescribeSeverity(bins.status)},
                      {"text", MCBinning::Describe(bins.status)}};
  object["cut_points"] = bins.cutPoints;
  object["counted_cut_points"] = bins.hasMovedCutPoints
                                     ? kMovedCutPoints
                                     : MarkCutPoints(bins.cutPoints, model.settings.rightClosed);
  object["bin_weights"] = bins.binWeights;
  if (bins.target) object["class_weights"] = bins.classWeights;
  if (bins.missing) {
    object["missing"]["weight"] = bins.missing->weight;
    if (bins.target) object["missing"]["class_weights"] = bins.missing->classWeights;
  }
  object["valid_weight"] = bins.validWeight;
  object["weight_with_missing"] = bins.weightWithMissing;
  object["distinct_values"] = bins.distinctValues;
  const auto addMeasure = [&](const char* key, const std::optional<double>& value) {
    if (value) object[key] = *value;
  };
  addMeasure("minimum", bins.minimum);
  addMeasure("maximum", bins.maximum);
  addMeasure("model_entropy", bins.modelEntropy);
  addMeasure("information_gain", bins.informationGain);
  if (bins.bestSplit) {
    object["best_split"] = {{"cut_point", bins.bestSplit->cutPoint},
                            {"gain", bins.bestSplit->gain},
                            {"threshold", bins.bestSplit->threshold},
                            {"meaning", DescribeBestSplit(*bins.bestSplit)}};
  }
  return object;
}

}  // namespace

std::string WriteBinFile(const BinModel& model) {
  const bool supervised = model.settings.algorithm == Algorithm::kSupervised;
  const bool hasTargets = !model.targets.empty();
  ordered_json file = {{"format", kBinFileFormat},
                       {"version", supervised || !hasTargets ? 2 : kBinFileVersion},
                       {"tool", "mcbin " MCBINNING_VERSION_STRING},
                       {"algorithm", supervised ? "supervised" : "equal-frequency"},
                       {"closed", model.settings.rightClosed ? "right" : "left"},
                       {"settings", MakeSettings(model)},
                       {"source", MakeSource(model.source)},
                       {"attributes", MakeVariables(model.attributes, false)}};
  if (hasTargets) file["targets"] = MakeVariables(model.targets, true);
  if (!model.refinements.empty()) file["refinements"] = model.refinements;
  ordered_json& results = file["results"] = ordered_json::array();
  for (const AttributeBins& bins : model.results) results.push_back(MakeResult(model, bins));
  return PrintJson(file);
}

}  // namespace MCBinModel
