#include <fmt/format.h>

#include <algorithm>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "binmodel/apply/updatedcounts.h"
#include "binmodel/file/binfile.h"
#include "binmodel/model/refusal.h"
#include "binmodel/model/resultselection.h"
#include "binmodel/report/binreport.h"
#include "binmodel/report/comparedbins.h"
#include "binmodel/text/displaytext.h"
#include "cli/commands/commandfiles.h"
#include "cli/commands/commands.h"
#include "cli/commands/modeloutput.h"
#include "cli/terminal/exitguard.h"
#include "cli/terminal/notes.h"
#include "cli/terminal/progressbar.h"
#include "cli/terminal/resultstream.h"
#include "csv/recordcount.h"
#include "io/outputfile.h"

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

// Of the target that the results are about; null without one.
const std::string* TargetName(const BinsToUse& bins) {
  const MCBinModel::VariableInfo* const target =
      bins.model.GetTarget(bins.model.results[bins.results.front()]);
  return target == nullptr ? nullptr : &target->name;
}

void PrintWithoutTarget(const std::string& input, const std::string& why, const BinsToUse& bins) {
  PrintNote(fmt::format("{}: {} {}, so only shares and stability are compared",
                        MCBinModel::PrintableText(input), why,
                        MCBinModel::QuotedText(*TargetName(bins))));
}

// Counts no classes where the data have no target, or when `ignoresTarget`.
MCBinModel::NamedRecount CountFile(const EvaluateOptions& options, const BinsToUse& bins,
                                   const std::string& path, bool ignoresTarget) {
  DataFile file(bins.model, options, path);
  const std::string* const target = TargetName(bins);
  const bool hasTarget = target == nullptr || (file.names.Contains(*target) && !ignoresTarget);
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
      PrintWithoutTarget(
          file.input.GetName(),
          ignoresTarget ? "no record has a known class of the target" : "there is no target column",
          bins);
    }
    PrintDropped(recount);
    PrintNotes(notes);
  }
  return {file.input.GetName(), recount};
}

// A month whose outcomes are not there yet does not keep the other months from being compared.
MCBinModel::NamedRecount CountOneOfSeveral(const EvaluateOptions& options, const BinsToUse& bins,
                                           const std::string& path) {
  try {
    return CountFile(options, bins, path, false);
  } catch (const MCBinModel::Refusal& refusal) {
    std::error_code ignored;
    const bool canReadAgain = path != "-" && std::filesystem::is_regular_file(path, ignored);
    const std::string* const target = TargetName(bins);
    const bool lacksClasses = refusal.GetCode() == MCBinModel::RefusalCode::kNoRecords &&
                              target != nullptr && refusal.GetSubject() == *target;
    if (!lacksClasses || !canReadAgain) throw;
  }
  return CountFile(options, bins, path, true);
}

void PrintMissingLeftOut(const MCBinModel::BinModel& model,
                         const std::vector<MCBinModel::NamedRecount>& data) {
  const bool isLeftOut = std::any_of(data.begin(), data.end(), [&](const auto& named) {
    const std::vector<MCBinModel::RecountedBins>& results = named.recount.results;
    return std::any_of(results.begin(), results.end(), [&](const auto& recounted) {
      return MCBinModel::LeavesOutMissing(model, recounted);
    });
  });
  if (isLeftOut) {
    PrintNote(
        "the bin file has not counted its missing cases as a bin, so missing values are in no "
        "measure");
  }
}

// The bins with the counts of the data, as a bin file.
std::string MakeUpdatedFile(const EvaluateOptions& options, const BinsToUse& bins,
                            const MCBinModel::NamedRecount& data) {
  const bool hasTarget = data.recount.results.front().counts.target.has_value();
  if (TargetName(bins) != nullptr && !hasTarget) {
    throw MCBinModel::Refusal(MCBinModel::RefusalCode::kInput, {data.name, *TargetName(bins), {}},
                              "without the target column there are no classes to count anew");
  }
  MCBinModel::BinModel updated = MCBinModel::WithCounts(bins.model, data.recount);
  MCBinModel::BinSource& source = updated.source;
  const NumberFormat numbers = options.format.GetNumbers({source.decimal, source.thousands});
  source.name = data.name;
  source.delimiter = options.format.delimiter.value_or(source.delimiter);
  source.decimal = numbers.decimal;
  source.thousands = numbers.thousands;
  source.missingTexts = options.missingTexts.GetAll(source.missingTexts, numbers);
  source.weight = ChooseWeight(options, source);
  return MCBinModel::WriteBinFile(updated);
}

}  // namespace

int EvaluateCommand(const EvaluateOptions& options) {
  std::vector<CommandInput> inputs = {{"the bin file", options.binFile}};
  for (const std::string& path : options.inputs) inputs.push_back({"the data", path});
  CheckFiles(inputs, {{"--update", options.updateFile}});
  if (!options.quiet) {
    for (const std::string& path : options.inputs) PrintIfFromTerminal(path);
  }
  const MCBinModel::TextStyle style = MakeTextStyle(options.tables);
  std::optional<OutputFile> updateFile;
  if (options.updateFile) updateFile.emplace(*options.updateFile);
  ResultStream out;
  const BinsToUse bins(options);
  std::vector<MCBinModel::NamedRecount> data;
  for (const std::string& path : options.inputs) {
    data.push_back(options.inputs.size() == 1 ? CountFile(options, bins, path, false)
                                              : CountOneOfSeveral(options, bins, path));
  }
  if (!options.quiet) {
    PrintMissingLeftOut(bins.model, data);
    if (!updateFile) PrintMovedCutPoints(bins.model, bins.results);
  }
  if (updateFile) {
    updateFile->Write(MakeUpdatedFile(options, bins, data.front()));
    updateFile->Commit();
  }
  MCBinModel::WriteEvaluationReport(bins.model, data, style,
                                    [&](std::string_view text) { out.Write(text); });
  out.Close();
  return kExitDone;
}

}  // namespace MCBin
