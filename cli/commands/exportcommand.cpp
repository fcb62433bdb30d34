#include <string>
#include <vector>

#include "binmodel/export/binexport.h"
#include "binmodel/export/exportmodel.h"
#include "binmodel/export/sqldialect.h"
#include "cli/commands/commandfiles.h"
#include "cli/commands/commands.h"
#include "cli/terminal/exitguard.h"
#include "cli/terminal/notes.h"
#include "cli/terminal/resultstream.h"

namespace MCBin {

namespace {

// An option that makes no sense shows as such, whatever is in the bin file.
void CheckOptions(const ExportOptions& options) {
  MCBinModel::MissingValueOf(options.columns);
  if (options.format == ExportFormat::kSql) MCBinModel::SplitTableName(options.table);
}

std::string MakeText(const ExportOptions& options, std::vector<std::string>& notes) {
  const MCBinModel::BinModel model = LoadBinFile(options.binFile);
  const std::vector<std::size_t> results =
      ChooseResults(model, options.target, options.binFile, notes);
  switch (options.format) {
    case ExportFormat::kSql:
      return MCBinModel::ExportSql(model, results, options.columns, options.dialect, options.table);
    case ExportFormat::kPmml:
      return MCBinModel::ExportPmml(model, results, options.columns, notes);
    case ExportFormat::kPython:
      break;
  }
  return MCBinModel::ExportPython(model, results, options.columns);
}

}  // namespace

int ExportCommand(const ExportOptions& options) {
  CheckFiles({{"the bin file", options.binFile}}, {{"--output", options.output}});
  CheckOptions(options);
  ResultStream out;
  std::vector<std::string> notes;
  const std::string text = MakeText(options, notes);
  WriteOutput(options.output, text, out);
  if (!options.quiet) PrintNotes(notes);
  return kExitDone;
}

}  // namespace MCBin
