#include "binmodel/model/resultselection.h"

#include <fmt/format.h>

#include "binmodel/model/refusal.h"
#include "binmodel/text/displaytext.h"

namespace MCBinModel {

namespace {

std::optional<std::size_t> SelectTarget(const BinModel& model, const std::string& fileName,
                                        const std::optional<std::string>& name) {
  if (!name && model.targets.size() <= 1) {
    return model.targets.empty() ? std::nullopt : std::optional<std::size_t>(0);
  }
  std::string names;
  for (std::size_t i = 0; i < model.targets.size(); ++i) {
    if (name && model.targets[i].name == *name) return i;
    names += (names.empty() ? "" : ", ") + QuotedText(model.targets[i].name);
  }
  if (!name) {
    throw Refusal(
        fmt::format("{}: bins for several targets; choose one with --target: {}", fileName, names));
  }
  throw Refusal(names.empty()
                    ? fmt::format("{}: these bins have no target, leave --target out", fileName)
                    : fmt::format("{}: no bins for the target {}; the targets are {}", fileName,
                                  QuotedText(*name), names));
}

}  // namespace

std::vector<std::size_t> SelectResults(const BinModel& model, const std::string& fileName,
                                       const std::optional<std::string>& target) {
  const std::optional<std::size_t> targetIndex = SelectTarget(model, fileName, target);
  std::vector<std::size_t> selected;
  for (std::size_t i = 0; i < model.results.size(); ++i) {
    if (model.results[i].target == targetIndex) selected.push_back(i);
  }
  if (selected.empty()) throw Refusal(fmt::format("{}: there are no results", fileName));
  return selected;
}

}  // namespace MCBinModel
