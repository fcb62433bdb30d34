#include "cli/commands/refinement.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <cstddef>
#include <string>
#include <vector>

#include "binmodel/refine/binrefine.h"
#include "binmodel/text/displaytext.h"
#include "cli/terminal/notes.h"
#include "io/interrupt.h"

namespace MCBin {

namespace {

std::string NameOf(const MCBinModel::BinModel& model, const MCBinModel::AttributeBins& bins) {
  const std::string name = MCBinModel::QuotedText(model.GetAttribute(bins).name);
  if (model.targets.size() < 2) return name;
  return name + " by " + MCBinModel::QuotedText(model.GetTarget(bins)->name);
}

void PrintSingleBins(const MCBinModel::BinModel& model, const MCBinModel::BinModel& refined,
                     const MCBinModel::RefineSettings& settings) {
  constexpr std::size_t kMostNamed = 10;
  if (settings.maxBins == 1) return;
  std::vector<std::string> names;
  for (std::size_t result = 0; result < refined.results.size(); ++result) {
    const MCBinModel::AttributeBins& bins = refined.results[result];
    const bool isSingle =
        bins.binWeights.size() == 1 && model.results[result].binWeights.size() > 1;
    const bool isAsked = settings.breaks.count(refined.GetAttribute(bins).name) > 0;
    if (isSingle && !isAsked) names.push_back(NameOf(refined, bins));
  }
  if (names.empty()) return;
  const bool namesAll = names.size() <= kMostNamed;
  if (!namesAll) names.resize(kMostNamed);
  PrintNote(fmt::format("refining left a single bin of {}{}", fmt::join(names, ", "),
                        namesAll ? "" : " and more"));
}

}  // namespace

MCBinModel::BinModel Refine(const MCBinModel::BinModel& model,
                            const MCBinModel::RefineSettings& settings, bool quiet) {
  MCBinModel::BinModel refined = MCBinModel::RefineModel(model, settings, &Interrupt::IsRequested);
  if (!quiet) PrintSingleBins(model, refined, settings);
  return refined;
}

}  // namespace MCBin
