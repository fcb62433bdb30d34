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
#include "csv/recordcount.h"

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

void PrintDropped(const MCBinModel::Recount& recount) {
  const MCBinModel::DroppedRecords& dropped = recount.dropped;
  if (dropped.GetTotal() == 0) return;
  PrintNote(fmt::format("{} of {} records {}", dropped.GetTotal(), recount.recordCount,
                        DroppedText(dropped)));
}

}  // namespace

int EvaluateCommand(const EvaluateOptions& options) {
  CheckFiles({{"the bin file", options.binFile}, {"the data", options.input}}, {});
  ResultStream out;
  BinsAndData given(options);
  ProgressBar progress(!options.quiet && given.input.IsRegularFile());
  progress.StartBytes("counting", given.input.GetSize());
  std::vector<std::string> countNotes;
  const MCBinModel::Recount recount = CountRecords(
      given.model, given.results, given.names, ChooseWeight(options, given.model.source),
      given.missingTexts, given.reader,
      [&](std::uint64_t bytesRead) { progress.Update(bytesRead); }, countNotes);
  progress.Finish();
  if (!options.quiet) {
    PrintDropped(recount);
    PrintNotes(countNotes);
  }
  MCBinModel::WriteEvaluationReport(given.model, recount, given.input.GetName(),
                                    [&](std::string_view text) { out.Write(text); });
  out.Close();
  return kExitDone;
}

}  // namespace MCBin
