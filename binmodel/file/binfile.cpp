#include "binmodel/file/binfile.h"

#include <cfloat>

#include "binmodel/file/jsonwriter.h"
#include "binmodel/model/statustext.h"

namespace MCBinModel {

namespace {

// Values as texts of a variable of texts, as numbers of any other.
void WriteMissing(JsonWriter& json, const char* key, const MissingDefinition& missing, bool texts) {
  if (missing.IsEmpty()) return;
  json.Key(key);
  json.BeginObject();
  json.Key("values");
  if (texts) {
    json.Value(missing.texts);
  } else {
    json.Value(missing.numbers);
  }
  if (missing.interval) {
    json.Key("interval");
    json.BeginObject();
    if (missing.interval->low != -DBL_MAX) json.Member("low", missing.interval->low);
    if (missing.interval->high != DBL_MAX) json.Member("high", missing.interval->high);
    json.EndObject();
  }
  json.EndObject();
}

void WriteSettings(JsonWriter& json, const BinSettings& settings,
                   const std::optional<WeightInfo>& weight) {
  json.Key("settings");
  json.BeginObject();
  if (settings.algorithm == Algorithm::kSupervised) {
    json.Member("prebin_above", settings.prebinAbove);
    json.Member("prebins", settings.prebins);
    json.Member("small_bins", settings.smallBins);
  } else {
    json.Member("bins", settings.bins);
  }
  if (weight) {
    json.Member("weight", weight->name);
    json.Member("rounding",
                weight->rounding == IBINVariable::RoundTruncate ? "truncate" : "closest");
    WriteMissing(json, "weight_user_missing", weight->missing, false);
  }
  json.EndObject();
}

void WriteSource(JsonWriter& json, const BinModel& model) {
  json.Key("source");
  json.BeginObject();
  json.Member("name", model.source.name);
  json.Member("delimiter", std::string(1, model.source.delimiter));
  json.Member("na", model.source.missingTexts);
  json.Member("records", model.source.recordCount);
  json.Key("dropped");
  json.BeginObject();
  json.Member("missing_weight", model.source.dropped.missing);
  json.Member("zero_weight", model.source.dropped.zero);
  json.Member("weight_rounded_to_zero", model.source.dropped.roundedToZero);
  json.EndObject();
  json.EndObject();
}

void WriteVariables(JsonWriter& json, const char* key, const std::vector<VariableInfo>& variables) {
  json.Key(key);
  json.BeginArray();
  for (const VariableInfo& variable : variables) {
    json.BeginObject();
    json.Member("name", variable.name);
    json.Member("kind", kKindNames[static_cast<std::size_t>(variable.kind)]);
    if (variable.kind == VariableKind::kNumericCategorical) {
      json.Member("categories", variable.numbers);
    } else if (variable.kind == VariableKind::kStringCategorical) {
      json.Member("categories", variable.texts);
    }
    WriteMissing(json, "user_missing", variable.missing,
                 variable.kind == VariableKind::kStringCategorical);
    json.EndObject();
  }
  json.EndArray();
}

void WriteOptional(JsonWriter& json, const char* key, const std::optional<double>& value) {
  if (value) json.Member(key, *value);
}

void WriteResult(JsonWriter& json, const BinModel& model, const AttributeBins& bins) {
  json.BeginObject();
  json.Member("attribute", model.GetAttribute(bins).name);
  if (bins.target) json.Member("target", model.GetTarget(bins)->name);
  json.Key("status");
  json.BeginObject();
  json.Member("code", bins.status.GetErrorCode());
  json.Member("severity", DescribeSeverity(bins.status));
  json.Member("text", DescribeStatus(bins.status));
  json.EndObject();
  json.Member("cut_points", bins.cutPoints);
  json.Member("bin_weights", bins.binWeights);
  if (bins.target) {
    json.Key("class_weights");
    json.BeginArray();
    for (const std::vector<double>& weights : bins.classWeights) json.Value(weights);
    json.EndArray();
  }
  json.Member("valid_weight", bins.validWeight);
  json.Member("weight_with_missing", bins.weightWithMissing);
  json.Member("distinct_values", bins.distinctValues);
  WriteOptional(json, "minimum", bins.minimum);
  WriteOptional(json, "maximum", bins.maximum);
  WriteOptional(json, "model_entropy", bins.modelEntropy);
  WriteOptional(json, "information_gain", bins.informationGain);
  json.EndObject();
}

}  // namespace

std::string WriteBinFile(const BinModel& model) {
  const bool supervised = model.settings.algorithm == Algorithm::kSupervised;
  JsonWriter json;
  json.BeginObject();
  json.Member("format", kBinFileFormat);
  json.Member("version", kBinFileVersion);
  json.Member("tool", "mcbin " MCBINNING_VERSION);
  json.Member("algorithm", supervised ? "supervised" : "equal-frequency");
  json.Member("closed", model.settings.rightClosed ? "right" : "left");
  WriteSettings(json, model.settings, model.source.weight);
  WriteSource(json, model);
  WriteVariables(json, "attributes", model.attributes);
  if (supervised) WriteVariables(json, "targets", model.targets);
  json.Key("results");
  json.BeginArray();
  for (const AttributeBins& bins : model.results) WriteResult(json, model, bins);
  json.EndArray();
  json.EndObject();
  return json.GetText();
}

}  // namespace MCBinModel
