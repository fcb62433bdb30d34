#include "cli/commands/exportcommand.h"

#include <fmt/format.h>

#include <cstdio>
#include <filesystem>
#include <system_error>
#include <vector>

#include "binmodel/export/exportmodel.h"
#include "binmodel/export/pmmlexport.h"
#include "binmodel/export/pythonexport.h"
#include "binmodel/export/sqlexport.h"
#include "binmodel/text/displaytext.h"
#include "cli/commands/binfileinput.h"
#include "cli/options/usageerror.h"
#include "cli/terminal/exitcode.h"
#include "cli/terminal/resultstream.h"
#include "io/outputfile.h"

namespace MCBin {

namespace {

std::string MakeText(const MCBinModel::ExportOptions& options, std::vector<std::string>& notes) {
  const MCBinModel::BinModel model = LoadBinFile(options.binFile);
  const MCBinModel::ExportModel exported = MCBinModel::MakeExportModel(model, options);
  switch (options.format) {
    case MCBinModel::ExportFormat::kSql:
      return MCBinModel::WriteSql(exported, MCBinModel::FindSqlDialect(options.dialect),
                                  options.table);
    case MCBinModel::ExportFormat::kPmml:
      return MCBinModel::WritePmml(exported, notes);
    case MCBinModel::ExportFormat::kPython:
      break;
  }
  return MCBinModel::WritePython(exported);
}

void CheckOutput(const MCBinModel::ExportOptions& options) {
  std::error_code ignored;
  if (!options.output || !std::filesystem::equivalent(options.binFile, *options.output, ignored)) {
    return;
  }
  throw UsageError(fmt::format("--output {}: this is the bin file, which would be overwritten",
                               MCBinModel::QuotedText(*options.output)));
}

}  // namespace

int ExportCommand(const MCBinModel::ExportOptions& options) {
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
