#include <fmt/format.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "binmodel/model/refusal.h"
#include "binmodel/model/resultselection.h"
#include "binmodel/report/binreport.h"
#include "binmodel/text/displaytext.h"
#include "cli/commands/commandfiles.h"
#include "cli/commands/commands.h"
#include "cli/commands/modeloutput.h"
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

// A weight that the user has not named is not what they would look for.
void CheckWeight(const EvaluateOptions& options,
                 const std::optional<MCBinModel::WeightInfo>& weight, const DataFile& file) {
  if (!weight || options.weight || file.names.Contains(weight->name)) return;
  throw MCBinModel::Refusal(
      MCBinModel::RefusalCode::kUnknownColumn, {file.input.GetName(), weight->name, {}},
      fmt::format("there is no column {}, the weight in the bin file; --weight NAME names another, "
                  "--unweighted counts every record once",
                  MCBinModel::QuotedText(weight->name)));
}

void PrintDropped(const MCBinModel::Recount& recount) {
  const MCBinModel::DroppedRecords& dropped = recount.dropped;
  if (dropped.GetTotal() == 0) return;
  PrintNote(fmt::format("{} of {} records {}", dropped.GetTotal(), recount.recordCount,
                        DroppedText(dropped)));
}

// Whether the data have the target that the results are about.
bool HasTarget(const BinsToUse& bins, const DataFile& file) {
  const MCBinModel::VariableInfo* const target =
      bins.model.GetTarget(bins.model.results[bins.results.front()]);
  return target == nullptr || file.names.Contains(target->name);
}

MCBinModel::NamedRecount CountFile(const EvaluateOptions& options, const BinsToUse& bins,
                                   const std::string& path) {
  DataFile file(bins.model, options, path);
  const bool hasTarget = HasTarget(bins, file);
  const std::optional<MCBinModel::WeightInfo> weight = ChooseWeight(options, bins.model.source);
  CheckWeight(options, weight, file);
  ProgressBar progress(!options.quiet && file.input.IsRegularFile());
  progress.StartBytes("counting", file.input.GetSize());
  std::vector<std::string> notes;
  const MCBinModel::Recount recount = CountRecords(
      hasTarget ? bins.model : MCBinModel::WithoutTargets(bins.model), bins.results, file.names,
      weight, file.missingTexts, file.reader,
      [&](std::uint64_t bytesRead) { progress.Update(bytesRead); }, notes);
  progress.Finish();
  if (!options.quiet) {
    if (!hasTarget) {
      PrintNote(
          fmt::format("{}: there is no target column {}, so only shares and stability are compared",
                      MCBinModel::PrintableText(file.input.GetName()),
                      MCBinModel::QuotedText(
                          bins.model.GetTarget(bins.model.results[bins.results.front()])->name)));
    }
    PrintDropped(recount);
    PrintNotes(notes);
  }
  return {file.input.GetName(), recount};
}

}  // namespace

int EvaluateCommand(const EvaluateOptions& options) {
  std::vector<CommandInput> inputs = {{"the bin file", options.binFile}};
  for (const std::string& path : options.inputs) inputs.push_back({"the data", path});
  CheckFiles(inputs, {});
  const MCBinModel::TextStyle style = MakeTextStyle(options.tables);
  ResultStream out;
  const BinsToUse bins(options);
  std::vector<MCBinModel::NamedRecount> data;
  for (const std::string& path : options.inputs) data.push_back(CountFile(options, bins, path));
  MCBinModel::WriteEvaluationReport(bins.model, data, style,
                                    [&](std::string_view text) { out.Write(text); });
  out.Close();
  return kExitDone;
}

}  // namespace MCBin
