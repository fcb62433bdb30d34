#include "binmodel/refine/binrefine.h"
#include "cli/commands/commandfiles.h"
#include "cli/commands/commands.h"
#include "cli/commands/modeloutput.h"
#include "cli/terminal/exitguard.h"

namespace MCBin {

int RefineCommand(const RefineOptions& options) {
  CheckModelOutput({"the bin file", options.binFile}, options);
  ModelOutput output(options);
  output.Write(MCBinModel::RefineModel(LoadBinFile(options.binFile), options.settings));
  return kExitDone;
}

}  // namespace MCBin
