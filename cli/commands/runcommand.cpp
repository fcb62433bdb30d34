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

void PrintCounts(const BinModel& model) {
  if (model.options.quiet) return;
  const DroppedRecords& dropped = model.dropped;
  fmt::print(stderr, "mcbin: {} records read", model.recordCount);
  if (dropped.GetTotal() > 0) {
    fmt::print(stderr, ", {} dropped for their weight ({} missing, {} zero, {} rounded to zero)",
               dropped.GetTotal(), dropped.missing, dropped.zero, dropped.roundedToZero);
  }
  fmt::print(stderr, "\n");
}

// The pass over the file and the component's run. All temporary files are gone when it
// returns.
BinModel MakeBins(const RunOptions& options) {
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

  ComponentRun run{options, variables, std::move(scan.values), directory.GetPath(), progress};
  std::vector<AttributeBins> results = options.algorithm == Algorithm::kSupervised
                                           ? RunSupervised(std::move(run))
                                           : RunEqualFrequency(std::move(run));
  progress.Finish();
  return {options,           input.GetName(),      scan.recordCount,
          scan.dropped,      variables.attributes, variables.targets,
          std::move(results)};
}

// What a run writes; the files are made before its work, so that it does not fail after it.
class RunOutput {
 public:
  explicit RunOutput(const RunOptions& options) : fStyle(ChooseTextStyle(options.color)) {
    if (options.jsonFile && *options.jsonFile != "-") fJsonFile.emplace(*options.jsonFile);
    if (options.reportFile) fReportFile.emplace(*options.reportFile);
  }

  void Write(const BinModel& model) {
    WriteFile(fReportFile, [&] { return WriteHtmlReport(model, 0.0); });
    WriteFile(fJsonFile, [&] { return WriteBinFile(model); });
    const bool jsonOnly = model.options.jsonFile && !fJsonFile;
    if (!jsonOnly) {
      WriteTextReport(model, fStyle, fOut);
      return;
    }
    fOut.Write(WriteBinFile(model));
    fOut.Flush();
  }

 private:
  template <typename MakeContent>
  static void WriteFile(std::optional<OutputFile>& file, MakeContent makeContent) {
    if (!file) return;
    file->Write(makeContent());
    file->Commit();
  }

  const TextStyle fStyle;  // before standard output is taken
  ResultStream fOut;
  std::optional<OutputFile> fJsonFile;
  std::optional<OutputFile> fReportFile;
};

void CheckIsNotInput(const RunOptions& options, const char* flag,
                     const std::optional<std::string>& file) {
  std::error_code ignored;
  if (file && std::filesystem::equivalent(options.input, *file, ignored)) {
    throw UsageError(fmt::format("{} {}: this is the input, which would be overwritten", flag,
                                 QuotedText(*file)));
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
  const BinModel model = MakeBins(options);
  PrintCounts(model);
  output.Write(model);
  const bool allOk = std::all_of(model.results.begin(), model.results.end(),
                                 [](const AttributeBins& bins) { return bins.status.IsOK(); });
  return options.strict && !allOk ? kExitWarnings : kExitDone;
}

}  // namespace MCBin
