#include <string>

#include "binmodel/report/binreport.h"
#include "cli/commands/commandfiles.h"
#include "cli/commands/commands.h"
#include "cli/terminal/exitguard.h"
#include "cli/terminal/resultstream.h"

namespace MCBin {

int ReportCommand(const ReportOptions& options) {
  CheckFiles({{"the bin file", options.binFile}}, {{"--output", options.output}});
  ResultStream out;
  const std::string report =
      MCBinModel::MakeHtmlReport(LoadBinFile(options.binFile), options.evidenceAdjustment);
  WriteOutput(options.output, report, out);
  return kExitDone;
}

}  // namespace MCBin
