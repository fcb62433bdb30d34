#include "cli/commands/reportcommand.h"

#include <optional>
#include <string>

#include "binmodel/report/binreport.h"
#include "cli/commands/binfileinput.h"
#include "cli/commands/commandfiles.h"
#include "cli/terminal/exitcode.h"
#include "cli/terminal/resultstream.h"
#include "io/outputfile.h"

namespace MCBin {

int ReportCommand(const ReportOptions& options) {
  CheckFiles({{"the bin file", options.binFile}}, {{"--output", options.output}});
  ResultStream out;
  std::optional<OutputFile> file;
  if (options.output != "-") file.emplace(options.output);
  const std::string report =
      MCBinModel::MakeHtmlReport(LoadBinFile(options.binFile), options.evidenceAdjustment);
  if (file) {
    file->Write(report);
    file->Commit();
  } else {
    out.WriteContent(report);
    out.Close();
  }
  return kExitDone;
}

}  // namespace MCBin
