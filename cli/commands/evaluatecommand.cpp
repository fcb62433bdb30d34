#include <fmt/format.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "binmodel/report/binreport.h"
#include "cli/commands/commandfiles.h"
#include "cli/commands/commands.h"
#include "cli/terminal/exitguard.h"
#include "cli/terminal/notes.h"
#include "cli/terminal/progressbar.h"
#include "cli/terminal/resultstream.h"
#include "csv/columnnames.h"
#include "csv/csvreader.h"
#include "csv/missingtexts.h"
#include "csv/recordcount.h"
#include "io/inputstream.h"

namespace MCBin {

namespace {

// The weight column: of the options, or the bin file's.
std::optional<MCBinModel::WeightInfo> ChooseWeight(const EvaluateOptions& options,
                                                   const MCBinModel::BinSource& file) {
  if (options.unweighted) return std::nullopt;
  if (!options.weight) return file.weight;
  MCBinModel::WeightInfo weight = file.weight.value_or(MCBinModel::WeightInfo{});
  if (weight.name != *options.weight) weight.missing = {};
  weight.name = *options.weight;
  return weight;
}

void PrintCounts(const MCBinModel::Recount& recount) {
  const MCBinModel::DroppedRecords& dropped = recount.dropped;
  if (dropped.GetTotal() > 0) {
    PrintNote(
        fmt::format("{} of {} records dropped for their weight ({} missing, {} zero, {} rounded "
                    "to zero)",
                    dropped.GetTotal(), recount.recordCount, dropped.missing, dropped.zero,
                    dropped.roundedToZero));
  }
}

}  // namespace

int EvaluateCommand(const EvaluateOptions& options) {
  CheckFiles({{"the bin file", options.binFile}, {"the data", options.input}}, {});
  ResultStream out;
  const MCBinModel::BinModel model = LoadBinFile(options.binFile);
  std::vector<std::string> notes;
  const std::vector<std::size_t> results =
      ChooseResults(model, options.target, options.binFile, notes);
  if (!options.quiet) PrintNotes(notes);

  const InputStream input(options.input, "a CSV file");
  CsvReader reader(input.Get(), input.GetName(),
                   options.delimiter.value_or(model.source.delimiter));
  const ColumnNames names = ColumnNames::Read(reader);
  const MissingTexts missingTexts(options.missingTexts.value_or(model.source.missingTexts));
  constexpr double kBytesPerMB = 1e6;
  ProgressBar progress(!options.quiet && input.IsRegularFile());
  progress.Start("counting", input.GetSize(), "MB", kBytesPerMB);
  std::vector<std::string> countNotes;
  const MCBinModel::Recount recount = CountRecords(
      model, results, names, ChooseWeight(options, model.source), missingTexts, reader,
      [&](std::uint64_t bytesRead) { progress.Update(bytesRead); }, countNotes);
  progress.Finish();
  if (!options.quiet) {
    PrintCounts(recount);
    PrintNotes(countNotes);
  }
  MCBinModel::WriteEvaluationReport(model, recount, input.GetName(),
                                    [&](std::string_view text) { out.Write(text); });
  out.Close();
  return kExitDone;
}

}  // namespace MCBin
