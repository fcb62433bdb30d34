#include "cli/commands/exportcommand.h"

#include <string>
#include <vector>

#include "binmodel/export/exportmodel.h"
#include "binmodel/export/pmmlexport.h"
#include "binmodel/export/pythonexport.h"
#include "binmodel/export/sqlexport.h"
#include "cli/commands/binfileinput.h"
#include "cli/commands/commandfiles.h"
#include "cli/terminal/exitcode.h"
#include "cli/terminal/notes.h"
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

}  // namespace

int ExportCommand(const MCBinModel::ExportOptions& options) {
  CheckFiles({{"the bin file", options.binFile}}, {{"--output", options.output}});
  ResultStream out;
  std::vector<std::string> notes;
  const std::string text = MakeText(options, notes);
  if (!options.output || *options.output == "-") {
    out.WriteContent(text);
    out.Close();
  } else {
    OutputFile file(*options.output);
    file.Write(text);
    file.Commit();
  }
  if (!options.quiet) PrintNotes(notes);
  return kExitDone;
}

}  // namespace MCBin
