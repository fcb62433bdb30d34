#include "cli/commands/refinement.h"

#include <cstddef>
#include <vector>

#include "binmodel/refine/binrefine.h"
#include "cli/terminal/notes.h"
#include "io/interrupt.h"

namespace MCBin {

namespace {

void PrintSingleBins(const MCBinModel::BinModel& model, const MCBinModel::BinModel& refined,
                     const MCBinModel::RefineSettings& settings) {
  if (settings.maxBins == 1) return;
  std::vector<std::size_t> single;
  for (std::size_t result = 0; result < refined.results.size(); ++result) {
    const MCBinModel::AttributeBins& bins = refined.results[result];
    const bool isSingle =
        bins.binWeights.size() == 1 && model.results[result].binWeights.size() > 1;
    const bool isAsked = settings.breaks.count(refined.GetAttribute(bins).name) > 0;
    if (isSingle && !isAsked) single.push_back(result);
  }
  if (single.empty()) return;
  PrintNote("refining left a single bin of " + NameResults(refined, single));
}

}  // namespace

MCBinModel::BinModel Refine(const MCBinModel::BinModel& model,
                            const MCBinModel::RefineSettings& settings, bool quiet) {
  MCBinModel::BinModel refined = MCBinModel::RefineModel(model, settings, &Interrupt::IsRequested);
  if (!quiet) PrintSingleBins(model, refined, settings);
  return refined;
}

}  // namespace MCBin
