#include "cli/commands/runcommand.h"

#include <fmt/format.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <optional>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include "binmodel/file/binfile.h"
#include "binmodel/model/binmodel.h"
#include "binmodel/report/htmlreport.h"
#include "binmodel/report/textreport.h"
#include "binmodel/report/textstyle.h"
#include "binmodel/run/componentrun.h"
#include "binmodel/text/displaytext.h"
#include "cli/options/usageerror.h"
#include "cli/terminal/exitcode.h"
#include "cli/terminal/progressbar.h"
#include "cli/terminal/resultstream.h"
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

void PrintNotes(const std::vector<std::string>& notes, bool quiet) {
  if (quiet) return;
  for (const std::string& note : notes) fmt::print(stderr, "mcbin: {}\n", note);
}

void PrintCounts(const MCBinModel::BinModel& model) {
  const MCBinModel::DroppedRecords& dropped = model.source.dropped;
  fmt::print(stderr, "mcbin: {} records read", model.source.recordCount);
  if (dropped.GetTotal() > 0) {
    fmt::print(stderr, ", {} dropped for their weight ({} missing, {} zero, {} rounded to zero)",
               dropped.GetTotal(), dropped.missing, dropped.zero, dropped.roundedToZero);
  }
  fmt::print(stderr, "\n");
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
  PrintNotes(notes, options.quiet);

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
      : fStyle(MCBinModel::ChooseTextStyle(options.color)), fJsonOnly(options.jsonFile == "-") {
    if (options.jsonFile && *options.jsonFile != "-") fJsonFile.emplace(*options.jsonFile);
    if (options.reportFile) fReportFile.emplace(*options.reportFile);
  }

  void Write(const MCBinModel::BinModel& model) {
    WriteFile(fReportFile, [&] { return MCBinModel::WriteHtmlReport(model, 0.0); });
    WriteFile(fJsonFile, [&] { return MCBinModel::WriteBinFile(model); });
    if (!fJsonOnly) {
      MCBinModel::WriteTextReport(model, fStyle, fOut);
      return;
    }
    fOut.Write(MCBinModel::WriteBinFile(model));
    fOut.Flush();
  }

 private:
  template <typename MakeContent>
  static void WriteFile(std::optional<OutputFile>& file, MakeContent makeContent) {
    if (!file) return;
    file->Write(makeContent());
    file->Commit();
  }

  const MCBinModel::TextStyle fStyle;  // before standard output is taken
  const bool fJsonOnly;
  ResultStream fOut;
  std::optional<OutputFile> fJsonFile;
  std::optional<OutputFile> fReportFile;
};

void CheckIsNotInput(const RunOptions& options, const char* flag,
                     const std::optional<std::string>& file) {
  std::error_code ignored;
  if (file && std::filesystem::equivalent(options.input, *file, ignored)) {
    throw UsageError(fmt::format("{} {}: this is the input, which would be overwritten", flag,
                                 MCBinModel::QuotedText(*file)));
  }
}

// What would surprise the user before anything is read.
void CheckFiles(const RunOptions& options) {
  CheckIsNotInput(options, "--json", options.jsonFile);
  CheckIsNotInput(options, "--report", options.reportFile);
  if (options.reportFile == "-") {
    throw UsageError("--report: give a file; 'mcbin report' writes to standard output");
  }
  if (options.reportFile && options.reportFile == options.jsonFile) {
    throw UsageError("--json and --report name the same file");
  }
  if (options.input == "-" && isatty(STDIN_FILENO) == 1 && !options.quiet) {
    fmt::print(stderr, "mcbin: reading CSV text from the terminal; end it with Ctrl-D\n");
  }
}

}  // namespace

int RunCommand(const RunOptions& options) {
  CheckFiles(options);
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
