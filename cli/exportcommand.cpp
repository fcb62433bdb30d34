#include "cli/exportcommand.h"

#include <fmt/format.h>

#include <cstdio>
#include <filesystem>
#include <system_error>
#include <vector>

#include "cli/binfilereader.h"
#include "cli/displaytext.h"
#include "cli/exitcode.h"
#include "cli/exportmodel.h"
#include "cli/outputfile.h"
#include "cli/pmmlexport.h"
#include "cli/pythonexport.h"
#include "cli/resultstream.h"
#include "cli/sqlexport.h"
#include "cli/usageerror.h"

namespace MCBin {

namespace {

std::string MakeText(const ExportOptions& options, std::vector<std::string>& notes) {
  const BinModel model = ReadBinFile(options.binFile);
  const ExportModel exported = MakeExportModel(model, options);
  switch (options.format) {
    case ExportFormat::kSql:
      return WriteSql(exported, FindSqlDialect(options.dialect), options.table);
    case ExportFormat::kPmml:
      return WritePmml(exported, notes);
    case ExportFormat::kPython:
      break;
  }
  return WritePython(exported);
}

void CheckOutput(const ExportOptions& options) {
  std::error_code ignored;
  if (!options.output || !std::filesystem::equivalent(options.binFile, *options.output, ignored)) {
    return;
  }
  throw UsageError(fmt::format("--output {}: this is the bin file, which would be overwritten",
                               QuotedText(*options.output)));
}

}  // namespace

int ExportCommand(const ExportOptions& options) {
  ResultStream out;
  CheckOutput(options);
  std::vector<std::string> notes;
  const std::string text = MakeText(options, notes);
  if (!options.output || *options.output == "-") {
    out.Write(text);
    out.Flush();
  } else {
    OutputFile file(*options.output);
    file.Write(text);
    file.Commit();
  }
  if (!options.quiet) {
    for (const std::string& note : notes) fmt::print(stderr, "mcbin: {}\n", note);
  }
  return kExitDone;
}

}  // namespace MCBin
