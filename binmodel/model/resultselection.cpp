#include "binmodel/model/resultselection.h"

#include <fmt/format.h>

#include "binmodel/model/refusal.h"
#include "binmodel/text/displaytext.h"
#include "metadata/describe.h"

namespace MCBinModel {

namespace {

std::string JoinNames(const std::vector<std::string>& quotedNames) {
  return fmt::format("{}", fmt::join(quotedNames, ", "));
}

std::optional<std::size_t> SelectTarget(const BinModel& model,
                                        const std::optional<std::string>& name,
                                        const std::string& place) {
  if (!name && model.targets.size() <= 1) {
    return model.targets.empty() ? std::nullopt : std::optional<std::size_t>(0);
  }
  std::vector<std::string> names;
  for (std::size_t i = 0; i < model.targets.size(); ++i) {
    if (name && model.targets[i].name == *name) return i;
    names.push_back(QuotedText(model.targets[i].name));
  }
  const std::string all = JoinNames(names);
  if (!name) {
    throw Refusal(RefusalCode::kSeveralTargets, {place, "", all},
                  "bins for several targets; choose one of " + all);
  }
  if (names.empty()) {
    throw Refusal(RefusalCode::kNoTargets, {place, *name, ""}, "these bins have no target");
  }
  throw Refusal(
      RefusalCode::kUnknownTarget, {place, *name, all},
      fmt::format("no bins for the target {}; the targets are {}", QuotedText(*name), all));
}

}  // namespace

std::vector<std::size_t> SelectResults(const BinModel& model,
                                       const std::optional<std::string>& target,
                                       const std::string& place) {
  const std::optional<std::size_t> targetIndex = SelectTarget(model, target, place);
  std::vector<std::size_t> selected;
  for (std::size_t i = 0; i < model.results.size(); ++i) {
    if (model.results[i].target == targetIndex) selected.push_back(i);
  }
  if (selected.empty()) {
    throw Refusal(RefusalCode::kNoResults, {place, "", ""}, "there are no results");
  }
  return selected;
}

std::vector<std::size_t> LeaveOutFailedResults(const BinModel& model,
                                               const std::vector<std::size_t>& results,
                                               std::vector<std::string>& notes,
                                               const std::string& place) {
  constexpr std::size_t kMostNamed = 10;
  std::vector<std::size_t> usable;
  std::vector<std::string> failed;
  for (const std::size_t index : results) {
    const AttributeBins& bins = model.results[index];
    if (bins.status.IsError() && bins.binWeights.empty()) {
      failed.push_back(fmt::format("{} ({})", QuotedText(model.GetAttribute(bins).name),
                                   MCBinning::Describe(bins.status)));
    } else {
      usable.push_back(index);
    }
  }
  if (failed.empty()) return usable;
  if (usable.empty()) {
    const std::string reason = MCBinning::Describe(model.results[results.front()].status);
    throw Refusal(RefusalCode::kNoBins, {place, "", reason},
                  "no attribute has bins, as their run ended in an error: " + reason);
  }
  const bool namesAll = failed.size() <= kMostNamed;
  if (!namesAll) failed.resize(kMostNamed);
  notes.push_back(fmt::format("without bins because of an error: {}{}", JoinNames(failed),
                              namesAll ? "" : " and more"));
  return usable;
}

void DropTarget(AttributeBins& bins) {
  bins.target.reset();
  bins.classWeights.clear();
  bins.modelEntropy.reset();
  bins.informationGain.reset();
  if (bins.missing) bins.missing->classWeights.clear();
}

BinModel WithoutTargets(BinModel model) {
  for (AttributeBins& bins : model.results) DropTarget(bins);
  return model;
}

}  // namespace MCBinModel
