#include <cstddef>
#include <string>
#include <vector>

#include "binmodel/model/resultselection.h"
#include "binmodel/report/binreport.h"
#include "cli/commands/commandfiles.h"
#include "cli/commands/commands.h"
#include "cli/terminal/exitguard.h"
#include "cli/terminal/notes.h"
#include "cli/terminal/resultstream.h"

namespace MCBin {

int ReportCommand(const ReportOptions& options) {
  CheckFiles({{"the bin file", options.binFile}}, {{"--output", options.output}});
  ResultStream out;
  const MCBinModel::BinModel model = LoadBinFile(options.binFile, options.evidence);
  const std::vector<std::size_t> results = AllResults(model);
  std::vector<std::string> notes;
  MCBinModel::LeaveOutFailedResults(model, results, notes, options.binFile);
  WriteOutput(options.output, MCBinModel::MakeHtmlReport(model), out);
  PrintNotes(notes);
  PrintMovedCutPoints(model, results);
  return kExitDone;
}

}  // namespace MCBin
