#include "cli/reportcommand.h"

#include <fmt/format.h>

#include <filesystem>
#include <optional>
#include <string>
#include <system_error>

#include "cli/binfilereader.h"
#include "cli/displaytext.h"
#include "cli/exitcode.h"
#include "cli/htmlreport.h"
#include "cli/outputfile.h"
#include "cli/resultstream.h"
#include "cli/usageerror.h"

namespace MCBin {

int ReportCommand(const ReportOptions& options) {
  std::error_code ignored;
  if (std::filesystem::equivalent(options.binFile, options.output, ignored)) {
    throw UsageError(fmt::format("--output {}: this is the bin file, which would be overwritten",
                                 QuotedText(options.output)));
  }
  ResultStream out;
  std::optional<OutputFile> file;
  if (options.output != "-") file.emplace(options.output);
  const std::string report =
      WriteHtmlReport(ReadBinFile(options.binFile), options.evidenceAdjustment);
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
