#include "cli/commands/reportcommand.h"

#include <fmt/format.h>

#include <filesystem>
#include <optional>
#include <string>
#include <system_error>

#include "binmodel/report/htmlreport.h"
#include "binmodel/text/displaytext.h"
#include "cli/commands/binfileinput.h"
#include "cli/options/usageerror.h"
#include "cli/terminal/exitcode.h"
#include "cli/terminal/resultstream.h"
#include "io/outputfile.h"

namespace MCBin {

int ReportCommand(const ReportOptions& options) {
  std::error_code ignored;
  if (std::filesystem::equivalent(options.binFile, options.output, ignored)) {
    throw UsageError(fmt::format("--output {}: this is the bin file, which would be overwritten",
                                 MCBinModel::QuotedText(options.output)));
  }
  ResultStream out;
  std::optional<OutputFile> file;
  if (options.output != "-") file.emplace(options.output);
  const std::string report =
      MCBinModel::WriteHtmlReport(LoadBinFile(options.binFile), options.evidenceAdjustment);
  if (file) {
    file->Write(report);
    file->Commit();
  } else {
    out.Write(report);
    out.Flush();
  }
  return kExitDone;
}

}  // namespace MCBin
