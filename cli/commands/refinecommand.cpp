#include "cli/commands/commandfiles.h"
#include "cli/commands/commands.h"
#include "cli/commands/modeloutput.h"
#include "cli/commands/refinement.h"

namespace MCBin {

int RefineCommand(const RefineOptions& options) {
  CheckModelOutput({{"the bin file", options.binFile}}, options);
  ModelOutput output(options);
  const MCBinModel::BinModel model = LoadBinFile(options.binFile, options.evidence);
  if (!options.quiet) PrintMovedCutPoints(model, AllResults(model));
  const MCBinModel::BinModel refined = Refine(model, options.settings, options.quiet);
  output.Write(refined);
  return ExitCodeOf(refined, options.strict);
}

}  // namespace MCBin
