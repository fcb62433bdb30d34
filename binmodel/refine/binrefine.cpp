#include "binmodel/refine/binrefine.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <functional>
#include <optional>
#include <utility>
#include <vector>

#include "binmodel/measure/binstatistics.h"
#include "binmodel/model/refusal.h"
#include "binmodel/refine/intervaltable.h"
#include "binmodel/refine/joinsearch.h"
#include "binmodel/text/displaytext.h"
#include "binmodel/text/number.h"
#include "binmodel/text/similartexts.h"

namespace MCBinModel {

namespace {

// One thing that is asked for.
struct Demand {
  std::string words;
  std::function<void(JoinLimits&)> lift;  // makes limits that do not ask for it
};

const char* TrendName(RateTrend trend) {
  switch (trend) {
    case RateTrend::kIncreasing:
      return "an increasing event rate";
    case RateTrend::kDecreasing:
      return "a decreasing event rate";
    case RateTrend::kEither:
      return "an increasing or decreasing event rate";
    case RateTrend::kPeak:
      return "an event rate with one peak";
    default:
      return "an event rate with one valley";
  }
}

bool IsNamed(const std::map<std::string, std::vector<double>>& cuts,
             const std::optional<std::string>& attribute) {
  return attribute ? cuts.count(*attribute) > 0 : !cuts.empty();
}

// Of one attribute, or without a name of all. Bounds come before what a trend asks for.
std::vector<Demand> ListDemands(const RefineSettings& settings,
                                const std::optional<std::string>& attribute) {
  std::vector<Demand> demands;
  const auto add = [&](bool isAsked, std::string words, std::function<void(JoinLimits&)> lift) {
    if (isAsked) demands.push_back({std::move(words), std::move(lift)});
  };
  const JoinLimits none{};
  const auto member = [none](auto limit) {
    return [none, limit](JoinLimits& limits) { limits.*limit = none.*limit; };
  };
  const bool isExact = !attribute && settings.minBins > 1 && settings.minBins == settings.maxBins;
  add(isExact, fmt::format("{} bins", settings.minBins), nullptr);
  add(settings.minBins > 1 && !isExact, fmt::format("at least {} bins", settings.minBins),
      member(&JoinLimits::minBins));
  add(settings.maxBins > 0 && !isExact,
      fmt::format("at most {} bin{}", settings.maxBins, settings.maxBins == 1 ? "" : "s"),
      member(&JoinLimits::maxBins));
  add(settings.minShare > 0.0,
      fmt::format("at least {} of the weight that is not missing in every bin",
                  FormatNumber(settings.minShare)),
      member(&JoinLimits::minShare));
  add(settings.minWeight > 0.0,
      fmt::format("a weight of at least {} in every bin", FormatNumber(settings.minWeight)),
      member(&JoinLimits::minWeight));
  add(settings.minEventWeight > 0.0,
      fmt::format("events of a weight of at least {} in every bin",
                  FormatNumber(settings.minEventWeight)),
      member(&JoinLimits::minEventWeight));
  add(settings.minNoneventWeight > 0.0,
      fmt::format("non-events of a weight of at least {} in every bin",
                  FormatNumber(settings.minNoneventWeight)),
      member(&JoinLimits::minNoneventWeight));
  add(settings.objective == RefineObjective::kInformationValue && attribute,
      "both classes in every bin", member(&JoinLimits::bothClasses));
  add(settings.trend != RateTrend::kAny, TrendName(settings.trend), member(&JoinLimits::trend));
  add(settings.minRateDifference > 0.0,
      fmt::format("event rates that differ by at least {}",
                  FormatNumber(settings.minRateDifference)),
      member(&JoinLimits::minRateDifference));
  add(IsNamed(settings.breaks, attribute), "the cut points that were given",
      [](JoinLimits& limits) { limits.onlyCuts.reset(); });
  add(IsNamed(settings.keep, attribute), "the cut points to be kept",
      member(&JoinLimits::keptCuts));
  return demands;
}

void CheckTwoClasses(const VariableInfo* target, const RefineSettings& settings) {
  if (!settings.NeedTwoClasses() || (target != nullptr && target->GetCategoryCount() == 2)) return;
  const std::string why = target == nullptr ? "these bins have none"
                                            : fmt::format("{} has {}", QuotedText(target->name),
                                                          target->GetCategoryCount());
  throw Refusal(
      RefusalCode::kRefineNeedsTwoClasses, {"", target ? target->name : "", ""},
      "event rates, event weights and information value need a target with two classes; " + why);
}

// The cut points of a list, ascending.
std::vector<double> TakeCuts(const std::map<std::string, std::vector<double>>& lists,
                             const VariableInfo& attribute, const AttributeBins& bins) {
  const auto list = lists.find(attribute.name);
  if (list == lists.end()) return {};
  std::vector<double> cuts = list->second;
  std::sort(cuts.begin(), cuts.end());
  for (const double cut : cuts) {
    const std::vector<double>& present = bins.cutPoints;
    const auto above = std::lower_bound(present.begin(), present.end(), cut);
    if (above != present.end() && *above == cut) continue;
    std::vector<std::string> nearest;
    if (above != present.begin()) nearest.push_back(attribute.FormatValue(above[-1]));
    if (above != present.end()) nearest.push_back(attribute.FormatValue(*above));
    throw Refusal(
        RefusalCode::kNoSuchCutPoint, {"", attribute.name, attribute.FormatValue(cut)},
        fmt::format(
            "{} has no cut point {}; {}", QuotedText(attribute.name), attribute.FormatValue(cut),
            nearest.empty() ? "it has none"
                            : fmt::format("nearest to it {} {}", nearest.size() == 1 ? "is" : "are",
                                          fmt::join(nearest, " and "))));
  }
  return cuts;
}

JoinLimits MakeLimits(const RefineSettings& settings, const VariableInfo& attribute,
                      const AttributeBins& bins) {
  JoinLimits limits;
  limits.minBins = static_cast<std::size_t>(settings.minBins);
  if (settings.maxBins > 0) limits.maxBins = static_cast<std::size_t>(settings.maxBins);
  limits.minShare = settings.minShare;
  limits.minWeight = settings.minWeight;
  limits.minEventWeight = settings.minEventWeight;
  limits.minNoneventWeight = settings.minNoneventWeight;
  limits.trend = settings.trend;
  limits.minRateDifference = settings.minRateDifference;
  limits.bothClasses = settings.objective == RefineObjective::kInformationValue;
  if (IsNamed(settings.breaks, attribute.name)) {
    limits.onlyCuts = TakeCuts(settings.breaks, attribute, bins);
  }
  limits.keptCuts = TakeCuts(settings.keep, attribute, bins);
  return limits;
}

std::optional<Joining> FindJoining(const AttributeBins& bins, const JoinMeasure& measure,
                                   const JoinLimits& limits) {
  return FindBestJoining(IntervalTable(bins, measure, limits), limits);
}

// Why there is no joining: demands that cannot be met together, while any of them left out can.
std::string DescribeConflict(const AttributeBins& bins, const JoinMeasure& measure,
                             JoinLimits limits, const std::vector<Demand>& demands) {
  std::vector<std::string> conflict;
  for (const Demand& demand : demands) {
    JoinLimits without = limits;
    demand.lift(without);
    if (FindJoining(bins, measure, without)) {
      conflict.push_back(demand.words);
    } else {
      limits = without;
    }
  }
  return fmt::format("{}", fmt::join(conflict, " and "));
}

// The sums of the rows first .. end - 1.
std::vector<double> AddRows(const std::vector<std::vector<double>>& rows, std::size_t first,
                            std::size_t end) {
  std::vector<double> sums = rows[first];
  for (std::size_t row = first + 1; row < end; ++row) {
    std::transform(sums.begin(), sums.end(), rows[row].begin(), sums.begin(), std::plus<>());
  }
  return sums;
}

AttributeBins JoinBins(const AttributeBins& bins, const std::vector<std::size_t>& ends) {
  if (ends.size() == bins.binWeights.size()) return bins;
  AttributeBins joined = bins;
  joined.cutPoints.clear();
  joined.binWeights.clear();
  joined.classWeights.clear();
  std::size_t first = 0;
  for (const std::size_t end : ends) {
    if (first > 0) joined.cutPoints.push_back(bins.cutPoints[first - 1]);
    double weight = 0.0;
    for (std::size_t bin = first; bin < end; ++bin) weight += bins.binWeights[bin];
    joined.binWeights.push_back(weight);
    if (bins.target) joined.classWeights.push_back(AddRows(bins.classWeights, first, end));
    first = end;
  }
  if (bins.modelEntropy) joined.modelEntropy = ModelEntropy(joined);
  if (bins.informationGain) joined.informationGain = InformationGain(joined);
  return joined;
}

bool HasWeight(const AttributeBins& bins) {
  return std::any_of(bins.binWeights.begin(), bins.binWeights.end(),
                     [](double weight) { return weight > 0.0; });
}

// What is wrong with each result that cannot be refined, in one refusal.
class Conflicts {
 public:
  void Add(const Refusal& refusal) {
    if (!fFirst) fFirst = refusal;
    // What is wrong with a target is wrong for each of its attributes.
    if (refusal.GetReason() == fLastReason) return;
    fLastReason = refusal.GetReason();
    if (++fCount <= kMostTold) fReasons.push_back(fLastReason);
  }

  void ThrowIfAny() const {
    if (!fFirst) return;
    std::string reason = fmt::format("{}", fmt::join(fReasons, "; "));
    if (fCount > kMostTold) reason += fmt::format("; and {} more", fCount - kMostTold);
    throw Refusal(fFirst->GetCode(),
                  {fFirst->GetPlace(), fFirst->GetSubject(), fFirst->GetDetail()}, reason);
  }

 private:
  static constexpr std::size_t kMostTold = 10;
  std::optional<Refusal> fFirst;
  std::vector<std::string> fReasons;
  std::string fLastReason;
  std::size_t fCount = 0;
};

std::vector<std::string> NamesOf(const std::vector<VariableInfo>& variables) {
  std::vector<std::string> names;
  for (const VariableInfo& variable : variables) names.push_back(variable.name);
  return names;
}

// Which class the demands are about, as it may be another one when the bins are looked at.
std::string DescribeEvents(const std::vector<VariableInfo>& targets,
                           const RefineSettings& settings) {
  const bool needsEvent = settings.trend != RateTrend::kAny || settings.minRateDifference > 0.0 ||
                          settings.minEventWeight > 0.0 || settings.minNoneventWeight > 0.0;
  if (!needsEvent) return {};
  std::vector<std::string> events;
  for (const VariableInfo& target : targets) {
    if (target.GetCategoryCount() != 2) continue;
    events.push_back(QuotedText(target.GetLabel(target.GetEvent())) +
                     (targets.size() > 1 ? " of " + QuotedText(target.name) : ""));
  }
  return events.empty() ? "" : fmt::format("; event {}", fmt::join(events, ", "));
}

bool IsChosen(const RefineSettings& settings, const std::string& attribute) {
  const std::vector<std::string>& chosen = settings.attributes;
  return chosen.empty() || std::find(chosen.begin(), chosen.end(), attribute) != chosen.end();
}

void CheckAttributes(const std::vector<std::string>& attributes, const RefineSettings& settings) {
  std::vector<std::string> names = settings.attributes;
  std::vector<std::string> listed;
  for (const auto* lists : {&settings.breaks, &settings.keep}) {
    for (const auto& [name, cuts] : *lists) listed.push_back(name);
  }
  names.insert(names.end(), listed.begin(), listed.end());
  for (const std::string& name : names) {
    if (std::find(attributes.begin(), attributes.end(), name) != attributes.end()) continue;
    std::vector<std::string> near = FindSimilar(attributes, name);
    for (std::string& similar : near) similar = QuotedText(similar);
    throw Refusal(
        RefusalCode::kUnknownAttribute, {"", name, ""},
        fmt::format("there are no bins of an attribute {}{}", QuotedText(name),
                    near.empty() ? "" : fmt::format("; did you mean {}?", fmt::join(near, ", "))));
  }
  for (const std::string& name : listed) {
    if (IsChosen(settings, name)) continue;
    throw Refusal(RefusalCode::kUnknownAttribute, {"", name, ""},
                  fmt::format("cut points of {} are given, but it is not among the attributes to "
                              "be refined",
                              QuotedText(name)));
  }
}

}  // namespace

AttributeBins RefineBins(const BinModel& model, std::size_t result,
                         const RefineSettings& settings) {
  const AttributeBins& bins = model.results[result];
  const std::string& attribute = model.GetAttribute(bins).name;
  const VariableInfo* const target = model.GetTarget(bins);
  CheckTwoClasses(target, settings);
  if (!HasWeight(bins)) return bins;
  const std::size_t binCount = bins.binWeights.size();
  if (binCount > kMostBinsToJoin) {
    throw Refusal(RefusalCode::kTooManyBins, {"", attribute, ""},
                  fmt::format("{} has {} bins; at most {} can be refined", QuotedText(attribute),
                              binCount, kMostBinsToJoin));
  }
  const JoinMeasure measure{settings.objective,
                            settings.NeedTwoClasses() ? EventCategory(*target) : 0};
  const JoinLimits limits = MakeLimits(settings, model.GetAttribute(bins), bins);
  if (const auto joining = FindJoining(bins, measure, limits)) return JoinBins(bins, joining->ends);
  const std::string conflict =
      DescribeConflict(bins, measure, limits, ListDemands(settings, attribute));
  throw Refusal(
      RefusalCode::kNoSuchBins, {"", attribute, conflict},
      fmt::format("the {} bin{} of {}{} cannot be joined to have {}", binCount,
                  binCount == 1 ? "" : "s", QuotedText(attribute),
                  model.targets.size() > 1 ? " by " + QuotedText(target->name) : "", conflict));
}

BinModel RefineModel(const BinModel& model, const RefineSettings& settings,
                     const std::function<bool()>& cancel) {
  CheckAttributes(NamesOf(model.attributes), settings);
  BinModel refined = model;
  Conflicts conflicts;
  for (std::size_t result = 0; result < model.results.size(); ++result) {
    const std::string& name = model.GetAttribute(model.results[result]).name;
    if (!IsChosen(settings, name)) continue;
    if (cancel && cancel()) {
      throw Refusal(RefusalCode::kCancelled, {}, "the refinement was cancelled");
    }
    try {
      refined.results[result] = RefineBins(model, result, settings);
    } catch (const Refusal& refusal) {
      conflicts.Add(refusal);
    }
  }
  conflicts.ThrowIfAny();
  refined.refinements.push_back(DescribeRefinement(settings) +
                                DescribeEvents(model.targets, settings));
  return refined;
}

void CheckRefinement(const std::vector<VariableInfo>& attributes,
                     const std::vector<VariableInfo>& targets, const RefineSettings& settings) {
  CheckAttributes(NamesOf(attributes), settings);
  if (targets.empty()) CheckTwoClasses(nullptr, settings);
  for (const VariableInfo& target : targets) CheckTwoClasses(&target, settings);
}

std::string DescribeRefinement(const RefineSettings& settings) {
  std::vector<std::string> words;
  for (Demand& demand : ListDemands(settings, std::nullopt))
    words.push_back(std::move(demand.words));
  std::string text = fmt::format(
      "{}{}the most information {}", fmt::join(words, ", "), words.empty() ? "" : ", and then ",
      settings.objective == RefineObjective::kInformationGain ? "gain" : "value");
  if (settings.attributes.empty()) return text;
  constexpr std::size_t kMostNamed = 5;
  std::vector<std::string> names;
  for (const std::string& name : settings.attributes) {
    if (names.size() < kMostNamed) names.push_back(QuotedText(name));
  }
  text += fmt::format("; attributes {}", fmt::join(names, ", "));
  const std::size_t unnamed = settings.attributes.size() - names.size();
  return unnamed == 0 ? text : fmt::format("{} and {} more", text, unnamed);
}

}  // namespace MCBinModel
