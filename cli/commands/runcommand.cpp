#include "cli/commands/runcommand.h"

#include <fmt/format.h>
#include <unistd.h>

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "binmodel/file/binfile.h"
#include "binmodel/model/binmodel.h"
#include "binmodel/report/binreport.h"
#include "binmodel/run/componentrun.h"
#include "cli/commands/commandfiles.h"
#include "cli/options/usageerror.h"
#include "cli/terminal/exitcode.h"
#include "cli/terminal/notes.h"
#include "cli/terminal/progressbar.h"
#include "cli/terminal/resultstream.h"
#include "cli/terminal/terminalstyle.h"
#include "csv/columnnames.h"
#include "csv/columnselection.h"
#include "csv/csvreader.h"
#include "csv/inputscan.h"
#include "csv/inputvariables.h"
#include "io/inputstream.h"
#include "io/outputfile.h"
#include "io/privatedirectory.h"

namespace MCBin {

namespace {

void PrintCounts(const MCBinModel::BinModel& model) {
  const MCBinModel::DroppedRecords& dropped = model.source.dropped;
  std::string note = fmt::format("{} records read", model.source.recordCount);
  if (dropped.GetTotal() > 0) {
    note += fmt::format(", {} dropped for their weight ({} missing, {} zero, {} rounded to zero)",
                        dropped.GetTotal(), dropped.missing, dropped.zero, dropped.roundedToZero);
  }
  PrintNote(note);
}

// The pass over the file and the component's run. All temporary files are gone when it
// returns.
MCBinModel::BinModel MakeBins(const RunOptions& options) {
  const PrivateDirectory directory(options.tempDir);
  const InputStream input(options.input, "a CSV file");
  CsvReader reader(input.Get(), input.GetName(), options.delimiter);
  const ColumnNames names = ColumnNames::Read(reader);
  std::vector<std::string> notes;
  const std::vector<ColumnRequest> requests = SelectColumns(names, options, notes);

  constexpr double kBytesPerMB = 1e6;
  const MissingTexts missingTexts(options.missingTexts);
  ProgressBar progress(!options.quiet);
  progress.Start("scanning", input.GetSize(), "MB", kBytesPerMB);
  InputScan scan =
      ScanInput(reader, requests, options.rounding, missingTexts, directory.GetPath(), progress);
  progress.Finish();
  const InputVariables variables =
      MakeInputVariables(input.GetName(), requests, scan, options.rounding, notes);
  if (!options.quiet) PrintNotes(notes);

  MCBinModel::ComponentRun run{options.settings,       options.jobs,        variables,
                               std::move(scan.values), directory.GetPath(), progress};
  std::vector<MCBinModel::AttributeBins> results =
      options.settings.algorithm == MCBinModel::Algorithm::kSupervised
          ? MCBinModel::RunSupervised(std::move(run))
          : MCBinModel::RunEqualFrequency(std::move(run));
  progress.Finish();
  MCBinModel::BinSource source{input.GetName(), options.delimiter, options.missingTexts,
                               std::nullopt,    scan.recordCount,  scan.dropped};
  if (variables.weight) {
    source.weight = {variables.weight->name, options.rounding, variables.weight->missing};
  }
  return {options.settings, std::move(source), variables.attributes, variables.targets,
          std::move(results)};
}

// What a run writes; the files are made before its work, so that it does not fail after it.
class RunOutput {
 public:
  explicit RunOutput(const RunOptions& options)
      : fStyle(ChooseTextStyle(options.color)), fJsonOnly(options.jsonFile == "-") {
    if (options.jsonFile && *options.jsonFile != "-") fJsonFile.emplace(*options.jsonFile);
    if (options.reportFile) fReportFile.emplace(*options.reportFile);
  }

  // Both files are whole before either of them replaces another.
  void Write(const MCBinModel::BinModel& model) {
    if (fReportFile) fReportFile->Write(MCBinModel::MakeHtmlReport(model));
    if (fJsonFile) fJsonFile->Write(MCBinModel::WriteBinFile(model));
    if (fReportFile) fReportFile->Commit();
    if (fJsonFile) fJsonFile->Commit();
    if (fJsonOnly) {
      fOut.WriteContent(MCBinModel::WriteBinFile(model));
    } else {
      MCBinModel::WriteTextReport(model, fStyle, [&](std::string_view text) { fOut.Write(text); });
    }
    fOut.Close();
  }

 private:
  const MCBinModel::TextStyle fStyle;  // before standard output is taken
  const bool fJsonOnly;
  ResultStream fOut;
  std::optional<OutputFile> fJsonFile;
  std::optional<OutputFile> fReportFile;
};

// What would surprise the user before anything is read.
void CheckBeforeReading(const RunOptions& options) {
  if (options.reportFile == "-") {
    throw UsageError("--report: give a file; 'mcbin report' writes to standard output");
  }
  CheckFiles({{"the input", options.input}},
             {{"--json", options.jsonFile}, {"--report", options.reportFile}});
  if (options.input == "-" && isatty(STDIN_FILENO) == 1 && !options.quiet) {
    PrintNote("reading CSV text from the terminal; end it with Ctrl-D");
  }
}

}  // namespace

int RunCommand(const RunOptions& options) {
  CheckBeforeReading(options);
  RunOutput output(options);
  const MCBinModel::BinModel model = MakeBins(options);
  if (!options.quiet) PrintCounts(model);
  output.Write(model);
  const bool allOk =
      std::all_of(model.results.begin(), model.results.end(),
                  [](const MCBinModel::AttributeBins& bins) { return bins.status.IsOK(); });
  return options.strict && !allOk ? kExitWarnings : kExitDone;
}

}  // namespace MCBin
