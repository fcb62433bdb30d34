#include "cli/options/refineoptions.h"

#include <fmt/format.h>

#include <algorithm>
#include <limits>
#include <map>
#include <utility>

#include "binmodel/text/displaytext.h"
#include "binmodel/text/isotime.h"
#include "binmodel/text/number.h"
#include "cli/options/commandoptions.h"
#include "cli/options/optionlist.h"
#include "cli/terminal/usageerror.h"

namespace MCBin {

namespace {

using MCBinModel::RateTrend;

constexpr double kMostWeight = std::numeric_limits<double>::max();

const std::vector<std::pair<std::string, RateTrend>> kTrends = {
    {"increasing", RateTrend::kIncreasing},
    {"decreasing", RateTrend::kDecreasing},
    {"either", RateTrend::kEither},
    {"peak", RateTrend::kPeak},
    {"valley", RateTrend::kValley}};

std::vector<std::string> TrendNames() {
  std::vector<std::string> names;
  for (const auto& [name, trend] : kTrends) names.push_back(name);
  return names;
}

// NAME=a,b,... of an option that may be repeated; a name without a number has no cut points.
void AddCutPoints(const char* flag, const std::string& value,
                  std::map<std::string, std::vector<double>>& lists) {
  std::string_view text = value;
  const std::string name = TakeOptionName(text, flag, "NAME=a,b,...");
  std::vector<double>& cuts = lists[name];
  if (text.empty()) return;
  for (const std::string& item : SplitOptionNames(text)) {
    const MCBinModel::ParsedNumber number = MCBinModel::ParseNumber(item);
    const std::optional<double> time = MCBinModel::ParseTime(item);
    if (!time && number.kind != MCBinModel::NumberKind::kNumber) {
      const bool mayBeName = item.find('=') != std::string::npos;
      throw UsageError(
          fmt::format("{} {}: {} is neither a number nor a date{}", flag,
                      MCBinModel::QuotedText(name), MCBinModel::QuotedText(item),
                      mayBeName ? "; write a name with '=' in it in double quotes" : ""));
    }
    cuts.push_back(time.value_or(number.value));
  }
}

}  // namespace

void AddRefinement(CLI::App& command, RawRefinement& raw) {
  MCBinModel::RefineSettings& settings = raw.settings;
  const OptionGroup group(command, "Refined bins");
  AddCount(command, "--max-bins", settings.maxBins, 1, "join bins until there are no more");
  AddCount(command, "--min-bins", settings.minBins, 1, "but no fewer than these");
  AddNumber(command, "--min-share", settings.minShare, 0.0, 1.0, "SHARE",
            "of the weight that is not missing, in every bin");
  AddNumber(command, "--min-weight", settings.minWeight, 0.0, kMostWeight, "WEIGHT",
            "of every bin");
  AddNumber(command, "--min-event-weight", settings.minEventWeight, 0.0, kMostWeight, "WEIGHT",
            "of the event in every bin");
  AddNumber(command, "--min-nonevent-weight", settings.minNoneventWeight, 0.0, kMostWeight,
            "WEIGHT", "of the other class in every bin");
  AddChoice(command, "--monotonic", raw.trend, TrendNames(), "how the event's share goes");
  AddNumber(command, "--min-rate-difference", settings.minRateDifference, 0.0, 1.0, "SHARE",
            "between the event's shares of neighbours");
  AddList(command, "--breaks", raw.breaks, "NAME=CUTS",
          "the cut points a column keeps, and no others: a,b,...");
  AddList(command, "--keep", raw.keep, "NAME=CUTS", "cut points that stay: a,b,...");
  AddChoice(command, "--objective", raw.objective, {"gain", "iv"},
            "what the bins keep most of (gain); iv: information value");
  for (const CLI::Option* option : group.GetOptions()) raw.options.push_back(option);
}

std::optional<MCBinModel::RefineSettings> ParseRefinement(const RawRefinement& raw) {
  const bool isAsked = std::any_of(raw.options.begin(), raw.options.end(),
                                   [](const CLI::Option* option) { return option->count() > 0; });
  if (!isAsked) return std::nullopt;
  MCBinModel::RefineSettings settings = raw.settings;
  if (raw.objective == "iv") settings.objective = MCBinModel::RefineObjective::kInformationValue;
  for (const auto& [name, trend] : kTrends) {
    if (name == raw.trend) settings.trend = trend;
  }
  for (const std::string& text : raw.breaks) AddCutPoints("--breaks", text, settings.breaks);
  for (const std::string& text : raw.keep) AddCutPoints("--keep", text, settings.keep);
  return settings;
}

}  // namespace MCBin
