#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cfloat>
#include <climits>
#include <cmath>
#include <cstring>
#include <fstream>
#include <map>
#include <numeric>
#include <set>
#include <utility>

#include "binmodel/file/binfile.h"
#include "binmodel/file/cutpointmark.h"
#include "binmodel/file/jsontree.h"
#include "binmodel/model/refusal.h"
#include "binmodel/text/displaytext.h"
#include "binmodel/text/number.h"

namespace MCBinModel {

namespace {

constexpr int kTargetsVersion = 3;  // the first with targets of equal-frequency bins

// The version.
int CheckFormat(const JsonNode& file) {
  const auto format = file.FindMember("format");
  if (!format || format->GetText() != kBinFileFormat) {
    file.Refuse("this is no bin file, its member 'format' should be 'mcbin-bins'");
  }
  const JsonNode version = file.GetMember("version");
  const int number = version.GetInteger(0, INT_MAX);
  if (number < 1 || number > kBinFileVersion) {
    throw Refusal(RefusalCode::kUnknownVersion, {version.GetPlace(), "", std::to_string(number)},
                  fmt::format("version {} of the format is unknown to this program, it reads "
                              "versions 1 to {}; use the program that wrote the file",
                              number, kBinFileVersion));
  }
  return number;
}

// Names of variables: not empty, and each once. `seen` gains the name.
std::string TakeName(const JsonNode& node, std::set<std::string>& seen) {
  std::string name = node.GetText();
  if (name.empty()) node.Refuse("the name of a column cannot be empty");
  if (!seen.insert(name).second) {
    node.Refuse(fmt::format("the variable {} appears twice", QuotedText(name)));
  }
  return name;
}

MissingDefinition ReadMissing(const JsonNode& node, bool texts) {
  MissingDefinition missing;
  const JsonNode values = node.GetMember("values");
  if (texts) {
    missing.texts = values.GetTexts();
  } else {
    missing.numbers = values.GetNumbers();
  }
  const auto interval = node.FindMember("interval");
  if (!interval) return missing;
  if (texts) interval->Refuse("a variable of texts has no interval");
  const auto low = interval->FindMember("low");
  const auto high = interval->FindMember("high");
  missing.interval = {low ? low->GetNumber() : -DBL_MAX, high ? high->GetNumber() : DBL_MAX};
  if (missing.interval->low > missing.interval->high) {
    interval->Refuse("'low' is above 'high'");
  }
  return missing;
}

template <typename Category>
std::vector<Category> CheckCategories(const JsonNode& node, std::vector<Category> categories) {
  std::set<Category> seen;
  for (std::size_t code = 0; code < categories.size(); ++code) {
    if (seen.insert(categories[code]).second) continue;
    node.GetElement(code).Refuse("this category appears twice");
  }
  if (categories.size() > kMostCategories) {
    node.Refuse(fmt::format("{} categories; a variable has at most {}", categories.size(),
                            kMostCategories));
  }
  return categories;
}

VariableInfo ReadVariable(const JsonNode& node, std::set<std::string>& names) {
  VariableInfo variable;
  variable.name = TakeName(node.GetMember("name"), names);
  variable.kind = static_cast<VariableKind>(
      node.GetMember("kind").GetChoice({kKindNames.begin(), kKindNames.end()}));
  const bool texts = variable.kind == VariableKind::kStringCategorical;
  if (const auto unit = node.FindMember("unit")) {
    unit->GetChoice({kTimeUnit});
    if (variable.IsCategorical()) unit->Refuse("categories have no unit");
    variable.isTime = true;
  }
  if (variable.IsCategorical()) {
    const JsonNode categories = node.GetMember("categories");
    if (texts) {
      variable.texts = CheckCategories(categories, categories.GetTexts());
    } else {
      variable.numbers = CheckCategories(categories, categories.GetNumbers());
    }
  }
  const auto missing = node.FindMember("user_missing");
  if (missing) variable.missing = ReadMissing(*missing, texts);
  return variable;
}

std::vector<VariableInfo> ReadVariables(const JsonNode& list, std::set<std::string>& names) {
  std::vector<VariableInfo> variables;
  for (const JsonNode& node : list.GetElements()) variables.push_back(ReadVariable(node, names));
  if (variables.empty()) list.Refuse("at least one variable is needed");
  return variables;
}

std::size_t ReadEvent(const JsonNode& node, const VariableInfo& target) {
  std::size_t code = 0;
  if (target.kind == VariableKind::kNumericCategorical) {
    const auto& numbers = target.numbers;
    code = static_cast<std::size_t>(std::find(numbers.begin(), numbers.end(), node.GetNumber()) -
                                    numbers.begin());
  } else {
    const auto& texts = target.texts;
    code = static_cast<std::size_t>(std::find(texts.begin(), texts.end(), node.GetText()) -
                                    texts.begin());
  }
  if (code == target.GetCategoryCount()) node.Refuse("the event is none of the categories");
  return code;
}

std::vector<VariableInfo> ReadTargets(const JsonNode& list, std::set<std::string>& names) {
  std::vector<VariableInfo> targets = ReadVariables(list, names);
  for (std::size_t i = 0; i < targets.size(); ++i) {
    const JsonNode node = list.GetElement(i);
    if (!targets[i].IsCategorical()) node.Refuse("a target has categories, it is not continuous");
    if (targets[i].GetCategoryCount() < 2) node.Refuse("a target has at least two categories");
    if (const auto event = node.FindMember("event"))
      targets[i].event = ReadEvent(*event, targets[i]);
  }
  return targets;
}

BinSettings ReadSettings(const JsonNode& node, Algorithm algorithm) {
  BinSettings settings;
  settings.algorithm = algorithm;
  if (settings.algorithm == Algorithm::kSupervised) {
    const JsonNode smallBins = node.GetMember("small_bins");
    settings.prebinAbove = node.GetMember("prebin_above").GetInteger(0, INT_MAX);
    settings.prebins = node.GetMember("prebins").GetInteger(2, INT_MAX);
    settings.smallBins = smallBins.GetWeight();
    if (settings.smallBins > 1.0) smallBins.Refuse("a share from 0 to 1 expected");
  } else {
    settings.bins = node.GetMember("bins").GetInteger(2, INT_MAX);
  }
  if (const auto adjust = node.FindMember("woe_adjust")) {
    settings.evidenceAdjustment = adjust->GetWeight();
    if (settings.evidenceAdjustment > kLargestEvidenceAdjustment) {
      adjust->Refuse(
          fmt::format("a weight from 0 to {} expected", FormatNumber(kLargestEvidenceAdjustment)));
    }
  }
  return settings;
}

std::optional<WeightInfo> ReadWeight(const JsonNode& settings) {
  const auto name = settings.FindMember("weight");
  if (!name) return std::nullopt;
  WeightInfo weight;
  weight.name = name->GetText();
  if (weight.name.empty()) name->Refuse("the name of a column cannot be empty");
  const bool truncate = settings.GetMember("rounding").GetChoice({"closest", "truncate"}) == 1;
  weight.rounding = truncate ? IBINVariable::RoundTruncate : IBINVariable::RoundClosest;
  const auto missing = settings.FindMember("weight_user_missing");
  if (missing) weight.missing = ReadMissing(*missing, false);
  return weight;
}

void ReadNumberMarks(const JsonNode& node, BinSource& source) {
  if (const auto decimal = node.FindMember("decimal")) {
    source.decimal = decimal->GetChoice({".", ","}) == 0 ? '.' : ',';
  }
  const auto thousands = node.FindMember("thousands");
  if (!thousands) return;
  constexpr std::string_view kMarks(".,' _");
  source.thousands = kMarks[thousands->GetChoice({".", ",", "'", " ", "_"})];
  if (source.thousands == source.decimal) thousands->Refuse("this is the decimal mark, too");
}

void ReadSource(const JsonNode& node, BinModel& model) {
  model.source.name = node.GetMember("name").GetText();
  const JsonNode delimiter = node.GetMember("delimiter");
  const std::string character = delimiter.GetText();
  const bool oneAscii =
      character.size() == 1 && static_cast<unsigned char>(character.front()) < 0x80;
  if (!oneAscii || std::string_view("\"\r\n\0", 4).find(character) != std::string_view::npos) {
    delimiter.Refuse("one ASCII character expected, such as ';'");
  }
  model.source.delimiter = character.front();
  ReadNumberMarks(node, model.source);
  model.source.missingTexts = node.GetMember("na").GetTexts();
  model.source.recordCount = node.GetMember("records").GetCount();
  const JsonNode dropped = node.GetMember("dropped");
  model.source.dropped = {dropped.GetMember("missing_weight").GetCount(),
                          dropped.GetMember("zero_weight").GetCount(),
                          dropped.GetMember("weight_rounded_to_zero").GetCount()};
  std::uint64_t left = model.source.recordCount;
  for (const std::uint64_t count : {model.source.dropped.missing, model.source.dropped.zero,
                                    model.source.dropped.roundedToZero}) {
    if (count > left) dropped.Refuse("more records are dropped than 'records' says were read");
    left -= count;
  }
}

MCBinning::MCStatus ReadStatus(const JsonNode& node) {
  const int code = node.GetMember("code").GetInteger(0, INT_MAX);
  const std::size_t severity = node.GetMember("severity").GetChoice({"ok", "warning", "error"});
  node.GetMember("text").GetText();
  const bool ok = severity == 0;
  if (ok != (code == 0)) node.Refuse("code 0 belongs to the severity 'ok', and no other does");
  return ok ? MCBinning::MCStatus() : MCBinning::MCStatus(code, severity == 1);
}

void CheckAscending(const JsonNode& node, const std::vector<double>& cutPoints) {
  const auto descent =
      std::adjacent_find(cutPoints.begin(), cutPoints.end(), std::greater_equal<>());
  if (descent == cutPoints.end()) return;
  node.GetElement(static_cast<std::size_t>(descent - cutPoints.begin()) + 1)
      .Refuse(fmt::format("cut points ascend, but {} comes after {}", FormatNumber(descent[1]),
                          FormatNumber(descent[0])));
}

constexpr double kRelativeError = 1e-9;

// Weights are whole numbers; from 2^53 on their sums depend on the order.
void CheckSum(const JsonNode& node, const std::vector<double>& weights, double sum,
              const char* whatSum) {
  const double found = std::accumulate(weights.begin(), weights.end(), 0.0);
  if (std::abs(found - sum) <= kRelativeError * sum) return;
  node.Refuse(fmt::format("the weights sum up to {}, but {} is {}", FormatNumber(found), whatSum,
                          FormatNumber(sum)));
}

// What a number of weights by category has to be, and what they sum up to.
void CheckClasses(const JsonNode& node, const std::vector<double>& weights,
                  const VariableInfo& target, double sum, const char* whatSum) {
  if (weights.size() != target.GetCategoryCount()) {
    node.Refuse(fmt::format("{} weights, but {} has {} categories", weights.size(),
                            QuotedText(target.name), target.GetCategoryCount()));
  }
  CheckSum(node, weights, sum, whatSum);
}

void ReadBins(const JsonNode& node, const VariableInfo* target, AttributeBins& bins) {
  const JsonNode cutPoints = node.GetMember("cut_points");
  const JsonNode weights = node.GetMember("bin_weights");
  bins.cutPoints = cutPoints.GetNumbers();
  CheckAscending(cutPoints, bins.cutPoints);
  bins.binWeights = weights.GetWeights();
  const std::size_t binCount = bins.binWeights.size();
  const bool noBins = bins.binWeights.empty() && bins.cutPoints.empty();
  if (!noBins && binCount != bins.cutPoints.size() + 1) {
    weights.Refuse(fmt::format("{} cut points make {} bins, but there are {} weights",
                               bins.cutPoints.size(), bins.cutPoints.size() + 1, binCount));
  }
  if (target == nullptr) {
    // An equal-frequency midpoint that rounded onto the smallest or largest value took the
    // weight of its bin with it.
    const double sum = std::accumulate(bins.binWeights.begin(), bins.binWeights.end(), 0.0);
    if (sum > bins.validWeight)
      CheckSum(weights, bins.binWeights, bins.validWeight, "'valid_weight'");
    return;
  }
  if (!noBins) CheckSum(weights, bins.binWeights, bins.validWeight, "'valid_weight'");

  const JsonNode classes = node.GetMember("class_weights");
  for (const JsonNode& row : classes.GetElements()) bins.classWeights.push_back(row.GetWeights());
  if (bins.classWeights.size() != binCount) {
    classes.Refuse(fmt::format("{} lists for {} bins", bins.classWeights.size(), binCount));
  }
  for (std::size_t bin = 0; bin < binCount; ++bin) {
    CheckClasses(classes.GetElement(bin), bins.classWeights[bin], *target, bins.binWeights[bin],
                 "the weight of the bin");
  }
}

MissingBin ReadMissingBin(const JsonNode& node, const VariableInfo* target, double mostWeight) {
  MissingBin missing;
  const JsonNode weight = node.GetMember("weight");
  missing.weight = weight.GetWeight();
  if (missing.weight > mostWeight * (1.0 + kRelativeError)) {
    weight.Refuse("more than 'weight_with_missing' has beside 'valid_weight'");
  }
  if (target == nullptr) return missing;
  const JsonNode classes = node.GetMember("class_weights");
  missing.classWeights = classes.GetWeights();
  CheckClasses(classes, missing.classWeights, *target, missing.weight,
               "the weight of the missing cases");
  return missing;
}

std::optional<double> ReadOptional(const JsonNode& node, const char* key) {
  const auto member = node.FindMember(key);
  if (!member) return std::nullopt;
  return member->GetNumber();
}

std::optional<double> ReadMeasure(const JsonNode& node, const char* key) {
  const auto member = node.FindMember(key);
  if (!member) return std::nullopt;
  return member->GetWeight();
}

class ResultReader {
 public:
  explicit ResultReader(const BinModel& model) : fModel(model) {
    for (std::size_t i = 0; i < model.attributes.size(); ++i) {
      fAttributes.emplace(model.attributes[i].name, i);
    }
    for (std::size_t i = 0; i < model.targets.size(); ++i) {
      fTargets.emplace(model.targets[i].name, i);
    }
  }

  AttributeBins Read(const JsonNode& node) {
    AttributeBins bins{};
    bins.attribute = Find(node.GetMember("attribute"), fAttributes, "attribute");
    if (!fModel.targets.empty()) {
      bins.target = Find(node.GetMember("target"), fTargets, "target");
    }
    if (!fSeen.insert({bins.attribute, bins.target}).second) {
      node.Refuse("a result for this attribute came before");
    }
    bins.status = ReadStatus(node.GetMember("status"));
    bins.validWeight = node.GetMember("valid_weight").GetWeight();
    bins.weightWithMissing = node.GetMember("weight_with_missing").GetWeight();
    if (bins.validWeight > bins.weightWithMissing) {
      node.Refuse("'valid_weight' is above 'weight_with_missing'");
    }
    ReadBins(node, fModel.GetTarget(bins), bins);
    if (const auto mark = node.FindMember("counted_cut_points")) {
      bins.hasMovedCutPoints =
          mark->GetText() != MarkCutPoints(bins.cutPoints, fModel.settings.rightClosed);
    }
    if (const auto missing = node.FindMember("missing")) {
      bins.missing = ReadMissingBin(*missing, fModel.GetTarget(bins),
                                    bins.weightWithMissing - bins.validWeight);
    }
    bins.distinctValues = node.GetMember("distinct_values").GetCount();
    bins.minimum = ReadOptional(node, "minimum");
    bins.maximum = ReadOptional(node, "maximum");
    if (bins.minimum && bins.maximum && *bins.minimum > *bins.maximum) {
      node.Refuse("'minimum' is above 'maximum'");
    }
    bins.modelEntropy = ReadMeasure(node, "model_entropy");
    bins.informationGain = ReadMeasure(node, "information_gain");
    if (const auto split = node.FindMember("best_split")) {
      bins.bestSplit = {split->GetMember("cut_point").GetNumber(),
                        split->GetMember("gain").GetWeight(),
                        split->GetMember("threshold").GetNumber()};
    }
    return bins;
  }

 private:
  using Indexes = std::map<std::string, std::size_t>;

  static std::size_t Find(const JsonNode& node, const Indexes& indexes, const char* what) {
    const auto found = indexes.find(node.GetText());
    if (found == indexes.end()) {
      node.Refuse(fmt::format("there is no {} {}", what, QuotedText(node.GetText())));
    }
    return found->second;
  }

  const BinModel& fModel;
  Indexes fAttributes;
  Indexes fTargets;
  std::set<std::pair<std::size_t, std::optional<std::size_t>>> fSeen;
};

}  // namespace

BinModel ParseBinFile(std::string_view text, const std::string& name) {
  const nlohmann::json root = ParseJson(text, name);
  const JsonNode file(root, name);
  const int version = CheckFormat(file);

  BinModel model;
  const bool supervised =
      file.GetMember("algorithm").GetChoice({"supervised", "equal-frequency"}) == 0;
  model.settings = ReadSettings(file.GetMember("settings"),
                                supervised ? Algorithm::kSupervised : Algorithm::kEqualFrequency);
  model.settings.rightClosed = file.GetMember("closed").GetChoice({"right", "left"}) == 0;
  model.source.weight = ReadWeight(file.GetMember("settings"));
  ReadSource(file.GetMember("source"), model);
  std::set<std::string> names;
  if (model.source.weight) names.insert(model.source.weight->name);
  model.attributes = ReadVariables(file.GetMember("attributes"), names);
  const bool hasTargets = supervised || version >= kTargetsVersion;
  if (const auto targets = file.FindMember("targets"); targets && !hasTargets) {
    targets->Refuse(fmt::format("equal-frequency bins have targets from version {} on, this is {}",
                                kTargetsVersion, version));
  }
  if (hasTargets) model.targets = ReadTargets(file.GetMember("targets"), names);
  const auto refinements = file.FindMember("refinements");
  if (refinements) model.refinements = refinements->GetTexts();
  ResultReader results(model);
  for (const JsonNode& node : file.GetMember("results").GetElements()) {
    model.results.push_back(results.Read(node));
  }
  return model;
}

BinModel ReadBinFile(const std::string& path) {
  const std::string name = PrintableText(path);
  errno = 0;
  std::ifstream file(path, std::ios::binary);
  std::string text;
  std::array<char, std::size_t{1} << 16> chunk{};
  do {
    file.read(chunk.data(), chunk.size());
    text.append(chunk.data(), static_cast<std::size_t>(file.gcount()));
  } while (file);
  if (!file.is_open() || file.bad()) {
    const std::string why = std::strerror(errno);
    throw Refusal(RefusalCode::kUnreadable, {name, "", why}, "cannot read it: " + why);
  }
  return ParseBinFile(text, name);
}

}  // namespace MCBinModel
