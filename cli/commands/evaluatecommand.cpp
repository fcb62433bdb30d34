#include <fmt/format.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "binmodel/apply/recount.h"
#include "binmodel/model/resultselection.h"
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
#include "io/inputstream.h"

namespace MCBin {

namespace {

// The weight column: of the options, or the bin file's.
std::optional<ColumnRequest> FindWeight(const EvaluateOptions& options,
                                        const MCBinModel::BinSource& file,
                                        const ColumnNames& names) {
  if (options.unweighted) return std::nullopt;
  std::optional<std::string> name = options.weight;
  if (!name && file.weight) name = file.weight->name;
  if (!name) return std::nullopt;
  return ColumnRequest{names.Find(*name),    *name, ColumnUse::kWeight,
                       KindRequest::kDetect, true,  {}};
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
  PrintNotes(recount.notes);
}

}  // namespace

int EvaluateCommand(const EvaluateOptions& options) {
  CheckFiles({{"the bin file", options.binFile}, {"the data", options.input}}, {});
  ResultStream out;
  const MCBinModel::BinModel model = LoadBinFile(options.binFile);
  const std::vector<std::size_t> results =
      MCBinModel::SelectResults(model, options.target, options.binFile);

  const InputStream input(options.input, "a CSV file");
  CsvReader reader(input.Get(), input.GetName(),
                   options.delimiter.value_or(model.source.delimiter));
  const ColumnNames names = ColumnNames::Read(reader);
  const MissingTexts missingTexts(options.missingTexts.value_or(model.source.missingTexts));
  const std::optional<ColumnRequest> weight = FindWeight(options, model.source, names);

  MCBinModel::RecountWeight counted{
      weight ? &*weight : nullptr,
      model.source.weight ? model.source.weight->rounding : IBINVariable::RoundClosest,
      {}};
  const bool isFileWeight =
      weight && model.source.weight && model.source.weight->name == weight->name;
  if (isFileWeight) counted.missing = model.source.weight->missing;

  constexpr double kBytesPerMB = 1e6;
  ProgressBar progress(!options.quiet && input.IsRegularFile());
  progress.Start("counting", input.GetSize(), "MB", kBytesPerMB);
  const MCBinModel::Recount recount =
      MCBinModel::CountAgain(model, results, names, counted, missingTexts, reader,
                             [&](std::uint64_t bytesRead) { progress.Update(bytesRead); });
  progress.Finish();
  if (!options.quiet) PrintCounts(recount);
  MCBinModel::WriteEvaluationReport(model, recount, input.GetName(),
                                    [&](std::string_view text) { out.Write(text); });
  out.Close();
  return kExitDone;
}

}  // namespace MCBin
