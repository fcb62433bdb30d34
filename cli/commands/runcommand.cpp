#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "binmodel/model/binmodel.h"
#include "binmodel/model/refusal.h"
#include "binmodel/model/targetclasses.h"
#include "binmodel/refine/binrefine.h"
#include "binmodel/run/binrun.h"
#include "binmodel/text/displaytext.h"
#include "cli/commands/commands.h"
#include "cli/commands/modeloutput.h"
#include "cli/commands/refinement.h"
#include "cli/terminal/notes.h"
#include "cli/terminal/progressbar.h"
#include "cli/terminal/refusaltext.h"
#include "csv/columnnames.h"
#include "csv/columnselection.h"
#include "csv/inputfiles.h"
#include "csv/inputscan.h"
#include "csv/inputvariables.h"
#include "io/interrupt.h"
#include "io/privatedirectory.h"

namespace MCBin {

namespace {

void PrintCounts(const MCBinModel::BinModel& model) {
  const MCBinModel::DroppedRecords& dropped = model.source.dropped;
  std::string note = fmt::format("{} records read", model.source.recordCount);
  if (dropped.GetTotal() > 0) {
    note += fmt::format(", {} {}", dropped.GetTotal(), DroppedText(dropped));
  }
  PrintNote(note);
}

void PrintCountedAnew(const MCBinModel::BinModel& model, const std::vector<std::size_t>& results) {
  constexpr std::size_t kMostNamed = 10;
  std::vector<std::string> names;
  for (const std::size_t index : results) {
    if (names.size() == kMostNamed) break;
    names.push_back(MCBinModel::QuotedText(model.GetAttribute(model.results[index]).name));
  }
  PrintNote(fmt::format(
      "a cut point between two neighbouring numbers rounds onto one of them; the cases are counted "
      "anew for the cut points there are: {}{}",
      fmt::join(names, ", "), results.size() > names.size() ? " and more" : ""));
}

// Their weight of evidence cannot be told.
void PrintBinsWithoutTarget(const MCBinModel::BinModel& model) {
  std::vector<std::size_t> results;
  for (std::size_t result = 0; result < model.results.size(); ++result) {
    const MCBinModel::AttributeBins& bins = model.results[result];
    const auto& weights = bins.binWeights;
    const bool hasEmpty = std::find(weights.begin(), weights.end(), 0.0) != weights.end();
    if (bins.target && hasEmpty) results.push_back(result);
  }
  if (results.empty()) return;
  PrintNote("a bin has no case with the target, and so no weight of evidence: " +
            NameResults(model, results));
}

auto ShowProgress(ProgressBar& progress) {
  return [&progress](std::uint64_t done, std::uint64_t total) {
    constexpr double kRecordsPerUnit = 1e6;
    if (done == 0) progress.Start("binning", total, "M records", kRecordsPerUnit);
    progress.Update(done);
  };
}

// What is asked of refined bins, as far as the header says.
void CheckCutPointNames(const RunOptions& options, const ColumnNames& names) {
  if (!options.refinement) return;
  for (const auto* lists : {&options.refinement->breaks, &options.refinement->keep}) {
    for (const auto& [name, cuts] : *lists) names.Find(name);
  }
}

// Reads the files once, then bins its columns. All temporary files are gone when it returns.
MCBinModel::BinModel MakeBins(const RunOptions& options) {
  const PrivateDirectory directory(options.tempDir);
  InputFiles files(options.inputs, options.delimiter, options.numbers);
  const ColumnNames& names = files.GetNames();
  CheckCutPointNames(options, names);
  std::vector<ColumnNote> notes;
  const std::vector<ColumnRequest> requests = SelectColumns(names, options.columns, notes);

  const MissingTexts missingTexts(options.missingTexts);
  ProgressBar progress(!options.quiet);
  progress.StartBytes("scanning", files.GetSize());
  InputScan scan =
      ScanInput(files, requests, options.rounding, missingTexts,
                {directory.GetPath(), [&](std::uint64_t bytesRead) { progress.Update(bytesRead); },
                 options.jobs});
  progress.Finish();
  const auto printNotes = [&] {
    for (const ColumnNote& note : notes) PrintNote(NoteText(note));
  };
  MCBinModel::RunVariables variables;
  try {
    variables = MakeInputVariables(files, requests, scan, options.rounding, options.numbers, notes);
  } catch (const MCBinModel::Refusal&) {
    if (!options.quiet) printNotes();  // they say why there is nothing to bin
    throw;
  }
  MCBinModel::ChooseEvents(variables.targets, options.evidence.events);
  MCBinModel::RequireClasses(variables.targets, options.evidence.classes);
  if (options.refinement) {
    MCBinModel::CheckRefinement(variables.attributes, variables.targets, *options.refinement);
  }
  if (!options.quiet) {
    printNotes();
    if (scan.weightNote) PrintNote(*scan.weightNote);
  }

  std::vector<std::size_t> countedAnew;
  MCBinModel::RunControl control{directory.GetPath(), options.jobs, nullptr,
                                 &Interrupt::IsRequested};
  if (progress.IsVisible()) control.progress = ShowProgress(progress);
  MCBinModel::BinModel model = MCBinModel::MakeBins(options.settings, std::move(variables),
                                                    *scan.values, control, &countedAnew);
  progress.Finish();
  if (!options.quiet && !countedAnew.empty()) PrintCountedAnew(model, countedAnew);
  if (!options.quiet) {
    for (const ColumnNote& note : NoteIdentifiers(model, requests, scan)) PrintNote(NoteText(note));
  }
  MCBinModel::OrderClasses(model, options.evidence.classes);
  model.source.name = files.GetName();
  model.source.delimiter = options.delimiter;
  model.source.decimal = options.numbers.decimal;
  model.source.thousands = options.numbers.thousands;
  model.source.missingTexts = options.missingTexts;
  model.source.recordCount = scan.recordCount;
  model.source.dropped = scan.dropped;
  return model;
}

// What would surprise the user before anything is read.
void CheckBeforeReading(const RunOptions& options) {
  std::vector<CommandInput> inputs;
  for (const std::string& path : options.inputs) inputs.push_back({"the input", path});
  CheckModelOutput(inputs, options);
  if (!options.quiet) PrintRepeatedFiles(options.inputs);
  if (!options.quiet) PrintIfFromTerminal(options.inputs.front());
}

}  // namespace

int RunCommand(const RunOptions& options) {
  CheckBeforeReading(options);
  ModelOutput output(options);
  MCBinModel::BinModel model = MakeBins(options);
  if (!options.quiet) PrintCounts(model);
  if (options.refinement) model = Refine(model, *options.refinement, options.quiet);
  if (!options.quiet) PrintBinsWithoutTarget(model);
  output.Write(model);
  return ExitCodeOf(model, options.strict);
}

}  // namespace MCBin
